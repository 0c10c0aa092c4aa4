#include "tools/sample_site/sample_site.h"

#include <vector>

#include "platform/site.h"
#include "tools/sample_site/catalogue_writer.h"
#include "tools/sample_site/field_packing.h"
#include "tools/sample_site/history_writer.h"
#include "tools/sample_site/manifest.h"
#include "tools/sample_site/site_files.h"
#include "tools/sample_site/supersession_writer.h"
#include "tools/sample_site/table_writer.h"
#include "tools/sample_site/tables.h"

namespace sample {

namespace {

std::vector<TableReport> WriteTables(const SiteContext& site) {
    const SitePlan& plan = site.Plan;
    std::vector<TableReport> reports;
    const auto write = [&](const TableSpec& spec, std::int64_t rows) {
        reports.push_back(WriteTable(site, spec, rows));
    };
    write(Customers(plan), plan.Customers);
    write(Stores(plan), plan.Stores);
    write(Vendors(plan), plan.Vendors);
    write(Employees(), plan.Employees);
    write(Parts(plan), plan.Parts);
    write(PriceHistory(plan), plan.Prices);
    write(PartCrossReference(), plan.CrossReferences);
    write(LabourOperations(plan), plan.LabourOperations);
    write(Invoices(plan), plan.Invoices);
    write(WarrantyClaims(plan), plan.Claims);
    write(TaxCodes(), plan.TaxCodes);
    write(Notes(plan), plan.Notes);
    reports.push_back(WriteSupersessions(site, Supercedes()));
    auto [records, lines] = WriteHistory(site, InvoiceHistory(plan), InvoiceHistoryDetail(plan));
    reports.push_back(std::move(records));
    reports.push_back(std::move(lines));
    return reports;
}

}  // namespace

void WriteSampleSite(const std::filesystem::path& folder, const SampleOptions& options) {
    const SitePlan plan = PlanOf(options.Records);
    const CompressionAlphabet alphabet;
    const std::filesystem::path root = std::filesystem::absolute(folder).lexically_normal();
    WriteSiteFiles(root, platform::ComputerName());

    ShareWriter share(root / "share" / SiteServer / "KSTLLNK");
    SiteContext site{options.Seed, plan, share, std::nullopt};
    if (options.WriteExpected) site.ExpectedFolder = root / "expected";
    const std::vector<TableReport> reports = WriteTables(site);
    share.Finish();

    std::vector<TableSpec> tables;
    tables.reserve(reports.size());
    for (const TableReport& report : reports) tables.push_back(report.Spec);
    WriteCatalogue(root / CatalogueFolder / CatalogueName, tables);
    WriteNewFile(root / "manifest.json", ManifestText(options, reports));
}

}  // namespace sample
