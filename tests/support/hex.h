// Bytes written as hexadecimal pairs, for tables of keys.
#pragma once

#include <cstdio>
#include <sstream>
#include <string>
#include <string_view>

namespace test {

/// "7F 01 00" as three bytes; "/" and blanks part them.
inline std::string Hex(std::string_view text) {
    std::string bytes;
    std::istringstream words{std::string(text)};
    for (std::string word; words >> word;) {
        if (word.find_first_not_of('/') != std::string::npos)
            bytes += static_cast<char>(std::stoul(word, nullptr, 16));
    }
    return bytes;
}

inline std::string ToHex(std::string_view bytes) {
    std::string text;
    for (const char byte : bytes) {
        char pair[4];
        std::snprintf(pair, sizeof pair, "%02X ", static_cast<unsigned>(static_cast<unsigned char>(byte)));
        text += pair;
    }
    if (!text.empty()) text.pop_back();
    return text;
}

}  // namespace test
