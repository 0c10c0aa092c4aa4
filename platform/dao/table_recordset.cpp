#include "platform/dao/table_recordset.h"

#include <algorithm>
#include <utility>

#include "platform/dao/table_definition.h"
#include "platform/jet/errors.h"
#include "platform/jet/index_key.h"

namespace dao {

using jet::DataError;

namespace {

std::vector<ColumnShape> ShapesOf(const jet::Table& table, jet::Version version) {
    std::vector<ColumnShape> shapes;
    shapes.reserve(table.Definition().Columns.size());
    for (const jet::Column& column : table.Definition().Columns) shapes.push_back(ShapeOf(column, version));
    return shapes;
}

std::vector<std::u16string> NamesOf(const std::vector<ColumnShape>& shapes) {
    std::vector<std::u16string> names;
    names.reserve(shapes.size());
    for (const ColumnShape& shape : shapes) names.push_back(shape.Name);
    return names;
}

}  // namespace

class TableRecordset::Column final : public RecordsetField {
  public:
    Column(TableRecordset& owner, std::size_t position) : mOwner(owner), mPosition(position) {}

    const std::u16string& Name() const override { return Shape().Name; }
    FieldType Type() const override { return Shape().Type; }
    int Size() const override { return Shape().Size; }
    Value GetValue() const override { return mOwner.ValueAt(mPosition); }
    void SetValue(const Value& value) override { mOwner.SetValueAt(mPosition, value); }

  private:
    const ColumnShape& Shape() const {
        mOwner.Require();
        return mOwner.mShapes[mPosition];
    }

    TableRecordset& mOwner;
    std::size_t mPosition;
};

TableRecordset::TableRecordset(std::shared_ptr<Connection> connection, jet::Table& table)
    : mConnection(std::move(connection)),
      mTable(table),
      mVersion(mConnection->File().File().FileVersion()),
      mShapes(ShapesOf(table, mVersion)),
      mNames(NamesOf(mShapes)),
      mOrder(std::make_unique<PhysicalOrder>(table)),
      mBuffer(mShapes.size()) {
    for (std::size_t i = 0; i < mShapes.size(); ++i) mColumns.push_back(std::make_unique<Column>(*this, i));
    Stand(mOrder->First(), State::AtEnd);
}

TableRecordset::TableRecordset(std::shared_ptr<Connection> connection, jet::Table& table,
                               std::vector<jet::RowPointer> rows)
    : TableRecordset(std::move(connection), table) {
    auto result = std::make_unique<ResultOrder>(std::move(rows));
    mResult = result.get();
    mOrder = std::move(result);
    Stand(mOrder->First(), State::AtEnd);
}

TableRecordset::~TableRecordset() = default;

void TableRecordset::Require() const {
    mConnection->Require();
    if (mClosed) throw DataError(jet::ObjectInvalid);
}

void TableRecordset::RequireWritable() const {
    if (!mConnection->File().File().IsWritable()) throw DataError(jet::ReadOnlyDatabase);
}

// Walking

/// Makes row the current one. A row begun by AddNew or Edit and not updated is lost.
void TableRecordset::Stand(std::optional<jet::RowPointer> row, State without) {
    mEditing = Editing::No;
    mReadAt.reset();
    mState = row ? State::AtRow : without;
    if (row) mRow = *row;
}

void TableRecordset::SetIndex(std::u16string_view name) {
    Require();
    if (mResult != nullptr) throw DataError(jet::NotSupported);
    const jet::LogicalIndex* index = mTable.Definition().FindIndex(name);
    if (index == nullptr) throw DataError(jet::UnknownIndex, name);
    mIndex = index->RealIndexNumber;
    auto order = std::make_unique<IndexOrder>(mTable, mIndex);
    mIndexOrder = order.get();
    mOrder = std::move(order);
    Stand(mOrder->First(), State::AtEnd);
}

void TableRecordset::MoveFirst() {
    Require();
    Stand(mOrder->First(), State::AtEnd);
    if (mState != State::AtRow) throw DataError(jet::NoCurrentRecord);
}

void TableRecordset::MoveNext() {
    Require();
    if (mState != State::AtRow) throw DataError(jet::NoCurrentRecord);
    Stand(mOrder->Next(), State::AtEnd);
}

bool TableRecordset::AtEnd() const {
    Require();
    return mState == State::AtEnd;
}

void TableRecordset::Seek(std::string_view comparison, std::span<const Value> keys) {
    Require();
    if (mResult != nullptr) throw DataError(jet::NotSupported);
    if (mIndexOrder == nullptr) throw DataError(jet::NoCurrentIndex);
    if (comparison != "=") throw DataError(jet::InvalidDataArgument);
    Stand(mIndexOrder->Seek(KeyOf(keys)), State::Nowhere);
    mNoMatch = mState != State::AtRow;
}

std::string TableRecordset::KeyOf(std::span<const Value> keys) const {
    const jet::TableDef& definition = mTable.Definition();
    const std::vector<jet::IndexKeyColumn>& parts = definition.RealIndexes[mIndex].Columns;
    if (keys.size() != parts.size()) throw DataError(jet::InvalidDataArgument);
    std::string key;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const auto position = definition.FindColumnNumber(parts[i].ColumnNumber);
        if (!position) throw mConnection->File().File().Damaged();
        const ColumnShape& shape = mShapes[*position];
        // A text is looked for as it is: none is too long or too short for that.
        const bool asIs = shape.IsText() && std::holds_alternative<std::u16string>(keys[i]);
        const Value value = asIs ? keys[i] : ConvertForColumn(keys[i], shape);
        jet::AppendKey(key, value, definition.Columns[*position].Type, parts[i].Ascending, mVersion);
    }
    return key;
}

