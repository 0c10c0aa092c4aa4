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
