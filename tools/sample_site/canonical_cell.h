// The one text form of a cell in which the expected tables are written and checksums are taken, so that
// whoever reads an exported table back can produce the same.
//
//   Null      nothing at all (an exported text is never empty)
//   Text      UTF-8, verbatim with its trailing blanks; backslash, tab, line feed and carriage return as
//   Memo      \\ \t \n \r
//   Long      plain decimal
//   Single    the shortest decimal that reads back as the same 32-bit real, never with an exponent
//   Currency  plain decimal with exactly 4 decimals
//   Date      yyyy-mm-dd
//
// A column's checksum is the sum of the CRC-32 (the one of zlib) of its cells, so it does not depend on the
// order of the rows; a Null adds 0.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/ole_date.h"

namespace sample {

/// text is of code page 1252.
std::string TextCell(std::string_view text);

std::string LongCell(std::int64_t value);

std::string SingleCell(float value);

/// scaled counts ten-thousandths.
std::string CurrencyCell(std::int64_t scaled);

std::string DateCell(platform::CalendarDay day);

std::uint32_t CellChecksum(std::string_view cell);

}  // namespace sample
