#include "platform/numbers.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

#include "platform/byte_string.h"
#include "platform/checked.h"
#include "tests/support/expect_error.h"

namespace platform {
namespace {

constexpr std::int32_t Lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t Highest = std::numeric_limits<std::int32_t>::max();

TEST(Numbers, TextForms) {
    EXPECT_EQ(PlainDecimal(12), "12");
    EXPECT_EQ(PlainDecimal(Lowest), "-2147483648");
    EXPECT_EQ(LeadingBlankDecimal(0), " 0");
    EXPECT_EQ(LeadingBlankDecimal(340), " 340");
    EXPECT_EQ(LeadingBlankDecimal(-7), "-7");
    EXPECT_EQ(LeadingBlankDecimal(12.5), " 12.5");
    EXPECT_EQ(LeadingBlankDecimal(-0.25), "-.25");
    EXPECT_EQ(LeadingBlankDecimal(99999.0), " 99999");
    EXPECT_EQ(LeadingBlankDecimal(0.1 + 0.2), " .3");
}

TEST(Numbers, RealsRoundHalfToEven) {
    const std::pair<double, std::int32_t> cases[]{{0.5, 0},
                                                  {1.5, 2},
                                                  {2.5, 2},
                                                  {-0.5, 0},
                                                  {-1.5, -2},
                                                  {2.51, 3},
                                                  {2147483647.4, Highest},
                                                  {-2147483648.5, Lowest}};
    for (const auto& [value, rounded] : cases) EXPECT_EQ(RoundToLong(value), rounded) << value;
    for (const double value : {2147483647.5, -2147483649.0, 1e300, std::nan("")}) {
        EXPECT_EQ(test::ErrorOf([&] { RoundToLong(value); }).Number, 6) << value;
    }
}

TEST(Numbers, PowersOfTenAreTheNearestReals) {
    const std::pair<std::int32_t, double> cases[]{
        {0, 1},          {2, 1e2},       {-2, 1e-2}, {-10, 1e-10},        {23, 1e23}, {308, 1e308},
        {309, INFINITY}, {-323, 1e-323}, {-324, 0},  {Highest, INFINITY}, {Lowest, 0}};
    for (const auto& [exponent, power] : cases) EXPECT_EQ(PowerOfTen(exponent), power) << exponent;
}

TEST(Numbers, TextsReadAsWholeNumbers) {
    const std::pair<const char*, std::int32_t> good[]{{"00123", 123}, {"  7 ", 7},   {"-5", -5}, {"+5", 5},
                                                      {"2.5", 2},     {"1e3", 1000}, {".5", 0}};
    for (const auto& [text, value] : good) EXPECT_EQ(LongFromText(text), value) << text;
    for (const char* text : {"", " ", "abc", "12a", "1 2", "+-5", "--5", "inf", "nan", "0x10", "e5"}) {
        EXPECT_EQ(test::ErrorOf([&] { LongFromText(text); }).Number, 13) << text;
    }
    EXPECT_EQ(test::ErrorOf([] { LongFromText("4294967296"); }).Number, 6);
    EXPECT_EQ(test::ErrorOf([] { LongFromText("1e999"); }).Number, 6);
}

TEST(Checked, ArithmeticStopsAt32Bits) {
    EXPECT_EQ(CheckedAdd(Highest - 1, 1), Highest);
    EXPECT_EQ(CheckedMultiply(-65536, 32768), Lowest);
    const auto expectOverflow = [](auto call) {
        const Error error = test::ErrorOf(call);
        EXPECT_EQ(error.Number, 6);
        EXPECT_EQ(error.Description, "Overflow");
    };
    expectOverflow([] { CheckedAdd(Highest, 1); });
    expectOverflow([] { CheckedSubtract(Lowest, 1); });
    expectOverflow([] { CheckedMultiply(65536, 32768); });
    expectOverflow([] { CheckedNegate(Lowest); });
}

TEST(ByteStrings, MidStopsAtTheEnd) {
    EXPECT_EQ(Mid("ABCDEF", 2, 3), "BCD");
    EXPECT_EQ(Mid("ABCDEF", 5, 10), "EF");
    EXPECT_EQ(Mid("ABCDEF", 7, 1), "");
    EXPECT_EQ(Mid("ABCDEF", 3, 0), "");
    EXPECT_EQ(test::ErrorOf([] { Mid("A", 0, 1); }).Number, 5);
    EXPECT_EQ(test::ErrorOf([] { Mid("A", 1, -1); }).Number, 5);
}

TEST(ByteStrings, PutNeverLengthens) {
    ByteString data = "ABCDEF";
    Put(data, 5, "xyz");
    EXPECT_EQ(data, "ABCDxy");
    Put(data, 1, "");
    EXPECT_EQ(data, "ABCDxy");
    EXPECT_EQ(test::ErrorOf([&] { Put(data, 7, "q"); }).Number, 5);
    EXPECT_EQ(test::ErrorOf([&] { Put(data, 0, "q"); }).Number, 5);
    EXPECT_EQ(data, "ABCDxy");
}

TEST(ByteStrings, BytesAreUnsigned) {
    EXPECT_EQ(ByteAt("\x01\xFF", 2), 255);
    EXPECT_EQ(test::ErrorOf([] { ByteAt("\x01", 2); }).Number, 5);
}

TEST(Errors, ReportNamesSourceAndPath) {
    EXPECT_STREQ(Error(-10, "iOpenFile", "gone").what(), "error -10 in iOpenFile: gone");
    EXPECT_STREQ(Error(DeviceIoError).WithPath("/x/y").what(), "error 57: Device I/O error (/x/y)");
}

}  // namespace
}  // namespace platform
