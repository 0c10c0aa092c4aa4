// Orders in which a recordset walks its rows: the table's physical order, an index, or the result of a query.
#pragma once

#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/jet/table.h"

namespace dao {

class RowOrder {
  public:
    virtual ~RowOrder() = default;

    /// The first row, and the row behind the one given out last; nothing at the end.
    virtual std::optional<jet::RowPointer> First() = 0;
    virtual std::optional<jet::RowPointer> Next() = 0;
};

/// All rows as they stand in the file.
class PhysicalOrder final : public RowOrder {
  public:
    explicit PhysicalOrder(const jet::Table& table) : mTable(table) {}

    std::optional<jet::RowPointer> First() override { return mRow = mTable.FirstRow(); }
    std::optional<jet::RowPointer> Next() override {
        return mRow = mRow ? mTable.NextRow(*mRow) : std::nullopt;
    }

  private:
    const jet::Table& mTable;
    std::optional<jet::RowPointer> mRow;
};

/// All rows that an index holds, in its order.
class IndexOrder final : public RowOrder {
  public:
    IndexOrder(jet::Table& table, std::size_t realIndex) : mTable(table), mRealIndex(realIndex) {}

    std::optional<jet::RowPointer> First() override {
        mCursor = Tree().First();
        return Row();
    }

    std::optional<jet::RowPointer> Next() override {
        Tree();
        if (mCursor) mCursor->Next();
        return Row();
    }

    /// The first row with exactly this key; nothing, and no place in the order, when there is none.
    std::optional<jet::RowPointer> Seek(std::string_view key) {
        mCursor = Tree().LowerBound(key);
        if (mCursor->AtEnd() || mCursor->Key() != key) mCursor.reset();
        return Row();
    }

  private:
    /// The tree with the entries of all rows there are.
    const jet::IndexTree& Tree() { return mTable.Index(mRealIndex); }

    std::optional<jet::RowPointer> Row() const {
        if (!mCursor || mCursor->AtEnd()) return std::nullopt;
        return mCursor->Row();
    }

    jet::Table& mTable;
    std::size_t mRealIndex;
    std::optional<jet::IndexTree::Cursor> mCursor;
};

/// The rows that a query found, in physical order.
class ResultOrder final : public RowOrder {
  public:
    explicit ResultOrder(std::vector<jet::RowPointer> rows) : mRows(std::move(rows)) {}

    std::size_t Count() const { return mRows.size(); }

    std::optional<jet::RowPointer> First() override {
        mPlace = 0;
        return Row();
    }

    std::optional<jet::RowPointer> Next() override {
        if (mPlace < mRows.size()) ++mPlace;
        return Row();
    }

  private:
    std::optional<jet::RowPointer> Row() const {
        return mPlace < mRows.size() ? std::optional(mRows[mPlace]) : std::nullopt;
    }

    std::vector<jet::RowPointer> mRows;
    std::size_t mPlace = 0;
};

}  // namespace dao
