#include "platform/dao/database.h"

#include <functional>
#include <gmock/gmock.h>

#include "tests/dao/dao_fixture.h"

namespace dao {
namespace {

using testing::ElementsAre;

class Databases : public test::DaoFixture {
  protected:
    template <typename Call>
    static std::string Triple(Call call) {
        const platform::Error error = test::ErrorOf(call);
        EXPECT_EQ(error.Source, "DAO.Database");
        return std::to_string(error.Number) + " " + error.Description;
    }
};

TEST_F(Databases, CreatingNeedsTheLocaleAFolderAndANewName) {
    EXPECT_EQ(Triple([&] { CreateDatabase(Path(), ";LANGID=0x0407;CP=1252;COUNTRY=0"); }),
              "3424 Cannot create database because the locale is invalid.");
    EXPECT_EQ(test::ErrorOf([&] { CreateDatabase(Path("no/such/folder.mdb"), test::Locale); }).Number, 3044);
    EXPECT_NO_THROW(CreateDatabase(Path(), ";langid=0x0409;cp=1252;country=0"));
    EXPECT_EQ(Triple([&] { CreateDatabase(Path(), test::Locale); }), "3204 Database already exists.");
}

TEST_F(Databases, TablesKeepTheirColumnsAndIndexesOverAnOpening) {
    MakeTable(u"Beta",
              {{u"Zulu", FieldType::Text, 12}, {u"Alpha", FieldType::Memo, 99}, {u"N", FieldType::Text}},
              {{u"PrimaryKey", {u"Zulu"}, true}, {u"Back", {u"N", u"Zulu"}, false, false, true}});
    MakeTable(u"Alpha", {{u"Id", FieldType::Long}});
    Reopen();
    EXPECT_THAT(mDatabase->TableDefs().Names(), testing::UnorderedElementsAre(u"Alpha", u"Beta"));
    const auto table = mDatabase->TableDefs().Item(u"BETA");
    const auto& fields = table->Fields();
    ASSERT_EQ(fields.size(), 3U);
    EXPECT_EQ(fields[0].Name, u"Zulu");
    EXPECT_EQ(fields[0].Size, 12);
    EXPECT_EQ(fields[1].Type, FieldType::Memo);
    EXPECT_EQ(fields[1].Size, 0);
    EXPECT_EQ(fields[2].Size, 255) << "as large as can be when no size is given";

    ASSERT_EQ(table->Indexes().Count(), 2);
    EXPECT_EQ(table->Indexes().Item(0).Name, u"Back") << "in the order of their names";
    EXPECT_FALSE(table->Indexes().Item(0).Unique);
    EXPECT_EQ(table->Indexes().Item(0).Fields[0].Attributes, DescendingField);
    EXPECT_TRUE(table->Indexes().Item(1).Primary());
    EXPECT_TRUE(table->Indexes().Item(1).Unique);
    EXPECT_TRUE(table->Indexes().Item(1).Required);
    EXPECT_EQ(test::ErrorOf([&] { table->Indexes().Item(2); }).Number, 3265);
    EXPECT_EQ(test::ErrorOf([&] { mDatabase->TableDefs().Item(u"Gamma"); }).Number, 3265);
}

TEST_F(Databases, ColumnsAreCheckedAsTheyAreAppended) {
    Create();
    const auto table = mDatabase->CreateTableDef(u"T");
    const auto append = [&](std::u16string_view name, FieldType type, int size) {
        table->AppendField(table->CreateField(name, type, size));
    };
    append(u"First", FieldType::Long, 0);
    EXPECT_EQ(Triple([&] { append(u"FIRST", FieldType::Text, 5); }),
              "3380 Field 'FIRST' already exists in table 'T'.");
    EXPECT_EQ(Triple([&] { append(u"Long", FieldType::Text, 256); }), "3271 Invalid property value.");
    for (const std::u16string name : {u"", u" x", u"a.b", u"a[b", u"a!b"})
        EXPECT_EQ(test::ErrorOf([&] { append(name, FieldType::Long, 0); }).Number, 3125);
    for (int i = 1; i < 255; ++i)
        append(u"C" + std::u16string(1, static_cast<char16_t>(u'\u0400' + i)), FieldType::Boolean, 0);
    EXPECT_EQ(Triple([&] { append(u"Last", FieldType::Boolean, 0); }), "3190 Too many fields defined.");
    EXPECT_NO_THROW(mDatabase->TableDefs().Append(table));
    EXPECT_EQ(mDatabase->OpenRecordset(u"T")->FieldCount(), 255);
}

TEST_F(Databases, TablesAreCheckedAsTheyAreAppended) {
    MakeTable(u"Orders", {{u"Id", FieldType::Long}});
    TableDefs& tables = mDatabase->TableDefs();
    const auto append = [&](std::u16string_view name) {
        const auto table = mDatabase->CreateTableDef(name);
        if (name != u"Empty") table->AppendField(table->CreateField(u"X", FieldType::Long));
        tables.Append(table);
    };
    EXPECT_EQ(Triple([&] { append(u"ORDERS"); }), "3010 Table 'ORDERS' already exists.");
    EXPECT_EQ(Triple([&] { append(u"Empty"); }), "3264 No field defined -- cannot append TableDef or Index.");
    EXPECT_EQ(test::ErrorOf([&] { append(u"a`b"); }).Number, 3125);
    EXPECT_THAT(tables.Names(), ElementsAre(u"Orders"));
}

TEST_F(Databases, IndexesAreCheckedAsTheyAreAppended) {
    const auto table =
        MakeTable(u"T", {{u"A", FieldType::Long}, {u"B", FieldType::LongBinary}}, {{u"Key", {u"A"}, true}});
    const auto append = [&](const test::IndexOf& index) { return [&] { AppendIndex(*table, index); }; };
    EXPECT_EQ(Triple(append({u"KEY", {u"A"}})), "3375 Table 'T' already has an index named 'KEY'.");
    EXPECT_EQ(Triple(append({u"Other", {u"A"}, true})), "3283 Primary key already exists.");
    EXPECT_EQ(test::ErrorOf(append({u"Lost", {u"C"}})).Number, 3409);
    for (int i = 1; i < 32; ++i)
        AppendIndex(*table, {u"I" + std::u16string(1, static_cast<char16_t>(u'\u0400' + i)), {u"A"}});
    EXPECT_EQ(test::ErrorOf(append({u"Surplus", {u"A"}})).Number, 3039);
    EXPECT_EQ(table->Indexes().Count(), 32);
}

TEST_F(Databases, AnIndexAppendedBeforeItsTableIsMadeWithIt) {
    Create();
    const auto table = mDatabase->CreateTableDef(u"T");
    table->AppendField(table->CreateField(u"A", FieldType::Long));
    AppendIndex(*table, {u"PrimaryKey", {u"A"}, true});
    mDatabase->TableDefs().Append(table);
    EXPECT_EQ(table->Indexes().Count(), 1);
    EXPECT_NO_THROW(mDatabase->OpenRecordset(u"T")->SetIndex(u"PrimaryKey"));
    EXPECT_EQ(test::ErrorOf([&] { table->AppendField(table->CreateField(u"B", FieldType::Long)); }).Number,
              3251);
}

TEST_F(Databases, RelationsAreRowsOfTheirSystemTable) {
    MakeTable(u"Customers", {{u"Id", FieldType::Long}, {u"Site", FieldType::Long}});
    MakeTable(u"Orders", {{u"Customer", FieldType::Long}, {u"Site", FieldType::Long}});
    const auto relation = mDatabase->CreateRelation(u"CustomersOrders");
    relation->Table = u"Customers";
    relation->ForeignTable = u"Orders";
    relation->Attributes = RelationDoNotEnforce;
    for (const auto& [name, foreign] : {std::pair(u"Id", u"Customer"), std::pair(u"Site", u"Site")}) {
        Field field;
        field.Name = name;
        field.ForeignName = foreign;
        relation->Fields.push_back(field);
    }
    mDatabase->Relations().Append(*relation);
    EXPECT_EQ(mDatabase->Relations().Count(), 1);
    EXPECT_EQ(Triple([&] { mDatabase->Relations().Append(*relation); }),
              "3012 Object 'CustomersOrders' already exists.");

    relation->Name = u"Second";
    relation->Fields[0].ForeignName = u"Nowhere";
    EXPECT_EQ(test::ErrorOf([&] { mDatabase->Relations().Append(*relation); }).Number, 3265);
    relation->ForeignTable = u"Nothing";
    EXPECT_EQ(test::ErrorOf([&] { mDatabase->Relations().Append(*relation); }).Number, 3265);

    const auto rows = mDatabase->OpenRecordset(u"MSysRelationships");
    EXPECT_THAT(ColumnValues(*rows, u"szColumn"), ElementsAre(Value(u"Customer"), Value(u"Site")));
    EXPECT_THAT(ColumnValues(*rows, u"szReferencedColumn"), ElementsAre(Value(u"Id"), Value(u"Site")));
    EXPECT_THAT(ColumnValues(*rows, u"icolumn"), ElementsAre(Value(0), Value(1)));
    EXPECT_THAT(ColumnValues(*rows, u"grbit"), ElementsAre(Value(2), Value(2)));
}

TEST_F(Databases, ObjectsOfAClosedDatabaseAreInvalid) {
    const auto table = MakeTable(u"T", {{u"A", FieldType::Long}});
    const auto rows = mDatabase->OpenRecordset(u"T");
    Add(*rows, {1});
    RecordsetField& field = rows->Fields(0);
    TableDefs& tables = mDatabase->TableDefs();
    Relations& relations = mDatabase->Relations();
    mDatabase->Close();
    const std::vector<std::function<void()>> calls{[&] { rows->MoveFirst(); },
                                                   [&] { static_cast<void>(rows->AtEnd()); },
                                                   [&] { rows->AddNew(); },
                                                   [&] { field.GetValue(); },
                                                   [&] { field.Name(); },
                                                   [&] { rows->Close(); },
                                                   [&] { table->Fields(); },
                                                   [&] { table->Indexes(); },
                                                   [&] { tables.Names(); },
                                                   [&] { relations.Count(); },
                                                   [&] { mDatabase->OpenRecordset(u"T"); },
                                                   [&] { mDatabase->CreateTableDef(u"U"); },
                                                   [&] { mDatabase->Flush(); },
                                                   [&] { mDatabase->Close(); }};
    for (std::size_t i = 0; i < calls.size(); ++i)
        EXPECT_EQ(Triple(calls[i]), "3420 Object is invalid or no longer set.") << i;
}

TEST_F(Databases, TheLastHandleClosesTheDatabase) {
    MakeTable(u"T", {{u"A", FieldType::Long}});
    const auto rows = mDatabase->OpenRecordset(u"T");
    Add(*rows, {42});
    mDatabase.reset();
    EXPECT_EQ(test::ErrorOf([&] { rows->AddNew(); }).Number, 3420);
    mDatabase = OpenDatabase(Path());
    EXPECT_THAT(ColumnValues(*mDatabase->OpenRecordset(u"T"), u"A"), ElementsAre(Value(42)));
}

TEST_F(Databases, AnEditOfAnOpenedDatabaseIsInTheFileAtOnce) {
    MakeTable(u"T", {{u"A", FieldType::Long}}, {{u"PrimaryKey", {u"A"}, true}});
    Add(*mDatabase->OpenRecordset(u"T"), {1});
    Reopen();
    const auto rows = mDatabase->OpenRecordset(u"T");
    const auto other = OpenDatabase(Path());
    const auto seen = other->OpenRecordset(u"T");
    Edit(*rows, {{u"A", 2}});
    seen->SetIndex(u"PrimaryKey");
    EXPECT_EQ(seen->Fields(u"A").GetValue(), Value(2));
}

}  // namespace
}  // namespace dao
