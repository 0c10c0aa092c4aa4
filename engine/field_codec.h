// The one codec for numbers in byte strings: 1 to 4 bytes, most significant first, at a 1-based position.
//
//   opcode  B  C  D   unsigned, 1, 2, 3 bytes
//           I  J  K   signed, 1, 2, 3 bytes
//           L         signed, 4 bytes
//
// The forms with a char take an upper-case opcode and are for inner loops; the forms with a text are the
// runtime's own: they take either letter case and leave the caller's opcode in upper case.
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/byte_string.h"

namespace engine {

using platform::ByteString;

namespace detail {

struct FieldWidth {
    std::int32_t Bytes = 0;  // 0 for an unknown opcode
    bool SignExtends = false;
};

/// The width of an opcode's number; 0 bytes for an unknown opcode.
constexpr FieldWidth WidthOf(char opcode) {
    switch (opcode) {
        case 'B':
            return {1, false};
        case 'C':
            return {2, false};
        case 'D':
            return {3, false};
        case 'I':
            return {1, true};
        case 'J':
            return {2, true};
        case 'K':
            return {3, true};
        case 'L':
            return {4, false};
        default:
            return {};
    }
}

/// The error of a number that cannot be read.
[[noreturn]] void RaiseUnpack(char opcode, std::string_view data, std::int32_t position);

}  // namespace detail

/// The number at position. Raises 100 "UnPack" for an unknown opcode, 31 "UnPack" when the field ends beyond
/// the data, 5 for a position below 1, and 5 before 31 when the first byte of I, J or K lies beyond the data:
/// their sign is read first. Raises 6 when position + width leaves 32 bits.
inline std::int32_t iUnpack(char opcode, std::string_view data, std::int32_t position) {
    constexpr std::uint8_t SignBit = 0x80;
    const detail::FieldWidth width = detail::WidthOf(opcode);
    const std::int64_t last = std::int64_t{position} + width.Bytes - 1;
    if (width.Bytes == 0 || position < 1 || last > static_cast<std::int64_t>(data.size()))
        detail::RaiseUnpack(opcode, data, position);
    const char* const field = data.data() + position - 1;
    const bool negative = width.SignExtends && (static_cast<std::uint8_t>(*field) & SignBit) != 0;
    std::uint32_t value = negative ? ~std::uint32_t{0} : 0;
    for (std::int32_t i = 0; i < width.Bytes; ++i)
        value = (value << 8U) | static_cast<std::uint8_t>(field[i]);
    return static_cast<std::int32_t>(value);
}

/// Writes the low bytes of value at position; higher bits are dropped. Raises 100 "Pack" for an unknown
/// opcode, 31 "Pack" when the field ends beyond the data, 5 for a position below 1, 6 as iUnpack.
void iPack(char opcode, ByteString& data, std::int32_t value, std::int32_t position);

/// iUnpack and iPack with the opcode as a text, which is turned into upper case for the caller. A text that
/// is not one letter of the table raises 100.
std::int32_t Unpack(ByteString& OpCode, std::string_view Data, std::int32_t Position);
void Pack(ByteString& OpCode, ByteString& Data, std::int32_t Value, std::int32_t Position);

}  // namespace engine
