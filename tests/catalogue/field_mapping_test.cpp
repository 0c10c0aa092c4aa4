#include "catalogue/field_mapping.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "tests/support/expect_error.h"

namespace {

using catalogue::ColumnShape;
using catalogue::CompressedTextSize;
using catalogue::ShapeOfColumn;
using dao::FieldType;

struct MappingCase {
    std::u16string Code;
    std::int32_t Length;
    std::int32_t Specifier;
    ColumnShape Shape;
};

TEST(FieldMapping, EveryTypeCodeHasItsColumn) {
    const std::vector<MappingCase> cases{
        {u"A", 255, 0, {FieldType::Text, 255}}, {u"A", 256, 0, {FieldType::Memo, 256}},
        {u"A", 300, 0, {FieldType::Memo, 300}}, {u"A", 0, 0, {FieldType::Text, 0}},
        {u"B", 2, 5, {FieldType::Text, 1}},     {u"C", 4, 0, {FieldType::Text, 6}},
        {u"C", 5, 0, {FieldType::Text, 10}},    {u"D", 3, 0, {FieldType::Date, 0}},
        {u"I", 2, 2, {FieldType::Single, 0}},   {u"I", 2, 0, {FieldType::Long, 0}},
        {u"I", 2, -1, {FieldType::Long, 0}},    {u"J", 2, 0, {FieldType::Date, 0}},
        {u"L", 2, 0, {FieldType::Text, 3}},     {u"m", 3, 2, {FieldType::Currency, 0}},
        {u"M", 3, 2, {FieldType::Currency, 0}}, {u"P", 14, 0, {FieldType::Text, 21}},
        {u"R", 3, 0, {FieldType::Date, 0}},     {u"U", 2, 1, {FieldType::Single, 0}},
        {u"U", 2, 0, {FieldType::Long, 0}},     {u"W", 4, 0, {FieldType::Currency, 0}},
        {u"X", 2, 3, {FieldType::Text, 1}},     {u"Y", 80, 0, {FieldType::Text, 4}},
        {u"Z", 80, 0, {FieldType::Text, 10}},
    };
    for (const MappingCase& each : cases) {
        const ColumnShape shape = ShapeOfColumn(each.Code, each.Length, each.Specifier);
        EXPECT_EQ(shape.Type, each.Shape.Type) << static_cast<char>(each.Code[0]) << each.Length;
        EXPECT_EQ(shape.Size, each.Shape.Size) << static_cast<char>(each.Code[0]) << each.Length;
    }
}

TEST(FieldMapping, TheSizeOfACompressedTextAddsTheRemainderOfItsLength) {
    const std::vector<std::int32_t> sizes{0, 4, 3, 6, 6, 10, 9, 12, 12, 16, 15};
    for (std::size_t length = 0; length < sizes.size(); ++length) {
        EXPECT_EQ(CompressedTextSize(static_cast<std::int32_t>(length)), sizes[length]) << length;
    }
}

TEST(FieldMapping, ASizeBeyond32BitsOverflows) {
    EXPECT_EQ(test::ErrorOf([] { CompressedTextSize(2'000'000'000); }).Number, platform::Overflow);
}

TEST(FieldMapping, ACodeWithoutAColumnStopsTheTool) {
    for (const std::u16string code : {u"K", u"N", u"V", u"a", u" ", u"", u"AA"}) {
        EXPECT_THROW(ShapeOfColumn(code, std::int32_t{2}, std::int32_t{0}), catalogue::StopRequested);
    }
}

TEST(FieldMapping, NumbersThatACodeDoesNotUseMayBeNull) {
    const dao::Value null;
    EXPECT_EQ(ShapeOfColumn(u"D", null, null), (ColumnShape{FieldType::Date}));
    EXPECT_EQ(ShapeOfColumn(u"A", std::int32_t{7}, null), (ColumnShape{FieldType::Text, 7}));
    EXPECT_EQ(ShapeOfColumn(u"U", null, std::int32_t{0}), (ColumnShape{FieldType::Long}));
    EXPECT_EQ(test::ErrorOf([&] { ShapeOfColumn(u"A", null, std::int32_t{0}); }).Number,
              platform::InvalidUseOfNull);
}

}  // namespace
