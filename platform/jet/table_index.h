// One real index of an open table: the keys of rows, the rules that the index sets them, and its tree.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "platform/jet/index_tree.h"
#include "platform/jet/table_def.h"
#include "platform/jet/value.h"

namespace jet {

/// What stands in an index for a row.
struct RowKey {
    std::string Bytes;
    bool HasNull = false;
    bool AllNull = true;
};

class TableIndex {
  public:
    /// Raises 3428 when the index names a column that the table lacks.
    TableIndex(PageFile& file, const TableDef& table, const RealIndex& index);

    IndexTree& Tree() { return mTree; }
    const IndexTree& Tree() const { return mTree; }

    /// Whether the column at that position of the definition is part of the index.
    bool Covers(std::size_t position) const;

    /// The key of a row of these values. Raises 3047 for one that is too long for a page, 3001 and 3421 as
    /// AppendKey.
    void MakeKey(std::span<const Value> values, RowKey& key) const;

    /// Whether the index has an entry for a row of that key.
    bool Lists(const RowKey& key) const { return !mIgnoresNulls || !key.AllNull; }

    /// Raises 3058 for a Null that the index does not allow.
    void CheckNulls(const RowKey& key) const;

    /// Raises 3022 when the index is unique and has the key; a key with a Null in it is never a duplicate.
    /// True when no row has the key yet.
    bool CheckDuplicate(const RowKey& key) const;

  private:
    struct KeyColumn {
        std::size_t Position;  // in the values
        ColumnType Type;
        bool Ascending;
    };

    Version mVersion;
    std::size_t mMaxKeyLength;
    bool mUnique;
    bool mRequired;
    bool mIgnoresNulls;
    std::vector<KeyColumn> mColumns;
    IndexTree mTree;
};

}  // namespace jet
