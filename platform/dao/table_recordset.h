// The recordset over a table of the file, walked in physical order, by an index or as a query's result.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/dao/connection.h"
#include "platform/dao/conversion.h"
#include "platform/dao/field_names.h"
#include "platform/dao/recordset.h"
#include "platform/dao/row_buffer.h"
#include "platform/dao/row_order.h"

namespace dao {

class TableRecordset final : public Recordset {
  public:
    TableRecordset(std::shared_ptr<Connection> connection, jet::Table& table);

    /// The same over the rows of a query's result.
    TableRecordset(std::shared_ptr<Connection> connection, jet::Table& table,
                   std::vector<jet::RowPointer> rows);
    ~TableRecordset() override;

    void SetIndex(std::u16string_view name) override;
    void MoveFirst() override;
    void MoveNext() override;
    bool AtEnd() const override;
    void Seek(std::string_view comparison, std::span<const Value> keys) override;
    bool NoMatch() const override;
    void Edit() override;
    void AddNew() override;
    void Update() override;
    RecordsetField& Fields(std::u16string_view name) override;
    RecordsetField& Fields(int position) override;
    int FieldCount() const override;
    std::int32_t RecordCount() const override;
    void Close() override;

  private:
    class Column;

    enum class State { AtRow, AtEnd, Nowhere };  // nowhere: behind a Seek that found nothing
    enum class Editing { No, Changing, Adding };

    void Require() const;
    void RequireWritable() const;
    void Stand(std::optional<jet::RowPointer> row, State without);
    const std::vector<Value>& CurrentValues() const;
    Value ValueAt(std::size_t column) const;
    void SetValueAt(std::size_t column, const Value& value);
    std::string KeyOf(std::span<const Value> keys) const;
    void StoreChanges();

    std::shared_ptr<Connection> mConnection;
    jet::Table& mTable;
    jet::Version mVersion;
    bool mClosed = false;

    std::vector<ColumnShape> mShapes;
    std::vector<std::unique_ptr<Column>> mColumns;
    FieldNames mNames;

    std::unique_ptr<RowOrder> mOrder;
    ResultOrder* mResult = nullptr;     // mOrder, of a query's result
    IndexOrder* mIndexOrder = nullptr;  // mOrder, when it is an index
    std::size_t mIndex = 0;             // the real index that mIndexOrder walks
    State mState = State::AtEnd;
    jet::RowPointer mRow;
    bool mNoMatch = false;

    // The current row as it was read, and the connection's count of changes at that time.
    mutable std::vector<Value> mCurrent;
    mutable std::optional<std::uint64_t> mReadAt;

    Editing mEditing = Editing::No;
    RowBuffer mBuffer;
};

}  // namespace dao
