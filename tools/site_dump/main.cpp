#include <iostream>
#include <vector>

#include "tools/site_dump/site_dump.h"

int main(int argc, char** argv) {
    return site_dump::Run(std::vector<std::string>(argv + 1, argv + argc), std::cout, std::cerr);
}
