// What the objects of one database share: the open file, until it is closed.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "platform/jet/database.h"

namespace dao {

class Connection {
  public:
    explicit Connection(std::unique_ptr<jet::Database> file) : mFile(std::move(file)) {}

    /// Raises 3420 when the database is closed. Tables that the file gave out live as long as it does.
    jet::Database& File() const {
        Require();
        return *mFile;
    }
    void Require() const {
        if (!mFile) throw jet::DataError(jet::ObjectInvalid);
    }

    /// The table of that name; raises the error of that number when there is none.
    jet::Table& Table(std::u16string_view name, int errorNumber) const {
        const std::shared_ptr<jet::Table> table = File().FindTable(name);
        if (!table) throw jet::DataError(errorNumber, name);
        return *table;
    }

    /// Grows with every change of a row, so that a cursor knows when what it has read is out of date.
    std::uint64_t Changes() const { return mChanges; }
    void CountChange() { ++mChanges; }

    /// Writes everything; the database is closed afterwards even when this raises an error.
    void Close() {
        Require();
        const std::unique_ptr<jet::Database> file = std::move(mFile);
        file->Close();
    }

  private:
    std::unique_ptr<jet::Database> mFile;
    std::uint64_t mChanges = 0;
};

}  // namespace dao
