#include "platform/jet/database.h"

#include <algorithm>
#include <utility>

#include "platform/code_page.h"
#include "platform/file.h"
#include "platform/jet/system_catalog.h"

namespace jet {

namespace {

constexpr std::chrono::seconds FlushEvery{8};
constexpr int LeastWorkToFlush = 20;  // a flush takes at most one part of so many of the time
constexpr unsigned RowsBetweenLooks = 64;
constexpr std::size_t MostWaitingBytes = std::size_t{32} << 20;

/// The error that has led here matters more than one of the removal.
void RemoveUnfinished(std::string_view path) {
    try {
        platform::RemoveFile(path);
    } catch (const platform::Error&) {
        // The file stays: short, and no database to any program.
    }
}

}  // namespace

Database::Database(std::unique_ptr<PageFile> file)
    : mFile(std::move(file)),
      mCatalog(std::make_unique<SystemCatalog>(*mFile)),
      mTables(mCatalog->Tables()),
      mNextFlush(Clock::now() + FlushEvery) {}

std::unique_ptr<Database> Database::Create(std::string_view path, PageFileLimits limits) {
    std::unique_ptr<PageFile> file = PageFile::Create(path, limits);
    try {
        CreateSystemTables(*file);
        file->Checkpoint();
    } catch (const platform::Error&) {
        file.reset();
        RemoveUnfinished(path);
        throw;
    }
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
    mCatalog->AddTable(name, page);
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
    table.AddIndex(std::move(index), std::move(name));
    change.Commit();
}

void Database::Publish() {
    for (const auto& [page, table] : mTables) table->Publish();
}

void Database::Flush() {
    const Clock::time_point start = Clock::now();
    Publish();
    mFile->Checkpoint();
    const Clock::time_point end = Clock::now();
    mNextFlush = end + std::max<Clock::duration>(FlushEvery, (end - start) * LeastWorkToFlush);
}

void Database::RowAdded() {
    if (mFile->IsShared() || ++mRowsSinceLook < RowsBetweenLooks) return;
    mRowsSinceLook = 0;
    std::size_t waiting = 0;
    for (const auto& [page, table] : mTables) waiting += table->WaitingBytes();
    if (waiting > MostWaitingBytes) Publish();
    if (Clock::now() >= mNextFlush) Flush();
}

void Database::Close() {
    if (!mFile) return;
    Publish();
    mFile->Sync();
    mTables.clear();
    mCatalog.reset();
    mFile.reset();
}

}  // namespace jet
