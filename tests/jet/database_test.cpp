#include "platform/jet/database.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/jet/bytes.h"
#include "platform/jet/errors.h"
#include "tests/jet/database_fixture.h"

namespace jet {
namespace {

using test::ErrorOf;
using test::NumberRaised;
using test::Row;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;

const ColumnSpec Plain{u"A", ColumnType::Long};

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

TEST_F(Databases, NameTheOwnerOfATableAndWhoMayUseIt) {
    const auto table = MakeTable({{u"A", ColumnType::Long}});
    const auto id = static_cast<std::int32_t>(table->Definition().Page);
    const auto objects = mDatabase->FindTable(u"MSysObjects");
    const Row row = test::RowsOf(*objects).back();
    const auto at = [&](std::u16string_view name) { return row[*objects->Definition().FindColumn(name)]; };
    EXPECT_EQ(at(u"Id"), Value{id});
    EXPECT_EQ(at(u"ParentId"), Value{0x0F000001});
    EXPECT_EQ(at(u"Type"), Value{1});
    EXPECT_EQ(at(u"Flags"), Value{0});
    EXPECT_EQ(at(u"Owner"), Value{Binary{"\x64\x8B"}});
    EXPECT_EQ(at(u"DateCreate"), at(u"DateUpdate"));
    EXPECT_EQ(at(u"LvProp"), Value{});

    const auto aces = mDatabase->FindTable(u"MSysACEs");
    EXPECT_THAT(test::RowsOf(*aces), IsSupersetOf({Row{0x000FFEFF, false, id, Binary{"\x64\x8B"}},
                                                   Row{0x000FFEFF, false, id, Binary{"\x65\x8B"}}}));
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

    // Nobody inherits anything: all rights are the owner's. Nor does a database without owner take tables.
    const auto aces = mDatabase->FindTable(u"MSysACEs");
    for (auto row = aces->FirstRow(); row; row = aces->NextRow(*row)) {
        aces->UpdateFixed(*row, *aces->Definition().FindColumn(u"FInheritable"), false);
    }
    const auto id = static_cast<std::int32_t>(mDatabase->CreateTable(u"T", {Plain})->Definition().Page);
    EXPECT_THAT(test::RowsOf(*aces),
                testing::Not(testing::Contains(Row{0x000FFEFF, false, id, Binary{"\x65\x8B"}})));
    for (auto row = objects->FirstRow(); row; row = objects->NextRow(*row)) {
        if (objects->ReadColumn(*row, place(u"Name")) == Value{u"MSysDb"})
            objects->UpdateFixed(*row, place(u"Id"), 7);
    }
    EXPECT_EQ(NumberRaised([&] { mDatabase->CreateTable(u"U", {Plain}); }), 3428);

    TableDef definition = objects->Definition();
    definition.Columns[place(u"Flags")].Name = u"F";
    WriteTableDef(mDatabase->File(), definition);
    EXPECT_EQ(NumberRaised([&] { Reopen(); }), 3049);
}

TEST_F(Databases, PlaceATableAndItsMapsOneBehindTheOther) {
    const auto table = MakeTable({{u"A", ColumnType::Long}, {u"M", ColumnType::Memo}}, {{u"A", {{u"A"}}}});
    const TableDef& definition = table->Definition();
    EXPECT_EQ(definition.Page, 16U);
    EXPECT_EQ(definition.OwnedMap, (RowPointer{17, 0}));
    EXPECT_EQ(definition.FreeMap, (RowPointer{17, 1}));
    EXPECT_EQ(definition.LongValues[0].Owned, (RowPointer{17, 2}));
    EXPECT_EQ(definition.LongValues[0].Free, (RowPointer{17, 3}));
    EXPECT_EQ(definition.RealIndexes[0].Map, (RowPointer{17, 4}));
}

struct BadTable {
    const char* Name;
    std::u16string Table;
    std::vector<ColumnSpec> Columns;
    int Number;
};

class RefusedTables : public Databases, public testing::WithParamInterface<BadTable> {};

TEST_P(RefusedTables, RaiseTheirNumberAndChangeNothing) {
    MakeTable({{u"A", ColumnType::Long}});
    const std::uint32_t pages = mDatabase->File().PageCount();
    EXPECT_EQ(NumberRaised([&] { mDatabase->CreateTable(GetParam().Table, GetParam().Columns); }),
              GetParam().Number);
    EXPECT_EQ(mDatabase->File().PageCount(), pages);
    EXPECT_THAT(mDatabase->TableNames(), ElementsAre(u"T"));
}

INSTANTIATE_TEST_SUITE_P(
    Reasons, RefusedTables,
    testing::Values(BadTable{"NameInUse", u"t", {Plain}, 3010},
                    BadTable{"SystemTable", u"MSYSACES", {Plain}, 3010},
                    BadTable{"EmptyName", u"", {Plain}, 3125}, BadTable{"LeadingBlank", u" U", {Plain}, 3125},
                    BadTable{"Bracket", u"U[1]", {Plain}, 3125}, BadTable{"Period", u"U.1", {Plain}, 3125},
                    BadTable{"ControlCharacter", u"U\t1", {Plain}, 3125},
                    BadTable{"LongName", std::u16string(65, u'U'), {Plain}, 3125},
                    BadTable{"NoColumn", u"U", {}, 3264},
                    BadTable{"TwoColumnsOfOneName", u"U", {Plain, {u"a", ColumnType::Text}}, 3380},
                    BadTable{"LongText", u"U", {{u"A", ColumnType::Text, 256}}, 3271},
                    BadTable{"LongBinary", u"U", {{u"A", ColumnType::Binary, 511}}, 3271},
                    BadTable{"UnknownType", u"U", {{u"A", static_cast<ColumnType>(0)}}, 3259},
                    BadTable{"NumericColumn", u"U", {{u"A", ColumnType::Numeric}}, 3259},
                    BadTable{"TooManyColumns", u"U", std::vector<ColumnSpec>(256, Plain), 3190}),
    [](const auto& tested) { return tested.param.Name; });

TEST_F(Databases, SayWhichColumnStandsTwice) {
    Create();
    const auto make = [&] { mDatabase->CreateTable(u"Orders", {Plain, {u"a", ColumnType::Text}}); };
    EXPECT_EQ(ErrorOf(make).Description, "Field 'a' already exists in table 'Orders'.");
    EXPECT_EQ(DataError(1).Description, "Reserved error.");
}

struct BadIndex {
    const char* Name;
    IndexSpec Index;
    int Number;
};

class RefusedIndexes : public Databases, public testing::WithParamInterface<BadIndex> {};

TEST_P(RefusedIndexes, RaiseTheirNumberAndChangeNothing) {
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
        EXPECT_EQ(NumberRaised([&] { mDatabase->CreateIndex(*table, GetParam().Index); }), GetParam().Number);
        table = ReopenTable(next);
    }
    EXPECT_EQ(table->Definition().LogicalIndexes.size(), 1U);
    EXPECT_EQ(table->Definition().RealIndexes.size(), 1U);
    EXPECT_EQ(table->RowCount(), 300U);
    ExpectSoundFile();
}

INSTANTIATE_TEST_SUITE_P(
    Reasons, RefusedIndexes,
    testing::Values(BadIndex{"NameInUse", {u"PRIMARYKEY", {{u"B"}}}, 3375},
                    BadIndex{"SecondPrimary", {u"Second", {{u"B"}}, true}, 3283},
                    BadIndex{"NoColumn", {u"I", {}}, 3264}, BadIndex{"UnknownColumn", {u"I", {{u"X"}}}, 3409},
                    BadIndex{"ColumnWithoutOrder", {u"I", {{u"OO"}}}, 3409},
                    BadIndex{"TooManyColumns", {u"I", std::vector<IndexColumnSpec>(11, {u"A"})}, 3277},
                    BadIndex{"LongKeys", {u"I", std::vector<IndexColumnSpec>(10, {u"B"})}, 3047},
                    BadIndex{"NoName", {u"", {{u"A"}}}, 3125},
                    BadIndex{"Duplicates", {u"I", {{u"B"}}, false, true}, 3022},
                    BadIndex{"Nulls", {u"I", {{u"B"}}, false, false, true}, 3058}),
    [](const auto& tested) { return tested.param.Name; });

TEST_F(Databases, KeepTheKindAndTheColumnsOfAnIndex) {
    std::vector<ColumnSpec> columns;
    for (char16_t name = u'A'; name < u'K'; ++name)
        columns.push_back({std::u16string(1, name), ColumnType::Long});
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
    EXPECT_EQ(definition.FindIndex(u"Ten")->Type, LogicalIndexType::Plain);
    EXPECT_EQ(definition.FindIndex(u"Ten")->RealIndexNumber, 4U);
    EXPECT_EQ(definition.FindIndex(u"Ten")->Number, 4U);
    ExpectSoundFile();
}

TEST_F(Databases, BuildAnIndexOverTheRowsThereAre) {
    auto table = MakeTable({{u"A", ColumnType::Long}, {u"B", ColumnType::Text, 20}});
    for (std::int32_t i = 0; i < 2000; ++i)
        table->Insert(Row{i * 1009 % 2000, i % 5 == 0 ? Value{} : Value{u"b"}});
    mDatabase->CreateIndex(*table, {u"A", {{u"A"}}, true});
    table = ReopenTable(Sharing::Shared);
    mDatabase->CreateIndex(*table, {u"B", {{u"B"}}});
    table->Insert(Row{5000, u"new"});
    table = ReopenTable();
    const std::vector<RealIndex>& indexes = table->Definition().RealIndexes;
    EXPECT_EQ(indexes[0].Entries, 2000U);
    EXPECT_EQ(indexes[0].Distinct, 2001U);
    EXPECT_EQ(indexes[1].Distinct, 3U);
    std::int32_t last = -1;
    for (auto entry = table->Index(0).First(); !entry.AtEnd(); entry.Next()) {
        const auto value = std::get<std::int32_t>(table->ReadColumn(entry.Row(), 0));
        ASSERT_GT(value, last);
        last = value;
    }
    EXPECT_EQ(last, 5000);
    ExpectSoundFile();
}

TEST_F(Databases, TakeTheWidestTableAndThirtyTwoIndexes) {
    std::vector<ColumnSpec> columns;
    for (std::size_t i = 0; i < MaxColumns; ++i) {
        std::u16string name = u"Column ";
        for (const char c : std::to_string(i)) name.push_back(static_cast<char16_t>(c));
        columns.push_back({name, i % 3 == 0 ? ColumnType::Memo : ColumnType::Long});
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
    for (int i = 0; i < 150; ++i) {
        std::u16string name = u"Table ";
        for (const char c : std::to_string(i)) name.push_back(static_cast<char16_t>(c));
        mDatabase->CreateTable(name, {{u"A", ColumnType::Long}});
    }
    Reopen();
    EXPECT_EQ(mDatabase->TableNames().size(), 150U);
    EXPECT_NE(mDatabase->FindTable(u"table 149"), nullptr);
    ExpectSoundFile();
}

TEST_F(Databases, WriteEverythingWhenTheyGoWithoutClose) {
    MakeTable({{u"A", ColumnType::Long}})->Insert(Row{1});
    mDatabase.reset();
    EXPECT_EQ(ReopenTable()->RowCount(), 1U);
}

}  // namespace
}  // namespace jet
