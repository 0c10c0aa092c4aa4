#include "export/end_value.h"

#include <string_view>
#include <type_traits>

#include "platform/code_page.h"
#include "platform/error.h"
#include "platform/numbers.h"

namespace exporting {

namespace {

constexpr double CurrencyScale = 10000;

bool TextExceeds(std::string_view text, std::int32_t end) {
    // Most keys that are texts hold letters: they must not cost an exception a record.
    constexpr std::string_view CharactersOfNumbers = " +-.0123456789Ee";
    if (text.find_first_not_of(CharactersOfNumbers) != std::string_view::npos) return false;
    try {
        return platform::RealFromText(text) > end;
    } catch (const platform::Error&) {
        return false;
    }
}

}  // namespace

bool Exceeds(const ColumnValue& value, std::int32_t end) {
    return std::visit(
        [end](const auto& held) {
            using Held = std::decay_t<decltype(held)>;
            if constexpr (std::is_same_v<Held, std::monostate>) return 0 > end;
            if constexpr (std::is_same_v<Held, ByteString>) return TextExceeds(held, end);
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
            if constexpr (std::is_same_v<Held, std::u16string>) {
                return TextExceeds(platform::BytesFromWide(held), end);
            }
            return false;
        },
        value);
}

}  // namespace exporting
