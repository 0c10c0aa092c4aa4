// The one query form that the system uses:
//
//     Select * from T Where [C] = 'text'
//
// Words are told apart without regard to letter case; table and column may stand in square brackets. Two
// apostrophes in the text stand for one.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/jet/table.h"

namespace dao {

struct SelectQuery {
    std::u16string Table;
    std::u16string Column;
    std::u16string Text;
};

/// Whether the source of a recordset is meant as a query, not as a table's name.
bool IsQuery(std::u16string_view source);

/// Raises 3075 for a query that does not read; a single apostrophe in the text makes it such a one.
SelectQuery ParseQuery(std::u16string_view source);

/// The rows that a query names, in physical order. Letter case and trailing blanks do not count; Null equals
/// nothing. Raises 3061 for a column that the table lacks, 3421 for one that is not text.
std::vector<jet::RowPointer> RowsOf(const SelectQuery& query, const jet::Table& table);

}  // namespace dao
