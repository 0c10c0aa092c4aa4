// One real index of an open table: the keys of rows, the rules that the index sets them, and its tree. In an
// Exclusive file the entries of added rows wait until MergeWaiting, which must come before anybody looks into
// the tree; how many keys are distinct is known then.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "platform/jet/index_tree.h"
#include "platform/jet/pending_entries.h"
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
    /// True when no row has the key yet; where entries wait, when that is known now.
    bool CheckDuplicate(const RowKey& key);

    /// Pages that Add will allocate or promise at most.
    std::uint32_t PagesToAdd(const RowKey& key);

    /// Adds a row's entry: PagesToAdd of the same key comes before. Raises what IndexTree::Insert raises.
    void Add(const RowKey& key, RowPointer row);

    /// Puts what waits into the tree, whose root page may change then. Returns the number of new keys.
    std::uint32_t MergeWaiting();

    /// Forgets what waits.
    void DropWaiting();

    /// Memory of the waiting entries.
    std::size_t WaitingBytes() const { return mWaiting.MemoryBytes(); }

  private:
    void Promise(std::uint32_t pages);

    struct KeyColumn {
        std::size_t Position;  // in the values
        ColumnType Type;
        bool Ascending;
    };

    PageFile& mFile;
    std::size_t mMaxKeyLength;
    bool mUnique;
    bool mRequired;
    bool mIgnoresNulls;
    std::vector<KeyColumn> mColumns;
    IndexTree mTree;
    PendingEntries mWaiting;
    std::uint32_t mPromised = 0;      // pages, for merging what waits
    std::uint32_t mNextPromised = 0;  // with the key in hand
};

}  // namespace jet
