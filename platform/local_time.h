// The system's local clock and its short-date form. One implementation a system: local_time_posix.cpp,
// local_time_windows.cpp.
#pragma once

#include <string>

#include "platform/ole_date.h"

namespace platform {

struct LocalTime {
    CalendarDay Day;
    int SecondOfDay;  // 0 to 86399, and 86400 in a leap second
};

LocalTime SystemTime();

/// The day in the system's short-date form: the user's setting where the system keeps one, else mm/dd/yy.
std::string SystemShortDate(CalendarDay day);

/// The day as mm/dd/yy.
std::string MonthDayYear(CalendarDay day);

}  // namespace platform
