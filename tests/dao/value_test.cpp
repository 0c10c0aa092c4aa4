#include "platform/dao/value.h"

#include <gtest/gtest.h>

#include "tests/support/expect_error.h"

namespace dao {
namespace {

using platform::OleDate;
using test::NumberRaised;

TEST(Values, AsLong) {
    const std::vector<std::pair<Value, std::int32_t>> cases{{7, 7},           {2.5, 2},
                                                            {3.5, 4},         {-0.5, 0},
                                                            {true, -1},       {Currency{15000}, 2},
                                                            {u" 12 ", 12},    {OleDate{36000.0}, 36000},
                                                            {u"1,234", 1234}, {u"$5", 5}};
    for (const auto& [value, expected] : cases) EXPECT_EQ(ToLong(value), expected);
}

TEST(Values, AsText) {
    const std::vector<std::pair<Value, std::u16string>> cases{{-12, u"-12"},
                                                              {0.1, u"0.1"},
                                                              {-0.0, u"0"},
                                                              {1e15, u"1E+15"},
                                                              {123456789012345.0, u"123456789012345"},
                                                              {1.0 / 3, u"0.333333333333333"},
                                                              {Currency{1234500}, u"123.45"},
                                                              {Currency{-5}, u"-0.0005"},
                                                              {Currency{70000}, u"7"},
                                                              {Currency{INT64_MIN}, u"-922337203685477.5808"},
                                                              {true, u"True"},
                                                              {OleDate{36525.0}, u"12/31/99"},
                                                              {u"as it is ", u"as it is "}};
    for (const auto& [value, expected] : cases) EXPECT_EQ(ToText(value), expected);
}

TEST(Values, AsTruth) {
    for (const Value& value : {Value(-1), Value(u"tRuE"), Value(u"2")}) EXPECT_TRUE(ToBoolean(value));
    EXPECT_FALSE(ToBoolean(u"False"));
    EXPECT_FALSE(ToBoolean(0.0));
}

TEST(Values, WhatDoesNotConvertRaisesThePlatformsNumbers) {
    EXPECT_EQ(NumberRaised([] { ToLong(Null{}); }), 94);
    EXPECT_EQ(NumberRaised([] { ToReal(Null{}); }), 94);
    EXPECT_EQ(NumberRaised([] { ToText(Null{}); }), 94);
    EXPECT_EQ(NumberRaised([] { ToBoolean(Null{}); }), 94);
    EXPECT_EQ(NumberRaised([] { ToLong(u"twelve"); }), 13);
    EXPECT_EQ(NumberRaised([] { ToReal(u""); }), 13);
    EXPECT_EQ(NumberRaised([] { ToBoolean(u"yes"); }), 13);
    EXPECT_EQ(NumberRaised([] { ToLong(2147483648.0); }), 6);
    EXPECT_EQ(NumberRaised([] { ToText(jet::Binary{"x"}); }), 13);
}

}  // namespace
}  // namespace dao
