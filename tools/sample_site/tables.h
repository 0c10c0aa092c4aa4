// The tables of the invented business.
#pragma once

#include <vector>

#include "tools/sample_site/table_spec.h"

namespace sample {

/// The logical file that the program looks at when it starts: the first data file of the open invoices.
inline constexpr const char* InvoiceFile = "SINVOI";

TableSpec Customers(const SitePlan& plan);
TableSpec Stores(const SitePlan& plan);
TableSpec Vendors(const SitePlan& plan);
TableSpec Employees();

TableSpec Parts(const SitePlan& plan);
TableSpec PriceHistory(const SitePlan& plan);
TableSpec PartCrossReference();
TableSpec LabourOperations(const SitePlan& plan);

TableSpec Invoices(const SitePlan& plan);
TableSpec WarrantyClaims(const SitePlan& plan);
TableSpec TaxCodes();
TableSpec Notes(const SitePlan& plan);

/// Invoice history records, and the lines that lie inside them; both are reached through one key file.
TableSpec InvoiceHistory(const SitePlan& plan);
TableSpec InvoiceHistoryDetail(const SitePlan& plan);

TableSpec Supercedes();

}  // namespace sample
