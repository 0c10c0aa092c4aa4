#include "export/invoice_detail.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "engine/business_basic.h"
#include "tests/catalogue/catalogue_fixture.h"
#include "tests/export/history_record.h"
#include "tests/support/expect_error.h"

namespace {

using exporting::DetailLines;
using test::Bytes;
using test::ByteString;
using test::Compressed;
using test::HistoryRecord;
using test::InvoiceLine;

class InvoiceDetail : public test::CatalogueFixture {
  protected:
    /// Expands the chain that starts at record of a history file made of these records.
    void Expand(const std::vector<HistoryRecord>& records, std::int32_t record) {
        std::vector<ByteString> bytes;
        for (const HistoryRecord& each : records) bytes.push_back(each.Bytes());
        AddRecords("INVHST", bytes);
        StartEngine();
        Rec = record;
        const auto file = engine::gEngine->LogicalOpen("INVHST");
        exporting::ExpandInvoiceDetail(file, Rec, Lines, [this] { return ++Asked > 1000; });
    }

    int ErrorOfExpanding(const std::vector<HistoryRecord>& records) {
        return test::ErrorOf([&] { Expand(records, 1); }).Number;
    }

    DetailLines Lines;
    std::int32_t Rec = 0;
    int Asked = 0;
};

ByteString Part(const ByteString& detail, std::size_t position, std::size_t length) {
    return detail.substr(position - 1, length);
}

TEST_F(InvoiceDetail, LinesOfAChainAreNumberedThroughInTheOrderOfTheSequence) {
    Expand({{.Sequence = 1,
             .Link = -7,
             .Invoice = 1,
             .Lines = {InvoiceLine("AAA", "a"), InvoiceLine("BBB", "b")}},
            {.Sequence = 2,
             .Link = -1,
             .Invoice = 4711,
             .Lines = {InvoiceLine("CCC", "c"), InvoiceLine("DDD", "d"), InvoiceLine("EEE", "e")}}},
           2);

    ASSERT_EQ(Lines.Count(), 5);
    ByteString types;
    for (std::int32_t line = 1; line <= 5; ++line) {
        const ByteString& detail = Lines.Line(line);
        EXPECT_EQ(detail.size(), 76U);
        EXPECT_EQ(Part(detail, 1, 2), Bytes("\x00\x01"));
        EXPECT_EQ(Part(detail, 3, 4), test::Big(4711, 4)) << "of the record with the highest number";
        EXPECT_EQ(Part(detail, 7, 2), test::Big(line, 2));
        EXPECT_EQ(Part(detail, 12, 41), ByteString(41, '\x11'));
        EXPECT_EQ(Part(detail, 53, 24), ByteString(24, '\0'));
        types += Part(detail, 11, 1);
    }
    EXPECT_EQ(types, "abcde");
    EXPECT_EQ(Rec, 7) << "the last link, without its sign";
}

TEST_F(InvoiceDetail, ARemarkMovesBehindTheLine) {
    const ByteString remark = Compressed("DELIVER TO THE BACK DOOR", 24);
    Expand({{.Lines = {InvoiceLine("REM", remark), InvoiceLine("ABC", "x")}}}, 1);

    ASSERT_EQ(Lines.Count(), 2);
    const ByteString& first = Lines.Line(1);
    EXPECT_EQ(Part(first, 9, 2), Compressed("REM", 2));
    EXPECT_EQ(Part(first, 11, 24), ByteString(24, '\0'));
    EXPECT_EQ(Part(first, 35, 14), ByteString(14, '\0'));
    EXPECT_EQ(Part(first, 49, 1), " ");
    EXPECT_EQ(Part(first, 50, 2), ByteString(2, '\0'));
    EXPECT_EQ(Part(first, 52, 1), "\x11");
    EXPECT_EQ(Part(first, 53, 24), remark);
    EXPECT_EQ(Part(Lines.Line(2), 53, 24), ByteString(24, '\0')) << "blanks of an ordinary line";
}

struct AmountCase {
    std::int32_t Type;
    std::string Description;
    std::int32_t Amount;
    ByteString SignAndMagnitude;  // bytes 39 to 46 of the detail record
};

class InvoiceAmount : public InvoiceDetail, public testing::WithParamInterface<AmountCase> {};

TEST_P(InvoiceAmount, TypesThatFiveDividesCarryASignedAmount) {
    ByteString line = InvoiceLine("ABC", "");
    line.replace(35, 3, test::Big(GetParam().Amount, 3));
    Expand({{.Type = GetParam().Type, .Description = GetParam().Description, .Lines = {line}}}, 1);
    EXPECT_EQ(Part(Lines.Line(1), 39, 8), GetParam().SignAndMagnitude);
}

INSTANTIATE_TEST_SUITE_P(Types, InvoiceAmount,
                         testing::Values(AmountCase{25, "", -7, Bytes("\xFF\xF6\x00\x00\x07\x00\x00\x00")},
                                         AmountCase{5, "", 300, Bytes("\x00\x0A\x00\x01\x2C\x00\x00\x00")},
                                         AmountCase{0, "", 0, Bytes("\0\0\0\0\0\0\0\0")},
                                         AmountCase{26, "", -7, Bytes("\x11\x11\x11\x11\x11\xFF\xFF\xF9")},
                                         AmountCase{26, " WARRANTY RECONCILIATION", -7,
                                                    Bytes("\xFF\xF6\x00\x00\x07\x00\x00\x00")},
                                         AmountCase{26, "WARRANTY RECONCILIATION", -7,
                                                    Bytes("\x11\x11\x11\x11\x11\xFF\xFF\xF9")}));

TEST_F(InvoiceDetail, TheTypeOfASignedLineIsCompressedFromItsFirstByte) {
    ByteString line = InvoiceLine("", "");
    line.replace(0, 2, "Q9");
    Expand({{.Type = 10, .Lines = {line}}}, 1);
    EXPECT_EQ(Part(Lines.Line(1), 9, 2), Compressed("Q", 2));
}

TEST_F(InvoiceDetail, AChainWithoutLinesGivesNone) {
    Lines.Add("left over");
    Expand({{.Sequence = 2, .Link = 2}, {.Sequence = 1, .Link = 9}}, 1);
    EXPECT_EQ(Lines.Count(), 0);
    EXPECT_EQ(Rec, 9);
    for (const int line : {0, 1}) EXPECT_EQ(test::NumberRaised([&] { Lines.Line(line); }), 9);
}

TEST_F(InvoiceDetail, ALinkOutsideTheFileRaises) {
    EXPECT_EQ(ErrorOfExpanding({{.Sequence = 2, .Link = 3}, {}}), 81);
}

TEST_F(InvoiceDetail, AMissingSequenceNumberRaises) {
    EXPECT_EQ(ErrorOfExpanding({{.Sequence = 3, .Link = 2}, {.Sequence = 1}}), 81);
}

TEST_F(InvoiceDetail, ASequenceNumberAbove200Raises) {
    EXPECT_EQ(ErrorOfExpanding({{.Sequence = 201, .Link = 2}, {}}), platform::SubscriptOutOfRange);
}

TEST_F(InvoiceDetail, ARecordTooShortForItsHeaderRaises) {
    ByteString record = HistoryRecord{}.Bytes().substr(0, 100);
    AddRecords("INVHST", {record});
    StartEngine();
    Rec = 1;
    const auto file = engine::gEngine->LogicalOpen("INVHST");
    const auto error =
        test::ErrorOf([&] { exporting::ExpandInvoiceDetail(file, Rec, Lines, [] { return false; }); });
    EXPECT_EQ(error.Number, 31);
    EXPECT_EQ(error.Source, "UnPack");
}

TEST_F(InvoiceDetail, MoreThan1600LinesRaise) {
    std::vector<HistoryRecord> records;
    for (std::int32_t sequence = 7; sequence >= 1; --sequence) {
        const std::size_t lines = sequence == 1 ? 71 : 255;
        records.push_back({.Sequence = sequence,
                           .Link = 8 - sequence + 1,
                           .Lines = std::vector<ByteString>(lines, InvoiceLine("ABC", "")),
                           .Length = 160 + 255 * 44});
    }
    EXPECT_EQ(ErrorOfExpanding(records), platform::SubscriptOutOfRange);
    EXPECT_EQ(Lines.Count(), 1600);
}

TEST_F(InvoiceDetail, AChainWithoutEndLetsTheOperatorStop) {
    Expand({{.Sequence = 2, .Link = 2, .Lines = {InvoiceLine("ABC", "")}}, {.Sequence = 3, .Link = 1}}, 1);
    EXPECT_EQ(Lines.Count(), 0);
    EXPECT_GT(Asked, 1000);
}

}  // namespace
