// What reaches the rows of the target table: rejected rows, fields that fail, columns that are missing.
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "platform/dao/row_sink.h"
#include "tests/export/parts_fixture.h"
#include "tests/support/expect_error.h"

namespace {

using test::Big;
using test::Part;
using test::Row;
using test::Rows;

class ExportRows : public test::PartsFixture {};

/// A target table without columns that fails to take any row.
class FailingRows : public dao::RowSink {
  public:
    explicit FailingRows(int number) : mNumber(number) {}

    int Begun = 0;

    void AddNew() override { ++Begun; }
    void Update() override { throw platform::Error(mNumber, "", ""); }
    dao::RecordsetField& Fields(std::u16string_view) override { throw platform::Error(3265, "", ""); }
    dao::RecordsetField& Fields(int) override { throw platform::Error(3265, "", ""); }

  private:
    int mNumber;
};

/// A target database with that table alone.
class FailingTarget : public dao::RowSinkDatabase {
  public:
    explicit FailingTarget(std::shared_ptr<FailingRows> rows) : mRows(std::move(rows)) {}

    std::shared_ptr<dao::Recordset> OpenRecordset(std::u16string_view) override { return mRows; }

  private:
    std::shared_ptr<FailingRows> mRows;
};

TEST_F(ExportRows, ARefusedRowIsDroppedAndAnErrorOfTheFileEndsTheRun) {
    StartFiveParts();
    for (const int refusal : {3022, 3036, 3047, 3058, 3163}) {
        const auto rows = std::make_shared<FailingRows>(refusal);
        State.TargetDatabase = std::make_shared<FailingTarget>(rows);
        Export(u"STOCK");
        EXPECT_EQ(rows->Begun, 2) << refusal;
        EXPECT_EQ(LastStatus(), "Complete");
    }
    for (const int failure : {3026, 3027, 3040, 3043, 3428, platform::DiskFull, platform::DeviceIoError}) {
        const auto rows = std::make_shared<FailingRows>(failure);
        State.TargetDatabase = std::make_shared<FailingTarget>(rows);
        EXPECT_EQ(test::ErrorOf([this] { Export(u"STOCK"); }).Number, failure);
        EXPECT_EQ(rows->Begun, 1) << failure;
    }
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
