// Writes the tables of the site: records, key files, and the account of what an export must hold.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "tools/sample_site/index_writer.h"
#include "tools/sample_site/share_writer.h"
#include "tools/sample_site/site_plan.h"
#include "tools/sample_site/table_ledger.h"
#include "tools/sample_site/table_spec.h"

namespace sample {

/// What the writers of all tables share.
struct SiteContext {
    std::uint64_t Seed;
    const SitePlan& Plan;
    ShareWriter& Share;
    std::optional<std::filesystem::path> ExpectedFolder;
};

/// What was written of one table.
struct TableReport {
    TableSpec Spec;
    std::int64_t RecordsStored = 0;  // active records, or keys where the key is the record
    std::int64_t RecordsDeleted = 0;
    std::int64_t IndexEntries = 0;  // without the terminator
    std::int32_t IndexBlocks = 0;   // in use, without the header
    int IndexLevels = 0;
    TableAccount Account;
};

/// Rows that are generated and written together.
inline constexpr std::int64_t RowsPerWindow = 4096;

IndexShape ShapeOf(const KeySpec& key);

/// Reserves a key file that is large enough for so many keys, and enters what the index became into a report.
IndexWriter ReserveIndex(const SiteContext& site, const TableSpec& spec, std::int64_t keys, Random& random);
void ReportIndex(const IndexWriter& index, TableReport& report);

/// Reserves a data file for so many records, with some to spare.
LogicalExtent ReserveRecords(const SiteContext& site, const TableSpec& spec, const DataFileSpec& file,
                             std::int64_t records);

/// Writes a table of rows whose fields have makers: keyed, by record number, or with the key for a record.
TableReport WriteTable(const SiteContext& site, const TableSpec& spec, std::int64_t rows);

}  // namespace sample
