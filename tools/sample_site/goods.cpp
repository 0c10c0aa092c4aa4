// What the business sells: parts, their prices and other makers' numbers, labour.

#include "tools/sample_site/makers.h"
#include "tools/sample_site/table_builder.h"
#include "tools/sample_site/tables.h"

namespace sample {

namespace {

constexpr std::int32_t LargestValue = 0x7FFFFFFF;
constexpr int PlainPartNumberLength = 18;

}  // namespace

TableSpec Parts(const SitePlan&) {
    TableBuilder table("PARTS", "Top Level", "PRT");
    table.File("PRTMST", 160)
        .Field("PartKey", 'A', PlainPartNumberLength, 0, OwnPlainPartNumber())
        .Field("PartNumber", 'P', 14, 0, OwnPartNumber())
        .Field("PartId", 'U', 3, 0, Ordinal())
        .Field("Description", 'C', 24, 0, Goods())
        .Field("UnitOfMeasure", 'L', 2, 0, Code({"EA", "BX", "PR", "FT"}))
        .Field("SaleCodes", 'C', 2, 0, Code({"A-1", "B.2", "CX", "Z"}))
        .Over("SeasonCode", 'X', 1, CharacterOfCode(1))
        .Over("ReturnCode", 'X', 2, CharacterOfCode(2))
        .Field("ListPrice", 'M', 4, 0, Between(-1'000, 50'000'000))
        .Field("CostPrice", 'm', 3, 0, Between(0, 9'000'000))
        .Field("CoreDeposit", 'W', 2, 0, Between(-5, 900))
        .Field("FreightAllowance", 'W', 1, 0, Between(-20, 100))
        .Field("OnHand", 'I', 3, 0, Between(-50, 40'000))
        .Field("OnOrder", 'I', 2, 0, Between(0, 3'000))
        .Field("Weight", 'U', 3, 3, Between(0, 900'000))
        .Field("PackQuantity", 'U', 1, 0, Between(1, 144))
        .Field("VendorNumber", 'U', 2, 0, AnyVendor())
        .Field("LastSold", 'J', 2, 0, DateIn(1975, 2024))
        .Field("LastCounted", 'D', 3, 0, DateOrNonsense(1990, 2024))
        .Field("IntroducedOn", 'R', 3, 0, DateOrNonsense(1971, 2023))
        .Field("IsStocked", 'B', 1, 0, FlagOneIn(2))
        .Over("IsHazardous", 'B', 4, FlagOneIn(30))
        .Over("NeedsCore", 'B', 7, FlagOneIn(8))
        .Field("Bin", 'A', 6, 0, NumberedCode(4))
        .KeyedBy("PartKey")
        .Primary({{"PartId"}})
        .Index("PartNumber", {{"PartNumber"}})
        .Index("VendorAndPart", {{"VendorNumber"}, {"PartNumber", true}});
    table.Spec().Key.FileName = "PRTKEY";
    table.Spec().Key.Description = "Part number without dashes";
    table.Spec().Key.DataType = 'A';
    table.Spec().Key.Size = PlainPartNumberLength;
    table.Spec().Key.EndValue = LargestValue;
    table.Spec().Key.FieldName = "PartKey";
    table.Spec().HasDeleted = true;
    return table.Done();
}

TableSpec PriceHistory(const SitePlan& plan) {
    TableBuilder table("PRICE_HISTORY", "Bottom Level", "PRT");
    table.File("PRIHST", 48)
        .Field("PartId", 'U', 3, 0, KeyValue())
        .Field("PriceId", 'U', 4, 0, Ordinal())
        .Field("EffectiveOn", 'R', 3, 0, DateOrNonsense(1980, 2024))
        .Field("EnteredOn", 'J', 2, 0, DateIn(1980, 2024))
        .Field("OldPrice", 'M', 4, 0, Between(0, 40'000'000))
        .Field("NewPrice", 'M', 4, 0, Between(0, 40'000'000))
        .Field("Markup", 'I', 2, 2, Between(-9'999, 30'000))
        .Field("Reason", 'L', 2, 0, Code({"MFG", "CMP", "ERR", "PRO"}))
        .KeyedBy("PartId")
        .Primary({{"PriceId"}})
        .Index("PartAndDate", {{"PartId"}, {"EffectiveOn", true}});
    table.Spec().Key.FileName = "PRIKEY";
    table.Spec().Key.Description = "Part";
    table.Spec().Key.Duplicates = true;
    table.Spec().Key.Size = 3;
    table.Spec().Key.StartValue = 1;
    table.Spec().Key.EndValue = static_cast<std::int32_t>(PricedPart(plan.Prices));
    table.Spec().Key.ValueAt = PricedPart;
    table.Spec().Key.FieldName = "PartId";
    table.Spec().HasDeleted = true;
    table.Spec().RepeatEvery = 211;
    return table.Done();
}

TableSpec PartCrossReference() {
    TableBuilder table("PART_CROSS_REFERENCE", "Bottom Level", "PRT");
    table.Field("OtherNumber", 'C', 12, 0, OwnPlainPartNumber())
        .Field("Maker", 'L', 2, 0, Code({"ACM", "BRN", "COL", "D-E"}))
        .Field("OurPart", 'P', 14, 0, AnyPartNumber())
        .Field("Confidence", 'U', 1, 1, Between(0, 100))
        .KeyedBy("OtherNumber")
        .KeyedBy("Maker")
        .KeyedBy("OurPart")
        .KeyedBy("Confidence")
        .Primary({{"OtherNumber"}, {"Maker"}})
        .Index("OurPart", {{"OurPart"}});
    table.Spec().Key.FileName = "XRFKEY";
    table.Spec().Key.Description = "Other maker's number";
    table.Spec().Key.DataType = 'C';
    table.Spec().Key.Size = 12;
    table.Spec().Key.EndValue = LargestValue;
    table.Spec().Key.FieldName = "OtherNumber";
    return table.Done();
}

TableSpec LabourOperations(const SitePlan& plan) {
    TableBuilder table("LABOUR_OPERATIONS", "Mid-Level", "PRT");
    table.File("LABOPS", 64)
        .Field("LabourGroup", 'U', 2, 0, KeyValue())
        .Field("OperationCode", 'C', 4, 0, NumberedCode(5))
        .Field("Description", 'C', 20, 0, Goods())
        .Field("StandardHours", 'U', 2, 2, Between(5, 4'000))
        .Field("FlatCharge", 'M', 3, 0, Between(-1'000, 800'000))
        .Field("RevisedOn", 'D', 3, 0, DateOrNonsense(1995, 2024))
        .Field("IsWarrantable", 'B', 1, 2, FlagOneIn(3))
        .KeyedBy("LabourGroup")
        .Primary({{"OperationCode"}})
        .Index("GroupByHours", {{"LabourGroup"}, {"StandardHours", true}});
    table.Spec().Key.FileName = "LABKEY";
    table.Spec().Key.Description = "Labour group";
    table.Spec().Key.Format = IndexFormat::Extended2048;
    table.Spec().Key.Duplicates = true;
    table.Spec().Key.Size = 2;
    table.Spec().Key.StartValue = 1;
    table.Spec().Key.EndValue = static_cast<std::int32_t>(LabourGroup(plan.LabourOperations));
    table.Spec().Key.ValueAt = LabourGroup;
    table.Spec().Key.FieldName = "LabourGroup";
    table.Spec().RepeatEvery = 53;
    return table.Done();
}

}  // namespace sample
