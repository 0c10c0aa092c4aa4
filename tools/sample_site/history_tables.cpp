// The two tables over the invoice history. The lines have no file of their own; their fields are laid over
// the detail record that an export builds.

#include "tools/sample_site/history_layout.h"
#include "tools/sample_site/makers.h"
#include "tools/sample_site/table_builder.h"
#include "tools/sample_site/tables.h"

namespace sample {

namespace {

constexpr int InvoiceNumberLength = 4;

void DescribeKey(TableSpec& spec, const SitePlan& plan, int segment) {
    spec.Key.FileName = "HISKEY";
    spec.Key.Description = "Invoice number";
    spec.Key.Segments = {{segment, InvoiceNumberLength}};
    spec.Key.Size = InvoiceNumberLength;
    spec.Key.StartValue = 1;
    spec.Key.EndValue = static_cast<std::int32_t>(InvoiceNumber(plan.HistoryInvoices));
    spec.Key.ValueAt = InvoiceNumber;
    spec.Key.FieldName = "InvoiceNumber";
}

}  // namespace

TableSpec InvoiceHistory(const SitePlan& plan) {
    TableBuilder table("INVOICE_HISTORY", "Mid-Level", "HIS");
    table.File("HISTRY", history::RecordLength)
        .Field("CustomerNumber", 'U', 3, 0, AnyCustomer())
        .Field("InvoiceDate", 'J', 2, 0, DateIn(1985, 2020))
        .Field("SoldTo", 'C', 28, 0, Company())
        .Field("TotalAmount", 'M', 4, 0, Between(-500'000, 60'000'000))
        .Field("StoreNumber", 'U', 1, 0, AnyStore())
        .Field("SalesPerson", 'A', 24, 0, Person())
        .Field("PaidOn", 'D', 3, 0, DateOrNonsense(1985, 2020))
        .At(history::Description)
        .Field("Description", 'C', 20, 0, RemarkText())
        .At(history::InvoiceNumber)
        .Field("InvoiceNumber", 'U', InvoiceNumberLength, 0, KeyValue())
        .At(history::NextRecord)
        .Field("NextRecord", 'I', 3, 0, Constant(0))
        .At(history::Sequence)
        .Field("RecordsInChain", 'U', 1, 0, Constant(0))
        .At(history::TransactionType)
        .Field("TransactionType", 'U', 1, 0, Constant(0))
        .At(history::LineCount)
        .Field("LinesInRecord", 'U', 1, 0, Constant(0))
        .Primary({{"InvoiceNumber"}})
        .Index("CustomerAndDate", {{"CustomerNumber"}, {"InvoiceDate", true}});
    DescribeKey(table.Spec(), plan, history::InvoiceNumber);
    table.Spec().HasDeleted = true;
    return table.Done();
}

TableSpec InvoiceHistoryDetail(const SitePlan& plan) {
    TableBuilder table("INVOICE_HISTORY_DETAIL", "Bottom Level", "HIS");
    table.Field("RecordStatus", 'I', 2, 0, Constant(1))
        .Field("InvoiceNumber", 'U', InvoiceNumberLength, 0, KeyValue())
        .Field("LineNumber", 'U', 2, 0, Constant(0))
        .Field("LineType", 'L', 2, 0, Code({"PRT", "LAB", "SUB", "FRT"}))
        .Field("PartNumber", 'P', 14, 0, AnyPartNumber())
        .Field("Reference", 'C', 10, 0, PhoneNumber())
        .Field("UnitPrice", 'm', 4, 0, Between(0, 9'000'000))
        .Field("QuantityFactor", 'I', 2, 0, Between(0, 20))
        .Field("Quantity", 'U', 3, 0, Between(0, 500))
        .Field("ExtendedCost", 'M', 3, 0, Between(-8'000'000, 8'000'000))
        .Field("Location", 'L', 2, 0, Code({"A-1", "B-2", "YRD"}))
        .Field("PriceCode", 'A', 1, 0, Code({"R", "W", "C", "*"}))
        .Field("CostCentre", 'U', 2, 0, Between(100, 999))
        .Field("SourceStore", 'U', 1, 0, AnyStore())
        .Field("Description", 'C', history::RemarkTextLength, 0, Blank())
        .Primary({{"InvoiceNumber"}, {"LineNumber"}})
        .Index("PartNumber", {{"PartNumber"}, {"InvoiceNumber", true}});
    DescribeKey(table.Spec(), plan, history::InvoiceNumber);
    table.Spec().IsReshaped = true;
    table.Spec().DataFiles = {{"HISTRY", history::RecordLength}};
    return table.Done();
}

}  // namespace sample
