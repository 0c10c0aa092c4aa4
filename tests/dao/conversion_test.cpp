#include "platform/dao/conversion.h"

#include <gtest/gtest.h>
#include <limits>

#include "tests/support/expect_error.h"

namespace dao {
namespace {

using platform::OleDate;

constexpr double Infinity = std::numeric_limits<double>::infinity();

struct Conversion {
    const char* Name;
    FieldType Type;
    Value From;
    Value Stored;         // what the column takes, or
    int ErrorNumber = 0;  // the error that refuses the value
};

class Conversions : public testing::TestWithParam<Conversion> {};

TEST_P(Conversions, FollowTheColumnsType) {
    const Conversion& row = GetParam();
    const ColumnShape column{u"C", row.Type, 5};
    if (row.ErrorNumber != 0) {
        EXPECT_EQ(test::ErrorOf([&] { ConvertForColumn(row.From, column); }).Number, row.ErrorNumber);
    } else {
        EXPECT_EQ(ConvertForColumn(row.From, column), row.Stored);
    }
}

constexpr Null NoValue{};
using enum FieldType;

INSTANTIATE_TEST_SUITE_P(
    Whole, Conversions,
    testing::Values(
        Conversion{"LongFromNull", Long, NoValue, NoValue}, Conversion{"LongFromTrue", Long, true, -1},
        Conversion{"ByteFromTrue", Byte, true, 255}, Conversion{"LongHalfDown", Long, 0.5, 0},
        Conversion{"LongHalfUp", Long, 1.5, 2}, Conversion{"LongHalfToEven", Long, 2.5, 2},
        Conversion{"LongNegativeHalf", Long, -0.5, 0},
        Conversion{"LongHighest", Long, 2147483647.49, 2147483647},
        Conversion{"LongTooHigh", Long, 2147483647.5, {}, 3421},
        Conversion{"LongLowest", Long, -2147483648.5, INT32_MIN},
        Conversion{"LongTooLow", Long, -2147483649.0, {}, 3421},
        Conversion{"LongFromNaN", Long, std::numeric_limits<double>::quiet_NaN(), {}, 3421},
        Conversion{"LongFromText", Long, u" -1,234.5 ", -1234},
        Conversion{"LongFromExponent", Long, u"1e3", 1000},
        Conversion{"LongFromWord", Long, u"ten", {}, 3421}, Conversion{"LongFromNoText", Long, u"", {}, 3421},
        Conversion{"LongFromCurrency", Long, dao::Currency{25000}, 2},
        Conversion{"LongFromDate", Long, OleDate{36000.5}, 36000},
        Conversion{"LongFromBytes", Long, jet::Binary{"1"}, {}, 3421},
        Conversion{"ByteHighest", Byte, 255.4, 255}, Conversion{"ByteTooHigh", Byte, 256, {}, 3421},
        Conversion{"ByteNegative", Byte, -1, {}, 3421}, Conversion{"IntegerLowest", Integer, -32768, -32768},
        Conversion{"IntegerTooHigh", Integer, 32768, {}, 3421}),
    [](const auto& instance) { return std::string(instance.param.Name); });

INSTANTIATE_TEST_SUITE_P(
    Real, Conversions,
    testing::Values(
        Conversion{"DoubleFromLong", Double, 7, 7.0}, Conversion{"DoubleFromTrue", Double, true, -1.0},
        Conversion{"DoubleInfinite", Double, Infinity, {}, 3421},
        Conversion{"SingleNearest", Single, 0.1, double{0.1F}},
        Conversion{"SingleHighest", Single, double{std::numeric_limits<float>::max()},
                   double{std::numeric_limits<float>::max()}},
        Conversion{"SingleTooHigh", Single, 1e39, {}, 3421},
        Conversion{"CurrencyExact", FieldType::Currency, 123.45, dao::Currency{1234500}},
        Conversion{"CurrencyHalfToEven", FieldType::Currency, 0.00005, dao::Currency{0}},
        Conversion{"CurrencyFromLong", FieldType::Currency, -3, dao::Currency{-30000}},
        Conversion{"CurrencyFromText", FieldType::Currency, u"$1,000.25", dao::Currency{10002500}},
        Conversion{"CurrencyItself", FieldType::Currency, dao::Currency{INT64_MAX}, dao::Currency{INT64_MAX}},
        Conversion{"CurrencyTooHigh", FieldType::Currency, 922337203685477.7, {}, 3421},
        Conversion{"DateFromNumber", Date, 36525.25, OleDate{36525.25}},
        Conversion{"DateEarliest", Date, -657434, OleDate{-657434.0}},
        Conversion{"DateTooEarly", Date, -657435, {}, 3421},
        Conversion{"DateLatest", Date, 2958465.99, OleDate{2958465.99}},
        Conversion{"DateTooLate", Date, 2958466, {}, 3421},
        Conversion{"DateFromText", Date, u"12/31/99", OleDate{36525.0}},
        Conversion{"DateFromWord", Date, u"yesterday", {}, 3421}),
    [](const auto& instance) { return std::string(instance.param.Name); });

INSTANTIATE_TEST_SUITE_P(
    TextAndTruth, Conversions,
    testing::Values(
        Conversion{"TextItself", Text, u" a\t ", u" a\t "},
        Conversion{"TextLongest", Text, u"12345", u"12345"},
        Conversion{"TextTooLong", Text, u"123456", {}, 3163}, Conversion{"TextEmpty", Text, u"", {}, 3315},
        Conversion{"TextFromNull", Text, NoValue, NoValue}, Conversion{"TextFromLong", Text, -12, u"-12"},
        Conversion{"TextFromLongNumber", Text, 123456, {}, 3163},
        Conversion{"TextFromTrue", Text, true, u"-1"}, Conversion{"TextFromReal", Text, 0.25, u"0.25"},
        Conversion{"MemoOfAnyLength", Memo, std::u16string(70'000, u'm'), std::u16string(70'000, u'm')},
        Conversion{"MemoEmpty", Memo, u"", {}, 3315}, Conversion{"YesNoFromNull", Boolean, NoValue, false},
        Conversion{"YesNoFromNumber", Boolean, 0.1, true}, Conversion{"YesNoFromZero", Boolean, 0, false},
        Conversion{"YesNoFromText", Boolean, u"true", true},
        Conversion{"YesNoFromWord", Boolean, u"perhaps", {}, 3421},
        Conversion{"BytesItself", Binary, jet::Binary{"12345"}, jet::Binary{"12345"}},
        Conversion{"BytesTooLong", Binary, jet::Binary{"123456"}, {}, 3163},
        Conversion{"BytesFromText", Binary, u"1", {}, 3421}),
    [](const auto& instance) { return std::string(instance.param.Name); });

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
