#include <ctime>

#include "platform/local_time.h"

namespace platform {

LocalTime SystemTime() {
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    localtime_r(&now, &parts);
    return {{parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday},
            (parts.tm_hour * 60 + parts.tm_min) * 60 + parts.tm_sec};
}

std::string SystemShortDate(CalendarDay day) {
    return MonthDayYear(day);
}

}  // namespace platform
