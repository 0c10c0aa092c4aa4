#include "tools/sample_site/field_packing.h"

#include <cmath>
#include <limits>

#include "engine/field_codec.h"
#include "platform/error.h"
#include "platform/numbers.h"
#include "tools/sample_site/canonical_cell.h"

namespace sample {

namespace {

using platform::ByteString;
using platform::CalendarDay;

constexpr std::string_view UnsignedOpcodes = "BCDL";
constexpr CalendarDay NullDate{1968, 1, 1};
constexpr CalendarDay DayZero{1967, 12, 31};
constexpr std::int64_t ImpossibleDigits = 999'999;  // 99/99/99 is no date in any order
constexpr int DateDigitsLength = 3;
constexpr int DayNumberLength = 2;
constexpr int BytesInGroup = 2;
constexpr int CharactersInGroup = 3;

std::int64_t DigitsOf(CalendarDay day, char code) {
    const int year = day.Year % 100;
    if (code == 'R') return year * 10'000 + day.Month * 100 + day.Day;
    return day.Month * 10'000 + day.Day * 100 + year;
}

void PackDate(const FieldSpec& field, const DateValue& date, ByteString& record) {
    if (field.Code == 'J') {
        const int days = !date.Day ? 0
                                   : platform::DateFromCalendar(*date.Day)->DayNumber() -
                                         platform::DateFromCalendar(DayZero)->DayNumber();
        PackInteger(record, field.Start, DayNumberLength, days);
        return;
    }
    std::int64_t digits = date.Day ? DigitsOf(*date.Day, field.Code) : 0;
    if (date.Impossible) digits = ImpossibleDigits;
    PackInteger(record, field.Start, DateDigitsLength, digits);
}

void PackFlag(const FieldSpec& field, bool set, ByteString& record) {
    if (!set) return;
    const char opcode = UnsignedOpcodes[static_cast<std::size_t>(field.Length) - 1];
    const auto bits = static_cast<std::uint32_t>(engine::iUnpack(opcode, record, field.Start));
    PackInteger(record, field.Start, field.Length, bits | (1U << static_cast<unsigned>(field.Specifier)));
}

void PackText(const FieldSpec& field, const std::string& text, ByteString& record) {
    std::string padded = text;
    if (padded.size() > static_cast<std::size_t>(field.Length))
        throw platform::Error(platform::InvalidArgument);
    padded.resize(static_cast<std::size_t>(field.Length), ' ');
    if (!padded.empty()) platform::Put(record, field.Start, padded);
}

/// The text as a column of it shows it: padded to the field.
std::string Padded(std::string text, int characters) {
    text.resize(static_cast<std::size_t>(characters), ' ');
    return text;
}

/// A whole number with implied decimals becomes a real, any other one a 32-bit integer, refused beyond that.
std::optional<std::string> NumberCell(const FieldSpec& field, std::int64_t value) {
    if (field.Specifier > 0) {
        return SingleCell(static_cast<float>(static_cast<double>(value) / platform::PowerOfTen(field.Specifier)));
    }
    for (int zeros = -field.Specifier; zeros > 0; --zeros) value *= 10;
    if (value < std::numeric_limits<std::int32_t>::min() || value > std::numeric_limits<std::int32_t>::max())
        return std::nullopt;
    return LongCell(value);
}

std::string CompressedCell(const FieldSpec& field, const std::string& text) {
    return TextCell(Padded(text, CompressedCharacters(field.Length)));
}

bool IsWholeNumber(const FieldSpec& field) {
    return (field.Code == 'I' || field.Code == 'U') && field.Specifier <= 0;
}

bool IsAmount(const FieldSpec& field) {
    return field.Code == 'M' || field.Code == 'm' || field.Code == 'W';
}

std::int64_t TenThousandths(const FieldSpec& field, std::int64_t value) {
    constexpr std::int64_t InUnit = 10'000;
    constexpr std::int64_t InHundredth = 100;
    return value * (field.Code == 'W' ? InUnit : InHundredth);
}

}  // namespace

CompressionAlphabet::CompressionAlphabet() : mBefore(engine::gCodeChars) {
    constexpr std::string_view FirstFour = " ,-.";
    engine::gCodeChars.replace(0, FirstFour.size(), FirstFour);
}

CompressionAlphabet::~CompressionAlphabet() {
    engine::gCodeChars.swap(mBefore);
}

int CompressedCharacters(int bytes) {
    return (bytes + 1) / BytesInGroup * CharactersInGroup;
}

ByteString Compressed(const std::string& text, int length) {
    ByteString padded = Padded(text, length / BytesInGroup * CharactersInGroup);
    if (text.size() > padded.size()) throw platform::Error(platform::InvalidArgument);
    ByteString bytes = engine::Crm(padded);
    bytes.resize(static_cast<std::size_t>(length));
    return bytes;
}

void PackInteger(ByteString& record, int position, int length, std::int64_t value) {
    engine::iPack(UnsignedOpcodes[static_cast<std::size_t>(length) - 1], record,
                  static_cast<std::int32_t>(static_cast<std::uint32_t>(value)), position);
}

void PackField(const FieldSpec& field, const FieldValue& value, ByteString& record) {
    switch (field.Code) {
        case 'A':
            return PackText(field, std::get<std::string>(value), record);
        case 'B':
            return PackFlag(field, std::get<bool>(value), record);
        case 'C':
        case 'L':
            return platform::Put(record, field.Start, Compressed(std::get<std::string>(value), field.Length));
        case 'D':
        case 'J':
        case 'R':
            return PackDate(field, std::get<DateValue>(value), record);
        case 'P':
            return platform::Put(record, field.Start,
                                 Compressed(std::get<PartNumber>(value).Stored, field.Length));
        case 'X':
        case 'Y':
        case 'Z':
            return;
        default:
            return PackInteger(record, field.Start, field.Length, std::get<std::int64_t>(value));
    }
}

std::optional<std::string> ExpectedCell(const FieldSpec& field, const FieldValue& value) {
    constexpr int ShortCodeCharacters = 3;
    switch (field.Code) {
        case 'A':
            return TextCell(Padded(std::get<std::string>(value), field.Length));
        case 'B':
            return std::get<bool>(value) ? "Y" : "N";
        case 'C':
            return CompressedCell(field, std::get<std::string>(value));
        case 'L':
            // The column holds three characters: a longer field never fits.
            if (CompressedCharacters(field.Length) > ShortCodeCharacters) return std::nullopt;
            return CompressedCell(field, std::get<std::string>(value));
        case 'D':
        case 'J':
        case 'R':
            return DateCell(std::get<DateValue>(value).Day.value_or(NullDate));
        case 'P':
            return TextCell(std::get<PartNumber>(value).Shown);
        case 'X':
        case 'Y':
        case 'Z':
            return TextCell(std::get<std::string>(value));
        default:
            break;
    }
    const std::int64_t number = std::get<std::int64_t>(value);
    return IsAmount(field) ? CurrencyCell(TenThousandths(field, number)) : NumberCell(field, number);
}

bool HasSum(const FieldSpec& field) {
    return IsWholeNumber(field) || IsAmount(field);
}

std::int64_t SumPart(const FieldSpec& field, const FieldValue& value) {
    std::int64_t number = std::get<std::int64_t>(value);
    if (IsAmount(field)) return TenThousandths(field, number);
    for (int zeros = -field.Specifier; zeros > 0; --zeros) number *= 10;
    return number;
}

ColumnSpec ColumnOf(const FieldSpec& field) {
    constexpr int LongestText = 255;
    constexpr int PartNumberSize = 21;
    const ColumnSpec number{field.Specifier > 0 ? dao::FieldType::Single : dao::FieldType::Long, 0};
    switch (field.Code) {
        case 'A':
            if (field.Length > LongestText) return {dao::FieldType::Memo, 0};
            return {dao::FieldType::Text, field.Length};
        case 'C': {
            // Room for every compressed text; an odd number of bytes gets more than it needs.
            const int doubled = field.Length * 3;
            const int rounded = static_cast<int>(std::nearbyint(doubled / 2.0));
            return {dao::FieldType::Text, static_cast<int>(std::nearbyint(doubled / 2.0 + rounded % 3))};
        }
        case 'B':
        case 'X':
            return {dao::FieldType::Text, 1};
        case 'L':
            return {dao::FieldType::Text, 3};
        case 'P':
            return {dao::FieldType::Text, PartNumberSize};
        case 'Y':
            return {dao::FieldType::Text, 4};
        case 'Z':
            return {dao::FieldType::Text, 10};
        case 'D':
        case 'J':
        case 'R':
            return {dao::FieldType::Date, 0};
        case 'M':
        case 'm':
        case 'W':
            return {dao::FieldType::Currency, 0};
        default:
            return number;
    }
}

}  // namespace sample