bool TableRecordset::NoMatch() const {
    Require();
    return mNoMatch;
}

// Reading

const std::vector<Value>& TableRecordset::CurrentValues() const {
    if (mState != State::AtRow) throw DataError(jet::NoCurrentRecord);
    if (mReadAt != mConnection->Changes()) {
        mReadAt.reset();
        mTable.Read(mRow, mCurrent);
        mReadAt = mConnection->Changes();
    }
    return mCurrent;
}

Value TableRecordset::ValueAt(std::size_t column) const {
    Require();
    return mEditing == Editing::No ? CurrentValues()[column] : mBuffer.At(column);
}

RecordsetField& TableRecordset::Fields(std::u16string_view name) {
    Require();
    const auto position = mNames.Find(name);
    if (!position) throw DataError(jet::ItemNotFound);
    return *mColumns[*position];
}

RecordsetField& TableRecordset::Fields(int position) {
    Require();
    if (position < 0 || static_cast<std::size_t>(position) >= mColumns.size())
        throw DataError(jet::ItemNotFound);
    return *mColumns[static_cast<std::size_t>(position)];
}

int TableRecordset::FieldCount() const {
    Require();
    return static_cast<int>(mColumns.size());
}

std::int32_t TableRecordset::RecordCount() const {
    Require();
    const std::size_t count = mResult != nullptr ? mResult->Count() : mTable.RowCount();
    return static_cast<std::int32_t>(count);
}

// Changing

void TableRecordset::Edit() {
    Require();
    if (mState != State::AtRow) throw DataError(jet::NoCurrentRecord);
    RequireWritable();
    mReadAt.reset();
    mBuffer.Load(CurrentValues());
    mEditing = Editing::Changing;
}

void TableRecordset::AddNew() {
    Require();
    RequireWritable();
    mBuffer.Clear();
    for (std::size_t i = 0; i < mShapes.size(); ++i) {
        if (mShapes[i].Type == FieldType::Boolean) mBuffer.Assign(i, false);
    }
    mEditing = Editing::Adding;
}

void TableRecordset::SetValueAt(std::size_t column, const Value& value) {
    Require();
    if (mEditing == Editing::No) throw DataError(jet::NotEditing);
    const ColumnShape& shape = mShapes[column];
    const auto* text = std::get_if<std::u16string>(&value);
    if (text != nullptr && shape.IsText()) {
        CheckText(*text, shape);
        mBuffer.AssignText(column, *text);
    } else {
        mBuffer.Assign(column, ConvertForColumn(value, shape));
    }
}

void TableRecordset::Update() {
    Require();
    if (mEditing == Editing::No) throw DataError(jet::NotEditing);
    if (mEditing == Editing::Adding) {
        mTable.Insert(mBuffer.Values());
        mConnection->File().RowAdded();
    } else {
        StoreChanges();
    }
    mConnection->CountChange();
    mEditing = Editing::No;
}

void TableRecordset::StoreChanges() {
    std::vector<jet::Table::Change> changes;
    for (std::size_t i = 0; i < mShapes.size(); ++i) {
        if (mBuffer.IsAssigned(i)) changes.push_back({i, mBuffer.At(i)});
    }
    mTable.UpdateFixed(mRow, changes);
}

void TableRecordset::Close() {
    Require();
    mEditing = Editing::No;
    mClosed = true;
}

}  // namespace dao
