#include "platform/dao/select_query.h"

#include <gmock/gmock.h>

#include "tests/dao/dao_fixture.h"

namespace dao {
namespace {

using testing::ElementsAre;

TEST(Queries, ReadWhateverTheLetterCaseAndBlanks) {
    for (const std::u16string source :
         {u"Select * from T Where [C] = 'text'", u"SELECT*FROM [T] WHERE C='text'",
          u"  select  *\tfrom\r\n T  where [C]  =  'text'  "}) {
        const SelectQuery query = ParseQuery(source);
        EXPECT_EQ(query.Table, u"T");
        EXPECT_EQ(query.Column, u"C");
        EXPECT_EQ(query.Text, u"text");
    }
    EXPECT_EQ(ParseQuery(u"Select * from T Where [A b] = ' O''Brien '").Column, u"A b");
    EXPECT_EQ(ParseQuery(u"Select * from T Where [C] = ' O''Brien '").Text, u" O'Brien ");
    EXPECT_EQ(ParseQuery(u"Select * from T Where [C] = ''").Text, u"");
}

TEST(Queries, ThatDoNotReadRaise3075) {
    for (const std::u16string source :
         {u"Select * from T Where [C] = 'O'Brien'", u"Select * from T Where [C] = 'Smith''",
          u"Select * from T Where [C] = 'text", u"Select * from T Where [C] 'text'", u"Select * from T",
          u"Select C from T Where [C] = 'x'", u"Select * from T Where [C = 'x'",
          u"Select * from T Where [C] = x", u"Select * from T Where [C] = 'x' Order By C",
          u"Select * from T Where [C] = '' Or ''=''", u"Select "}) {
        EXPECT_EQ(test::ErrorOf([&] { ParseQuery(source); }).Number, 3075);
    }
    const platform::Error error = test::ErrorOf([] { ParseQuery(u"Select * from T Where [C] = 'O'Brien'"); });
    EXPECT_EQ(error.Description, "Syntax error (missing operator) in query expression '[C] = 'O'Brien''.");
    EXPECT_EQ(error.Source, "DAO.Database");
}

class QueryResults : public test::DaoFixture {
  protected:
    void SetUp() override {
        MakeTable(u"Links", {{u"TableName", FieldType::Text, 40}, {u"N", FieldType::Long}},
                  {{u"PrimaryKey", {u"N"}, true}});
        const auto rows = mDatabase->OpenRecordset(u"Links");
        Add(*rows, {u"Müller  ", 5});
        Add(*rows, {u"MÜLLER", 3});
        Add(*rows, {u"Muller", 1});
        Add(*rows, {Null{}, 4});
        Add(*rows, {u"müller x", 2});
    }

    std::shared_ptr<Recordset> Query(const std::u16string& text) {
        return mDatabase->OpenRecordset(u"Select * from links Where [tablename] = '" + text + u"'");
    }
};

TEST_F(QueryResults, FoldLetterCaseAndTrailingBlanksOnlyAndKeepPhysicalOrder) {
    const auto rows = Query(u"müller ");
    EXPECT_EQ(rows->RecordCount(), 2);
    EXPECT_THAT(ColumnValues(*rows, u"N"), ElementsAre(Value(5), Value(3)));
    EXPECT_EQ(Query(u"Muller")->RecordCount(), 1);
    EXPECT_EQ(Query(u"")->RecordCount(), 0) << "Null equals nothing";
}

TEST_F(QueryResults, AnEmptyResultIsAtItsEnd) {
    const auto rows = Query(u"nobody");
    EXPECT_TRUE(rows->AtEnd());
    EXPECT_EQ(test::ErrorOf([&] { rows->MoveFirst(); }).Number, 3021);
    EXPECT_EQ(test::ErrorOf([&] { rows->Fields(u"N").GetValue(); }).Number, 3021);
}

TEST_F(QueryResults, HaveNoIndexAndLetTheirRowsBeEdited) {
    const auto rows = Query(u"Muller");
    EXPECT_EQ(test::ErrorOf([&] { rows->SetIndex(u"PrimaryKey"); }).Number, 3251);
    EXPECT_EQ(test::ErrorOf([&] { rows->Seek("=", 1); }).Number, 3251);
    Edit(*rows, {{u"N", 9}});
    EXPECT_EQ(rows->Fields(u"N").GetValue(), Value(9));
    const auto table = mDatabase->OpenRecordset(u"Links");
    table->SetIndex(u"PrimaryKey");
    EXPECT_THAT(ColumnValues(*table, u"N"), ElementsAre(Value(2), Value(3), Value(4), Value(5), Value(9)));
}

TEST_F(QueryResults, UnknownNamesHaveTheirErrors) {
    const auto numberOf = [&](const std::u16string& source) {
        return test::ErrorOf([&] { mDatabase->OpenRecordset(source); }).Number;
    };
    EXPECT_EQ(numberOf(u"Select * from Nowhere Where [C] = 'x'"), 3078);
    EXPECT_EQ(numberOf(u"Nowhere"), 3078);
    EXPECT_EQ(numberOf(u"Select * from Links Where [Colour] = 'x'"), 3061);
    EXPECT_EQ(numberOf(u"Select * from Links Where [N] = 'x'"), 3421);
}

}  // namespace
}  // namespace dao
