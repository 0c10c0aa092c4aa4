#include "platform/jet/table_index.h"

#include <algorithm>

#include "platform/jet/index_key.h"

namespace jet {

TableIndex::TableIndex(PageFile& file, const TableDef& table, const RealIndex& index)
    : mVersion(file.FileVersion()),
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
            AppendKey(key.Bytes, false, column.Type, column.Ascending, mVersion);
            key.AllNull = false;
            continue;
        }
        AppendKey(key.Bytes, value, column.Type, column.Ascending, mVersion);
        key.HasNull = key.HasNull || isNull;
        key.AllNull = key.AllNull && isNull;
    }
    if (key.Bytes.size() > mMaxKeyLength) throw DataError(RecordTooLarge);
}

void TableIndex::CheckNulls(const RowKey& key) const {
    if (mRequired && key.HasNull) throw DataError(NullInKey);
}

bool TableIndex::CheckDuplicate(const RowKey& key) const {
    if (!mTree.Contains(key.Bytes)) return true;
    if (mUnique && !key.HasNull) throw DataError(DuplicateKey);
    return false;
}

}  // namespace jet
