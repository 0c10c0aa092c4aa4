// A new database in a scratch folder, and short ways to make and read its tables.
#pragma once

#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "platform/jet/database.h"
#include "tests/support/expect_error.h"
#include "tests/support/scratch.h"
#include "tools/mdb_check/file_check.h"

namespace test {

using Row = std::vector<jet::Value>;

inline std::vector<Row> RowsOf(const jet::Table& table) {
    std::vector<Row> rows;
    for (auto row = table.FirstRow(); row; row = table.NextRow(*row)) table.Read(*row, rows.emplace_back());
    return rows;
}

/// What a check of every page, map, row, count, long value and index of a file finds.
inline std::vector<std::string> FindingsIn(const std::string& path, bool strict) {
    std::vector<std::string> findings;
    mdb_check::Report report(strict, [&](mdb_check::Report::Kind kind, const std::string& text) {
        if (kind == mdb_check::Report::Kind::Damage) findings.push_back(text);
    });
    mdb_check::CheckFile(path, report);
    return findings;
}

class NewDatabase : public testing::Test {
  protected:
    std::string Path() const { return (mFolder / "target.mdb").string(); }

    void Create(jet::PageFileLimits limits = {}) { mDatabase = jet::Database::Create(Path(), limits); }

    void Reopen(jet::Sharing sharing = jet::Sharing::Exclusive) {
        if (mDatabase) mDatabase->Close();
        mDatabase = jet::Database::Open(Path(), sharing);
    }

    std::shared_ptr<jet::Table> MakeTable(const std::vector<jet::ColumnSpec>& columns,
                                          const std::vector<jet::IndexSpec>& indexes = {}) {
        if (!mDatabase) Create();
        auto table = mDatabase->CreateTable(u"T", columns);
        for (const jet::IndexSpec& index : indexes) mDatabase->CreateIndex(*table, index);
        return table;
    }

    std::shared_ptr<jet::Table> ReopenTable(jet::Sharing sharing = jet::Sharing::Exclusive) {
        Reopen(sharing);
        return mDatabase->FindTable(u"T");
    }

    /// Closes the database and checks every page of the file.
    void ExpectSoundFile(bool strict = true) {
        mDatabase->Close();
        mDatabase.reset();
        EXPECT_THAT(FindingsIn(Path(), strict), testing::IsEmpty());
    }

    /// The same for a file whose keys were changed: its counts of different keys never fall.
    void ExpectSoundChangedFile() { ExpectSoundFile(false); }

    ScratchFolder mFolder;
    std::unique_ptr<jet::Database> mDatabase;
};

}  // namespace test
