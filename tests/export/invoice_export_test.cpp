// The export of INVOICE_HISTORY_DETAIL: rows out of chains of history records.
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "tests/export/export_fixture.h"
#include "tests/export/history_record.h"

namespace {

using test::Big;
using test::ByteString;
using test::HistoryRecord;
using test::InvoiceLine;

using Rows = std::vector<std::string>;

/// Invoices 7 and 9, keyed by number; the key names the record with the highest sequence number.
class InvoiceExport : public test::ExportFixture {
  protected:
    InvoiceExport() {
        Catalogue->AddKey({.Name = u"INVX", .Size = 4, .EndValue = 100});
        Catalogue->AddField(u"INVOICE_HISTORY_DETAIL", u"Invoice", u"U", 4, 3);
        Catalogue->AddField(u"INVOICE_HISTORY_DETAIL", u"Line", u"U", 2, 7);
        Catalogue->AddField(u"INVOICE_HISTORY_DETAIL", u"Type", u"L", 2, 9);
        Catalogue->AddIndexColumn(u"INVOICE_HISTORY_DETAIL", u"Key", u"Invoice", true);
        Catalogue->AddIndexColumn(u"INVOICE_HISTORY_DETAIL", u"Key", u"Line", true);
    }

    void ExportHistory(const std::vector<HistoryRecord>& records,
                       const std::vector<test::KeyAndPointer>& entries,
                       const std::u16string& logicalIndex = u"INVX") {
        Catalogue->AddMap({.TableName = u"INVOICE_HISTORY_DETAIL",
                           .Files = {u"INVX", u"INVHST"},
                           .LogicalIndex = logicalIndex,
                           .StartingStatus = 1,
                           .EndingStatus = 1,
                           .IndexFieldinDataFile = std::u16string(u"Invoice")});
        std::vector<ByteString> bytes;
        for (const HistoryRecord& record : records) bytes.push_back(record.Bytes());
        AddRecords("INVHST", bytes);
        AddIndex("INVX", entries);
        StartWithTarget();
        Export(u"INVOICE_HISTORY_DETAIL");
    }
};

TEST_F(InvoiceExport, EveryLineOfAChainBecomesARow) {
    ExportHistory(
        {{.Sequence = 1, .Link = 3, .Invoice = 7, .Lines = {InvoiceLine("A", ""), InvoiceLine("B", "")}},
         {.Sequence = 2, .Link = 1, .Invoice = 7, .Lines = {InvoiceLine("C", "")}},
         {.Sequence = 1, .Link = 1, .Invoice = 8},
         {.Sequence = 1, .Link = 1, .Invoice = 9, .Lines = {InvoiceLine("D", "")}}},
        {{Big(7, 4), 2}, {Big(8, 4), 3}, {Big(9, 4), 4}});
    EXPECT_EQ(Window.Yields, 5) << "one a line, and one for the invoice without lines";
    EXPECT_EQ(LastStatus(), "Complete");
    EXPECT_EQ(RowsOfTarget(u"INVOICE_HISTORY_DETAIL"), (Rows{"7|1|A  ", "7|2|B  ", "7|3|C  ", "9|1|D  "}));
}

TEST_F(InvoiceExport, AChainWhoseLastLinkIsZeroEndsTheRunAfterTheLineInHand) {
    ExportHistory({{.Link = 0, .Invoice = 7, .Lines = {InvoiceLine("A", ""), InvoiceLine("B", "")}},
                   {.Invoice = 9, .Lines = {InvoiceLine("D", "")}}},
                  {{Big(7, 4), 1}, {Big(9, 4), 2}});
    EXPECT_EQ(LastStatus(), "Complete");
    EXPECT_EQ(RowsOfTarget(u"INVOICE_HISTORY_DETAIL"), Rows{"7|1|A  "});
}

TEST_F(InvoiceExport, AWalkByRecordNumberGoesOnBehindTheLastLink) {
    ExportHistory({{.Link = 2, .Invoice = 7, .Lines = {InvoiceLine("A", ""), InvoiceLine("B", "")}},
                   {.Invoice = 8, .Lines = {InvoiceLine("C", "")}},
                   {.Link = 3, .Invoice = 9, .Lines = {InvoiceLine("D", "")}}},
                  {{Big(7, 4), 1}}, u"NONE");
    EXPECT_EQ(LastStatus(), "Complete");
    EXPECT_EQ(RowsOfTarget(u"INVOICE_HISTORY_DETAIL"), (Rows{"7|1|A  ", "7|2|B  ", "9|1|D  "}));
}

TEST_F(InvoiceExport, AChainWithoutEndCanBeCancelled) {
    Window.OnYield = [this] { State.CancelRequested = Window.Yields > 50; };
    ExportHistory({{.Sequence = 2, .Link = 1, .Invoice = 7}}, {{Big(7, 4), 1}});
    EXPECT_TRUE(State.CancelRequested);
    EXPECT_EQ(LastStatus(), "Processing:  1 of  1");
    EXPECT_TRUE(Window.ActionEnabled.empty());
}

}  // namespace
