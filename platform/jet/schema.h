// The making of tables and indexes: what a new column, table or index is asked to be, and how it is laid out
// in the file.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/jet/table_def.h"

namespace jet {

struct ColumnSpec {
    std::u16string Name;
    ColumnType Type = ColumnType::Text;
    std::uint16_t Size = 0;  // characters of Text, bytes of Binary; 0 = 255; not used by other types
};

/// A column of an index that is to be made.
struct IndexColumnSpec {
    std::u16string Name;
    bool Ascending = true;
};

/// An index that is to be made.
struct IndexSpec {
    std::u16string Name;
    std::vector<IndexColumnSpec> Columns;
    bool Primary = false;  // unique and required too
    bool Unique = false;
    bool Required = false;
    bool IgnoreNulls = false;
};

/// Raises 3125 for a name that is empty, too long, begins with a blank or holds a character that names must
/// not hold.
void CheckName(std::u16string_view name);

/// The columns of a new user's table. Raises 3264 (none), 3190 (too many), 3380 (a name twice), 3125 (not a
/// valid name), 3259 (a type that cannot be made), 3271 (a size out of range).
std::vector<Column> DefineColumns(std::u16string_view table, std::span<const ColumnSpec> specs);

/// The real index that a spec asks for, without its place in the file. Raises 3264 (no column), 3277 (more
/// than 10), 3409 (unknown column, or one that cannot be indexed), 3375 (name in use), 3283 (second primary
/// key), 3039 (too many indexes), 3125 (not a valid name).
RealIndex DefineIndex(const TableDef& table, std::u16string_view tableName, const IndexSpec& spec);

/// Rows for new usage maps on pages of owner 0, as many to a page as fit.
class MapRows {
  public:
    /// Begins with a page that holds maps already; 0 = a new one.
    explicit MapRows(PageFile& file, std::uint32_t page = 0) : mFile(file), mPage(page) {}

    /// An empty map; of the usual length when none is given.
    RowPointer Add(std::size_t length = 0);

  private:
    PageFile& mFile;
    std::uint32_t mPage;
};

/// Numbers the columns (given in the order of their numbers) and gives each its place in a row.
TableDef LayOutTable(std::uint32_t page, TableType type, std::vector<Column> columns);

/// Makes the maps of a table and its long-value columns.
void PlaceTable(TableDef& table, MapRows& maps);

/// Makes an index's map and an empty root page.
void PlaceIndex(PageFile& file, std::uint32_t tablePage, RealIndex& index, MapRows& maps);

}  // namespace jet
