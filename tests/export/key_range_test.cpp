#include "export/key_range.h"

#include <functional>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <vector>

#include "catalogue/row_fields.h"
#include "platform/code_page.h"
#include "tests/catalogue/catalogue_fixture.h"
#include "tests/support/expect_error.h"

namespace {

using exporting::RangeBox;
using test::Bytes;
using test::ByteString;

class DialogFake : public exporting::RangeDialog {
  public:
    std::vector<exporting::RangeTexts> Shown;
    std::function<void(dao::Recordset&)> Operator = [](dao::Recordset&) {};

    void ShowModal(dao::Recordset& row, const exporting::RangeTexts& texts) override {
        Shown.push_back(texts);
        Operator(row);
    }
};

class KeyRange : public test::CatalogueFixture {
  protected:
    KeyRange() {
        Catalogue->AddMap({.TableName = u"PARTS", .Files = {u"PARTX", u"PARTF"}});
        Catalogue->AddMap({.TableName = u"NOTES", .Files = {std::nullopt, u"PARTF"}});
        Catalogue->AddMap({.TableName = u"LOOSE", .Files = {u"LOOSEX", u"PARTF"}});
        Catalogue->AddMap({.TableName = u"EMPTY"});
    }

    /// Starts on a catalogue with this key description and stands on it.
    dao::Recordset& Row(const test::KeyRow& key) {
        Catalogue->AddKey(key);
        StartCatalogue();
        return PositionedRow(key.Name);
    }

    dao::Recordset& PositionedRow(const std::u16string& name) {
        State.IndexDefinitionRecordset->SetIndex(u"PrimaryKey");
        State.IndexDefinitionRecordset->Seek("=", name);
        EXPECT_FALSE(State.IndexDefinitionRecordset->NoMatch());
        return *State.IndexDefinitionRecordset;
    }

    /// A site with three keys over two records.
    void StartSite() {
        AddIndex("PARTX", {{Bytes("\x00\x0A"), 1}, {Bytes("\x00\x14"), 2}, {Bytes("\x01\x00"), 2}});
        AddIndex("LOOSEX", {{"AB", 1}});
        AddRecords("PARTF", {ByteString(16, 'a'), ByteString(16, 'b')});
        StartEngine();
        Catalogue->AddKey({.Name = u"PARTX", .StartValue = 1, .EndValue = 999});
        StartCatalogue();
    }

    void Click(const std::u16string& table) {
        Caption(table);
        List.SetTicked(0, true);
        exporting::x_SelectedTable_Click(State, List, Window, Dialog, 0);
    }

