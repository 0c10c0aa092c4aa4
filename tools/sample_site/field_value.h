// What the generator puts into a field: the value as the business means it, before a record packs it and
// before a target column shows it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

#include "platform/ole_date.h"

namespace sample {

/// A date field: a day, nothing (the null date), or digits that are no date.
struct DateValue {
    std::optional<platform::CalendarDay> Day;
    bool Impossible = false;
};

/// A part number: 18 characters and the edit mask of three, as stored, and the text with its dashes.
struct PartNumber {
    std::string Stored;
    std::string Shown;
};

/// Whole numbers for the integer and amount codes (unscaled, as stored), texts of code page 1252, flags,
/// dates and part numbers.
using FieldValue = std::variant<std::int64_t, std::string, bool, DateValue, PartNumber>;

}  // namespace sample
