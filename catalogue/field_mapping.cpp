#include "catalogue/field_mapping.h"

#include "platform/numbers.h"

namespace catalogue {

using dao::FieldType;

namespace {

// Sizes of the text columns whose field length does not matter.
constexpr int FlagSize = 1;
constexpr int CharacterSize = 1;
constexpr int ShortCodeSize = 3;
constexpr int PartNumberSize = 21;
constexpr int StateSize = 4;
constexpr int PostalCodeSize = 10;

constexpr std::int32_t LongestText = 255;

/// The length is the column's size also where the text has become a memo.
ColumnShape PlainText(std::int32_t length) {
    return {length > LongestText ? FieldType::Memo : FieldType::Text, length};
}

/// Implied decimals make the column floating.
ColumnShape Integer(std::int32_t decimals) {
    return {decimals > 0 ? FieldType::Single : FieldType::Long};
}

}  // namespace

// Three characters lie in two bytes, so length * 3 / 2 would do. The remainder of that number, rounded, is
// added on top: existing target databases have their columns this wide.
std::int32_t CompressedTextSize(std::int32_t length) {
    const double characters = length * 3.0 / 2.0;
    return platform::RoundToLong(characters + platform::RoundToLong(characters) % 3);
}

ColumnShape ShapeOfColumn(std::u16string_view fieldType, const dao::Value& length,
                          const dao::Value& specifier) {
    switch (fieldType.size() == 1 ? fieldType.front() : u'\0') {
        case u'A':
            return PlainText(dao::ToLong(length));
        case u'B':
            return {FieldType::Text, FlagSize};
        case u'C':
            return {FieldType::Text, CompressedTextSize(dao::ToLong(length))};
        case u'D':
        case u'J':
        case u'R':
            return {FieldType::Date};
        case u'I':
        case u'U':
            return Integer(dao::ToLong(specifier));
        case u'L':
            return {FieldType::Text, ShortCodeSize};
        case u'm':
        case u'M':
        case u'W':
            return {FieldType::Currency};
        case u'P':
            return {FieldType::Text, PartNumberSize};
        case u'X':
            return {FieldType::Text, CharacterSize};
        case u'Y':
            return {FieldType::Text, StateSize};
        case u'Z':
            return {FieldType::Text, PostalCodeSize};
        default:
            throw StopRequested{};
    }
}

}  // namespace catalogue
