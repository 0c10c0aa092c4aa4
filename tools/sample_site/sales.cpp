// What the business does: open invoices, warranty claims, tax codes, notes.

#include "tools/sample_site/makers.h"
#include "tools/sample_site/table_builder.h"
#include "tools/sample_site/tables.h"

namespace sample {

TableSpec Invoices(const SitePlan& plan) {
    TableBuilder table("INVOICES", "Top Level", "INV");
    table.File(InvoiceFile, 520)
        .Field("InvoiceNumber", 'U', 4, 0, KeyValue())
        .Field("CustomerNumber", 'U', 3, 0, AnyCustomer())
        .Field("InvoiceDate", 'J', 2, 0, DateIn(1995, 2024))
        .Field("StoreNumber", 'U', 1, 0, AnyStore())
        .Field("SoldTo", 'C', 28, 0, Company())
        .Field("OrderedBy", 'A', 24, 0, Person())
        .Field("ShipTo", 'C', 80, 0, NewAddress())
        .Over("ShipToState", 'Y', 0, StateOfAddress())
        .Over("ShipToPostalCode", 'Z', 0, PostalCodeOfAddress())
        .Field("Terms", 'L', 2, 0, Code({"N30", "COD", "C-C", "1.5"}))
        .Field("IsPrinted", 'B', 1, 0, FlagOneIn(2))
        .Over("IsTaxable", 'B', 5, FlagOneIn(3))
        .File("INVAMT", 64)
        .Field("Merchandise", 'M', 4, 0, Between(-900'000, 90'000'000))
        .Field("Freight", 'm', 2, 0, Between(0, 60'000))
        .Field("Tax", 'M', 3, 0, Between(-50'000, 3'000'000))
        .Field("DepositPaid", 'W', 3, 0, Between(0, 5'000))
        .Field("LineCount", 'U', 1, 0, Between(0, 99))
        .Field("Margin", 'I', 2, 3, Between(-5'000, 25'000))
        .File("INVREF", 96)
        .Field("PurchaseOrder", 'A', 15, 0, NumberedCode(8))
        .Field("PromisedOn", 'D', 3, 0, DateOrNonsense(1995, 2025))
        .Field("ShippedOn", 'R', 3, 0, DateOrNonsense(1995, 2025))
        .Field("Reference", 'C', 16, 0, RemarkText())
        .KeyedBy("InvoiceNumber")
        .KeyedBy("CustomerNumber")
        .KeyedBy("InvoiceDate")
        .KeyedBy("Reference")
        .Primary({{"InvoiceNumber"}})
        .Index("CustomerAndDate", {{"CustomerNumber"}, {"InvoiceDate", true}})
        .Index("SoldTo", {{"SoldTo"}});
    table.Spec().Key.FileName = "INVKEY";
    table.Spec().Key.Description = "Invoice number";
    table.Spec().Key.Format = IndexFormat::Extended2048;
    table.Spec().Key.Size = 4;
    table.Spec().Key.StartValue = 1;
    table.Spec().Key.EndValue = static_cast<std::int32_t>(InvoiceNumber(plan.Invoices));
    table.Spec().Key.ValueAt = InvoiceNumber;
    table.Spec().Key.FieldName = "InvoiceNumber";
    table.Spec().HasDeleted = true;
    return table.Done();
}

TableSpec WarrantyClaims(const SitePlan& plan) {
    TableBuilder table("WARRANTY_CLAIMS", "Mid-Level", "HIS");
    table.File("WARCLM", 112)
        .Field("ClaimNumber", 'I', 4, 0, KeyValue())
        .Field("CustomerNumber", 'U', 3, 0, AnyCustomer())
        .Field("FailedPart", 'P', 14, 0, AnyPartNumber())
        .Field("ClaimedAmount", 'M', 4, 0, Between(-2'000'000, 8'000'000))
        .Field("AllowedAmount", 'm', 4, 0, Between(0, 8'000'000))
        .Field("LabourCredit", 'W', 4, 0, Between(-300'000, 900'000))
        .Field("FailedOn", 'D', 3, 0, DateOrNonsense(1998, 2024))
        .Field("RepairedOn", 'R', 3, 0, DateIn(1998, 2024))
        .Field("SettledOn", 'J', 2, 0, DateIn(1998, 2024))
        .Field("MilesAtFailure", 'U', 4, 1, Between(0, 9'999'999))
        .Field("Complaint", 'C', 24, 0, RemarkText())
        .Field("DispositionCodes", 'L', 2, 0, Code({"PAY", "DNY", "P-R"}))
        .Over("Disposition", 'X', 1, CharacterOfCode(1))
        .Field("IsReopened", 'B', 4, 30, FlagOneIn(10))
        .KeyedBy("ClaimNumber")
        .Primary({{"ClaimNumber"}})
        .Index("FailedPart", {{"FailedPart"}, {"FailedOn", true}});
    table.Spec().Key.FileName = "WARKEY";
    table.Spec().Key.Description = "Claim number";
    table.Spec().Key.DataType = 'I';
    table.Spec().Key.Size = 4;
    table.Spec().Key.StartValue = 1;
    table.Spec().Key.EndValue =
        static_cast<std::int32_t>(ClaimNumber(plan.Claims - plan.Claims / 10, plan.Claims));
    table.Spec().Key.ValueAt = [claims = plan.Claims](std::int64_t ordinal) {
        return ClaimNumber(ordinal, claims);
    };
    table.Spec().Key.FieldName = "ClaimNumber";
    table.Spec().HasDeleted = true;
    return table.Done();
}

TableSpec TaxCodes() {
    TableBuilder table("TAX_CODES", "Bottom Level", "KSW");
    table.File("TAXCOD", 48)
        .At(1)
        .Field("RecordStatus", 'I', 2, 0, BetweenOrRarely(1, 3, 9))
        .Field("TaxCode", 'L', 2, 0, NumberedCode(3))
        .Field("Description", 'C', 18, 0, Goods())
        .Field("StatePercent", 'U', 3, 4, Between(0, 120'000))
        .Field("CeilingAmount", 'm', 4, 0, Between(0, 100'000'000))
        .Field("EffectiveOn", 'J', 2, 0, DateIn(1990, 2024))
        .Field("FormerCodes", 'L', 4, 0, Code({"OLD-A1", "OLD.B2"}))
        .Primary({{"TaxCode"}});
    table.Spec().Status = {1, 8};
    table.Spec().RepeatEvery = 17;
    return table.Done();
}

TableSpec Notes(const SitePlan& plan) {
    constexpr int NoteLength = 300;
    TableBuilder table("NOTES", "Bottom Level", "ARX");
    table.File("NOTTXT", 340)
        .Field("NoteNumber", 'U', 4, 0, KeyValue())
        .Field("CustomerNumber", 'U', 3, 0, AnyCustomer())
        .Field("WrittenOn", 'R', 3, 0, DateOrNonsense(1999, 2024))
        .Field("WrittenBy", 'A', 16, 0, NumberedCode(5))
        .Field("NoteText", 'A', NoteLength, 0, Note(NoteLength))
        .KeyedBy("NoteNumber")
        .Primary({{"NoteNumber"}})
        .Index("CustomerNumber", {{"CustomerNumber"}, {"WrittenOn", true}});
    table.Spec().Key.FileName = "NOTKEY";
    table.Spec().Key.Description = "Note number";
    table.Spec().Key.Size = 4;
    table.Spec().Key.StartValue = 1;
    table.Spec().Key.EndValue = static_cast<std::int32_t>(InvoiceNumber(plan.Notes));
    table.Spec().Key.ValueAt = InvoiceNumber;
    table.Spec().Key.FieldName = "NoteNumber";
    return table.Done();
}

}  // namespace sample
