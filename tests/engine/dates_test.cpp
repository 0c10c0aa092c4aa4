#include "engine/dates.h"

#include <chrono>
#include <gtest/gtest.h>

#include "engine/built_ins.h"
#include "engine/system.h"
#include "tests/engine/bytes.h"
#include "tests/support/expect_error.h"

namespace engine {
namespace {

using platform::CalendarDay;
using platform::OleDate;
using test::Big;
using test::Hex;

OleDate Date(int year, int month, int day) {
    return platform::DateFromCalendar({year, month, day}).value();
}

TEST(Dates, ArePackedInThreeForms) {
    const struct {
        const char* Opcode;
        OleDate Value;
        std::string Bytes;
    } cases[]{
        {"C", Date(1968, 1, 1), Hex("00 00")},
        {"C", Date(1967, 12, 31), Hex("00 00")},
        {"C", Date(2000, 1, 1), Hex("2D A9")},
        {"C", Date(1967, 12, 30), Hex("FF FF")},
        // Only midnight is the null date; otherwise the time of day does not count.
        {"C", OleDate{Date(1968, 1, 1).Serial + 0.25}, Hex("00 01")},
        {"C", OleDate{Date(2000, 1, 1).Serial + 0.99}, Hex("2D A9")},
        {"D", Date(1999, 12, 31), Big(123199, 3)},
        {"K", Date(2005, 1, 2), Big(10205, 3)},
        {"R", Date(1999, 12, 31), Big(991231, 3)},
    };
    for (const auto& c : cases) {
        ByteString data = "****";
        PackDate(c.Opcode, data, 2, c.Value);
        EXPECT_EQ(data, test::With("****", 2, c.Bytes)) << c.Opcode << c.Value.Serial;
    }
}

TEST(Dates, AreReadFromThreeForms) {
    const struct {
        const char* Opcode;
        std::string Bytes;
        OleDate Value;
    } cases[]{
        {"C", Hex("00 00"), Date(1968, 1, 1)},
        {"C", Hex("00 01"), Date(1968, 1, 1)},
        {"J", Hex("FF FF"), Date(2147, 6, 5)},
        {"D", Big(0, 3), Date(1968, 1, 1)},
        {"D", Big(133199, 3), Date(1968, 1, 1)},
        // No month/day/year; the platform's date reading makes it 31 December 1932.
        {"D", Big(123231, 3), Date(1932, 12, 31)},
        {"D", Big(2991231, 3), Date(1968, 1, 1)},
        {"D", Hex("20 20 20"), Date(1968, 1, 1)},
        {"R", Big(991231, 3), Date(1999, 12, 31)},
        {"R", Big(0, 3), Date(1968, 1, 1)},
        // Digits in front of yymmdd fall away.
        {"R", Big(1991231, 3), Date(1999, 12, 31)},
    };
    for (const auto& c : cases)
        EXPECT_EQ(UnPackDate(c.Opcode, "*" + c.Bytes, 2), c.Value) << c.Opcode << c.Value.Serial;
}

TEST(Dates, EveryDayComesBack) {
    const double epoch = Date(1967, 12, 31).Serial;
    ByteString data = "****";
    for (int number = 2; number <= 0xFFFF; ++number) {
        const OleDate day{epoch + number};
        PackDate("C", data, 2, day);
        ASSERT_EQ(data, "*" + Big(number, 2) + data[3]);
        ASSERT_EQ(UnPackDate("J", data, 2), day) << number;
    }
    // Two-digit years reach from 1930 to 2029.
    for (OleDate day = Date(1930, 1, 1); day.Serial <= Date(2029, 12, 31).Serial; ++day.Serial) {
        for (const char* opcode : {"D", "K", "R"}) {
            PackDate(opcode, data, 2, day);
            ASSERT_EQ(UnPackDate(opcode, data, 2), day) << opcode << day.Serial;
        }
    }
}

TEST(Dates, ReadingNeverRaises) {
    for (const char* opcode : {"c", "L", "", "CC"}) EXPECT_EQ(UnPackDate(opcode, "****", 1), NullDate());
    for (const char* opcode : {"C", "D", "R"}) {
        for (const int position : {0, -1, 4, 2147483647})
            EXPECT_EQ(UnPackDate(opcode, "***", position), NullDate()) << opcode << position;
    }
}

TEST(Dates, WritingRaisesWhatGoesWrong) {
    ByteString data = "***";
    PackDate("c", data, 99, Date(2000, 1, 1));
    EXPECT_EQ(data, "***");
    EXPECT_EQ(test::ErrorOf([&] { PackDate("C", data, 3, NullDate()); }).Number, 31);
    const OleDate noon{Date(2000, 1, 1).Serial + 0.5};
    EXPECT_EQ(test::ErrorOf([&] { PackDate("D", data, 1, noon); }).Number, 13);
    EXPECT_EQ(data, "***");

    platform::ReplaceShortDateForm([](CalendarDay) { return std::string("2000-01-01"); });
    EXPECT_EQ(test::ErrorOf([&] { PackDate("K", data, 1, NullDate()); }).Number, 13);
    platform::ReplaceShortDateForm([](CalendarDay day) { return std::to_string(day.Day) + "/7/2001"; });
    PackDate("K", data, 1, Date(2001, 7, 4));
    EXPECT_EQ(data, Big(472001, 3));
    platform::ReplaceShortDateForm(nullptr);
}

class Statement : public testing::Test {
  protected:
    void Run(std::int32_t code) { Stma(code, mVar2, mVar3, mVar4, mVar5, mVar6); }
    std::int32_t Number(const StmaValue& value) const { return std::get<std::int32_t>(value); }

