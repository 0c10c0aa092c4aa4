#include "engine/dates.h"

#include <string>

#include "engine/built_ins.h"
#include "engine/field_codec.h"
#include "engine/system.h"
#include "platform/checked.h"
#include "platform/error.h"
#include "platform/numbers.h"

namespace engine {

using platform::CalendarDay;
using platform::Error;
using platform::OleDate;

namespace {

constexpr std::int32_t EpochSerial = 24837;  // 31 December 1967, day number 0
constexpr std::int32_t NullDateSerial = EpochSerial + 1;
constexpr std::int32_t YearsPerCentury = 100;

bool IsDayCount(std::string_view opcode) {
    return opcode == "C" || opcode == "J";
}

bool IsShortDate(std::string_view opcode) {
    return opcode == "D" || opcode == "K";
}

std::int32_t DayNumberOf(OleDate date) {
    return platform::CheckedSubtract(date.DayNumber(), EpochSerial);
}

OleDate DateOfDayNumber(std::int32_t number) {
    constexpr double FirstSerial = -657434;  // 1 January 100
    constexpr double LastSerial = 2958465;   // 31 December 9999
    if (number == 0) return NullDate();
    const double serial = static_cast<double>(EpochSerial) + number;
    if (serial < FirstSerial || serial > LastSerial) throw Error(platform::InvalidArgument);
    return OleDate{serial};
}

/// Three two-digit fields as one number, as in mmddyy.
std::int32_t Digits(std::int32_t first, std::int32_t second, std::int32_t third) {
    return (first * 100 + second) * 100 + third;
}

std::int32_t TwoDigitYear(const CalendarDay& day) {
    return day.Year % YearsPerCentury;
}

/// The date that a number reads as in the pattern 00/00/00; the null date when it is none.
OleDate DateOfDigits(std::int32_t number) {
    constexpr std::int32_t LargestOfSixDigits = 999999;
    // Neither 00/00/00 nor more than six digits are a date; records that hold none are many.
    if (number == 0 || number > LargestOfSixDigits) return NullDate();
    return platform::DateFromNumbers(number / 10000, number / 100 % 100, number % 100).value_or(NullDate());
}

std::int32_t NumberOf(const StmaValue& value) {
    if (const auto* number = std::get_if<std::int32_t>(&value)) return *number;
    if (const auto* text = std::get_if<ByteString>(&value)) return platform::LongFromText(*text);
    if (const auto* date = std::get_if<OleDate>(&value)) return platform::RoundToLong(date->Serial);
    return 0;
}

ByteString TextOf(const StmaValue& value) {
    if (const auto* number = std::get_if<std::int32_t>(&value)) return platform::PlainDecimal(*number);
    if (const auto* text = std::get_if<ByteString>(&value)) return *text;
    if (const auto* date = std::get_if<OleDate>(&value)) return platform::ShortDateText(*date);
    return {};
}

void ReplaceCodeChars(const StmaValue& table, const StmaValue& characters) {
    constexpr std::size_t Replaceable = 4;
    const ByteString replacement = TextOf(characters);
    if (NumberOf(table) == 0 && replacement.size() == Replaceable) platform::Put(gCodeChars, 1, replacement);
}

std::int32_t DayNumberOfParts(const StmaValue& month, const StmaValue& day, const StmaValue& year) {
    constexpr std::int32_t NullYear = 68;
    if (NumberOf(month) == 1 && NumberOf(day) == 1 && NumberOf(year) == NullYear) return 0;
    return DayNumberOf(platform::DateFromText(TextOf(month) + "/" + TextOf(day) + "/" + TextOf(year)));
}

}  // namespace

OleDate NullDate() {
    return OleDate{NullDateSerial};
}

void PackDate(std::string_view OpCode, ByteString& Data, std::int32_t Position, OleDate Value) {
    if (IsDayCount(OpCode)) {
        iPack('C', Data, Value == NullDate() ? 0 : DayNumberOf(Value), Position);
    } else if (IsShortDate(OpCode)) {
        std::string text = platform::ShortDateText(Value);
        std::erase(text, '/');
        iPack('D', Data, platform::LongFromText(text), Position);
    } else if (OpCode == "R") {
        const CalendarDay day = Value.Calendar();
        iPack('D', Data, Digits(TwoDigitYear(day), day.Month, day.Day), Position);
    }
}

OleDate UnPackDate(std::string_view OpCode, std::string_view Data, std::int32_t Position) noexcept {
    constexpr std::int32_t MonthAndDay = 10000;
    try {
        if (IsDayCount(OpCode)) return DateOfDayNumber(iUnpack('C', Data, Position));
        if (IsShortDate(OpCode)) return DateOfDigits(iUnpack('D', Data, Position));
        if (OpCode == "R") {
            const std::int32_t number = iUnpack('D', Data, Position);
            return DateOfDigits(number % MonthAndDay * YearsPerCentury +
                                number / MonthAndDay % YearsPerCentury);
        }
    } catch (const Error&) {
        return NullDate();
    }
    return NullDate();
}

void Stma(const StmaValue& Var1, StmaValue& Var2, StmaValue& Var3, StmaValue& Var4, StmaValue& Var5,
          StmaValue& Var6) {
    constexpr std::int32_t SetCodeChars = 10;
    constexpr std::int32_t DayNumberToDate = 11;
    constexpr std::int32_t DateToDayNumber = 12;
    const auto* const code = std::get_if<std::int32_t>(&Var1);
    if (code == nullptr) return;
    switch (*code) {
        case SetCodeChars:
            ReplaceCodeChars(Var2, Var3);
            break;
        case DayNumberToDate: {
            const OleDate date = DateOfDayNumber(NumberOf(Var2));
            const CalendarDay day = date.Calendar();
            Var6 = date;
            Var3 = day.Month;
            Var4 = day.Day;
            Var5 = TwoDigitYear(day);
            break;
        }
        case DateToDayNumber:
            Var2 = DayNumberOfParts(Var3, Var4, Var5);
            break;
        default:
            break;
    }
}

std::int32_t Sys(std::int32_t Value) {
    const CalendarDay today = Now().Calendar();
    switch (Value) {
        case 1:
            return today.Day;
        case 2:
            return today.Month;
        case 3:
            return today.Year;
        case 4:
            return platform::LongFromText(CurrentSystem().TerminalID);
        case 28:
            return Digits(today.Month, today.Day, TwoDigitYear(today));
        case 128:
            return Digits(TwoDigitYear(today), today.Month, today.Day);
        case 152:
            return DayNumberOfParts(today.Month, today.Day, TwoDigitYear(today));
        default:
            return 0;
    }
}

OleDate Now() {
    return platform::LocalNow();
}

}  // namespace engine
