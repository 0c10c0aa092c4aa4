// Whom the business deals with: customers, stores, vendors, employees.

#include "tools/sample_site/makers.h"
#include "tools/sample_site/table_builder.h"
#include "tools/sample_site/tables.h"

namespace sample {

namespace {

std::int32_t Narrow(std::int64_t key) {
    return static_cast<std::int32_t>(key);
}

}  // namespace

TableSpec Customers(const SitePlan& plan) {
    TableBuilder table("CUSTOMERS", "Top Level", "ARX");
    table.File("CUSMST", 200)
        .Field("CustomerNumber", 'U', 3, 0, KeyValue())
        .Field("CustomerName", 'C', 28, 0, Company())
        .Field("ContactName", 'A', 24, 0, Person())
        .Field("Telephone", 'C', 8, 0, PhoneNumber())
        .Field("CreditLimit", 'U', 4, -3, BetweenOrRarely(0, 250, 5'000'000))
        .Field("TaxCode", 'L', 2, 0, Code({"EXM", "STD", "FRM", "GOV"}))
        .Field("ClassCodes", 'C', 4, 0, Code({"RTL-A1", "WHS-B2", "FLT-C3", "INT"}))
        .Over("TradeClass", 'X', 1, CharacterOfCode(1))
        .Over("PriceLevel", 'X', 5, CharacterOfCode(5))
        .Field("Balance", 'M', 4, 0, Between(-500'000, 20'000'000))
        .Field("HighestBalance", 'm', 4, 0, Between(0, 30'000'000))
        .Field("PurchasesThisMonth", 'M', 3, 2, Between(-90'000, 900'000))
        .Field("Opened", 'J', 2, 0, DateIn(1969, 2019))
        .Field("LastPayment", 'D', 3, 0, DateOrNonsense(1985, 2024))
        .Field("LastStatement", 'R', 3, 0, DateOrNonsense(2000, 2024))
        .Field("IsActive", 'B', 2, 0, FlagOneIn(1))
        .Over("WantsStatements", 'B', 1, FlagOneIn(2))
        .Over("IsCashOnly", 'B', 9, FlagOneIn(6))
        .Over("IsOnHold", 'B', 15, FlagOneIn(40))
        .Field("StoreNumber", 'U', 1, 0, AnyStore())
        .Field("DiscountPercent", 'U', 2, 2, Between(0, 4'000))
        .File("CUSADR", 120)
        .Field("MailingAddress", 'C', 80, 0, NewAddress())
        .Over("State", 'Y', 0, StateOfAddress())
        .Over("PostalCode", 'Z', 0, PostalCodeOfAddress())
        .Field("Instructions", 'A', 30, 0, Blank())
        .KeyedBy("CustomerNumber")
        .Primary({{"CustomerNumber"}})
        .Index("CustomerName", {{"CustomerName"}})
        .Index("StoreAndOpened", {{"StoreNumber"}, {"Opened", true}});
    table.Spec().Key.FileName = "CUSKEY";
    table.Spec().Key.Description = "Customer number";
    table.Spec().Key.Size = 3;
    table.Spec().Key.StartValue = 1;
    table.Spec().Key.EndValue = Narrow(CustomerNumber(plan.Customers));
    table.Spec().Key.ValueAt = CustomerNumber;
    table.Spec().Key.FieldName = "CustomerNumber";
    table.Spec().HasDeleted = true;
    return table.Done();
}

TableSpec Stores(const SitePlan& plan) {
    TableBuilder table("STORES", "Top Level", "KSW");
    table.File("STOMST", 180)
        .Field("StoreNumber", 'U', 1, 0, KeyValue())
        .Field("StoreName", 'A', 20, 0, Person())
        .Field("Address", 'C', 80, 0, NewAddress())
        .Over("State", 'Y', 0, StateOfAddress())
        .Over("PostalCode", 'Z', 0, PostalCodeOfAddress())
        .Field("HoursFromHeadOffice", 'I', 1, 0, Between(-11, 11))
        .Field("LocalTaxPercent", 'I', 3, 4, Between(-20'000, 120'000))
        .Field("Region", 'L', 2, 0, Code({"N-1", "S-2", "E.3", "W-4"}))
        .Over("RegionLetter", 'X', 1, CharacterOfCode(1))
        .Field("OpenedOn", 'J', 2, 0, DateIn(1970, 2020))
        .Field("FloorRent", 'W', 2, 0, Between(-100, 12'000))
        .Field("IsWarehouse", 'B', 1, 7, FlagOneIn(5))
        .KeyedBy("StoreNumber")
        .Primary({{"StoreNumber"}})
        .Index("Region", {{"Region"}, {"StoreNumber", true}});
    table.Spec().Key.FileName = "STOKEY";
    table.Spec().Key.Description = "Store number";
    table.Spec().Key.Size = 1;
    table.Spec().Key.StartValue = 1;
    table.Spec().Key.EndValue = Narrow(StoreNumber(plan.Stores));
    table.Spec().Key.ValueAt = StoreNumber;
    table.Spec().Key.FieldName = "StoreNumber";
    return table.Done();
}

TableSpec Vendors(const SitePlan& plan) {
    TableBuilder table("VENDORS", "Top Level", "PRT");
    table.File("VENMST", 220)
        .Field("VendorNumber", 'U', 2, 0, KeyValue())
        .Field("VendorName", 'C', 28, 0, Company())
        .Field("AccountManager", 'A', 24, 0, Person())
        .Field("RemitTo", 'C', 80, 0, NewAddress())
        .Over("RemitState", 'Y', 0, StateOfAddress())
        .Over("RemitPostalCode", 'Z', 0, PostalCodeOfAddress())
        .Field("Telephone", 'C', 8, 0, PhoneNumber())
        .Field("TermsDays", 'U', 1, 0, Between(0, 120))
        .Field("CashDiscount", 'U', 2, 3, Between(0, 5'000))
        .Field("PurchasesYearToDate", 'W', 4, 0, Between(-20'000, 90'000'000))
        .Field("LastOrder", 'R', 3, 0, DateOrNonsense(1999, 2024))
        .Field("Carrier", 'L', 2, 0, Code({"TRK", "AIR", "RL.", "P-U"}))
        .KeyedBy("VendorNumber")
        .Primary({{"VendorNumber"}})
        .Index("VendorName", {{"VendorName"}});
    table.Spec().Key.FileName = "VENKEY";
    table.Spec().Key.Description = "Vendor number";
    table.Spec().Key.Size = 2;
    table.Spec().Key.StartValue = 1;
    table.Spec().Key.EndValue = Narrow(VendorNumber(plan.Vendors));
    table.Spec().Key.ValueAt = VendorNumber;
    table.Spec().Key.FieldName = "VendorNumber";
    table.Spec().HasDeleted = true;
    return table.Done();
}

TableSpec Employees() {
    TableBuilder table("EMPLOYEES", "Mid-Level", "KSW");
    table.File("EMPMST", 128)
        .At(1)
        .Field("EmploymentStatus", 'I', 2, 0, BetweenOrRarely(1, 60, 90))
        .Field("EmployeeNumber", 'U', 3, 0, Ordinal())
        .Field("EmployeeName", 'A', 28, 0, Person())
        .Field("Badge", 'C', 4, 0, NumberedCode(6))
        .Field("Department", 'L', 2, 0, Code({"SVC", "PRT", "OFC", "YRD"}))
        .Field("HourlyRate", 'm', 3, 0, Between(900, 9'500))
        .Field("WithholdingAdjustment", 'M', 2, 0, Between(-30'000, 30'000))
        .Field("BornOn", 'R', 3, 0, DateIn(1930, 2004))
        .Field("HiredOn", 'J', 2, 0, DateIn(1969, 2023))
        .Field("LeftOn", 'D', 3, 0, DateOrNonsense(1990, 2024))
        .Field("VacationDays", 'I', 2, 1, Between(-50, 400))
        .Field("MayApproveCredit", 'B', 1, 0, FlagOneIn(9))
        .Over("HasKeys", 'B', 3, FlagOneIn(3))
        .Primary({{"EmployeeNumber"}})
        .Index("Department", {{"Department"}, {"HiredOn", true}});
    table.Spec().Status = {1, 49};
    table.Spec().HasDeleted = true;
    table.Spec().RepeatEvery = 97;
    return table.Done();
}

}  // namespace sample
