// Writes the invoice history: records with chains, their key file, and the accounts of both tables over them.
#pragma once

#include <utility>

#include "tools/sample_site/table_writer.h"

namespace sample {

/// Writes invoices of the plan. The first report is that of the records, the second that of the lines.
std::pair<TableReport, TableReport> WriteHistory(const SiteContext& site, const TableSpec& records,
                                                 const TableSpec& lines);

}  // namespace sample
