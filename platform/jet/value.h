// A value as a row stores it, and the types that columns have.
#pragma once

#include <cstdint>
#include <string>
#include <variant>

#include "platform/ole_date.h"

namespace jet {

/// A fixed-point amount in ten-thousandths.
struct Currency {
    std::int64_t Scaled = 0;
    bool operator==(const Currency&) const = default;
};

/// Bytes of a Binary, OLE or GUID column.
struct Binary {
    std::string Bytes;
    bool operator==(const Binary&) const = default;
};

/// Byte, Integer and Long columns hold std::int32_t, Single and Double columns double, Text and Memo columns
/// UTF-16.
using Value = std::variant<std::monostate, bool, std::int32_t, double, Currency, platform::OleDate,
                           std::u16string, Binary>;

/// Column types by their number in the file.
enum class ColumnType : std::uint8_t {
    Boolean = 1,
    Byte = 2,
    Integer = 3,
    Long = 4,
    Currency = 5,
    Single = 6,
    Double = 7,
    Date = 8,
    Binary = 9,
    Text = 10,
    LongBinary = 11,
    Memo = 12,
    Guid = 15,
    Numeric = 16
};

}  // namespace jet
