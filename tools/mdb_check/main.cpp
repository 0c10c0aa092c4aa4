// mdb_check [--strict] FILE...: says what does not agree in Access database files. Ends 0 when all of it
// does.
#include <iostream>
#include <string_view>
#include <vector>

#include "tools/mdb_check/file_check.h"

namespace {

constexpr const char* Usage = "usage: mdb_check [--strict] FILE...\n";

}  // namespace

int main(int argc, char** argv) {
    bool strict = false;
    std::vector<std::string> paths;
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i];
        if (argument == "--help") {
            std::cout << Usage;
            return 0;
        }
        if (argument == "--strict") {
            strict = true;
        } else {
            paths.emplace_back(argument);
        }
    }
    if (paths.empty()) {
        std::cerr << Usage;
        return 2;
    }

    bool sound = true;
    for (const std::string& path : paths) {
        mdb_check::Report report(strict, [&](mdb_check::Report::Kind kind, const std::string& text) {
            std::cout << path << (kind == mdb_check::Report::Kind::Damage ? ": DAMAGE: " : ": note: ") << text
                      << '\n';
        });
        mdb_check::CheckFile(path, report);
        std::cout << path << ": " << report.Damages() << " damages, " << report.Notes() << " notes; "
                  << report.Keys() << " keys made again, " << report.TextKeys() << " of them with text\n";
        sound = sound && report.Damages() == 0;
    }
    return sound ? 0 : 1;
}
