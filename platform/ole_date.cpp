#include "platform/ole_date.h"

#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <vector>

#include "platform/error.h"
#include "platform/local_time.h"
#include "platform/numbers.h"

namespace platform {

namespace {

using namespace std::chrono;

constexpr sys_days DayZero = sys_days{year{1899} / December / 30};

ShortDateForm gShortDateForm = nullptr;

std::vector<int> NumbersOf(std::string_view text) {
    std::vector<int> numbers;
    const char* at = text.data();
    const char* const end = text.data() + text.size();
    const auto isSeparator = [](char c) { return c == '/' || c == '-' || c == ' '; };
    const auto skipBlanks = [&] {
        while (at != end && *at == ' ') ++at;
    };
    for (skipBlanks(); at != end; skipBlanks()) {
        int number = 0;
        const auto [after, failure] = std::from_chars(at, end, number);
        if (failure != std::errc{} || *at == '-') throw Error(TypeMismatch);
        numbers.push_back(number);
        at = after;
        if (at == end) break;
        if (!isSeparator(*at)) throw Error(TypeMismatch);
        skipBlanks();
        if (at != end && *at != ' ' && isSeparator(*at)) {
            ++at;
            skipBlanks();
            if (at == end) throw Error(TypeMismatch);
        }
    }
    return numbers;
}

// Where month, day and year stand among the three numbers, in the order in which the platform tries them.
struct DateOrder {
    std::size_t Month, Day, Year;
};
constexpr std::array<DateOrder, 5> Orders{{
    {0, 1, 2},  // MDY
    {1, 2, 0},  // YMD
    {0, 2, 1},  // MYD
    {2, 1, 0},  // YDM
    {1, 0, 2},  // DMY
}};

}  // namespace

CalendarDay OleDate::Calendar() const {
    const year_month_day day{DayZero + days{DayNumber()}};
    return {static_cast<int>(day.year()), static_cast<int>(static_cast<unsigned>(day.month())),
            static_cast<int>(static_cast<unsigned>(day.day()))};
}

std::int32_t OleDate::DayNumber() const {
    return RoundToLong(std::trunc(Serial));
}

bool OleDate::HasTimeOfDay() const {
    return std::trunc(Serial) != Serial;
}

std::optional<OleDate> DateFromCalendar(CalendarDay day) {
    constexpr int FirstYear = 100;
    constexpr int LastYear = 9999;
    constexpr int LastMonth = 12;
    constexpr int LastDay = 31;
    if (day.Year < FirstYear || day.Year > LastYear) return std::nullopt;
    if (day.Month < 1 || day.Month > LastMonth || day.Day < 1 || day.Day > LastDay) return std::nullopt;
    const year_month_day date{year{day.Year}, month{static_cast<unsigned>(day.Month)},
                              std::chrono::day{static_cast<unsigned>(day.Day)}};
    if (!date.ok()) return std::nullopt;
    return OleDate{static_cast<double>((sys_days{date} - DayZero).count())};
}

OleDate LocalNow() {
    constexpr double SecondsPerDay = 86400;
    const LocalTime now = SystemTime();
    return OleDate{DateFromCalendar(now.Day).value().Serial + now.SecondOfDay / SecondsPerDay};
}

int FullYear(int year) {
    constexpr int FirstYearOfLastCentury = 30;
    if (year < 0 || year > 99) return year;
    return year + (year >= FirstYearOfLastCentury ? 1900 : 2000);
}

std::optional<OleDate> DateFromNumbers(int first, int second, int third) {
    const std::array numbers{first, second, third};
    for (const DateOrder& order : Orders) {
        const auto date =
            DateFromCalendar({FullYear(numbers[order.Year]), numbers[order.Month], numbers[order.Day]});
        if (date) return date;
    }
    return std::nullopt;
}

OleDate DateFromText(std::string_view text) {
    const std::vector<int> numbers = NumbersOf(text);
    if (numbers.size() == 3) {
        if (const auto date = DateFromNumbers(numbers[0], numbers[1], numbers[2])) return *date;
    } else if (numbers.size() == 2) {
        const int thisYear = LocalNow().Calendar().Year;
        for (const auto& candidate :
             {CalendarDay{thisYear, numbers[0], numbers[1]}, CalendarDay{thisYear, numbers[1], numbers[0]},
              CalendarDay{FullYear(numbers[1]), numbers[0], 1},
              CalendarDay{FullYear(numbers[0]), numbers[1], 1}}) {
            if (const auto date = DateFromCalendar(candidate)) return *date;
        }
    }
    throw Error(TypeMismatch);
}

std::string MonthDayYear(CalendarDay day) {
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "%02d/%02d/%02d", day.Month, day.Day, day.Year % 100);
    return text.data();
}

std::string ShortDateText(OleDate date) {
    const CalendarDay day = date.Calendar();
    std::string text = gShortDateForm != nullptr ? gShortDateForm(day) : SystemShortDate(day);
    if (date.HasTimeOfDay()) {
        constexpr long SecondsPerDay = 86400;
        const double fraction = std::fabs(date.Serial - std::trunc(date.Serial));
        const long seconds = std::lround(fraction * SecondsPerDay) % SecondsPerDay;
        std::array<char, 32> time{};
        std::snprintf(time.data(), time.size(), " %02ld:%02ld:%02ld", seconds / 3600, seconds / 60 % 60,
                      seconds % 60);
        text += time.data();
    }
    return text;
}

void ReplaceShortDateForm(ShortDateForm form) {
    gShortDateForm = form;
}

}  // namespace platform
