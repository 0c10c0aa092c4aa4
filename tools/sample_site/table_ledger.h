// Keeps the account of one table: what a full export of it must hold. Rows are offered in the order of the
// export; a row whose primary key repeats the one before, or has an unset column, is refused as the target
// table refuses it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include "tools/sample_site/table_spec.h"

namespace sample {

/// One column of the account.
struct ColumnAccount {
    std::int64_t Unset = 0;      // cells that stay Null
    std::uint64_t Checksum = 0;  // see canonical_cell.h
    std::int64_t Sum = 0;        // of columns that have one; amounts in ten-thousandths
};

/// The account in figures.
struct TableAccount {
    std::int64_t Rows = 0;  // that a full export holds
    std::int64_t RefusedRepeatedKey = 0;
    std::int64_t RefusedUnsetKey = 0;
    std::int64_t OutsideStatus = 0;
    std::vector<ColumnAccount> Columns;
};

class TableLedger {
  public:
    /// With a folder, the rows are written to folder/TABLE.tsv as well, below a line of column names.
    TableLedger(const TableSpec& spec, const std::optional<std::filesystem::path>& expectedFolder);

    /// A record that the export comes by; values in the order of the table's fields.
    void Offer(const std::vector<FieldValue>& values);

    /// A record that a walk by record number passes over.
    void PassOver() { ++mAccount.OutsideStatus; }

    /// Raises 61 when the rows could not be written.
    TableAccount Finish();

  private:
    using Cells = std::vector<std::optional<std::string>>;

    bool Accepts();
    void Enter(const std::vector<FieldValue>& values);
    void WriteRow();

    const TableSpec& mSpec;
    std::vector<std::size_t> mKeyColumns;  // of the primary key
    Cells mCells;
    Cells mLastKey;
    TableAccount mAccount;
    std::ofstream mExpected;
};

/// The place of a field among the table's fields.
std::size_t FieldPlace(const TableSpec& spec, const std::string& name);

/// The places of the fields of the primary key.
std::vector<std::size_t> PrimaryKeyPlaces(const TableSpec& spec);

}  // namespace sample
