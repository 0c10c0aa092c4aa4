#include "export/export_run.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "catalogue/metadata_catalogue.h"
#include "export/key_range.h"
#include "tests/export/parts_fixture.h"
#include "tests/support/expect_error.h"

namespace {

using test::Big;
using test::ByteString;
using test::Part;
using test::Row;
using test::Rows;

constexpr int CancelUpdate = 2;

class ExportRun : public test::PartsFixture {};

TEST_F(ExportRun, AKeyedTableIsCopiedInTheOrderOfItsKeys) {
    StartFiveParts();
    Export(u"PARTS");
    EXPECT_EQ(Window.Yields, 5);
    EXPECT_EQ(State.TotalRecords, 5);
    EXPECT_EQ(LastStatus(), "Complete");
    EXPECT_EQ(Window.Statuses.at(Window.Statuses.size() - 2), "Processing:  5 of  5");
    EXPECT_EQ(Window.ActionEnabled, (std::map<int, bool>{{CancelUpdate, false}}));
    EXPECT_NE(State.TargetRecordset, nullptr);
    EXPECT_EQ(RowsOfTarget(u"PARTS"),
              (Rows{Row(10, "A"), Row(20, "B"), Row(30, "C"), Row(40, "D"), Row(50, "E")}));
}

struct RangeCase {
    std::string Name;
    std::int32_t StartValue;
    std::int32_t EndValue;
    std::int32_t OverrideStart;
    std::int32_t OverrideEnd;
    std::vector<int> Numbers;
};

class ExportRange : public ExportRun, public testing::WithParamInterface<RangeCase> {};

TEST_P(ExportRange, OnlyKeysOfTheRangeAreCopied) {
    StartFiveParts({.Name = u"PARTX", .StartValue = GetParam().StartValue, .EndValue = GetParam().EndValue});
    SetOverrides(GetParam().OverrideStart, GetParam().OverrideEnd);
    Export(u"PARTS");
    EXPECT_EQ(LastStatus(), "Complete");
    std::vector<int> numbers;
    for (const std::string& row : RowsOfTarget(u"PARTS")) numbers.push_back(std::stoi(row));
    EXPECT_EQ(numbers, GetParam().Numbers);
}

INSTANTIATE_TEST_SUITE_P(
    Bounds, ExportRange,
    testing::Values(RangeCase{"ExactStart", 20, 999, 0, 0, {20, 30, 40, 50}},
                    RangeCase{"StartBetweenKeys", 21, 999, 0, 0, {30, 40, 50}},
                    RangeCase{"StartAboveAllKeys", 51, 999, 0, 0, {}},
                    RangeCase{"ExactEnd", 1, 30, 0, 0, {10, 20, 30}},
                    RangeCase{"EndBetweenKeys", 1, 39, 0, 0, {10, 20, 30}},
                    RangeCase{"EndBelowTheFirstKey", 1, 9, 0, 0, {}},
                    RangeCase{"OperatorsRange", 1, 999, 20, 40, {20, 30, 40}},
                    RangeCase{"OperatorsStartAlone", 1, 30, 20, 0, {20, 30}},
                    RangeCase{"OperatorsEndBeyondTheCatalogues", 1, 30, 0, 40, {10, 20, 30, 40}},
                    RangeCase{"NegativeStartIsNone", 30, 999, -5, 0, {30, 40, 50}},
                    RangeCase{"NegativeEndCounts", 1, 999, 0, -5, {}}),
    [](const auto& range) { return range.param.Name; });

TEST_F(ExportRun, ARowWhoseIndexColumnExceedsTheEndStopsTheRun) {
    AddIndex("PARTX", {{Big(10, 2), 1}, {Big(20, 2), 2}, {Big(30, 2), 3}});
    AddRecords("PARTF", {Part(1, 10, "A"), Part(1, 500, "B"), Part(1, 30, "C")});
    Catalogue->AddKey({.Name = u"PARTX", .EndValue = 40});
    StartWithTarget();
    Export(u"PARTS");
    EXPECT_EQ(Window.Yields, 2);
    EXPECT_EQ(LastStatus(), "Complete");
    EXPECT_EQ(RowsOfTarget(u"PARTS"), Rows{Row(10, "A")});
}

TEST_F(ExportRun, CancelBeforeTheRunLeavesEverythingAlone) {
    StartFiveParts();
    State.CancelRequested = true;
    Export(u"PARTS");
    EXPECT_EQ(Window.Yields, 0);
    EXPECT_TRUE(Window.Statuses.empty());
    EXPECT_TRUE(Window.ActionEnabled.empty());
    EXPECT_EQ(State.TargetRecordset, nullptr);
}

TEST_F(ExportRun, CancelDuringTheRunStopsBeforeTheNextRecord) {
    StartFiveParts();
    Window.OnYield = [this] { State.CancelRequested = Window.Yields == 3; };
    Export(u"PARTS");
    EXPECT_EQ(LastStatus(), "Processing:  2 of  5");
    EXPECT_TRUE(Window.ActionEnabled.empty());
    EXPECT_EQ(RowsOfTarget(u"PARTS"), (Rows{Row(10, "A"), Row(20, "B")}));
}

TEST_F(ExportRun, WithoutAKeyRecordsOfTheStatusRangeAreCopied) {
    StartFiveParts();
    State.TotalRecords = 77;
    Export(u"STOCK");
    EXPECT_EQ(Window.Yields, 5) << "records outside the range count as processed";
    EXPECT_EQ(Window.Statuses.at(Window.Statuses.size() - 2), "Processing:  5 of  77");
    EXPECT_EQ(RowsOfTarget(u"STOCK"), (Rows{Row(50, "E"), Row(40, "D")}));
}

TEST_F(ExportRun, AFileWithoutUsedRecordsCompletesAtOnce) {
    AddRecords("PARTF", {});
    Catalogue->AddKey({.Name = u"X"});
    StartWithTarget();
    Export(u"STOCK");
    EXPECT_EQ(LastStatus(), "Complete");
    EXPECT_EQ(Window.Yields, 0);
    EXPECT_EQ(RowsOfTarget(u"STOCK"), Rows{});
}

TEST_F(ExportRun, RecordsOfSeveralDataFilesAreJoined) {
    Catalogue->AddMap({.TableName = u"PAIR",
                       .Files = {std::nullopt, u"PARTF", u"MOREF"},
                       .StartingStatus = 1,
                       .EndingStatus = 1});
    Catalogue->AddField(u"PAIR", u"Number", u"U", 2, 3);
    Catalogue->AddField(u"PAIR", u"More", u"A", 4, 17);
    AddFiveParts();
    AddRecords("MOREF", std::vector<ByteString>(5, "MORE" + ByteString(12, ' ')));
    Catalogue->AddKey({.Name = u"X"});
    StartWithTarget();
    Export(u"PAIR");
    EXPECT_EQ(RowsOfTarget(u"PAIR"), Rows{"50|MORE"});
}

TEST_F(ExportRun, ATableOfKeysAloneIsMadeOfItsKeys) {
    Catalogue->AddMap({.TableName = u"KEYS",
                       .Files = {u"PARTX"},
                       .LogicalIndex = std::u16string(u"PARTX"),
                       .IndexFieldinDataFile = std::u16string(u"Number")});
    Catalogue->AddField(u"KEYS", u"Number", u"U", 2, 1);
    StartFiveParts({.Name = u"PARTX", .StartValue = 15, .EndValue = 45});
    Export(u"KEYS");
    EXPECT_EQ(RowsOfTarget(u"KEYS"), (Rows{"20", "30", "40"}));
}

TEST_F(ExportRun, ATableKeyedByTextIsCopiedWhole) {
    Catalogue->AddMap({.TableName = u"NAMES",
                       .Files = {u"NAMEX", u"PARTF"},
                       .LogicalIndex = std::u16string(u"NAMEX"),
                       .IndexFieldinDataFile = std::u16string(u"Name")});
    Catalogue->AddKey({.Name = u"NAMEX", .DataType = u"A", .Size = 3});
    AddFields(u"NAMES");
    AddIndex("NAMEX", {{"ABC", 5}, {"XYZ", 1}});
    StartFiveParts();
    Export(u"NAMES");
    EXPECT_EQ(RowsOfTarget(u"NAMES"), (Rows{Row(10, "A"), Row(50, "E")}));
}

TEST_F(ExportRun, ATableThatTheTargetLacksEndsWithAnError) {
    StartFiveParts();
    State.TargetDatabase->Close();
    std::filesystem::remove(TargetFile);
    State.TargetDatabase = dao::CreateDatabase(TargetFile.string(), ";LANGID=0x0409;CP=1252;COUNTRY=0");
    constexpr int UnknownTable = 3078;
    EXPECT_EQ(test::ErrorOf([this] { Export(u"PARTS"); }).Number, UnknownTable);
}

class SilentDialog : public exporting::RangeDialog {
  public:
    void ShowModal(dao::Recordset&, const exporting::RangeTexts&) override {}
};

TEST_F(ExportRun, TickingAnotherTableInTheMiddleChangesNothing) {
    StartFiveParts();
    List.SetCaption(1, u"STOCK");
    List.SetTicked(1, true);
    Window.OnYield = [this] {
        SilentDialog dialog;
        exporting::x_SelectedTable_Click(State, List, Window, dialog, 1);
        catalogue::BuildCollection(State, List, 1);
    };
    Export(u"PARTS");
    EXPECT_EQ(RowsOfTarget(u"PARTS").size(), 5U);
}

}  // namespace
