#include "platform/dao/table_definition.h"

#include <algorithm>
#include <utility>

#include "platform/code_page.h"
#include "platform/jet/errors.h"

namespace dao {

namespace {

using jet::DataError;

constexpr int DefaultTextSize = static_cast<int>(jet::MaxTextLength);

jet::ColumnSpec SpecOf(const Field& field) {
    return {field.Name, static_cast<jet::ColumnType>(field.Type), static_cast<std::uint16_t>(field.Size)};
}

jet::IndexSpec SpecOf(const Index& index) {
    jet::IndexSpec spec;
    spec.Name = index.Name;
    spec.Primary = index.Primary();
    spec.Unique = index.Unique;
    spec.Required = index.Required;
    for (const Field& field : index.Fields)
        spec.Columns.push_back({field.Name, (field.Attributes & DescendingField) == 0});
    return spec;
}

Index IndexOf(const jet::TableDef& table, const jet::LogicalIndex& logical) {
    const jet::RealIndex& real = table.RealIndexes[logical.RealIndexNumber];
    Index index;
    index.Name = logical.Name;
    index.Unique = real.IsUnique();
    index.Required = real.IsRequired();
    index.SetPrimary(logical.Type == jet::LogicalIndexType::Primary);
    for (const jet::IndexKeyColumn& part : real.Columns) {
        const auto position = table.FindColumnNumber(part.ColumnNumber);
        if (!position) continue;
        Field field;
        field.Name = table.Columns[*position].Name;
        field.Type = static_cast<FieldType>(table.Columns[*position].Type);
        field.Attributes = part.Ascending ? 0 : DescendingField;
        index.Fields.push_back(std::move(field));
    }
    return index;
}

}  // namespace

ColumnShape ShapeOf(const jet::Column& column, jet::Version version) {
    const int size = column.Type == jet::ColumnType::Text ? column.Characters(version) : column.Size;
    return {column.Name, static_cast<FieldType>(column.Type), size};
}

TableDefinition::TableDefinition(std::shared_ptr<Connection> connection, std::u16string_view name)
    : mConnection(std::move(connection)), mName(name) {}

TableDefinition::TableDefinition(std::shared_ptr<Connection> connection, std::u16string_view name,
                                 jet::Table& table)
    : mConnection(std::move(connection)), mName(name), mTable(&table) {
    ReadColumns();
}

void TableDefinition::ReadColumns() {
    mFields.clear();
    const jet::Version version = mConnection->File().File().FileVersion();
    for (const jet::Column& column : mTable->Definition().Columns) {
        ColumnShape shape = ShapeOf(column, version);
        mFields.push_back({std::move(shape.Name), shape.Type, shape.Size, 0, {}});
    }
}

const std::u16string& TableDefinition::Name() const {
    mConnection->Require();
    return mName;
}

Field TableDefinition::CreateField(std::u16string_view name, FieldType type, int size) const {
    mConnection->Require();
    Field field;
    field.Name = name;
    field.Type = type;
    if (type == FieldType::Text) field.Size = size == 0 ? DefaultTextSize : size;
    return field;
}

Field TableDefinition::CreateField(std::u16string_view name) const {
    mConnection->Require();
    Field field;
    field.Name = name;
    return field;
}

void TableDefinition::AppendField(const Field& field) {
    mConnection->Require();
    if (mTable != nullptr) throw DataError(jet::NotSupported);
    jet::CheckName(field.Name);
    const auto sameName = [&field](const Field& other) {
        return platform::EqualFolded(other.Name, field.Name);
    };
    if (std::ranges::any_of(mFields, sameName)) throw DataError(jet::FieldExists, field.Name, mName);
    if (mFields.size() >= jet::MaxColumns) throw DataError(jet::TooManyFields);
    if (field.Size < 0 || (field.Type == FieldType::Text && field.Size > DefaultTextSize))
        throw DataError(jet::InvalidPropertyValue);
    mFields.push_back(field);
}

const std::vector<Field>& TableDefinition::Fields() const {
    mConnection->Require();
    return mFields;
}

Index TableDefinition::CreateIndex(std::u16string_view name) const {
    mConnection->Require();
    Index index;
    index.Name = name;
    return index;
}

dao::Indexes& TableDefinition::Indexes() {
    mConnection->Require();
    return *this;
}

void TableDefinition::AppendTo(jet::Database& file) {
    if (mTable != nullptr) throw DataError(jet::TableExists, mName);
    std::vector<jet::ColumnSpec> columns;
    std::ranges::transform(mFields, std::back_inserter(columns),
                           [](const Field& field) { return SpecOf(field); });
    mTable = file.CreateTable(mName, columns).get();
    ReadColumns();
    for (const Index& index : std::exchange(mIndexes, {})) file.CreateIndex(*mTable, SpecOf(index));
}

void TableDefinition::Append(const Index& index) {
    jet::Database& file = mConnection->File();
    if (mTable == nullptr) {
        mIndexes.push_back(index);
    } else {
        file.CreateIndex(*mTable, SpecOf(index));
    }
}

const std::vector<Index>& TableDefinition::Current() const {
    mConnection->Require();
    if (mTable == nullptr) return mIndexes;
    const jet::TableDef& table = mTable->Definition();
    if (mIndexes.size() != table.LogicalIndexes.size()) {
        mIndexes.clear();
        for (const jet::LogicalIndex& logical : table.LogicalIndexes)
            mIndexes.push_back(IndexOf(table, logical));
    }
    return mIndexes;
}

int TableDefinition::Count() const {
    return static_cast<int>(Current().size());
}

const Index& TableDefinition::Item(int position) const {
    const std::vector<Index>& indexes = Current();
    if (position < 0 || static_cast<std::size_t>(position) >= indexes.size())
        throw DataError(jet::ItemNotFound);
    return indexes[static_cast<std::size_t>(position)];
}

void TableDefinitions::Append(const std::shared_ptr<TableDef>& definition) {
    jet::Database& file = mConnection->File();
    const auto table = std::dynamic_pointer_cast<TableDefinition>(definition);
    if (!table) throw DataError(jet::InvalidDataArgument);
    table->AppendTo(file);
}

std::shared_ptr<TableDef> TableDefinitions::Item(std::u16string_view name) {
    jet::Table& table = mConnection->Table(name, jet::ItemNotFound);
    return std::make_shared<TableDefinition>(mConnection, name, table);
}

std::vector<std::u16string> TableDefinitions::Names() {
    return mConnection->File().TableNames();
}

}  // namespace dao
