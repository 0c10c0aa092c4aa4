// Literal bytes for tests, made without the code under test.
#pragma once

#include <cstdint>
#include <string>

#include "tests/support/hex.h"

namespace test {

/// The low width bytes of value, most significant first.
inline std::string Big(std::int64_t value, int width) {
    std::string bytes;
    for (int shift = (width - 1) * 8; shift >= 0; shift -= 8)
        bytes += static_cast<char>(static_cast<std::uint64_t>(value) >> static_cast<unsigned>(shift) & 0xFFU);
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

/// One LINKSFILE entry of 160 bytes.
inline std::string LinkEntry(const std::string& name, const std::string& resolution) {
    return "?" + Padded(name, 79) + "?" + Padded(resolution, 79);
}

/// One directory entry of 32 bytes. The name field is NULs behind the name, so the flags are 0.
inline std::string DirectoryEntryBytes(const std::string& name, std::int32_t firstBlock,
                                       std::int32_t recordLength, char type, std::int32_t lastRecord) {
    return Padded(name, 10, '\0') + Big(firstBlock, 3) + Big(recordLength, 2) + type + Big(lastRecord, 4) +
           Nul(12);
}

}  // namespace test
