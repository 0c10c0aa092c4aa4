#include "platform/jet/table_index.h"

#include <algorithm>

#include "platform/jet/index_key.h"

namespace jet {

TableIndex::TableIndex(PageFile& file, const TableDef& table, const RealIndex& index)
    : mFile(file),
      mMaxKeyLength(IndexTree::MaxKeyLength(file.Format())),
      mUnique(index.IsUnique()),
      mRequired(index.IsRequired()),
      mIgnoresNulls(index.IgnoresNulls()),
      mTree(file, UsageMap(file, index.Map), table.Page, index.RootPage) {
    for (const IndexKeyColumn& part : index.Columns) {
        const auto position = table.FindColumnNumber(part.ColumnNumber);
        if (!position) throw file.Damaged();
        mColumns.push_back({*position, table.Columns[*position].Type, part.Ascending});
    }
}

bool TableIndex::Covers(std::size_t position) const {
    return std::ranges::find(mColumns, position, &KeyColumn::Position) != mColumns.end();
}

void TableIndex::MakeKey(std::span<const Value> values, RowKey& key) const {
    key.Bytes.clear();
    key.HasNull = false;
    key.AllNull = true;
    for (const KeyColumn& column : mColumns) {
        const Value& value = values[column.Position];
        const bool isNull = std::holds_alternative<std::monostate>(value);
        if (isNull && column.Type == ColumnType::Boolean) {
            AppendKey(key.Bytes, false, column.Type, column.Ascending, mFile.FileVersion());
            key.AllNull = false;
            continue;
        }
        AppendKey(key.Bytes, value, column.Type, column.Ascending, mFile.FileVersion());
        key.HasNull = key.HasNull || isNull;
        key.AllNull = key.AllNull && isNull;
    }
    if (key.Bytes.size() > mMaxKeyLength) throw DataError(RecordTooLarge);
}

void TableIndex::CheckNulls(const RowKey& key) const {
    if (mRequired && key.HasNull) throw DataError(NullInKey);
}

bool TableIndex::CheckDuplicate(const RowKey& key) {
    const bool mustBeNew = mUnique && !key.HasNull;
    // Whether a key that waits is new shows when it is merged.
    if (!mFile.IsShared() && !mustBeNew) return false;
    if (!mWaiting.Contains(key.Bytes) && !mTree.Contains(key.Bytes)) return true;
    if (mustBeNew) throw DataError(DuplicateKey);
    return false;
}

std::uint32_t TableIndex::PagesToAdd(const RowKey& key) {
    if (mFile.IsShared()) return IndexTree::MostNewPages;
    EntrySizes waiting = mWaiting.Sizes();
    waiting.Add(key.Bytes.size() + IndexPage::PointerLength);
    mNextPromised = mTree.PagesToMerge(waiting);
    return mNextPromised - std::min(mNextPromised, mPromised);
}

void TableIndex::Add(const RowKey& key, RowPointer row) {
    if (mFile.IsShared()) return mTree.Insert(key.Bytes, row);
    mWaiting.Add(key.Bytes, row);
    Promise(mNextPromised);
}

std::uint32_t TableIndex::MergeWaiting() {
    if (mWaiting.IsEmpty()) return 0;
    const std::uint32_t newKeys = mTree.Merge(mWaiting);
    Promise(0);
    return newKeys;
}

void TableIndex::DropWaiting() {
    mWaiting.Clear();
    Promise(0);
}

void TableIndex::Promise(std::uint32_t pages) {
    mFile.Promise(std::int64_t{pages} - mPromised);
    mPromised = pages;
}

}  // namespace jet
