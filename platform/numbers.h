// How numbers become texts and texts and reals become 32-bit integers, as the platform's conversions do it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace platform {

/// Plain decimal text without blanks: 12 gives "12", -3 gives "-3".
std::string PlainDecimal(std::int32_t value);

/// Decimal text with one leading blank when the value is not negative: 12 gives " 12", -3 gives "-3". Reals
/// show up to 15 significant digits and no trailing zeros; below 1 there is no zero before the point (" .5").
std::string LeadingBlankDecimal(std::int32_t value);
std::string LeadingBlankDecimal(double value);

/// A real rounded to a 32-bit integer, halves to the even neighbour. Raises 6 outside the range and for NaN.
std::int32_t RoundToLong(double value);

/// The real nearest to ten to the power of exponent: infinite from 309 on, 0 from -324 down.
double PowerOfTen(std::int32_t exponent);

/// A text read as a real: blanks around, a sign, decimals and an exponent are allowed. Raises 13 for anything
/// else.
double RealFromText(std::string_view text);

/// A text read as a 32-bit integer: RealFromText, then RoundToLong, with the errors of both.
std::int32_t LongFromText(std::string_view text);

}  // namespace platform
