// Index keys of values of every column type. The key of a row is the concatenation of one part a column of
// the index; keys compare as unsigned bytes.
#pragma once

#include <string>

#include "platform/jet/format.h"
#include "platform/jet/value.h"

namespace jet {

/// Appends one column's part of a key, Null included. The value is one that a column of that type stores.
/// Raises 3421 for a value of another kind, 3001 for a text or a column type that cannot be indexed.
void AppendKey(std::string& key, const Value& value, ColumnType type, bool ascending, Version version);

/// Whether columns of that type can be part of an index that this program writes.
bool IsIndexable(ColumnType type, Version version);

}  // namespace jet
