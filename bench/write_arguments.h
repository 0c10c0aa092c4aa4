// The command line of the writing benchmarks: ROWS OUT [--no-text-index] [--text-index-last].
#pragma once

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>
#include <string_view>

namespace bench {

struct WriteArguments {
    std::int64_t Rows = 0;
    std::string Out;
    bool TextIndex = true;
    bool TextIndexLast = false;
};

/// Ends the process with status 2 and a line of usage when the arguments do not read. Removes an older OUT.
inline WriteArguments ReadWriteArguments(int count, char** words) {
    WriteArguments arguments;
    if (count >= 3) {
        arguments.Rows = std::atoll(words[1]);
        arguments.Out = words[2];
    }
    bool understood = arguments.Rows > 0;
    for (int i = 3; i < count; ++i) {
        const std::string_view word = words[i];
        if (word == "--no-text-index") {
            arguments.TextIndex = false;
        } else if (word == "--text-index-last") {
            arguments.TextIndexLast = true;
        } else {
            understood = false;
        }
    }
    if (!understood) {
        std::cerr << "usage: " << words[0] << " ROWS OUT [--no-text-index] [--text-index-last]\n";
        std::exit(2);
    }
    std::filesystem::remove(arguments.Out);
    return arguments;
}

}  // namespace bench
