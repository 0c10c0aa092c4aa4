// Packed dates, the date services of Stma, the system values of Sys and the clock.
//
//   opcode C, J   2 bytes: days since 31 December 1967, unsigned for both
//          D, K   3 bytes, unsigned for both: the digits of the short-date text, read as mmddyy
//          R      3 bytes: yymmdd
//
// Opcodes are upper case; any other text is no date opcode. 1 January 1968 is the null date: it is what an
// empty or impossible date reads as, and it is written as day 0.
#pragma once

#include <cstdint>
#include <string_view>
#include <variant>

#include "platform/byte_string.h"
#include "platform/ole_date.h"

namespace engine {

using platform::ByteString;

/// What Stma takes and gives: nothing, a number, a text or a date.
using StmaValue = std::variant<std::monostate, std::int32_t, ByteString, platform::OleDate>;

/// 1 January 1968.
platform::OleDate NullDate();

/// Writes a date at 1-based Position; nothing for any other opcode. Dates before day 0 write the low 16 bits
/// of a negative count; a time of day is ignored by C, J and R, save that only midnight of 1 January 1968 is
/// the null date. Raises the errors of iPack, and 13 for D and K when the short-date text is no number, as
/// with a time of day.
void PackDate(std::string_view OpCode, ByteString& Data, std::int32_t Position, platform::OleDate Value);

/// Reads a date at 1-based Position. Never raises: the null date for any other opcode, a bad position and an
/// impossible date.
platform::OleDate UnPackDate(std::string_view OpCode, std::string_view Data, std::int32_t Position) noexcept;

/// The statement of many purposes, by the code in Var1; any other code does nothing.
///   10  Var2 = 0 and a Var3 of four characters: these become the first four of gCodeChars
///   11  day number Var2 to date Var6, its month Var3, day Var4 and two-digit year Var5; raises 5 for a date
///       beyond the calendar
///   12  month Var3, day Var4, two-digit year Var5 to day number Var2 (1, 1, 68 gives 0); raises 13 when they
///       form no date
void Stma(const StmaValue& Var1, StmaValue& Var2, StmaValue& Var3, StmaValue& Var4, StmaValue& Var5,
          StmaValue& Var6);

/// A system value: 1 day, 2 month, 3 year of today, 4 the terminal number, 28 today as mmddyy, 128 as yymmdd,
/// 152 its day number; 0 for anything else. Code 4 raises 13 for a terminal that is no number and 91 without
/// a site.
std::int32_t Sys(std::int32_t Value);

/// The workstation's local date and time.
platform::OleDate Now();

}  // namespace engine
