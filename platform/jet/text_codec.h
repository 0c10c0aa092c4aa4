// Text as rows and memos store it. Jet 3: bytes of code page 1252. Jet 4: UTF-16, little-endian; or, in
// columns that ask for it, FF FE and one byte a character, where a byte 00 switches between single bytes and
// UTF-16 pairs. This program compresses what the engine compresses: texts of three characters and more that
// are all U+0001 to U+00FF.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "platform/jet/format.h"

namespace jet {

/// The engine leaves longer memos uncompressed.
inline constexpr std::size_t MaxCompressedMemo = 1024;

/// The text of bytes as a row or memo holds them, compressed or not.
std::u16string DecodeText(std::span<const std::uint8_t> bytes, Version version);

/// Bytes that EncodeText will write in Jet 4: with compression one byte a character and two, else two bytes a
/// character.
bool IsCompressible(std::u16string_view text);
std::size_t EncodedLength(std::u16string_view text, bool compressed);

/// Raises 3421 for a text that begins with U+FEFF: stored as it is, it would read back as a compressed one.
void CheckEncodable(std::u16string_view text);

/// Writes the Jet 4 form to target, which has room for EncodedLength bytes; returns the byte behind it.
std::uint8_t* EncodeText(std::u16string_view text, bool compressed, std::uint8_t* target);

}  // namespace jet
