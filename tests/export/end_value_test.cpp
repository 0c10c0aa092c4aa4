#include "export/end_value.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

using exporting::ByteString;
using exporting::ColumnValue;
using exporting::Exceeds;

constexpr std::int32_t End = 200;

TEST(EndValue, KeysCompareAsNumbers) {
    EXPECT_FALSE(Exceeds(ColumnValue{std::int32_t{200}}, End));
    EXPECT_TRUE(Exceeds(ColumnValue{std::int32_t{201}}, End));
    EXPECT_FALSE(Exceeds(ColumnValue{200.0}, End));
    EXPECT_TRUE(Exceeds(ColumnValue{200.01}, End));
    EXPECT_FALSE(Exceeds(ColumnValue{platform::OleDate{200}}, End));
    EXPECT_TRUE(Exceeds(ColumnValue{platform::OleDate{200.5}}, End));
}

TEST(EndValue, TheEmptyValueCountsAsZero) {
    EXPECT_FALSE(Exceeds(ColumnValue{}, 0));
    EXPECT_TRUE(Exceeds(ColumnValue{}, -1));
}

TEST(EndValue, ATextComparesAsTheNumberThatItReadsAs) {
    const std::vector<std::pair<std::string, bool>> cases{
        {"201", true},      {" 201 ", true},  {"+201", true},  {"200.5", true}, {"2.5E2", true},
        {"2.5e+2", true},   {"200", false},   {"-201", false}, {"", false},     {"ZZZ", false},
        {"999-999", false}, {"201 A", false}, {".", false},    {"E9", false},   {"1E999", false},
    };
    for (const auto& [text, exceeds] : cases) {
        EXPECT_EQ(Exceeds(ColumnValue{text}, End), exceeds) << text;
        EXPECT_EQ(Exceeds(dao::Value{std::u16string(text.begin(), text.end())}, End), exceeds) << text;
    }
}

TEST(EndValue, ColumnsCompareAsNumbersAndNullNever) {
    EXPECT_FALSE(Exceeds(dao::Value{}, -1));
    EXPECT_TRUE(Exceeds(dao::Value{std::int32_t{201}}, End));
    EXPECT_FALSE(Exceeds(dao::Value{std::int32_t{200}}, End));
    EXPECT_TRUE(Exceeds(dao::Value{200.5}, End));
    EXPECT_TRUE(Exceeds(dao::Value{dao::Currency{2'000'001}}, End));
    EXPECT_FALSE(Exceeds(dao::Value{dao::Currency{2'000'000}}, End));
    EXPECT_TRUE(Exceeds(dao::Value{platform::OleDate{201}}, End));
    EXPECT_TRUE(Exceeds(dao::Value{true}, -2));
    EXPECT_FALSE(Exceeds(dao::Value{true}, -1));
    EXPECT_FALSE(Exceeds(dao::Value{false}, 0));
}

}  // namespace
