// Table definitions as the seam's TableDef: first a list of columns and indexes to be, then the view of a
// table in the file.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/dao/connection.h"
#include "platform/dao/conversion.h"
#include "platform/dao/table_def.h"

namespace dao {

/// Type and size of a column as the seam names them.
ColumnShape ShapeOf(const jet::Column& column, jet::Version version);

class TableDefinition final : public TableDef, private Indexes {
  public:
    /// A definition that is not part of the database yet.
    TableDefinition(std::shared_ptr<Connection> connection, std::u16string_view name);

    /// The view of a table in the file.
    TableDefinition(std::shared_ptr<Connection> connection, std::u16string_view name, jet::Table& table);

    /// Makes the table with its columns, then its indexes.
    void AppendTo(jet::Database& file);

    const std::u16string& Name() const override;
    Field CreateField(std::u16string_view name, FieldType type, int size) const override;
    Field CreateField(std::u16string_view name) const override;
    void AppendField(const Field& field) override;
    const std::vector<Field>& Fields() const override;
    Index CreateIndex(std::u16string_view name) const override;
    dao::Indexes& Indexes() override;

  private:
    void Append(const Index& index) override;
    int Count() const override;
    const Index& Item(int position) const override;
    const std::vector<Index>& Current() const;
    void ReadColumns();

    std::shared_ptr<Connection> mConnection;
    std::u16string mName;
    std::vector<Field> mFields;
    jet::Table* mTable = nullptr;  // null before the definition is appended

    // Of a table in the file this is its list as of the last call: other definitions may add to it.
    mutable std::vector<Index> mIndexes;
};

/// The table definitions of an open file.
class TableDefinitions final : public TableDefs {
  public:
    explicit TableDefinitions(std::shared_ptr<Connection> connection) : mConnection(std::move(connection)) {}

    void Append(const std::shared_ptr<TableDef>& definition) override;
    std::shared_ptr<TableDef> Item(std::u16string_view name) override;
    std::vector<std::u16string> Names() override;

  private:
    std::shared_ptr<Connection> mConnection;
};

}  // namespace dao
