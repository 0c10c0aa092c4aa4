// The runtime's string and numeric built-ins: radix-40 compression, trimming, searching, splitting, the hex
// dump. None of them raises errors of its own.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/byte_string.h"

namespace engine {

using platform::ByteString;

/// The radix-40 alphabet at engine start-up.
inline constexpr std::string_view StandardCodeChars = " ,/.0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ";

/// The radix-40 alphabet in use; Stma code 10 can replace its first four characters.
extern ByteString gCodeChars;

/// Compresses a text: three characters become two bytes, big-endian, 1600 * i1 + 40 * i2 + i3 with the
/// 0-based places of the characters in gCodeChars; a character that is not there counts as 0. Source is
/// padded with blanks to a multiple of three, for the caller too.
ByteString Crm(ByteString& Source);

/// The inverse: two bytes become three characters, two when the first place lies beyond the alphabet. A
/// Source of odd length gets one zero byte at its end, for the caller too.
ByteString Ucm(ByteString& Source);

/// The same of bytes that stay as they are: an odd length is read as if the zero byte followed.
ByteString Ucm(std::string_view Source);

/// The same in place of text, whose memory is used again; Source must not lie in it.
void UcmInto(std::string_view Source, ByteString& text);

/// The 1-based position of the first Target in Source, letter case mattering; 0 when there is none.
std::int32_t StrPos(std::string_view Source, std::string_view Target);

/// Source without its trailing blanks; with the flag not 0 without its trailing NULs, tabs, line feeds,
/// carriage returns and blanks.
ByteString Trun(std::string_view Source, std::int32_t flgRemoveControlCharacters = 0);

/// Trun with the flag set, without a copy.
std::string_view WithoutTail(std::string_view source);

/// The pieces of Expression between the delimiters, at most Limit of them (-1: all), without the empty ones
/// and without those that still contain the delimiter, as the last one of a limited split may. Compare 1
/// finds delimiters without regard to letter case. Raises 5 for any other Compare but 0 and for a Limit below
/// -1.
std::vector<ByteString> Split(std::string_view Expression, std::string_view Delimiter = " ",
                              std::int32_t Limit = -1, std::int32_t Compare = 0);

/// The hex dump of Data: lines of 16 bytes, each with the 1-based position of its first byte, the bytes in
/// hexadecimal, the characters that can be shown ("." for the others), CR LF.
ByteString HexDump(std::string_view Data);

}  // namespace engine