    DialogFake Dialog;
};

struct LeaveCase {
    RangeBox Box;
    std::string Start;
    std::string End;
    std::string Message;  // empty: accepted
    RangeBox Focus;
};

std::string Overrides(dao::Recordset& row) {
    return std::to_string(catalogue::LongOf(row, u"overrideStart")) + " " +
           std::to_string(catalogue::LongOf(row, u"overrideEnd"));
}

TEST_F(KeyRange, ABoxThatObjectsStoresNothing) {
    dao::Recordset& row = Row({.Name = u"PARTX", .StartValue = 10, .EndValue = 999});
    const std::vector<LeaveCase> cases{
        {RangeBox::Start, "0", "999", "Starting Value must be >  10", RangeBox::Start},
        {RangeBox::Start, "9", "5", "Starting Value must be >  10", RangeBox::Start},
        {RangeBox::Start, "1000", "5", "Starting Value must be <  999", RangeBox::Start},
        {RangeBox::Start, "500", "400", "Starting Value must be <=  400(your selected ending value)",
         RangeBox::Start},
        {RangeBox::Start, "500", " 0400 ", "Starting Value must be <=  400(your selected ending value)",
         RangeBox::Start},
        {RangeBox::End, "10", "9", "Endinging Value must be >  10", RangeBox::End},
        {RangeBox::End, "10", "1000", "Ending Value must be <  999", RangeBox::End},
        {RangeBox::End, "500", "400", "Ending Value must be =>  500(your selected Starting value)",
         RangeBox::Start},
    };
    for (const LeaveCase& each : cases) {
        const auto objection = exporting::LeaveRangeBox(row, each.Box, each.Start, each.End);
        ASSERT_TRUE(objection.has_value()) << each.Message;
        EXPECT_EQ(objection->Message, each.Message);
        EXPECT_EQ(objection->Focus, each.Focus) << each.Message;
    }
    EXPECT_EQ(Overrides(row), "0 0");
}

TEST_F(KeyRange, AnAcceptedBoxIsInTheCatalogueFileAtOnce) {
    dao::Recordset& row = Row({.Name = u"PARTX", .StartValue = 10, .EndValue = 999});
    EXPECT_FALSE(exporting::LeaveRangeBox(row, RangeBox::Start, "10", "999"));
    EXPECT_EQ(Overrides(row), "10 0");
    EXPECT_FALSE(exporting::LeaveRangeBox(row, RangeBox::End, "10", "999"));
    EXPECT_FALSE(exporting::LeaveRangeBox(row, RangeBox::Start, "999", "999"));
    const std::filesystem::path copy = Scratch / "seen.mdb";  // what another process sees at this moment
    std::filesystem::copy_file(CatalogueFile, copy);
    EXPECT_EQ(RowsOf(copy, u"LogicalIndexDefinition"),
              (std::vector<std::string>{"PARTX|Key of PARTX|U|10|999|2|999|999|-"}));
}

TEST_F(KeyRange, ABoxThatHoldsNoNumberRaises) {
    dao::Recordset& row = Row({.Name = u"PARTX", .StartValue = 10, .EndValue = 999});
    const auto leave = [&row](RangeBox box, const std::string& start, const std::string& end) {
        return test::NumberRaised([&] { exporting::LeaveRangeBox(row, box, start, end); });
    };
    EXPECT_EQ(leave(RangeBox::Start, "", "999"), platform::TypeMismatch);
    EXPECT_EQ(leave(RangeBox::Start, "20", ""), platform::TypeMismatch);
    EXPECT_EQ(leave(RangeBox::Start, "5", ""), 0) << "the other box is read by the last rule only";
    EXPECT_EQ(leave(RangeBox::End, "x", "20"), platform::TypeMismatch);
    EXPECT_EQ(leave(RangeBox::End, "20", "99999999999"), platform::Overflow);
}

struct PackCase {
    dao::Value Type;
    std::int32_t Size;
    std::int32_t StartValue;
    std::int32_t OverrideStart;
    ByteString Key;
};

TEST_F(KeyRange, TheStartKeyIsTheOperatorsOrTheCataloguesStart) {
    const std::vector<PackCase> cases{
        {u"U", 2, 7, 0, Bytes("\x00\x07")},     {u"U", 2, 7, 300, Bytes("\x01\x2C")},
        {u"U", 2, 7, -300, Bytes("\x00\x07")},  {u"I", 3, -2, 0, Bytes("\xFF\xFF\xFE")},
        {u"I", 4, -2, 1, Bytes("\0\0\0\x01")},  {u"U", 1, 300, 0, Bytes("\x2C")},
        {u"A", 5, 7, 300, Bytes("\0\0\0\0\0")}, {u"u", 2, 7, 0, Bytes("\0\0")},
        {u"C", 0, 7, 0, ByteString()},          {dao::Value(), 1, 7, 0, Bytes("\0")},
    };
    const auto nameOf = [](std::size_t number) {
        return u"KEY" + std::u16string(1, char16_t(u'A' + number));
    };
    for (std::size_t i = 0; i < cases.size(); ++i) {
        Catalogue->AddKey({.Name = nameOf(i),
                           .DataType = cases[i].Type,
                           .Size = cases[i].Size,
                           .StartValue = cases[i].StartValue});
    }
    StartCatalogue();
    for (std::size_t i = 0; i < cases.size(); ++i) {
        dao::Recordset& row = PositionedRow(nameOf(i));
        row.Edit();
        row.Fields(u"overrideStart").SetValue(cases[i].OverrideStart);
        row.Update();
        EXPECT_EQ(exporting::PackKey(row), cases[i].Key) << "case " << i;
    }
}

TEST_F(KeyRange, TickingAKeyedTableOffersItsRangeAndShowsTheChoice) {
    StartSite();
    Dialog.Operator = [](dao::Recordset& row) {
        EXPECT_FALSE(exporting::LeaveRangeBox(row, RangeBox::Start, "100", "999"));
        EXPECT_FALSE(exporting::LeaveRangeBox(row, RangeBox::End, "100", "200"));
    };
    Click(u"PARTS");
    ASSERT_EQ(Dialog.Shown.size(), 1U);
    EXPECT_EQ(Dialog.Shown[0].FileDescription, "PARTS");
    EXPECT_EQ(Dialog.Shown[0].FieldDescription, "Key of PARTX");
    EXPECT_EQ(Dialog.Shown[0].Start + " to " + Dialog.Shown[0].End, "1 to 999");
    EXPECT_EQ(State.TotalRecords, 3);
    EXPECT_EQ(List.At(0).ToolTip, "Total Records to process:  3   Selected Range:  100 to  200");
}

TEST_F(KeyRange, WithoutAChoiceTheCataloguesRangeIsShown) {
    StartSite();
    Click(u"PARTS");
    EXPECT_EQ(List.At(0).ToolTip, "Total Records to process:  3   Selected Range:  1 to  999");
}

TEST_F(KeyRange, UntickingClearsTheToolTipAndKeepsTheChoice) {
    StartSite();
    Dialog.Operator = [](dao::Recordset& row) {
        exporting::LeaveRangeBox(row, RangeBox::Start, "100", "999");
    };
    Click(u"PARTS");
    List.SetTicked(0, false);
    exporting::x_SelectedTable_Click(State, List, Window, Dialog, 0);
    EXPECT_EQ(List.At(0).ToolTip, "");
    EXPECT_EQ(Dialog.Shown.size(), 1U);
    EXPECT_EQ(Overrides(PositionedRow(u"PARTX")), "100 0");
}

TEST_F(KeyRange, ATableWithoutAKeyFileCountsTheRecordsOfItsOwnFile) {
    StartSite();
    Click(u"PARTS");
    Click(u"NOTES");
    EXPECT_EQ(Dialog.Shown.size(), 1U);
    EXPECT_EQ(List.At(0).ToolTip, "Total Records to process:  2");
}

TEST_F(KeyRange, AKeyFileThatTheCatalogueDoesNotDescribeLeavesTheToolTip) {
    StartSite();
    List.SetToolTip(0, "as it was");
    Click(u"LOOSE");
    EXPECT_TRUE(Dialog.Shown.empty());
    EXPECT_EQ(List.At(0).ToolTip, "as it was");
    EXPECT_EQ(State.TotalRecords, 1);
}

TEST_F(KeyRange, ATableWithoutAnyFileCannotBeCounted) {
    StartSite();
    EXPECT_EQ(test::ErrorOf([this] { Click(u"EMPTY"); }).Number, platform::ObjectNotSet);
    Click(u"PARTS");
    EXPECT_EQ(test::ErrorOf([this] { Click(u"Parts"); }).Number, platform::ObjectNotSet)
        << "a name of other letter case opens no file, and none is left of the table before";
    EXPECT_EQ(Window.Messages.size(), 1U);
}

}  // namespace
