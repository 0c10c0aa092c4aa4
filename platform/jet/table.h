// A table: its rows, read one by one or added with all their index entries. Rows are named by the RowPointer
// of their first place, which never changes. Values stand in the order of Definition().Columns.
//
// Row count and index statistics are kept in memory and reach the file with Database::Flush.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/jet/index_tree.h"
#include "platform/jet/long_value.h"
#include "platform/jet/row_codec.h"
#include "platform/jet/table_def.h"
#include "platform/jet/usage_map.h"

namespace jet {

class Table {
  public:
    /// Raises 3428 for a definition that cannot be right.
    Table(PageFile& file, std::uint32_t definitionPage);

    const TableDef& Definition() const { return mDefinition; }
    std::uint32_t RowCount() const { return mDefinition.RowCount; }

    /// Adds a row, one value a column. Checks come first, so a refused row leaves nothing behind: 3047 (row
    /// too long), 3058 (Null in a primary or required index), 3022 (duplicate in a unique index), 3036 (file
    /// full). A value whose kind is not the column's raises 3421, a text longer than the column 3163.
    RowPointer Insert(std::span<const Value> values);

    /// All values of the row, long ones included. Raises 3428 for a row that cannot be right.
    void Read(RowPointer row, std::vector<Value>& values);

    /// Changes one column of fixed length in its place, with the indexes over it. Raises 3251 for another
    /// column, and for one that was added to the table after the row was written; else as Insert.
    void UpdateFixed(RowPointer row, std::size_t column, const Value& value);

    /// The first row at or behind a place in the table's physical order; nothing at the end.
    std::optional<RowPointer> FirstRow();
    std::optional<RowPointer> NextRow(RowPointer row);

    /// The tree of a real index, by its number. The reference lives as long as the table.
    IndexTree& Index(std::size_t realIndex) { return *mIndexes[realIndex]; }

    /// Adds an index that Database::CreateIndex has defined and builds it over the rows there are.
    void AddIndex(RealIndex index, LogicalIndex name);

    /// Writes row count and statistics into the definition's page.
    void WriteCounts();

  private:
    void PlanIndexes();

    PageFile& mFile;
    TableDef mDefinition;
    std::vector<std::unique_ptr<IndexTree>> mIndexes;
};

}  // namespace jet
