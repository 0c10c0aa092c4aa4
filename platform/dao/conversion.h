// What an assignment to a field does with the value before the row under construction takes it.
#pragma once

#include <string>
#include <string_view>

#include "platform/dao/table_def.h"
#include "platform/dao/value.h"

namespace dao {

/// What a conversion needs to know of the column.
struct ColumnShape {
    std::u16string Name;
    FieldType Type = FieldType::Text;
    int Size = 0;  // characters of a Text column, bytes of a Binary one

    bool IsText() const { return Type == FieldType::Text || Type == FieldType::Memo; }
};

/// The value as the column stores it. Null stays Null, but False in a Yes/No column. Raises 3421 (not
/// convertible, or out of the column's range), 3163 (too long), 3315 (a text without characters).
Value ConvertForColumn(const Value& value, const ColumnShape& column);

/// The last two of these checks, for a text that goes into a text column as it is.
void CheckText(std::u16string_view text, const ColumnShape& column);

}  // namespace dao
