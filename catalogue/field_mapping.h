// Which column of the target database a catalogue field becomes. The same type codes are decoded by
// export/record_decoding.h, which knows more of them than have a column here.
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/dao/table_def.h"
#include "platform/dao/value.h"

namespace catalogue {

/// Thrown where the rules say that the tool stops at once, without a message.
struct StopRequested {};

struct ColumnShape {
    dao::FieldType Type;
    int Size = 0;  // characters; 0 where the column is created without a size
    bool operator==(const ColumnShape&) const = default;
};

/// The column for a field type code (letter case matters). length is looked at for `A` and `C` only,
/// specifier for `I` and `U` only. Throws StopRequested for a code without a column; raises 94, 13 or 6 for a
/// number that is needed and is none.
ColumnShape ShapeOfColumn(std::u16string_view fieldType, const dao::Value& length,
                          const dao::Value& specifier);

/// The size of the column for a compressed text of length bytes. Raises 6 beyond 32 bits.
std::int32_t CompressedTextSize(std::int32_t length);

}  // namespace catalogue
