#include "engine/field_codec.h"

#include <algorithm>
#include <array>
#include <string>

#include "platform/checked.h"
#include "platform/code_page.h"
#include "platform/error.h"
#include "platform/numbers.h"

namespace engine {

using platform::Error;
using platform::PlainDecimal;

namespace {

constexpr int UnknownOpCode = 100;
constexpr int InvalidSubscript = 31;

char UpperByte(char byte) {
    if (byte >= 'a' && byte <= 'z') return static_cast<char>(byte - 'a' + 'A');
    if (static_cast<std::uint8_t>(byte) < 0x80) return byte;
    for (int candidate = 0x80; candidate <= 0xFF; ++candidate) {
        const char upper = static_cast<char>(candidate);
        if (upper != byte && platform::FoldByte(upper) == byte) return upper;
    }
    return byte;
}

/// Upper-cases the caller's opcode; its letter, or NUL, which is no opcode, when it is not one letter.
char Normalised(ByteString& opCode) {
    std::transform(opCode.begin(), opCode.end(), opCode.begin(), UpperByte);
    return opCode.size() == 1 ? opCode.front() : '\0';
}

std::string Quoted(std::string_view opcode) {
    return '"' + platform::Utf8FromBytes(opcode) + '"';
}

[[noreturn]] void RaiseUnknown(const char* source, std::string_view opcode) {
    throw Error(UnknownOpCode, source, "Unknown OpCode = " + Quoted(opcode));
}

/// Whether a field of this width at position ends beyond length. Raises 6 beyond 32 bits.
bool EndsBeyond(std::size_t length, std::int32_t position, std::int32_t width) {
    const std::int32_t last = platform::CheckedAdd(position, width) - 1;
    return last > 0 && static_cast<std::size_t>(last) > length;
}

}  // namespace

namespace detail {

void RaiseUnpack(char opcode, std::string_view data, std::int32_t position) {
    const FieldWidth width = WidthOf(opcode);
    if (width.Bytes == 0) RaiseUnknown("UnPack", {&opcode, 1});
    if (width.SignExtends) platform::ByteAt(data, position);  // the sign is read first
    if (EndsBeyond(data.size(), position, width.Bytes)) {
        throw Error(InvalidSubscript, "UnPack",
                    "Invalid Subscript.  UnPack(" + Quoted({&opcode, 1}) + ", Data$, " +
                        PlainDecimal(position) + ")   Len(Data$) = " + std::to_string(data.size()));
    }
    throw Error(platform::InvalidArgument);
}

}  // namespace detail

void iPack(char opcode, ByteString& data, std::int32_t value, std::int32_t position) {
    const std::int32_t width = detail::WidthOf(opcode).Bytes;
    if (width == 0) RaiseUnknown("Pack", {&opcode, 1});
    if (EndsBeyond(data.size(), position, width)) {
        throw Error(InvalidSubscript, "Pack",
                    "Invalid Subscript.  Pack " + Quoted({&opcode, 1}) + ", Data$, " +
                        PlainDecimal(position) + "   Len(Data$) = " + std::to_string(data.size()));
    }
    if (position < 1) throw Error(platform::InvalidArgument);
    auto rest = static_cast<std::uint32_t>(value);
    for (std::int32_t i = width; i > 0; --i, rest >>= 8U)
        data[static_cast<std::size_t>(position + i - 2)] = static_cast<char>(rest & 0xFFU);
}

std::int32_t Unpack(ByteString& OpCode, std::string_view Data, std::int32_t Position) {
    const char opcode = Normalised(OpCode);
    if (detail::WidthOf(opcode).Bytes == 0) RaiseUnknown("UnPack", OpCode);
    return iUnpack(opcode, Data, Position);
}

void Pack(ByteString& OpCode, ByteString& Data, std::int32_t Value, std::int32_t Position) {
    const char opcode = Normalised(OpCode);
    if (detail::WidthOf(opcode).Bytes == 0) RaiseUnknown("Pack", OpCode);
    iPack(opcode, Data, Value, Position);
}

}  // namespace engine
