// A table: its rows, read one by one or added with all their index entries. A row is named by the RowPointer
// of its first place, which never changes. Values stand in the order of Definition().Columns.
//
// In a Shared file every change is in the file when it returns. In an Exclusive one rows go to new pages,
// index entries wait, and the table's maps are moved to a new page by the first change behind a checkpoint:
// what the disk holds of the table stays as it is until Publish and, behind it, the file's checkpoint.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/jet/data_page.h"
#include "platform/jet/row_codec.h"
#include "platform/jet/table_def.h"
#include "platform/jet/table_index.h"
#include "platform/jet/usage_map.h"

namespace jet {

class RowWriter;

class Table {
  public:
    /// Raises 3428 for a definition that cannot be right.
    Table(PageFile& file, std::uint32_t definitionPage);
    ~Table();
    Table(const Table&) = delete;
    Table& operator=(const Table&) = delete;

    const TableDef& Definition() const { return mDefinition; }
    std::uint32_t RowCount() const { return mDefinition.RowCount; }

    /// Adds a row, one value a column. All checks come before the first change, so a refused row leaves
    /// nothing behind: 3421 (a value that is not of the column's kind), 3163 (longer than the column), 3047
    /// (row or index entry too long), 3058 (Null in a primary or required index), 3022 (duplicate in a unique
    /// index), 3036 (file full). Raises 3027 in a Jet 3 file.
    RowPointer Insert(std::span<const Value> values);

    /// All values of the row, long ones included. Raises 3167 (the row is gone), 3428 (a row that cannot be
    /// right).
    void Read(RowPointer row, std::vector<Value>& values) const;
    Value ReadColumn(RowPointer row, std::size_t column) const;

    /// The new value of a column (its position, 0-based).
    struct Change {
        std::size_t Column;
        Value To;
    };

    /// Changes columns of fixed length in their places, with the indexes over them. Raises 3251 for another
    /// column, and for one that was added to the table after the row was written; else what Insert and Read
    /// raise. Nothing is changed then.
    void UpdateFixed(RowPointer row, std::span<const Change> changes);
    /// The same for one column.
    void UpdateFixed(RowPointer row, std::size_t column, const Value& value) {
        const Change change{column, value};
        UpdateFixed(row, std::span(&change, 1));
    }

    /// Rows in the table's physical order; nothing at the end. NextRow finds its way from a row that was
    /// deleted meanwhile.
    std::optional<RowPointer> FirstRow() const;
    std::optional<RowPointer> NextRow(RowPointer row) const;

    /// The tree of a real index, by its number, with all entries in it. The reference lives as long as the
    /// table; entries of rows that are added later are in the tree when it is asked for again.
    const IndexTree& Index(std::size_t realIndex);

    /// Adds an index, building it over the rows there are. Raises 3058, 3022 and 3047 for rows that it
    /// forbids; the definition is unchanged then and the index's pages are free again.
    void AddIndex(RealIndex index, LogicalIndex name);

    /// Brings definition and indexes up to date with the rows.
    void Publish();

    /// Memory of the index entries that wait.
    std::size_t WaitingBytes() const;

  private:
    struct Place {
        DataPage Page;
        unsigned Row;
    };

    /// An index of the table, and the key of the row in hand.
    struct OpenIndex {
        OpenIndex(PageFile& file, const TableDef& table, const RealIndex& index)
            : Rules(file, table, index) {}

        TableIndex Rules;
        RowKey Key;
        bool IsNew = false;  // no row had that key before
    };

    /// A row's old key in an index that has another one for it now (OpenIndex::Key).
    struct ChangedKey {
        std::size_t Index;
        RowKey Old;
    };

    Place Locate(RowPointer row) const;
    Value ReadValue(const RowReader& reader, const Column& column) const;
    std::optional<RowPointer> RowFrom(std::uint32_t page, unsigned row) const;
    void BeginChange();
    void MoveMaps();
    std::vector<RowPointer*> Maps();
    void MergeWaiting(std::size_t realIndex);
    void CheckKeys(std::span<const Value> values);
    std::uint32_t PagesForEntries();
    void AddEntries(RowPointer row);
    std::vector<ChangedKey> ChangedKeys(const RowReader& reader, std::span<const Change> changes);
    void MoveEntries(RowPointer row, std::span<const ChangedKey> changed);
    void StoreFixed(std::span<std::uint8_t> row, const RowReader& reader, const Change& change) const;
    void BuildIndex(RealIndex& index, OpenIndex& open);
    void FreeIndexPages(const RealIndex& index);

    PageFile& mFile;
    TableDef mDefinition;
    UsageMap mOwnedPages;
    std::vector<std::unique_ptr<OpenIndex>> mIndexes;
    std::unique_ptr<RowWriter> mWriter;  // made with the first row that is added
    bool mCountsChanged = false;
    bool mPlacesChanged = false;
};

}  // namespace jet
