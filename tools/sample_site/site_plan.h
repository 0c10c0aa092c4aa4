// How many records each table holds, and how their keys follow from a row's ordinal (from 1), so that a row
// of one table can name a row of another.
#pragma once

#include <cstdint>

namespace sample {

struct SitePlan {
    std::int64_t Customers;
    std::int64_t Stores;
    std::int64_t Vendors;
    std::int64_t Employees;
    std::int64_t Parts;
    std::int64_t Prices;
    std::int64_t Invoices;
    std::int64_t HistoryInvoices;  // each a chain of one or more history records
    std::int64_t Supersessions;
    std::int64_t CrossReferences;
    std::int64_t Claims;
    std::int64_t LabourOperations;
    std::int64_t TaxCodes;
    std::int64_t Notes;
};

/// Shares records out among the tables. Raises 5 for less than one record.
SitePlan PlanOf(std::int64_t records);

std::int64_t CustomerNumber(std::int64_t ordinal);
std::int64_t StoreNumber(std::int64_t ordinal);
std::int64_t VendorNumber(std::int64_t ordinal);
std::int64_t InvoiceNumber(std::int64_t ordinal);

/// Two or three prices a part, and ninety for every tenth part, so that equal keys fill more than one block.
std::int64_t PricedPart(std::int64_t ordinal);

/// Three hundred operations a group.
std::int64_t LabourGroup(std::int64_t ordinal);

/// Claims are numbered from 1000; the last tenth carries negative numbers, which sort behind all others.
std::int64_t ClaimNumber(std::int64_t ordinal, std::int64_t claims);

}  // namespace sample
