#include "platform/jet/database.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/jet/bytes.h"
#include "platform/jet/errors.h"
#include "tests/jet/database_fixture.h"

namespace jet {
namespace {

using test::NumberRaised;
using test::Row;
using std::string_literals::operator""s;
using testing::ElementsAre;
using testing::IsEmpty;

const ColumnSpec Plain{u"A", ColumnType::Long};

/// A name of its own for each number.
std::u16string Numbered(std::size_t number) {
    return {u'T', static_cast<char16_t>(u'a' + number / 16), static_cast<char16_t>(u'a' + number % 16)};
}

class Databases : public test::NewDatabase {};

TEST_F(Databases, NewOnesHoldTheSystemTablesOnly) {
    Create();
    EXPECT_THAT(mDatabase->TableNames(), IsEmpty());
    EXPECT_EQ(mDatabase->FindTable(u"msysobjects")->RowCount(), 8U);
    EXPECT_EQ(mDatabase->FindTable(u"MSysACEs")->RowCount(), 16U);
    EXPECT_EQ(mDatabase->FindTable(u"MSysQueries")->RowCount(), 0U);
    EXPECT_EQ(mDatabase->FindTable(u"MSysRelationships")->RowCount(), 0U);
    EXPECT_EQ(mDatabase->FindTable(u"Tables"), nullptr) << "a container is no table";
    ExpectSoundFile();
    EXPECT_EQ(test::ReadBytes(Path()).size(), 16 * 4096U);
}

TEST_F(Databases, FindTablesWithoutRegardToLetterCase) {
    MakeTable({{u"A", ColumnType::Long}});
    mDatabase->CreateTable(u"Kundendatei \u00DC", {{u"B", ColumnType::Text, 10}});
    Reopen();
    EXPECT_THAT(mDatabase->TableNames(), ElementsAre(u"T", u"Kundendatei \u00DC"));
    EXPECT_NE(mDatabase->FindTable(u"KUNDENDATEI \u00FC"), nullptr);
    EXPECT_EQ(mDatabase->FindTable(u"t"), mDatabase->FindTable(u"T")) << "one table, one object";
    EXPECT_EQ(mDatabase->FindTable(u"U"), nullptr);
    ExpectSoundFile();
}

TEST_F(Databases, TakeTheListOfObjectsAsItIs) {
    Create();
    const auto objects = mDatabase->FindTable(u"MSysObjects");
    const auto place = [&](std::u16string_view name) { return *objects->Definition().FindColumn(name); };
    constexpr std::int32_t Tables = 0x0F000001;
    const auto add = [&](std::int32_t id, std::int32_t parent, const Value& name) {
        Row row(objects->Definition().Columns.size());
        row[place(u"Id")] = id;
        row[place(u"ParentId")] = parent;
        row[place(u"Name")] = name;
        row[place(u"Type")] = 1;
        objects->Insert(row);
    };
    add(1000, Tables, u"WithoutFlags");
    add(1001, Tables + 1, u"InAnotherContainer");
    add(1002, Tables, {});
    EXPECT_THAT(mDatabase->TableNames(), ElementsAre(u"WithoutFlags", u""));

    // A new table is its owner's and everybody's; where nobody inherits anything, it is the owner's alone.
    const auto aces = mDatabase->FindTable(u"MSysACEs");
    const auto bearers = [&](std::u16string_view name) {
        const auto page = static_cast<std::int32_t>(mDatabase->CreateTable(name, {Plain})->Definition().Page);
        std::vector<std::string> found;
        for (const Row& row : test::RowsOf(*aces)) {
            if (row[0] == Value{0x000FFEFF} && row[2] == Value{page})
                found.push_back(std::get<Binary>(row[3]).Bytes);
        }
        return found;
    };
    EXPECT_THAT(bearers(u"T"), ElementsAre("\x64\x8B", "\x65\x8B"));
    const Row object = test::RowsOf(*objects).back();
    EXPECT_EQ(object[place(u"Id")],
              Value{static_cast<std::int32_t>(mDatabase->FindTable(u"T")->Definition().Page)});
    EXPECT_EQ(object[place(u"ParentId")], Value{Tables});
    EXPECT_EQ(object[place(u"Type")], Value{1});
    EXPECT_EQ(object[place(u"Flags")], Value{0});
    EXPECT_EQ(object[place(u"Owner")], Value{Binary{"\x64\x8B"}});
    EXPECT_EQ(object[place(u"DateCreate")], object[place(u"DateUpdate")]);
    EXPECT_EQ(object[place(u"LvProp")], Value{});
    for (auto row = aces->FirstRow(); row; row = aces->NextRow(*row)) aces->UpdateFixed(*row, 1, false);
    EXPECT_THAT(bearers(u"U"), ElementsAre("\x64\x8B", "\x64\x8B"));
    for (auto row = objects->FirstRow(); row; row = objects->NextRow(*row)) {
        if (objects->ReadColumn(*row, place(u"Name")) == Value{u"MSysDb"})
            objects->UpdateFixed(*row, place(u"Id"), 7);
    }
    EXPECT_EQ(NumberRaised([&] { mDatabase->CreateTable(u"V", {Plain}); }), 3428);

    TableDef definition = objects->Definition();
    definition.Columns[place(u"Flags")].Name = u"F";
    WriteTableDef(mDatabase->File(), definition);
    EXPECT_EQ(NumberRaised([&] { Reopen(); }), 3049);
}

struct BadTable {
    std::u16string Table;
    std::vector<ColumnSpec> Columns;
    int Number;
};

TEST_F(Databases, RefuseATableAndChangeNothing) {
    std::vector<BadTable> tables{{u"t", {Plain}, 3010},
                                 {u"MSYSACES", {Plain}, 3010},
                                 {u"U", {}, 3264},
                                 {u"U", {Plain, {u"a", ColumnType::Text}}, 3380},
                                 {u"U", {{u"A", ColumnType::Text, 256}}, 3271},
                                 {u"U", {{u"A", ColumnType::Binary, 511}}, 3271},
                                 {u"U", {{u"A", static_cast<ColumnType>(0)}}, 3259},
                                 {u"U", {{u"A", ColumnType::Numeric}}, 3259},
                                 {u"U", std::vector<ColumnSpec>(256, Plain), 3190}};
    for (const std::u16string& name : {u""s, u" U"s, u"U[1]"s, u"U.1"s, u"U\t1"s, std::u16string(65, u'U')})
        tables.push_back({name, {Plain}, 3125});
    MakeTable({Plain});
    const std::uint32_t pages = mDatabase->File().PageCount();
    for (std::size_t i = 0; i < tables.size(); ++i) {
        const auto create = [&] { mDatabase->CreateTable(tables[i].Table, tables[i].Columns); };
        EXPECT_EQ(NumberRaised(create), tables[i].Number) << "table " << i;
    }
    EXPECT_EQ(mDatabase->File().PageCount(), pages);
    EXPECT_THAT(mDatabase->TableNames(), ElementsAre(u"T"));
    EXPECT_EQ(DataError(1).Description, "Reserved error.");
}

struct BadIndex {
    const char* Name;
    IndexSpec Index;
    int Number;
};

TEST_F(Databases, RefuseAnIndexAndChangeNothing) {
    const BadIndex indexes[] = {{"NameInUse", {u"PRIMARYKEY", {{u"B"}}}, 3375},
                                {"SecondPrimary", {u"Second", {{u"B"}}, true}, 3283},
                                {"NoColumn", {u"I", {}}, 3264},
                                {"UnknownColumn", {u"I", {{u"X"}}}, 3409},
                                {"ColumnWithoutOrder", {u"I", {{u"OO"}}}, 3409},
                                {"TooManyColumns", {u"I", std::vector<IndexColumnSpec>(11, {u"A"})}, 3277},
                                {"LongKeys", {u"I", std::vector<IndexColumnSpec>(10, {u"B"})}, 3047},
                                {"NoName", {u"", {{u"A"}}}, 3125},
                                {"Duplicates", {u"I", {{u"B"}}, false, true}, 3022},
                                {"Nulls", {u"I", {{u"B"}}, false, false, true}, 3058}};
    // As many long columns as make the table's maps fill their page.
    std::vector<ColumnSpec> columns{{u"A", ColumnType::Long}, {u"B", ColumnType::Text}};
    while (columns.size() < 29)
        columns.push_back({std::u16string(columns.size(), u'O'), ColumnType::LongBinary});
    auto table = MakeTable(columns, {{u"PrimaryKey", {{u"A"}}, true}});
    Row row(29);
    row[2] = Binary{std::string(std::size_t{2} << 20, 'o')};
    for (std::int32_t i = 0; i < 300; ++i) {
        row[0] = i;
        row[1] = i % 2 == 0 ? Value{} : Value{std::u16string(200, u'x')};
        table->Insert(row);
        row[2] = {};
    }
    for (const Sharing next : {Sharing::Exclusive, Sharing::Shared, Sharing::Exclusive}) {
        for (const BadIndex& bad : indexes) {
            EXPECT_EQ(NumberRaised([&] { mDatabase->CreateIndex(*table, bad.Index); }), bad.Number)
                << bad.Name;
        }
        table = ReopenTable(next);
    }
    EXPECT_EQ(table->Definition().LogicalIndexes.size(), 1U);
    EXPECT_EQ(table->Definition().RealIndexes.size(), 1U);
    EXPECT_EQ(table->RowCount(), 300U);
    ExpectSoundFile();
}

TEST_F(Databases, KeepTheKindAndTheColumnsOfAnIndex) {
    std::vector<ColumnSpec> columns;
    for (const char16_t name : u"ABCDEFGHIJ"s) columns.push_back({{name}, ColumnType::Long});
    IndexSpec ten{u"Ten", {}};
    for (std::size_t i = 0; i < 10; ++i) ten.Columns.push_back({columns[9 - i].Name, i % 2 == 0});
    MakeTable(columns, {{u"PrimaryKey", {{u"b"}}, true, false, false, true},
                        {u"Unique", {{u"C"}}, false, true},
                        {u"Required", {{u"D"}}, false, false, true},
                        {u"Ignoring", {{u"E"}}, false, false, false, true},
                        ten});
    const auto table = ReopenTable();
    const TableDef& definition = table->Definition();
    std::vector<int> flags;
    for (const RealIndex& index : definition.RealIndexes) flags.push_back(index.Flags);
    EXPECT_THAT(flags, ElementsAre(0x89, 0x81, 0x88, 0x82, 0x80));
    const RealIndex& real = definition.RealIndexes[4];
    for (std::uint16_t i = 0; i < 10; ++i) {
        EXPECT_EQ(real.Columns[i].ColumnNumber, 9 - i);
        EXPECT_EQ(real.Columns[i].Ascending, i % 2 == 0);
    }
    EXPECT_EQ(definition.FindIndex(u"PrimaryKey")->Type, LogicalIndexType::Primary);
    EXPECT_EQ(definition.FindIndex(u"Ten")->Number, 4U);
    ExpectSoundFile();
}

TEST_F(Databases, BuildAnIndexOverTheRowsThereAre) {
    auto table = MakeTable({{u"A", ColumnType::Long}, {u"B", ColumnType::Text, 20}});
    for (std::int32_t i = 0; i < 2000; ++i)
        table->Insert(Row{i * 1009 % 2000, i % 5 == 0 ? Value{} : Value{u"b"}});
    mDatabase->CreateIndex(*table, {u"A", {{u"A"}}, true});
    EXPECT_EQ(NumberRaised([&] { mDatabase->CreateIndex(*table, {u"B", {{u"B"}}, false, true}); }), 3022);
    table = ReopenTable(Sharing::Shared);
    mDatabase->CreateIndex(*table, {u"B", {{u"B"}}});
    table->Insert(Row{5000, u"new"});
    table = ReopenTable();
    const std::vector<RealIndex>& indexes = table->Definition().RealIndexes;
    EXPECT_EQ(indexes[0].Entries, 2000U);
    EXPECT_EQ(indexes[0].Distinct, 2001U);
    EXPECT_EQ(indexes[1].Distinct, 3U);
    ExpectSoundFile();
}

TEST_F(Databases, TakeTheWidestTableAndThirtyTwoIndexes) {
    std::vector<ColumnSpec> columns;
    for (std::size_t i = 0; i < MaxColumns; ++i) {
        columns.push_back({Numbered(i), i % 3 == 0 ? ColumnType::Memo : ColumnType::Long});
    }
    auto table = MakeTable(columns);
    for (std::size_t i = 0; i < MaxIndexes; ++i) {
        mDatabase->CreateIndex(*table, {u"Index of " + columns[3 * i + 1].Name, {{columns[3 * i + 1].Name}}});
    }
    EXPECT_EQ(NumberRaised([&] { mDatabase->CreateIndex(*table, {u"More", {{columns[1].Name}}}); }), 3039);
    Row row;
    for (std::int32_t i = 0; i < 255; ++i) row.push_back(i % 3 == 0 ? Value{} : Value{i});
    row[0] = std::u16string(5000, u'x');
    row[252] = u"short";
    table->Insert(row);
    table = ReopenTable();
    table->Insert(row);  // its maps move, so its definition of several pages is written anew
    EXPECT_THAT(test::RowsOf(*ReopenTable()), ElementsAre(row, row));
    ExpectSoundFile();
}

TEST_F(Databases, ManyTablesFillTheListOfObjects) {
    Create();
    for (std::size_t i = 0; i < 150; ++i) mDatabase->CreateTable(Numbered(i), {Plain});
    Reopen();
    EXPECT_EQ(mDatabase->TableNames().size(), 150U);
    EXPECT_NE(mDatabase->FindTable(Numbered(149)), nullptr);
    ExpectSoundFile();
}

}  // namespace
}  // namespace jet
