#include "platform/dao/conversion.h"

#include <cmath>
#include <limits>

#include "platform/code_page.h"
#include "platform/error.h"
#include "platform/jet/errors.h"
#include "platform/jet/format.h"

namespace dao {

namespace {

using jet::DataError;
using platform::OleDate;

constexpr double LowestDate = -657434.0;         // 1 January 100
constexpr double BehindHighestDate = 2958466.0;  // the end of 31 December 9999
constexpr double CurrencyScale = 10'000.0;
constexpr double BehindHighestScaled = 9223372036854775808.0;  // 2 to the 63rd
constexpr std::int32_t TrueAsByte = 255;

double RealOf(const Value& value) {
    const double real = ToReal(value);
    if (!std::isfinite(real)) throw DataError(jet::DataConversion);
    return real;
}

/// Halves go to the even neighbour.
std::int32_t WholeOf(const Value& value, std::int32_t lowest, std::int32_t highest) {
    const double rounded = std::nearbyint(RealOf(value));
    if (rounded < lowest || rounded > highest) throw DataError(jet::DataConversion);
    return static_cast<std::int32_t>(rounded);
}

std::int32_t ByteOf(const Value& value) {
    if (const bool* truth = std::get_if<bool>(&value)) return *truth ? TrueAsByte : 0;
    return WholeOf(value, 0, std::numeric_limits<std::uint8_t>::max());
}

double SingleOf(const Value& value) {
    const double real = RealOf(value);
    constexpr double Greatest = std::numeric_limits<float>::max();
    if (std::fabs(real) > Greatest) throw DataError(jet::DataConversion);
    return static_cast<double>(static_cast<float>(real));
}

Currency CurrencyOf(const Value& value) {
    if (const auto* amount = std::get_if<Currency>(&value)) return *amount;
    const double scaled = std::nearbyint(RealOf(value) * CurrencyScale);
    if (scaled < -BehindHighestScaled || scaled >= BehindHighestScaled) throw DataError(jet::DataConversion);
    return {static_cast<std::int64_t>(scaled)};
}

OleDate DateOf(const Value& value) {
    OleDate date;
    if (const auto* text = std::get_if<std::u16string>(&value)) {
        date = platform::DateFromText(platform::BytesFromWide(*text));
    } else {
        date.Serial = RealOf(value);
    }
    if (date.Serial < LowestDate || date.Serial >= BehindHighestDate) throw DataError(jet::DataConversion);
    return date;
}

Value TextOf(const Value& value, const ColumnShape& column) {
    // A truth value becomes the text of its number here, not the word that the platform would show.
    const bool* truth = std::get_if<bool>(&value);
    std::u16string text = truth != nullptr ? ToText(std::int32_t{*truth ? -1 : 0}) : ToText(value);
    CheckText(text, column);
    return text;
}

Value BytesOf(const Value& value, const ColumnShape& column) {
    const auto* bytes = std::get_if<jet::Binary>(&value);
    if (bytes == nullptr) throw DataError(jet::DataConversion);
    const bool limited = column.Type == FieldType::Binary;
    if (limited && bytes->Bytes.size() > static_cast<std::size_t>(column.Size))
        throw DataError(jet::FieldTooSmall);
    return value;
}

Value Convert(const Value& value, const ColumnShape& column) {
    switch (column.Type) {
        case FieldType::Boolean:
            return ToBoolean(value);
        case FieldType::Byte:
            return ByteOf(value);
        case FieldType::Integer:
            return WholeOf(value, std::numeric_limits<std::int16_t>::min(),
                           std::numeric_limits<std::int16_t>::max());
        case FieldType::Long:
            return WholeOf(value, std::numeric_limits<std::int32_t>::min(),
                           std::numeric_limits<std::int32_t>::max());
        case FieldType::Currency:
            return CurrencyOf(value);
        case FieldType::Single:
            return SingleOf(value);
        case FieldType::Double:
            return RealOf(value);
        case FieldType::Date:
            return DateOf(value);
        case FieldType::Text:
        case FieldType::Memo:
            return TextOf(value, column);
        case FieldType::Binary:
        case FieldType::LongBinary:
            return BytesOf(value, column);
        default:
            throw DataError(jet::DataConversion);
    }
}

}  // namespace

void CheckText(std::u16string_view text, const ColumnShape& column) {
    if (text.empty()) throw DataError(jet::ZeroLengthText, column.Name);
    if (column.Type == FieldType::Text && text.size() > static_cast<std::size_t>(column.Size))
        throw DataError(jet::FieldTooSmall);
}

Value ConvertForColumn(const Value& value, const ColumnShape& column) {
    if (IsNull(value)) return column.Type == FieldType::Boolean ? Value(false) : value;
    try {
        return Convert(value, column);
    } catch (const platform::Error& error) {
        // What the platform's own conversions find is one error here.
        if (error.Number == platform::TypeMismatch || error.Number == platform::Overflow)
            throw DataError(jet::DataConversion);
        throw;
    }
}

}  // namespace dao
