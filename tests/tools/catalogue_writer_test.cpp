// The catalogue that the sample site brings: columns by name, columns by position, indexes, rows.
#include "tools/sample_site/catalogue_writer.h"

#include <gtest/gtest.h>
#include <map>
#include <set>

#include "platform/code_page.h"
#include "platform/dao/database.h"
#include "tests/support/scratch.h"
#include "tools/sample_site/tables.h"

namespace {

class WrittenCatalogue : public testing::Test {
  protected:
    void SetUp() override {
        const sample::SitePlan plan = sample::PlanOf(100);
        mTables = {sample::Invoices(plan), sample::Customers(plan),      sample::TaxCodes(),
                   sample::Supercedes(),   sample::InvoiceHistory(plan), sample::InvoiceHistoryDetail(plan)};
        sample::WriteCatalogue(mScratch / "home/catalogue.mdb", mTables);
        mDatabase = dao::OpenDatabase((mScratch / "home/catalogue.mdb").string());
    }

    std::shared_ptr<dao::Recordset> Walk(const std::u16string& table) {
        auto rows = mDatabase->OpenRecordset(table);
        rows->SetIndex(u"PrimaryKey");
        rows->MoveFirst();
        return rows;
    }

    static std::string Text(dao::Recordset& rows, const char16_t* column) {
        const dao::Value value = rows.Fields(column).GetValue();
        return dao::IsNull(value) ? "(null)" : platform::BytesFromWide(dao::ToText(value));
    }

    test::ScratchFolder mScratch;
    std::vector<sample::TableSpec> mTables;
    std::shared_ptr<dao::Database> mDatabase;
};

TEST_F(WrittenCatalogue, HasTheColumnsThatTheProgramReads) {
    const std::map<std::u16string, std::vector<std::u16string>> columns{
        {u"VantoraFileDefinitions",
         {u"TableName", u"FieldName", u"FieldType", u"FieldLength", u"StartPosition", u"FieldSpecifier"}},
        {u"LogicalMap",
         {u"TableName", u"TableHierarchy", u"LogicalIndex", u"StartingStatus", u"EndingStatus",
          u"IndexFieldinDataFile"}},
        {u"LogicalIndexDefinition",
         {u"KeyFieldDescription", u"DataType", u"Size", u"StartValue", u"EndValue", u"overrideStart",
          u"overrideEnd"}},
        {u"LogicalIndex", {u"TableName", u"IndexName", u"Primary", u"Unique", u"FieldName", u"Descending"}},
        {u"LogicalRelations",
         {u"RelationName", u"TableName", u"ForeignTable", u"Type", u"FieldName", u"ForeignName"}}};
    for (const auto& [table, names] : columns) {
        const auto rows = Walk(table);
        for (const std::u16string& name : names)
            EXPECT_NO_THROW(rows->Fields(name)) << platform::Utf8FromWide(name);
    }
}

TEST_F(WrittenCatalogue, HasTheColumnsThatAreReadByPositionInTheirPlaces) {
    const auto map = Walk(u"LogicalMap");
    map->Seek("=", dao::Value(std::u16string(u"INVOICES")));
    ASSERT_FALSE(map->NoMatch());
    const std::vector<std::string> files{"INVKEY", "SINVOI", "INVAMT", "INVREF"};
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(platform::BytesFromWide(dao::ToText(map->Fields(2 + i).GetValue())),
                  files[static_cast<std::size_t>(i)]);
    EXPECT_TRUE(dao::IsNull(map->Fields(6).GetValue()));

    const auto keys = Walk(u"LogicalIndexDefinition");
    EXPECT_EQ(keys->Fields(3).Name(), u"StartValue");
    EXPECT_EQ(keys->Fields(7).Name(), u"overrideStart");
    EXPECT_EQ(keys->Fields(7).Type(), dao::FieldType::Long);
}

TEST_F(WrittenCatalogue, KeysAreFoundByTheNameOfTheirFile) {
    const auto map = Walk(u"LogicalMap");
    const auto keys = Walk(u"LogicalIndexDefinition");
    std::set<std::string> keyed;
    for (; !map->AtEnd(); map->MoveNext()) {
        const dao::Value key = map->Fields(u"LogicalIndex").GetValue();
        if (dao::IsNull(key)) continue;
        keys->Seek("=", key);
        EXPECT_FALSE(keys->NoMatch()) << Text(*map, u"TableName");
        keyed.insert(Text(*map, u"TableName"));
    }
    EXPECT_EQ(keyed.size(), mTables.size() - 1);
    EXPECT_FALSE(keyed.contains("TAX_CODES"));
}

TEST_F(WrittenCatalogue, FieldsOfATableFollowEachOtherInOrder) {
    const auto rows = Walk(u"VantoraFileDefinitions");
    std::map<std::string, std::vector<std::string>> fields;
    std::vector<std::string> runs;
    for (; !rows->AtEnd(); rows->MoveNext()) {
        const std::string table = Text(*rows, u"TableName");
        if (runs.empty() || runs.back() != table) runs.push_back(table);
        fields[table].push_back(Text(*rows, u"FieldName") + Text(*rows, u"FieldType"));
    }
    EXPECT_EQ(runs.size(), mTables.size());
    for (const sample::TableSpec& table : mTables) {
        std::vector<std::string> wanted;
        for (const sample::FieldSpec& field : table.Fields) wanted.push_back(field.Name + field.Code);
        EXPECT_EQ(fields[table.Name], wanted);
    }
}

TEST_F(WrittenCatalogue, DescendingColumnsOfAnIndexComeInTheirPlace) {
    const auto rows = Walk(u"LogicalIndex");
    std::vector<std::string> columns;
    for (; !rows->AtEnd(); rows->MoveNext()) {
        if (Text(*rows, u"TableName") != "INVOICES" || Text(*rows, u"IndexName") != "CustomerAndDate")
            continue;
        columns.push_back(Text(*rows, u"FieldName") +
                          (dao::ToBoolean(rows->Fields(u"Descending").GetValue()) ? " down" : " up"));
    }
    EXPECT_EQ(columns, (std::vector<std::string>{"CustomerNumber up", "InvoiceDate down"}));
}

}  // namespace
