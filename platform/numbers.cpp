#include "platform/numbers.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>

#include "platform/error.h"

namespace platform {

namespace {

constexpr std::string_view Blanks = " \t\r\n";

std::string_view Trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(Blanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(Blanks) - first + 1);
}

}  // namespace

std::string PlainDecimal(std::int32_t value) {
    return std::to_string(value);
}

std::string LeadingBlankDecimal(std::int32_t value) {
    std::string text(value < 0 ? "" : " ");
    return text += std::to_string(value);
}

std::string LeadingBlankDecimal(double value) {
    std::array<char, 32> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "%.15G", std::fabs(value));
    std::string digits = buffer.data();
    if (digits.starts_with("0.")) digits.erase(0, 1);
    return (value < 0 ? "-" : " ") + digits;
}

std::int32_t RoundToLong(double value) {
    constexpr double Lowest = -2147483648.0;
    constexpr double Highest = 2147483647.0;
    const double rounded = std::nearbyint(value);
    if (!(rounded >= Lowest && rounded <= Highest)) throw Error(Overflow);
    return static_cast<std::int32_t>(rounded);
}

double PowerOfTen(std::int32_t exponent) {
    // Not std::pow: some systems' is off by several last digits, and a value scaled by it would show that.
    const std::string text = "1e" + std::to_string(exponent);
    double power = exponent > 0 ? std::numeric_limits<double>::infinity() : 0;
    std::from_chars(text.data(), text.data() + text.size(), power);
    return power;
}

double RealFromText(std::string_view text) {
    std::string_view number = Trimmed(text);
    // from_chars knows no plus sign, and reads "inf" and "nan", which are no numbers here.
    if (number.starts_with('+')) {
        number.remove_prefix(1);
        if (number.starts_with('-')) throw Error(TypeMismatch);
    }
    if (number.find_first_not_of("0123456789.eE+-") != std::string_view::npos) throw Error(TypeMismatch);
    double value = 0;
    const auto [end, failure] = std::from_chars(number.data(), number.data() + number.size(), value);
    if (failure == std::errc::result_out_of_range) throw Error(Overflow);
    if (failure != std::errc{} || end != number.data() + number.size()) throw Error(TypeMismatch);
    return value;
}

std::int32_t LongFromText(std::string_view text) {
    return RoundToLong(RealFromText(text));
}

}  // namespace platform
