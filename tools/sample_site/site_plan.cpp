#include "tools/sample_site/site_plan.h"

#include <algorithm>

#include "platform/error.h"

namespace sample {

namespace {

/// A table's share of all records, at least a few, at most what its key can number.
std::int64_t Share(std::int64_t records, std::int64_t perMille, std::int64_t least, std::int64_t most) {
    constexpr std::int64_t Whole = 1000;
    return std::clamp(records / Whole * perMille + records % Whole * perMille / Whole, least, most);
}

constexpr std::int64_t Unlimited = 0x7FFFFFFF;

}  // namespace

SitePlan PlanOf(std::int64_t records) {
    if (records < 1) throw platform::Error(platform::InvalidArgument);
    constexpr std::int64_t MostStores = 240;       // a one-byte key
    constexpr std::int64_t MostVendors = 60'000;   // a two-byte key
    constexpr std::int64_t MostTaxCodes = 10'000;  // three characters
    return {.Customers = Share(records, 120, 6, Unlimited),
            .Stores = Share(records, 2, 3, MostStores),
            .Vendors = Share(records, 18, 4, MostVendors),
            .Employees = Share(records, 15, 8, Unlimited),
            .Parts = Share(records, 180, 8, Unlimited),
            .Prices = Share(records, 180, 10, Unlimited),
            .Invoices = Share(records, 150, 8, Unlimited),
            .HistoryInvoices = Share(records, 110, 6, Unlimited),
            .Supersessions = Share(records, 20, 6, Unlimited),
            .CrossReferences = Share(records, 35, 5, Unlimited),
            .Claims = Share(records, 50, 10, Unlimited),
            .LabourOperations = Share(records, 30, 6, Unlimited),
            .TaxCodes = Share(records, 3, 4, MostTaxCodes),
            .Notes = Share(records, 40, 5, Unlimited)};
}

std::int64_t CustomerNumber(std::int64_t ordinal) {
    constexpr std::int64_t First = 1000;
    constexpr std::int64_t Step = 7;
    return First + Step * (ordinal - 1);
}

std::int64_t StoreNumber(std::int64_t ordinal) {
    return ordinal;
}

std::int64_t VendorNumber(std::int64_t ordinal) {
    constexpr std::int64_t First = 100;
    return First + ordinal - 1;
}

std::int64_t InvoiceNumber(std::int64_t ordinal) {
    constexpr std::int64_t First = 100'000;
    constexpr std::int64_t Step = 3;
    return First + Step * (ordinal - 1);
}

std::int64_t PricedPart(std::int64_t ordinal) {
    constexpr std::int64_t ManyPrices = 90;
    constexpr std::int64_t FewPrices = 3;
    constexpr std::int64_t PartsInTurn = 10;
    constexpr std::int64_t PricesInTurn = ManyPrices + FewPrices * (PartsInTurn - 1);
    const std::int64_t turn = (ordinal - 1) / PricesInTurn;
    const std::int64_t place = (ordinal - 1) % PricesInTurn;
    const std::int64_t part = place < ManyPrices ? 0 : 1 + (place - ManyPrices) / FewPrices;
    return 1 + turn * PartsInTurn + part;
}

std::int64_t LabourGroup(std::int64_t ordinal) {
    constexpr std::int64_t OperationsInGroup = 300;
    return 1 + (ordinal - 1) / OperationsInGroup;
}

std::int64_t ClaimNumber(std::int64_t ordinal, std::int64_t claims) {
    constexpr std::int64_t First = 1000;
    constexpr std::int64_t Step = 2;
    const std::int64_t positive = claims - claims / 10;
    if (ordinal <= positive) return First + Step * (ordinal - 1);
    return Step * (ordinal - claims - 1);
}

}  // namespace sample
