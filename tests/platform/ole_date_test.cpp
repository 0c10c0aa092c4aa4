#include "platform/ole_date.h"

#include <gtest/gtest.h>

#include "tests/support/expect_error.h"

namespace platform {
namespace {

TEST(OleDate, KnownSerials) {
    const std::pair<CalendarDay, double> days[]{{{1899, 12, 30}, 0},     {{1899, 12, 29}, -1},
                                                {{1967, 12, 31}, 24837}, {{2000, 2, 29}, 36585},
                                                {{100, 1, 1}, -657434},  {{9999, 12, 31}, 2958465}};
    for (const auto& [day, serial] : days) {
        EXPECT_EQ(DateFromCalendar(day).value().Serial, serial);
        EXPECT_EQ(OleDate{serial}.Calendar(), day);
    }
}

TEST(OleDate, DaysThatDoNotExist) {
    for (const CalendarDay day : {CalendarDay{2001, 2, 29},
                                  {2000, 0, 1},
                                  {2000, 13, 1},
                                  {2000, 257, 1},
                                  {2000, 4, 31},
                                  {2000, 1, 0},
                                  {99, 1, 1},
                                  {10000, 1, 1}}) {
        EXPECT_FALSE(DateFromCalendar(day)) << day.Year << '-' << day.Month << '-' << day.Day;
    }
}

TEST(OleDate, TimeOfDayCountsForwardsBeforeDayZeroToo) {
    EXPECT_EQ((OleDate{-1.25}.Calendar()), (CalendarDay{1899, 12, 29}));
    EXPECT_EQ(ShortDateText(OleDate{-1.25}), "12/29/99 06:00:00");
    EXPECT_FALSE(OleDate{36585.0}.HasTimeOfDay());
    EXPECT_EQ(test::ErrorOf([] { OleDate{1e12}.DayNumber(); }).Number, 6);
}

TEST(OleDate, TextsAreReadMonthFirstThenInTheOrdersThatStillFit) {
    const std::pair<const char*, CalendarDay> cases[]{
        {"12/31/99", {1999, 12, 31}}, {"01/02/29", {2029, 1, 2}}, {"1/2/30", {1930, 1, 2}},
        {"12/32/31", {1932, 12, 31}}, {"14 2 3", {2014, 2, 3}},   {"2 14 3", {2003, 2, 14}},
        {"32 2 3", {1932, 2, 3}},     {"2 3 32", {1932, 2, 3}},   {"13-1-1970", {1970, 1, 13}},
        {"30 2", {1930, 2, 1}},       {"2 30", {1930, 2, 1}},     {" 01 / 01 / 68 ", {1968, 1, 1}},
    };
    for (const auto& [text, day] : cases) EXPECT_EQ(DateFromText(text).Calendar(), day) << text;
}

TEST(OleDate, TextsThatAreNoDate) {
    for (const char* text : {"", "00/00/00", "123/45/67", "32 49", "0 49", "02.01.1970", "12/", "/12/1/1",
                             "1/2/3/4", "x/1/2", "1//2", "99999999999/1/1", "1/-2/3"}) {
        EXPECT_EQ(test::ErrorOf([&] { DateFromText(text); }).Number, 13) << text;
    }
}

TEST(OleDate, TwoDigitYears) {
    for (const auto& [year, full] :
         {std::pair{0, 2000}, {29, 2029}, {30, 1930}, {99, 1999}, {100, 100}, {1968, 1968}}) {
        EXPECT_EQ(FullYear(year), full);
    }
}

TEST(OleDate, ShortFormCanBeReplaced) {
    const OleDate date = DateFromCalendar({1999, 12, 31}).value();
    EXPECT_EQ(ShortDateText(date), "12/31/99");
    ReplaceShortDateForm(
        [](CalendarDay day) { return std::to_string(day.Day) + "." + std::to_string(day.Month); });
    EXPECT_EQ(ShortDateText(date), "31.12");
    ReplaceShortDateForm(nullptr);
    EXPECT_EQ(ShortDateText(date), "12/31/99");
}

}  // namespace
}  // namespace platform
