#include "platform/dao/database.h"

#include "platform/code_page.h"
#include "platform/dao/connection.h"
#include "platform/dao/relation_list.h"
#include "platform/dao/select_query.h"
#include "platform/dao/table_definition.h"
#include "platform/dao/table_recordset.h"
#include "platform/error.h"
#include "platform/jet/errors.h"

namespace dao {

namespace {

using jet::DataError;

/// The one locale in which this program makes databases.
constexpr std::string_view EnglishLocale = ";LANGID=0x0409;CP=1252;COUNTRY=0";

class OpenDatabaseFile final : public Database {
  public:
    explicit OpenDatabaseFile(std::unique_ptr<jet::Database> file)
        : mConnection(std::make_shared<Connection>(std::move(file))),
          mTableDefs(mConnection),
          mRelations(mConnection) {}

    ~OpenDatabaseFile() override {
        try {
            mConnection->Close();
        } catch (const platform::Error&) {
            // Closed already, or nobody left to hear of it.
        }
    }

    std::shared_ptr<Recordset> OpenRecordset(std::u16string_view source) override {
        if (!IsQuery(source))
            return std::make_shared<TableRecordset>(mConnection,
                                                    mConnection->Table(source, jet::UnknownTable));
        mConnection->Require();
        const SelectQuery query = ParseQuery(source);
        jet::Table& table = mConnection->Table(query.Table, jet::UnknownTable);
        return std::make_shared<TableRecordset>(mConnection, table, RowsOf(query, table));
    }

    std::shared_ptr<TableDef> CreateTableDef(std::u16string_view name) override {
        mConnection->Require();
        return std::make_shared<TableDefinition>(mConnection, name);
    }

    dao::TableDefs& TableDefs() override {
        mConnection->Require();
        return mTableDefs;
    }

    std::shared_ptr<Relation> CreateRelation(std::u16string_view name) override {
        mConnection->Require();
        auto relation = std::make_shared<Relation>();
        relation->Name = name;
        return relation;
    }

    dao::Relations& Relations() override {
        mConnection->Require();
        return mRelations;
    }

    void SetPause(std::function<void()> pause) override { mConnection->File().SetPause(std::move(pause)); }

    void Flush() override { mConnection->File().Flush(); }

    void Close() override { mConnection->Close(); }

  private:
    std::shared_ptr<Connection> mConnection;
    TableDefinitions mTableDefs;
    RelationList mRelations;
};

}  // namespace

std::shared_ptr<Database> OpenDatabase(std::string_view path, bool exclusive) {
    const auto sharing = exclusive ? jet::Sharing::Exclusive : jet::Sharing::Shared;
    return std::make_shared<OpenDatabaseFile>(jet::Database::Open(path, sharing));
}

std::shared_ptr<Database> CreateDatabase(std::string_view path, std::string_view locale) {
    if (!platform::EqualFoldedBytes(locale, EnglishLocale)) throw DataError(jet::InvalidLocale);
    return std::make_shared<OpenDatabaseFile>(jet::Database::Create(path));
}

}  // namespace dao
