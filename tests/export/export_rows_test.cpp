// What reaches the rows of the target table: rejected rows, fields that fail, columns that are missing.
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "tests/export/parts_fixture.h"

namespace {

using test::Big;
using test::Part;
using test::Row;
using test::Rows;

class ExportRows : public test::PartsFixture {};

TEST_F(ExportRows, ARejectedRowIsDropped) {
    AddIndex("PARTX", {{Big(10, 2), 1}, {Big(20, 2), 2}, {Big(30, 2), 3}});
    AddRecords("PARTF", {Part(1, 10, "A"), Part(1, 10, "TWICE"), Part(1, 30, "C")});
    Catalogue->AddKey({.Name = u"PARTX", .EndValue = 40});
    StartWithTarget();
    Export(u"PARTS");
    EXPECT_EQ(LastStatus(), "Complete");
    EXPECT_EQ(RowsOfTarget(u"PARTS"), (Rows{Row(10, "A"), Row(30, "C")}));
}

TEST_F(ExportRows, AFieldThatFailsLeavesItsColumnNullAndNoOther) {
    Catalogue->AddMap(
        {.TableName = u"MIXED", .Files = {std::nullopt, u"PARTF"}, .StartingStatus = -9, .EndingStatus = 9});
    Catalogue->AddField(u"MIXED", u"Beyond", u"U", 2, 16);
    Catalogue->AddField(u"MIXED", u"No length", u"m", 0, 1);
    Catalogue->AddField(u"MIXED", u"Empty", u"A", 4, 99);
    Catalogue->AddField(u"MIXED", u"Character", u"X", 2, 5, 1);
    Catalogue->AddField(u"MIXED", u"Bit", u"B", 1, 3, 31);
    Catalogue->AddField(u"MIXED", u"Status", u"W", 2, 1);
    AddFiveParts();
    Catalogue->AddKey({.Name = u"X"});
    StartWithTarget();
    Export(u"MIXED");
    EXPECT_EQ(RowsOfTarget(u"MIXED").at(4), "-|-|-|6|-|-1.0000");
}

TEST_F(ExportRows, AFieldWithoutAColumnIsLeftOut) {
    StartFiveParts();
    const auto rows = State.CatalogueDatabase->OpenRecordset(u"VantoraFileDefinitions");
    rows->AddNew();
    rows->Fields(u"TableName").SetValue(std::u16string(u"PARTS"));
    rows->Fields(u"RowNumber").SetValue(std::int32_t{999});
    rows->Fields(u"FieldName").SetValue(std::u16string(u"Ghost"));
    rows->Fields(u"FieldType").SetValue(std::u16string(u"A"));
    for (const char16_t* const column : {u"FieldLength", u"StartPosition", u"FieldSpecifier"}) {
        rows->Fields(column).SetValue(std::int32_t{1});
    }
    rows->Update();
    Export(u"PARTS");
    EXPECT_EQ(State.FieldList.size(), 3U);
    EXPECT_EQ(RowsOfTarget(u"PARTS").size(), 5U);
}

TEST_F(ExportRows, AValueThatTheColumnRejectsLeavesItNull) {
    StartFiveParts();
    State.TargetDatabase->Close();
    std::filesystem::remove(TargetFile);
    State.TargetDatabase = dao::CreateDatabase(TargetFile.string(), ";LANGID=0x0409;CP=1252;COUNTRY=0");
    const auto table = State.TargetDatabase->CreateTableDef(u"STOCK");
    table->AppendField(table->CreateField(u"Number", dao::FieldType::Long));
    table->AppendField(table->CreateField(u"Name", dao::FieldType::Text, 3));
    State.TargetDatabase->TableDefs().Append(table);
    Export(u"STOCK");
    EXPECT_EQ(RowsOfTarget(u"STOCK"), (Rows{"50|-", "40|-"}));
}

}  // namespace
