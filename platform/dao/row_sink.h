// Recordsets and databases that only take rows, for programs that count or refuse what an export writes.
#pragma once

#include "platform/dao/database.h"
#include "platform/error.h"

namespace dao {

/// A recordset without rows to read. What becomes of a row that is written is told by Update and Fields.
class RowSink : public Recordset {
  public:
    using Recordset::Seek;
    void SetIndex(std::u16string_view) override {}
    void MoveFirst() override {}
    void MoveNext() override {}
    bool AtEnd() const override { return true; }
    void Seek(std::string_view, std::span<const Value>) override {}
    bool NoMatch() const override { return true; }
    void Edit() override {}
    void AddNew() override {}
    int FieldCount() const override { return 0; }
    std::int32_t RecordCount() const override { return 0; }
    void Close() override {}
};

/// A database without a file; OpenRecordset tells where its rows go. Raises 91 for its definitions.
class RowSinkDatabase : public Database {
  public:
    std::shared_ptr<TableDef> CreateTableDef(std::u16string_view) override { return nullptr; }
    dao::TableDefs& TableDefs() override { throw platform::Error(platform::ObjectNotSet); }
    std::shared_ptr<Relation> CreateRelation(std::u16string_view) override { return nullptr; }
    dao::Relations& Relations() override { throw platform::Error(platform::ObjectNotSet); }
    void SetPause(std::function<void()>) override {}
    void Flush() override {}
    void Close() override {}
};

}  // namespace dao
