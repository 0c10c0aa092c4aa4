// A database file: its tables by name, and the making of databases, tables and indexes. Names are looked up
// without regard to letter case.
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/jet/schema.h"
#include "platform/jet/table.h"

namespace jet {

class SystemCatalog;

class Database {
  public:
    /// A new, empty Jet 4 database. Raises 3204 (the file exists), 3044 (no such folder), 3436.
    static std::unique_ptr<Database> Create(std::string_view path, PageFileLimits limits = {});

    /// Raises 3024, 3044, 3051, 3343 (not a database), 3049 (a damaged one).
    static std::unique_ptr<Database> Open(std::string_view path, Sharing sharing, PageFileLimits limits = {});

    /// Writes everything when Close was not called; errors are lost then.
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    PageFile& File() { return *mFile; }

    /// The names of the user's tables, in the order of the database's own list.
    std::vector<std::u16string> TableNames();

    /// The table of that name, system tables included; null when there is none. Every call gives the same
    /// table.
    std::shared_ptr<Table> FindTable(std::u16string_view name);

    /// Makes a table without rows. Raises 3010 (name in use), 3264 (no column), 3190 (too many), 3380 (a
    /// column name twice), 3125 (not a valid name), 3259 (a type that cannot be made), 3271 (text too long).
    std::shared_ptr<Table> CreateTable(std::u16string_view name, const std::vector<ColumnSpec>& columns);

    /// Adds an index to a table, building it over the rows there are. Raises 3375 (name in use), 3283 (second
    /// primary key), 3264 (no column), 3409 (unknown column), 3277 (more than 10), 3039 (too many indexes),
    /// 3022 and 3058 (rows that the index forbids; nothing is added then).
    void CreateIndex(Table& table, const IndexSpec& index);

    /// See PageFile.
    void SetPause(std::function<void()> pause) { mFile->SetPause(std::move(pause)); }

    /// Writes everything to the file: a checkpoint (see PageFile) that holds all rows added so far.
    void Flush();

    /// Called behind every row that is added to an Exclusive file: flushes every few seconds, and when the
    /// index entries that wait take up too much memory.
    void RowAdded();

    /// Writes everything and closes the file; the tables must not be used any more.
    void Close();

  private:
    using Clock = std::chrono::steady_clock;

    explicit Database(std::unique_ptr<PageFile> file);

    void Publish();

    std::unique_ptr<PageFile> mFile;
    std::unique_ptr<SystemCatalog> mCatalog;
    std::map<std::uint32_t, std::shared_ptr<Table>> mTables;  // by definition page
    Clock::time_point mNextFlush;
    unsigned mRowsSinceLook = 0;
};

}  // namespace jet
