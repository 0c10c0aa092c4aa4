#include "platform/jet/table_def.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/jet/bytes.h"
#include "platform/jet/schema.h"
#include "tests/jet/database_fixture.h"
#include "tests/support/hex.h"

namespace jet {
namespace {

class TableDefs : public test::NewDatabase {
  protected:
    TableDefs() { Create(); }

    PageFile& File() { return mDatabase->File(); }

    std::string PageBytes(std::uint32_t page, std::size_t at, std::size_t length) {
        const PageHandle handle = File().Read(page);
        return {reinterpret_cast<const char*>(handle.Data()) + at, length};
    }

    std::uint32_t NewDefinitionPage() {
        const std::uint32_t page = File().Allocate();
        File().MakeNew(page, PageType::TableDef);
        return page;
    }
};

/// The table of nine columns and two indexes that the engine's own file holds as the bytes below.
TableDef EngineTable(std::uint32_t page) {
    using enum ColumnType;
    std::vector<Column> columns;
    for (const ColumnType type : {Text, Text, Byte, Integer, Long, Double, Date, Currency, Boolean}) {
        Column& column = columns.emplace_back();
        column.Name = {static_cast<char16_t>(u'@' + columns.size())};
        column.Ordinal = static_cast<std::uint16_t>(columns.size());
        column.Type = type;
        column.Flags = type == Text ? 2 : 3;
        column.Size = static_cast<std::uint16_t>(type == Text ? 100 * columns.size() : FixedSize(type));
    }
    columns[0].Compressed = true;
    TableDef table = LayOutTable(page, TableType::User, std::move(columns));
    table.RowCount = 2;
    table.OwnedMap = {25, 0};
    table.FreeMap = {25, 1};
    table.RealIndexes = {{{{0, true}}, {25, 2}, 28, 0x89, 2, 2}, {{{1, true}}, {25, 3}, 26, 0x80, 2, 2}};
    LogicalIndex primary;
    primary.Name = u"PrimaryKey";
    primary.Type = LogicalIndexType::Primary;
    LogicalIndex plain;
    plain.Name = u"B";
    plain.Number = plain.RealIndexNumber = 1;
    table.LogicalIndexes = {primary, plain};
    return table;
}

TEST_F(TableDefs, AreWrittenAsTheEngineWritesThem) {
    const std::uint32_t page = NewDefinitionPage();
    TableDef table = EngineTable(page);
    WriteTableDef(File(), table);

    const std::string unused =
        "FF FF 00 FF FF 00 FF FF 00 FF FF 00 FF FF 00 FF FF 00 FF FF 00 FF FF 00 FF FF 00 ";
    struct Part {
        std::size_t At;
        std::string Bytes;
    };
    const std::vector<Part> parts{
        {0x000, "02 01 E0 0D 00 00 00 00 18 02 00 00 59 06 00 00 02 00 00 00 00 00 00 00 01 00 00 00"},
        {0x028, "4E 09 00 02 00 09 00 02 00 00 00 02 00 00 00 00 19 00 00 01 19 00 00"},
        {0x03F, "02 00 00 00 02 00 00 00 00 00 00 00 02 00 00 00 02 00 00 00 00 00 00 00"},
        {0x057, "0A 59 06 00 00 00 00 00 00 01 00 09 04 00 00 02 01 00 00 00 00 00 00 64 00"},
        {0x106, "05 59 06 00 00 07 00 02 00 08 00 09 04 00 00 03 00 00 00 00 00 17 00 08 00"},
        {0x138, "02 00 41 00 02 00 42 00 02 00 43 00"},
        {0x15C, "83 07 00 00 00 00 01 " + unused + "02 19 00 00 1C 00 00 00 00 00 00 00 89 00 00 00 00 00"},
        {0x1C4, "59 06 00 00 01 00 00 00 01 00 00 00 00 FF FF FF FF 00 00 00 00 04 04 00 00 00 00 00"},
        {0x1FC, "02 00 42 00 14 00 50 00 72 00 69 00 6D 00 61 00 72 00 79 00 4B 00 65 00 79 00 FF FF"}};
    for (const Part& part : parts) {
        const std::string expected = test::Hex(part.Bytes);
        EXPECT_EQ(test::ToHex(PageBytes(page, part.At, expected.size())), test::ToHex(expected))
            << "at " << part.At;
    }
    EXPECT_EQ(PageBytes(page, 0x218, 4096 - 0x218), std::string(4096 - 0x218, '\0'));
}

TEST_F(TableDefs, ReadBackAsTheyWereWritten) {
    const std::uint32_t page = NewDefinitionPage();
    TableDef written = EngineTable(page);
    written.LongValues = {{3, {30, 1}, {30, 2}}};
    written.LastAutoNumber = 77;
    WriteTableDef(File(), written);
    TableDef read = ReadTableDef(File(), page);
    EXPECT_EQ(read.FindIndex(u"PRIMARYKEY")->RealIndexNumber, 0U);
    EXPECT_EQ(read.LogicalIndexes[0].Name, u"B") << "by name";
    EXPECT_EQ(read.LongValues[0].Free, (RowPointer{30, 2}));

    read.Page = NewDefinitionPage();
    WriteTableDef(File(), read);
    EXPECT_EQ(PageBytes(read.Page, 0, 4096), PageBytes(page, 0, 4096)) << "every field comes back";
}

std::u16string LongName(std::size_t i) {
    return std::u16string(1, static_cast<char16_t>(0x400 + i)) + std::u16string(MaxNameLength - 1, u'x');
}

TEST_F(TableDefs, OutgrowTheirPageAndShrinkAgain) {
    const std::uint32_t page = NewDefinitionPage();
    std::vector<Column> columns;
    for (std::size_t i = 0; i < MaxColumns; ++i) {
        columns.emplace_back().Name = LongName(i);
        columns.back().Flags = Column::UpdatableFlag;
        columns.back().Size = 510;
        columns.back().Ordinal = static_cast<std::uint16_t>(i);
    }
    TableDef table = LayOutTable(page, TableType::User, columns);
    WriteTableDef(File(), table);

    const std::size_t length = 0x3F + MaxColumns * (25 + 2 + 2 * MaxNameLength) + 2;
    EXPECT_EQ(LoadU32(File().Read(page).Data() + 8), length);
    EXPECT_EQ(test::ToHex(PageBytes(page, 0, 4)), "02 01 00 00") << "a full page has no free bytes";
    EXPECT_EQ(ReadTableDef(File(), page).Columns[254].Name, LongName(254));

    const std::uint32_t second = LoadU32(File().Read(page).Data() + 4);
    table.Columns.resize(1);
    table.MaxColumnNumber = table.VariableColumns = 1;
    WriteTableDef(File(), table);
    EXPECT_EQ(ReadTableDef(File(), page).Columns.size(), 1U);
    EXPECT_EQ(File().Allocate(), second) << "the further pages are free";
}

TEST_F(TableDefs, ColumnsStandByOrdinalThenName) {
    const std::uint32_t page = NewDefinitionPage();
    std::vector<Column> columns;
    for (const std::u16string_view name : {u"zeta", u"Beta", u"alpha", u"first"}) {
        columns.emplace_back().Name = name;
        columns.back().Ordinal = name == u"first" ? 0 : 1;
    }
    TableDef table = LayOutTable(page, TableType::User, columns);
    WriteTableDef(File(), table);
    std::vector<std::u16string> names;
    for (const Column& column : ReadTableDef(File(), page).Columns) names.push_back(column.Name);
    EXPECT_THAT(names, testing::ElementsAre(u"first", u"alpha", u"Beta", u"zeta"));
}

struct Damage {
    const char* Name;
    std::size_t At;
    std::uint32_t Dword;
};

TEST_F(TableDefs, ThatContradictThemselvesAreAnError) {
    const Damage places[] = {{"PageType", 0x00, 0x00000101},
                             {"NextPageIsNoDefinition", 0x04, 1},
                             {"NextPageBeyondTheFile", 0x04, 0x00FFFFFF},
                             {"LengthTooShort", 0x08, 0x20},
                             {"LengthBeyondTheChain", 0x08, 0x00100000},
                             {"LengthCutsTheNames", 0x08, 0x150},
                             {"ColumnCount", 0x2D, 0x0002FFFF},
                             {"RealIndexCount", 0x33, 0x10000000},
                             {"LogicalIndexCount", 0x2F, 0x10000000},
                             {"ColumnNumber", 0x5C, 0x00000900},
                             {"VariableIndex", 0x5E, 0x0001FFFF},
                             {"LogicalWithoutReal", 0x1CC, 9}};
    for (const Damage& damage : places) {
        TableDef table = EngineTable(NewDefinitionPage());
        WriteTableDef(File(), table);
        StoreU32(File().Read(table.Page).Change() + damage.At, damage.Dword);
        EXPECT_EQ(test::NumberRaised([&] { ReadTableDef(File(), table.Page); }), 3428) << damage.Name;
    }
    EXPECT_EQ(test::NumberRaised([&] { ReadTableDef(File(), 0); }), 3428) << "a chain that begins nowhere";
}

}  // namespace
}  // namespace jet