    StmaValue mVar2, mVar3, mVar4, mVar5, mVar6;
};

TEST_F(Statement, ReplacesTheFirstFourCodeCharacters) {
    gCodeChars = StandardCodeChars;
    const struct {
        std::int32_t Table;
        const char* Characters;
        const char* Start;
    } cases[]{{1, "abcd", " ,/.0"}, {0, "abc", " ,/.0"}, {0, "abcde", " ,/.0"}, {0, "-+*#", "-+*#0"}};
    for (const auto& c : cases) {
        mVar2 = c.Table;
        mVar3 = ByteString(c.Characters);
        Run(10);
        EXPECT_EQ(gCodeChars.substr(0, 5), c.Start);
        EXPECT_EQ(gCodeChars.size(), 40U);
    }
    gCodeChars = StandardCodeChars;
}

TEST_F(Statement, TurnsADayNumberIntoADate) {
    // A text or a date counts as the number that it reads as or is; nothing counts as 0.
    const std::pair<StmaValue, OleDate> cases[]{
        {11689, Date(2000, 1, 1)}, {ByteString("11689"), Date(2000, 1, 1)},
        {0, Date(1968, 1, 1)},     {{}, Date(1968, 1, 1)},
        {-1, Date(1967, 12, 30)},  {OleDate{-1}, Date(1967, 12, 30)}};
    for (const auto& [given, date] : cases) {
        mVar2 = given;
        Run(11);
        EXPECT_EQ(std::get<OleDate>(mVar6), date);
        EXPECT_EQ(Date(1900 + Number(mVar5) + (Number(mVar5) < 60 ? 100 : 0), Number(mVar3), Number(mVar4)),
                  date);
    }
    for (const std::int32_t outside : {99999999, -99999999}) {
        mVar2 = outside;
        EXPECT_EQ(test::ErrorOf([&] { Run(11); }).Number, 5);
    }
}

TEST_F(Statement, TurnsMonthDayAndYearIntoADayNumber) {
    const struct {
        std::int32_t Month, Day, Year, Number;
    } cases[]{{1, 1, 68, 0}, {1, 2, 68, 2}, {12, 31, 67, 0}, {1, 1, 0, 11689}, {12, 30, 67, -1}};
    for (const auto& c : cases) {
        mVar3 = c.Month;
        mVar4 = c.Day;
        mVar5 = c.Year;
        Run(12);
        EXPECT_EQ(Number(mVar2), c.Number);
    }
    for (const StmaValue& day : {StmaValue{99}, StmaValue{NullDate()}, StmaValue{}}) {
        mVar4 = day;
        EXPECT_EQ(test::ErrorOf([&] { Run(12); }).Number, 13);
    }
    mVar3 = ByteString("x");
    EXPECT_EQ(test::ErrorOf([&] { Run(12); }).Number, 13);
}

TEST_F(Statement, DoesNothingForOtherCodes) {
    mVar2 = 5;
    Run(13);
    Stma(ByteString("eleven"), mVar2, mVar3, mVar4, mVar5, mVar6);
    EXPECT_EQ(Number(mVar2), 5);
    EXPECT_TRUE(std::holds_alternative<std::monostate>(mVar6));
}

TEST(SystemValues, TellTodayAndTheTerminal) {
    const CalendarDay before = Now().Calendar();
    const std::int32_t day = Sys(1), month = Sys(2), year = Sys(3);
    const std::int32_t monthFirst = Sys(28), yearFirst = Sys(128), dayNumber = Sys(152);
    if (!(Now().Calendar() == before)) GTEST_SKIP() << "midnight passed";
    EXPECT_EQ((CalendarDay{year, month, day}), before);
    EXPECT_EQ(monthFirst, month * 10000 + day * 100 + year % 100);
    EXPECT_EQ(yearFirst, year % 100 * 10000 + month * 100 + day);
    EXPECT_EQ(dayNumber, Date(year, month, day).Serial - Date(1967, 12, 31).Serial);
    for (const int code : {0, 5, 153, -1}) EXPECT_EQ(Sys(code), 0);

    gSystem = std::make_unique<cSystem>();
    gSystem->TerminalID = "17";
    EXPECT_EQ(Sys(4), 17);
    gSystem->TerminalID = "";
    EXPECT_EQ(test::ErrorOf([] { Sys(4); }).Number, 13);
    gSystem.reset();
    EXPECT_EQ(test::ErrorOf([] { Sys(4); }).Number, 91);
}

}  // namespace
}  // namespace engine
