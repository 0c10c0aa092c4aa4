// The end of a key range: whether a decoded key, or the index column of a row, lies beyond it.
#pragma once

#include <cstdint>

#include "export/record_decoding.h"
#include "platform/dao/value.h"

namespace exporting {

/// Whether value is greater than end, compared as numbers. A date counts its days, a text the number that it
/// reads as; a text that is no number is not greater, so that a table keyed by text is exported whole. The
/// empty value counts as 0.
bool Exceeds(const ColumnValue& value, std::int32_t end);

/// The same for the value of a column. Null is not greater; true counts as -1.
bool Exceeds(const dao::Value& value, std::int32_t end);

}  // namespace exporting
