#include "platform/jet/database.h"

#include <algorithm>
#include <utility>

#include "platform/code_page.h"
#include "platform/jet/system_catalog.h"

namespace jet {

Database::Database(std::unique_ptr<PageFile> file)
    : mFile(std::move(file)), mCatalog(std::make_unique<SystemCatalog>(*mFile)) {}

std::unique_ptr<Database> Database::Create(std::string_view path, PageFileLimits limits) {
    std::unique_ptr<PageFile> file = PageFile::Create(path, limits);
    CreateSystemTables(*file);
    file->Flush();
    return std::unique_ptr<Database>(new Database(std::move(file)));
}

std::unique_ptr<Database> Database::Open(std::string_view path, Sharing sharing, PageFileLimits limits) {
    std::unique_ptr<PageFile> file = PageFile::Open(path, sharing, limits);
    try {
        return std::unique_ptr<Database>(new Database(std::move(file)));
    } catch (const platform::Error& error) {
        if (error.Number != DamagedDatabase) throw;
        throw DataError(CannotOpenDatabase, platform::WideFromUtf8(path)).WithPath(path);
    }
}

Database::~Database() {
    try {
        Close();
    } catch (const platform::Error&) {
        // Who wants to know closes the database himself.
    }
}

std::vector<std::u16string> Database::TableNames() {
    return mCatalog->TableNames();
}

std::shared_ptr<Table> Database::FindTable(std::u16string_view name) {
    const auto page = mCatalog->FindTable(name);
    if (!page) return nullptr;
    if (const auto open = mTables.find(*page); open != mTables.end()) return open->second;
    return mTables.emplace(*page, std::make_shared<Table>(*mFile, *page)).first->second;
}

std::shared_ptr<Table> Database::CreateTable(std::u16string_view name,
                                             const std::vector<ColumnSpec>& columns) {
    CheckName(name);
    if (mCatalog->FindTable(name)) throw DataError(TableExists, name);
    std::vector<Column> defined = DefineColumns(name, columns);

    SharedChange change(*mFile);
    const std::uint32_t page = mFile->Allocate();
    mFile->MakeNew(page, PageType::TableDef);
    TableDef definition = LayOutTable(page, TableType::User, std::move(defined));
    MapRows maps(*mFile);
    PlaceTable(definition, maps);
    WriteTableDef(*mFile, definition);
    // The definition reaches the file before the list names it.
    if (!mFile->IsShared()) mFile->Flush();
    mCatalog->AddTable(name, page);
    mCatalog->WriteCounts();
    change.Commit();
    return FindTable(name);
}

void Database::CreateIndex(Table& table, const IndexSpec& spec) {
    const TableDef& definition = table.Definition();
    RealIndex index = DefineIndex(definition, mCatalog->NameOf(definition.Page), spec);
    LogicalIndex name;
    name.Name = spec.Name;
    for (const LogicalIndex& other : definition.LogicalIndexes)
        name.Number = std::max(name.Number, other.Number + 1);
    name.RealIndexNumber = static_cast<std::uint32_t>(definition.RealIndexes.size());
    name.Type = spec.Primary ? LogicalIndexType::Primary : LogicalIndexType::Plain;

    SharedChange change(*mFile);
    MapRows maps(*mFile, definition.RealIndexes.empty() ? definition.FreeMap.Page
                                                        : definition.RealIndexes.back().Map.Page);
    PlaceIndex(*mFile, definition.Page, index, maps);
    table.AddIndex(std::move(index), std::move(name));
    change.Commit();
}

void Database::WriteCounts() {
    mCatalog->WriteCounts();
    for (const auto& [page, table] : mTables) table->WriteCounts();
}

void Database::Flush() {
    WriteCounts();
    mFile->Flush();
}

void Database::Close() {
    if (!mFile) return;
    WriteCounts();
    mFile->Sync();
    mTables.clear();
    mCatalog.reset();
    mFile.reset();
}

}  // namespace jet
