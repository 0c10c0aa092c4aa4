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
    Value Stored;         // what the column takes, or
    int ErrorNumber = 0;  // the error that refuses the value
};

constexpr Null NoValue{};
using enum FieldType;

TEST(Conversions, FollowTheColumnsType) {
    const Conversion cases[] = {
        {Long, NoValue, NoValue},
        {Long, true, -1},
        {Byte, true, 255},
        {Long, 0.5, 0},
        {Long, 1.5, 2},
        {Long, 2.5, 2},
        {Long, -0.5, 0},
        {Long, 2147483647.49, 2147483647},
        {Long, 2147483647.5, {}, 3421},
        {Long, -2147483648.5, INT32_MIN},
        {Long, -2147483649.0, {}, 3421},
        {Long, std::numeric_limits<double>::quiet_NaN(), {}, 3421},
        {Long, u" -1,234.5 ", -1234},
        {Long, u"1e3", 1000},
        {Long, u"ten", {}, 3421},
        {Long, u"", {}, 3421},
        {Long, dao::Currency{25000}, 2},
        {Long, OleDate{36000.5}, 36000},
        {Long, jet::Binary{"1"}, {}, 3421},
        {Byte, 255.4, 255},
        {Byte, 256, {}, 3421},
        {Byte, -1, {}, 3421},
        {Integer, -32768, -32768},
        {Integer, 32768, {}, 3421},
        {Double, 7, 7.0},
        {Double, true, -1.0},
        {Double, Infinity, {}, 3421},
        {Single, 0.1, double{0.1F}},
        {Single, double{std::numeric_limits<float>::max()}, double{std::numeric_limits<float>::max()}},
        {Single, 1e39, {}, 3421},
        {FieldType::Currency, 123.45, dao::Currency{1234500}},
        {FieldType::Currency, 0.00005, dao::Currency{0}},
        {FieldType::Currency, -3, dao::Currency{-30000}},
        {FieldType::Currency, u"$1,000.25", dao::Currency{10002500}},
        {FieldType::Currency, dao::Currency{INT64_MAX}, dao::Currency{INT64_MAX}},
        {FieldType::Currency, 922337203685477.7, {}, 3421},
        {Date, 36525.25, OleDate{36525.25}},
        {Date, -657434, OleDate{-657434.0}},
        {Date, -657435, {}, 3421},
        {Date, 2958465.99, OleDate{2958465.99}},
        {Date, 2958466, {}, 3421},
        {Date, u"12/31/99", OleDate{36525.0}},
        {Date, u"yesterday", {}, 3421},
        {Text, u" a\t ", u" a\t "},
        {Text, u"12345", u"12345"},
        {Text, u"123456", {}, 3163},
        {Text, u"", {}, 3315},
        {Text, NoValue, NoValue},
        {Text, -12, u"-12"},
        {Text, 123456, {}, 3163},
        {Text, true, u"-1"},
        {Text, 0.25, u"0.25"},
        {Memo, std::u16string(70'000, u'm'), std::u16string(70'000, u'm')},
        {Memo, u"", {}, 3315},
        {Boolean, NoValue, false},
        {Boolean, 0.1, true},
        {Boolean, 0, false},
        {Boolean, u"true", true},
        {Boolean, u"perhaps", {}, 3421},
        {Binary, jet::Binary{"12345"}, jet::Binary{"12345"}},
        {Binary, jet::Binary{"123456"}, {}, 3163},
        {Binary, u"1", {}, 3421}};
    for (const Conversion& row : cases) {
        SCOPED_TRACE(testing::Message() << "case " << &row - cases);
        const ColumnShape column{u"C", row.Type, 5};
        if (row.ErrorNumber != 0) {
            EXPECT_EQ(test::ErrorOf([&] { ConvertForColumn(row.From, column); }).Number, row.ErrorNumber);
        } else {
            EXPECT_EQ(ConvertForColumn(row.From, column), row.Stored);
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
