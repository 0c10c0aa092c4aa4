// Short forms for reading the columns of a catalogue row by name.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/dao/recordset.h"

namespace catalogue {

/// The column's text. Raises 3265 for a column that the row lacks, 94 for Null.
inline std::u16string TextOf(dao::Recordset& row, std::u16string_view column) {
    return dao::ToText(row.Fields(column).GetValue());
}

/// The column's number, rounded half to even. Raises 3265, 94, 13 or 6.
inline std::int32_t LongOf(dao::Recordset& row, std::u16string_view column) {
    return dao::ToLong(row.Fields(column).GetValue());
}

/// The column's truth value. Raises 3265, 94 or 13.
inline bool TruthOf(dao::Recordset& row, std::u16string_view column) {
    return dao::ToBoolean(row.Fields(column).GetValue());
}

/// Walks rows in the order of their primary key, from the first one on. Raises 3800 without such an index,
/// 3021 when there is no row.
inline void MoveToFirstByPrimaryKey(dao::Recordset& rows) {
    rows.SetIndex(u"PrimaryKey");
    rows.MoveFirst();
}

}  // namespace catalogue
