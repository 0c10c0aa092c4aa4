#include "catalogue/metadata_catalogue.h"

#include "catalogue/row_fields.h"
#include "engine/business_basic.h"
#include "engine/recorded_error.h"
#include "platform/code_page.h"
#include "platform/error.h"
#include "platform/site.h"

namespace catalogue {

namespace {

constexpr const char* DefaultHome = "C:\\Program Files\\Kestrel Software, Inc\\Vantora";
constexpr const char* CatalogueFile = "\\MasterFileInformation.mdb";

// `LogicalMap` names the files of a table in its columns 2 to 6, 0-based; they go into slots 1 to 5.
constexpr int FirstFileColumn = 2;
constexpr int LastFileColumn = 6;
constexpr int FirstFileSlot = 1;

/// The name goes into the query as it stands: one with an apostrophe makes a query that does not read.
std::shared_ptr<dao::Recordset> RowsOfTable(InterfaceState& state, const std::u16string& source,
                                            const std::u16string& tableName) {
    auto rows = state.CatalogueDatabase->OpenRecordset(u"Select * from " + source +
                                                       u" Where [TableName] = '" + tableName + u"'");
    rows->MoveFirst();
    return rows;
}

void FillTableList(InterfaceState& state, TableList& list) {
    dao::Recordset& rows = *state.LogicalMapRecordset;
    std::int32_t TableCount = 0;
    std::u16string PreviousTable;
    std::u16string level;
    for (MoveToFirstByPrimaryKey(rows); !rows.AtEnd(); rows.MoveNext()) {
        const std::u16string TableName = TextOf(rows, u"TableName");
        if (!PreviousTable.empty() && TableName != PreviousTable) {
            AddTable(list, TableCount, PreviousTable, level);
        }
        PreviousTable = TableName;
        level = TextOf(rows, u"TableHierarchy");
    }
    AddTable(list, TableCount, PreviousTable, level);
}

}  // namespace

void StartCatalogue(InterfaceState& state, TableList& list) {
    const std::string home = platform::Setting("Directory", "Home", DefaultHome);
    state.CatalogueDatabase = dao::OpenDatabase(home + CatalogueFile);
    dao::Database& database = *state.CatalogueDatabase;
    state.FileDefinitionsRecordset = database.OpenRecordset(u"VantoraFileDefinitions");
    state.LogicalMapRecordset = database.OpenRecordset(u"LogicalMap");
    state.IndexDefinitionRecordset = database.OpenRecordset(u"LogicalIndexDefinition");
    state.LogicalIndexRecordset = database.OpenRecordset(u"LogicalIndex");
    state.RelationsRecordset = database.OpenRecordset(u"LogicalRelations");
    ResetRangeOverrides(state);
    FillTableList(state, list);
}

void ResetRangeOverrides(InterfaceState& state) {
    dao::Recordset& rows = *state.IndexDefinitionRecordset;
    for (rows.MoveFirst(); !rows.AtEnd(); rows.MoveNext()) {
        rows.Edit();
        rows.Fields(u"overrideStart").SetValue(std::int32_t{0});
        rows.Fields(u"overrideEnd").SetValue(std::int32_t{0});
        rows.Update();
    }
}

void AddTable(TableList& list, std::int32_t& TableCount, const std::u16string& PreviousTable,
              const std::u16string& level) {
    if (TableCount >= TableList::BoxCount) {
        constexpr int NoSuchControl = 340;
        throw platform::Error(NoSuchControl, "",
                              "Control array element '" + std::to_string(TableCount) + "' doesn't exist");
    }
    list.SetCaption(TableCount, PreviousTable);
    if (level == u"Top Level") list.SetColour(TableCount, TableColour::AsDesigned);
    if (level == u"Mid-Level") list.SetColour(TableCount, TableColour::Green);
    if (level == u"Bottom Level") list.SetColour(TableCount, TableColour::Purple);
    list.SetVisible(TableCount, true);
    ++TableCount;
}

std::shared_ptr<engine::cLogicalFile> OpenLogicalFile(const engine::ByteString& name) {
    engine::ForgetRecordedError();
    auto file = engine::gEngine->LogicalOpen(name);
    const auto& error = engine::LastRecordedError();
    if (error && platform::IsFileFailure(*error)) throw platform::Error(*error);
    return file;
}

void EmptyTableFiles(InterfaceState& state) {
    state.TableFiles.fill(nullptr);
}

void OpenFiles(InterfaceState& state, const TableList& list, platform::WindowServices& window,
               std::int16_t Index) {
    const std::u16string caption = list.Caption(Index);
    state.LogicalMapRecordset = RowsOfTable(state, u"LogicalMap", caption);
    dao::Recordset& row = *state.LogicalMapRecordset;
    if (TextOf(row, u"TableName") != caption) {
        window.ShowMessage({.Text = "Problem finding files for " + platform::Utf8FromWide(caption),
                            .Title = "OpenFiles",
                            .Critical = true});
        return;
    }
    for (int column = FirstFileColumn; column <= LastFileColumn; ++column) {
        const dao::Value name = row.Fields(column).GetValue();
        if (dao::IsNull(name)) continue;
        const int slot = column - FirstFileColumn + FirstFileSlot;
        state.TableFiles[static_cast<std::size_t>(slot)] =
            OpenLogicalFile(platform::BytesFromWide(dao::ToText(name)));
    }
}

void BuildCollection(InterfaceState& state, const TableList& list, std::int16_t Index) {
    state.FieldList.clear();
    state.FileDefinitionsRecordset = RowsOfTable(state, u"VantoraFileDefinitions", list.Caption(Index));
    for (dao::Recordset& row = *state.FileDefinitionsRecordset; !row.AtEnd(); row.MoveNext()) {
        state.FieldList.push_back({.Name = TextOf(row, u"FieldName"),
                                   .DataType = TextOf(row, u"FieldType"),
                                   .Length = LongOf(row, u"FieldLength"),
                                   .Start = LongOf(row, u"StartPosition"),
                                   .TypeSpec = LongOf(row, u"FieldSpecifier")});
    }
}

}  // namespace catalogue
