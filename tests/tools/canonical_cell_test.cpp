// The text form of cells, literally.
#include "tools/sample_site/canonical_cell.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

using dao::FieldType;
using dao::Value;

struct CellCase {
    Value Read;
    FieldType Type;
    std::string Cell;
};

TEST(CanonicalCell, EveryTypeHasOneForm) {
    const platform::OleDate day = *platform::DateFromCalendar({1968, 1, 1});
    const std::vector<CellCase> cases{
        {dao::Null{}, FieldType::Text, ""},
        {dao::Null{}, FieldType::Long, ""},
        {std::u16string(u"two  "), FieldType::Text, "two  "},
        {std::u16string(u"Br\u00E4uer \u201Cx\u201D"), FieldType::Text,
         "Br\xC3\xA4uer \xE2\x80\x9Cx\xE2\x80\x9D"},
        {std::u16string(u"a\\b\tc\r\nd"), FieldType::Memo, "a\\\\b\\tc\\r\\nd"},
        {std::int32_t{-17}, FieldType::Long, "-17"},
        {0.5, FieldType::Single, "0.5"},
        {static_cast<double>(0.1F), FieldType::Single, "0.1"},
        {-16777216.0, FieldType::Single, "-16777216"},
        {dao::Currency{1}, FieldType::Currency, "0.0001"},
        {dao::Currency{-123'4500}, FieldType::Currency, "-123.4500"},
        {dao::Currency{std::numeric_limits<std::int64_t>::min()}, FieldType::Currency,
         "-922337203685477.5808"},
        {day, FieldType::Date, "1968-01-01"},
    };
    for (const CellCase& one : cases) EXPECT_EQ(sample::CanonicalCell(one.Read, one.Type), one.Cell);
}

TEST(CanonicalCell, BytesGiveTheSameTextAsTheColumnThatHoldsThem) {
    const std::string bytes =
        "N\xFA\xF1"
        "ez \x96 \\ \x81";
    EXPECT_EQ(sample::TextCell(bytes),
              "N\xC3\xBA\xC3\xB1"
              "ez \xE2\x80\x93 \\\\ \xC2\x81");
}

TEST(CanonicalCell, ChecksumIsThatOfZlib) {
    EXPECT_EQ(sample::CellChecksum("123456789"), 0xCBF43926U);
    EXPECT_EQ(sample::CellChecksum(""), 0U);
}

}  // namespace
