#include <array>
#include <windows.h>

#include "platform/local_time.h"
#include "platform/text_windows.h"

namespace platform {

LocalTime SystemTime() {
    SYSTEMTIME now{};
    GetLocalTime(&now);
    return {{now.wYear, now.wMonth, now.wDay}, (now.wHour * 60 + now.wMinute) * 60 + now.wSecond};
}

std::string SystemShortDate(CalendarDay day) {
    SYSTEMTIME date{};
    date.wYear = static_cast<WORD>(day.Year);
    date.wMonth = static_cast<WORD>(day.Month);
    date.wDay = static_cast<WORD>(day.Day);
    std::array<wchar_t, 128> text{};
    const int length = GetDateFormatW(LOCALE_USER_DEFAULT, DATE_SHORTDATE, &date, nullptr, text.data(),
                                      static_cast<int>(text.size()));
    // The system knows no day before 1601.
    if (length == 0) return MonthDayYear(day);
    return Utf8FromSystem(text.data());
}

}  // namespace platform
