#include "platform/dao/value.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "platform/code_page.h"
#include "platform/error.h"
#include "platform/numbers.h"

namespace dao {

namespace {

using platform::Error;
using platform::OleDate;

constexpr double CurrencyScale = 10'000.0;

std::u16string RealText(double value) {
    std::array<char, 32> buffer{};
    // Adding 0 turns the negative zero into the plain one.
    std::snprintf(buffer.data(), buffer.size(), "%.15G", value + 0.0);
    return platform::WideFromBytes(buffer.data());
}

std::u16string CurrencyText(Currency amount) {
    constexpr std::uint64_t Scale = 10'000;
    const bool negative = amount.Scaled < 0;
    const std::uint64_t magnitude =
        negative ? 0 - static_cast<std::uint64_t>(amount.Scaled) : static_cast<std::uint64_t>(amount.Scaled);
    std::string text = negative ? "-" : "";
    text += std::to_string(magnitude / Scale);
    if (const std::uint64_t decimals = magnitude % Scale; decimals != 0) {
        // The leading 1 keeps the zeros behind the point; the point takes its place.
        std::string digits = std::to_string(Scale + decimals);
        digits.front() = '.';
        digits.erase(digits.find_last_not_of('0') + 1);
        text += digits;
    }
    return platform::WideFromBytes(text);
}

/// The number that a text stands for: a currency sign and thousands separators are allowed. Raises 13, 6.
double RealFromFieldText(std::u16string_view text) {
    std::string number;
    bool inWholePart = true;
    for (const char c : platform::BytesFromWide(text)) {
        if (c == '.' || c == 'e' || c == 'E') inWholePart = false;
        const bool separator = c == ',' && inWholePart && !number.empty();
        const bool currencySign = c == '$' && number.find_first_of("$0123456789.") == std::string::npos;
        if (!separator && !currencySign) number += c;
    }
    return platform::RealFromText(number);
}

/// One call an alternative of a value; Null raises 94 before it comes to that.
struct AsReal {
    double operator()(Null) const { throw Error(platform::InvalidUseOfNull); }
    double operator()(bool truth) const { return truth ? -1 : 0; }
    double operator()(std::int32_t number) const { return number; }
    double operator()(double number) const { return number; }
    double operator()(Currency amount) const { return static_cast<double>(amount.Scaled) / CurrencyScale; }
    double operator()(OleDate date) const { return date.Serial; }
    double operator()(const std::u16string& text) const { return RealFromFieldText(text); }
    double operator()(const jet::Binary&) const { throw Error(platform::TypeMismatch); }
};

struct AsText {
    std::u16string operator()(Null) const { throw Error(platform::InvalidUseOfNull); }
    std::u16string operator()(bool truth) const { return truth ? u"True" : u"False"; }
    std::u16string operator()(std::int32_t number) const {
        return platform::WideFromBytes(platform::PlainDecimal(number));
    }
    std::u16string operator()(double number) const { return RealText(number); }
    std::u16string operator()(Currency amount) const { return CurrencyText(amount); }
    std::u16string operator()(OleDate date) const {
        return platform::WideFromUtf8(platform::ShortDateText(date));
    }
    std::u16string operator()(const std::u16string& text) const { return text; }
    std::u16string operator()(const jet::Binary&) const { throw Error(platform::TypeMismatch); }
};

}  // namespace

std::int32_t ToLong(const Value& value) {
    if (const auto* number = std::get_if<std::int32_t>(&value)) return *number;
    return platform::RoundToLong(ToReal(value));
}

double ToReal(const Value& value) {
    return std::visit(AsReal{}, value);
}

std::u16string ToText(const Value& value) {
    return std::visit(AsText{}, value);
}

bool ToBoolean(const Value& value) {
    if (const auto* text = std::get_if<std::u16string>(&value)) {
        if (platform::EqualFolded(*text, u"True")) return true;
        if (platform::EqualFolded(*text, u"False")) return false;
    }
    return ToReal(value) != 0;
}

}  // namespace dao
