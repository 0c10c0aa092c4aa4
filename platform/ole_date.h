// Dates as the platform keeps them: days since 30 December 1899 as a double, the fraction being the time of
// day. The fraction counts forwards also before day 0, so -1.25 is 29 December 1899, 06:00.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

struct CalendarDay {
    int Year;   // 100 to 9999
    int Month;  // 1 to 12
    int Day;    // 1 to 31
    bool operator==(const CalendarDay&) const = default;
};

/// Days since 30 December 1899, which is day 0; the fraction is the time of day.
struct OleDate {
    double Serial = 0;
    bool operator==(const OleDate&) const = default;

    /// The calendar day, whatever the time of day.
    CalendarDay Calendar() const;

    /// Days since 30 December 1899 without the time of day. Raises 6 for a serial beyond 32 bits.
    std::int32_t DayNumber() const;

    bool HasTimeOfDay() const;
};

/// Midnight of a calendar day; nothing when there is no such day or its year is not 100 to 9999.
std::optional<OleDate> DateFromCalendar(CalendarDay day);

/// The workstation's local date and time.
OleDate LocalNow();

/// A two-digit year in full: 30 to 99 are 1930 to 1999, 0 to 29 are 2000 to 2029. Other numbers stay as they
/// are.
int FullYear(int year);

/// The date of three numbers as a date text gives them: month, day, year, else the first of the other orders
/// that the platform tries (YMD, MYD, YDM, DMY). Nothing when none is a date.
std::optional<OleDate> DateFromNumbers(int first, int second, int third);

/// Reads a date text of two or three numbers parted by "/", "-" or blanks: DateFromNumbers of three, while
/// two are month and day of the current year, else month and year. Raises 13 when nothing fits.
OleDate DateFromText(std::string_view text);

/// The date's text in the system's short-date form (mm/dd/yy unless the system says otherwise), followed by a
/// blank and hh:mm:ss when there is a time of day.
std::string ShortDateText(OleDate date);

/// Replaces the short-date form, for tests; an empty function brings the system's own form back.
using ShortDateForm = std::string (*)(CalendarDay);
void ReplaceShortDateForm(ShortDateForm form);

}  // namespace platform
