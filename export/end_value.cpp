#include "export/end_value.h"

#include <string_view>
#include <type_traits>

#include "platform/code_page.h"
#include "platform/error.h"
#include "platform/numbers.h"

namespace exporting {

namespace {

constexpr double CurrencyScale = 10000;

template <typename Character>
bool IsExponent(Character character) {
    return character == 'E' || character == 'e';
}

/// Whether the characters between the blanks stand where those of a number do. Most keys that are texts are
/// no numbers: they must cost neither an exception nor a copy a record.
template <typename Character>
bool LooksLikeNumber(std::basic_string_view<Character> text) {
    while (text.ends_with(Character(' '))) text.remove_suffix(1);
    while (text.starts_with(Character(' '))) text.remove_prefix(1);
    bool hasDigit = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const Character character = text[i];
        const bool isDigit = character >= '0' && character <= '9';
        const bool isSign = character == '+' || character == '-';
        hasDigit = hasDigit || isDigit;
        if (isSign && i > 0 && !IsExponent(text[i - 1])) return false;
        if (!isDigit && !isSign && character != '.' && !IsExponent(character)) return false;
    }
    return hasDigit;
}

/// text looks like a number.
bool NumberExceeds(std::string_view text, std::int32_t end) {
    try {
        return platform::RealFromText(text) > end;
    } catch (const platform::Error&) {
        return false;
    }
}

bool TextExceeds(std::string_view text, std::int32_t end) {
    return LooksLikeNumber(text) && NumberExceeds(text, end);
}

bool TextExceeds(std::u16string_view text, std::int32_t end) {
    return LooksLikeNumber(text) && NumberExceeds(platform::BytesFromWide(text), end);
}

}  // namespace

bool Exceeds(const ColumnValue& value, std::int32_t end) {
    return std::visit(
        [end](const auto& held) {
            using Held = std::decay_t<decltype(held)>;
            if constexpr (std::is_same_v<Held, std::monostate>) return 0 > end;
            if constexpr (std::is_same_v<Held, ByteString>) return TextExceeds(std::string_view(held), end);
            if constexpr (std::is_same_v<Held, platform::OleDate>) return held.Serial > end;
            if constexpr (std::is_arithmetic_v<Held>) return held > end;
        },
        value);
}

bool Exceeds(const dao::Value& value, std::int32_t end) {
    return std::visit(
        [end](const auto& held) {
            using Held = std::decay_t<decltype(held)>;
            if constexpr (std::is_same_v<Held, bool>) return (held ? -1 : 0) > end;
            if constexpr (std::is_same_v<Held, std::int32_t> || std::is_same_v<Held, double>)
                return held > end;
            if constexpr (std::is_same_v<Held, dao::Currency>) {
                return static_cast<double>(held.Scaled) / CurrencyScale > end;
            }
            if constexpr (std::is_same_v<Held, platform::OleDate>) return held.Serial > end;
            if constexpr (std::is_same_v<Held, std::u16string>)
                return TextExceeds(std::u16string_view(held), end);
            return false;
        },
        value);
}

}  // namespace exporting
