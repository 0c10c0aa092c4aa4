// A value of a data-access field: Null, Boolean, Long, Double, Currency, Date, Text or bytes. Byte, Integer
// and Long columns give std::int32_t, Single and Double columns double, Text and Memo columns UTF-16.
#pragma once

#include <cstdint>
#include <string>
#include <variant>

#include "platform/jet/value.h"

namespace dao {

using Null = std::monostate;
using jet::Currency;
using jet::Value;

/// Whether a value is Null, which is not an empty text.
inline bool IsNull(const Value& value) {
    return std::holds_alternative<Null>(value);
}

/// The value as a 32-bit integer, reals rounded half to even. Raises 94 for Null, 13 for a text that is no
/// number, 6 out of range.
std::int32_t ToLong(const Value& value);

/// The value as a real. Raises 94 for Null, 13 for a text that is no number.
double ToReal(const Value& value);

/// The value as text. Raises 94 for Null.
std::u16string ToText(const Value& value);

/// The value as a truth value (a number that is not 0). Raises 94 for Null, 13 for a text that is none.
bool ToBoolean(const Value& value);

}  // namespace dao
