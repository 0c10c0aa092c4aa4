// Literal bytes for tests, made without the code under test.
#pragma once

#include <cstdint>
#include <sstream>
#include <string>
#include <string_view>

namespace test {

/// The low width bytes of value, most significant first.
inline std::string Big(std::int64_t value, int width) {
    std::string bytes;
    for (int shift = (width - 1) * 8; shift >= 0; shift -= 8)
        bytes += static_cast<char>(static_cast<std::uint64_t>(value) >> static_cast<unsigned>(shift) & 0xFFU);
    return bytes;
}

/// The bytes of a text such as "59 E8".
inline std::string Hex(const std::string& text) {
    std::istringstream pairs(text);
    std::string bytes;
    for (std::string pair; pairs >> pair;) bytes += static_cast<char>(std::stoi(pair, nullptr, 16));
    return bytes;
}

inline std::string Nul(std::size_t count) {
    return std::string(count, '\0');
}

/// text with fill behind it up to length.
inline std::string Padded(std::string text, std::size_t length, char fill = ' ') {
    text.resize(length, fill);
    return text;
}

/// data with bytes at a 1-based position.
inline std::string With(std::string data, std::size_t position, const std::string& bytes) {
    return data.replace(position - 1, bytes.size(), bytes);
}

}  // namespace test
