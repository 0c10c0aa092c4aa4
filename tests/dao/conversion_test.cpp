#include "platform/dao/conversion.h"

#include <gtest/gtest.h>
#include <limits>

#include "tests/support/expect_error.h"

namespace dao {
namespace {

using platform::OleDate;

constexpr double Infinity = std::numeric_limits<double>::infinity();

struct Conversion {
    FieldType Type;
    Value From;
    Value Stored;
};

struct Refusal {
    FieldType Type;
    int Number;
    std::vector<Value> Refused;
};

constexpr Null NoValue{};
using enum FieldType;

TEST(Conversions, FollowTheColumnsType) {
    const Conversion cases[] = {
        {Long, NoValue, NoValue},
        {Long, true, -1},
        {Byte, true, 255},
        {Long, 0.5, 0},
        {Long, 2.5, 2},
        {Long, 2147483647.49, 2147483647},
        {Long, -2147483648.5, INT32_MIN},
        {Long, u" -1,234.5 ", -1234},
        {Long, dao::Currency{25000}, 2},
        {Integer, -32768, -32768},
        {Double, 7, 7.0},
        {Single, 0.1, double{0.1F}},
        {Single, double{std::numeric_limits<float>::max()}, double{std::numeric_limits<float>::max()}},
        {FieldType::Currency, 123.45, dao::Currency{1234500}},
        {FieldType::Currency, 0.00005, dao::Currency{0}},
        {FieldType::Currency, -3, dao::Currency{-30000}},
        {FieldType::Currency, u"$1,000.25", dao::Currency{10002500}},
        {FieldType::Currency, dao::Currency{INT64_MAX}, dao::Currency{INT64_MAX}},
        {Date, 36525.25, OleDate{36525.25}},
        {Date, -657434, OleDate{-657434.0}},
        {Date, 2958465.99, OleDate{2958465.99}},
        {Date, u"12/31/99", OleDate{36525.0}},
        {Text, u" a\t ", u" a\t "},
        {Text, u"12345", u"12345"},
        {Text, NoValue, NoValue},
        {Text, -12, u"-12"},
        {Text, true, u"-1"},
        {Long, u"1e3", 1000},
        {Double, true, -1.0},
        {Text, 0.25, u"0.25"},
        {Memo, std::u16string(70'000, u'm'), std::u16string(70'000, u'm')},
        {Boolean, NoValue, false},
        {Boolean, 0.1, true},
        {Boolean, 0, false},
        {Boolean, u"true", true},
        {Binary, jet::Binary{"12345"}, jet::Binary{"12345"}}};
    for (const Conversion& row : cases) {
        EXPECT_EQ(ConvertForColumn(row.From, {u"C", row.Type, 5}), row.Stored) << "case " << &row - cases;
    }
}

TEST(Conversions, RefuseWhatDoesNotFit) {
    const Refusal cases[] = {{Long,
                              3421,
                              {2147483647.5, -2147483649.0, std::numeric_limits<double>::quiet_NaN(), u"ten",
                               u"", jet::Binary{"1"}}},
                             {Byte, 3421, {256, -1}},
                             {Integer, 3421, {Value(32768)}},
                             {Double, 3421, {Value(Infinity)}},
                             {Single, 3421, {Value(1e39)}},
                             {FieldType::Currency, 3421, {Value(922337203685477.7)}},
                             {Date, 3421, {-657435, 2958466, u"yesterday"}},
                             {Text, 3163, {u"123456", 123456}},
                             {Text, 3315, {Value(u"")}},
                             {Memo, 3315, {Value(u"")}},
                             {Boolean, 3421, {Value(u"perhaps")}},
                             {Binary, 3163, {Value(jet::Binary{"123456"})}},
                             {Binary, 3421, {Value(u"1")}}};
    for (const Refusal& row : cases) {
        for (const Value& value : row.Refused) {
            const auto convert = [&] { ConvertForColumn(value, {u"C", row.Type, 5}); };
            EXPECT_EQ(test::ErrorOf(convert).Number, row.Number) << "case " << &row - cases;
        }
    }
}

TEST(Conversions, ErrorsCarryTheirTexts) {
    const ColumnShape column{u"City", FieldType::Text, 3};
    const auto textOf = [&](const Value& value) {
        const platform::Error error = test::ErrorOf([&] { ConvertForColumn(value, column); });
        EXPECT_EQ(error.Source, "DAO.Database");
        return error.Description;
    };
    EXPECT_EQ(
        textOf(u"long"),
        "The field is too small to accept the amount of data you attempted to add. Try inserting or pasting "
        "less data.");
    EXPECT_EQ(textOf(u""), "Field 'City' cannot be a zero-length string.");
    EXPECT_EQ(textOf(jet::Binary{"x"}), "Data type conversion error.");
}

}  // namespace
}  // namespace dao
