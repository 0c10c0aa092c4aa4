#include "platform/jet/table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>

#include "platform/jet/bytes.h"
#include "tests/jet/database_fixture.h"

namespace jet {
namespace {

using test::NumberRaised;
using test::Row;
using test::RowsOf;

std::u16string Letters(std::size_t length, char16_t letter = u'x') {
    return std::u16string(length, letter);
}

class Tables : public test::NewDatabase {
  protected:
    /// Every row read back after closing and opening again.
    std::vector<Row> Kept(Sharing sharing = Sharing::Exclusive) { return RowsOf(*ReopenTable(sharing)); }

    std::vector<Row> InIndexOrder(Table& table, std::size_t index) {
        std::vector<Row> rows;
        for (auto entry = table.Index(index).First(); !entry.AtEnd(); entry.Next()) {
            table.Read(entry.Row(), rows.emplace_back());
        }
        return rows;
    }
};

const std::vector<ColumnSpec> EveryType{{u"Boolean", ColumnType::Boolean},    {u"Byte", ColumnType::Byte},
                                        {u"Integer", ColumnType::Integer},    {u"Long", ColumnType::Long},
                                        {u"Currency", ColumnType::Currency},  {u"Single", ColumnType::Single},
                                        {u"Double", ColumnType::Double},      {u"Date", ColumnType::Date},
                                        {u"Binary", ColumnType::Binary, 510}, {u"Text", ColumnType::Text},
                                        {u"Ole", ColumnType::LongBinary},     {u"Memo", ColumnType::Memo},
                                        {u"Guid", ColumnType::Guid}};

TEST_F(Tables, KeepTheExtremesOfEveryType) {
    std::string everyByte;
    for (int i = 0; i < 256; ++i) everyByte.push_back(static_cast<char>(i));
    const std::vector<Row> rows{
        Row{false, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}},
        {true, 255, 32767, std::numeric_limits<std::int32_t>::max(),
         Currency{std::numeric_limits<std::int64_t>::max()}, double{std::numeric_limits<float>::max()},
         std::numeric_limits<double>::max(), platform::OleDate{2958465.99999},
         Binary{std::string(510, '\xFF')}, Letters(255, u'\u20AC'), Binary{everyByte},
         Letters(5000, u'\u0416'), Binary{std::string(16, '\x80')}},
        {false, 0, -32768, std::numeric_limits<std::int32_t>::min(),
         Currency{std::numeric_limits<std::int64_t>::min()},
         -double{std::numeric_limits<float>::denorm_min()}, std::numeric_limits<double>::denorm_min(),
         platform::OleDate{-657434.25}, Binary{std::string("\0", 1)}, std::u16string(u"a\0b", 3), Binary{""},
         u"", Binary{everyByte.substr(0, 16)}},
        {true, 1, -1, 0, Currency{-1}, -0.5, -1.0 / 3, platform::OleDate{0.5}, Binary{""}, u"", Binary{"x"},
         u" blanks kept ", Binary{std::string(16, '\0')}}};
    auto table = MakeTable(EveryType);
    for (const Row& row : rows) table->Insert(row);
    EXPECT_EQ(Kept(), rows);
    EXPECT_EQ(Kept(Sharing::Shared), rows);
    ExpectSoundFile();
}

TEST_F(Tables, KeepMemosOfAnyLength) {
    auto table =
        MakeTable({{u"A", ColumnType::Long}, {u"Latin", ColumnType::Memo}, {u"Cyrillic", ColumnType::Memo}});
    std::vector<Row> rows;
    for (const std::size_t length :
         {0U, 1U, 2U, 31U, 32U, 33U, 62U, 63U, 1024U, 1025U, 2037U, 2038U, 2039U, 4000U, 4074U, 100'000U}) {
        rows.insert(rows.end(), {{1, Letters(length), Letters(length, u'\u0416')},
                                 {2, Letters(length, u'y'), {}},
                                 {3, u"short", Letters(length / 2)}});
    }
    for (const Row& row : rows) table->Insert(row);
    EXPECT_EQ(Kept(), rows);
    ExpectSoundFile();
}

TEST_F(Tables, PutLongValuesWhereTheirLengthSays) {
    auto table = MakeTable({{u"Ole", ColumnType::LongBinary}});
    const auto reference = [&](std::size_t length) {
        const RowPointer row = table->Insert(Row{Binary{std::string(length, 'z')}});
        const DataPage page(mDatabase->File(), row.Page);
        return LoadU32(&page.Row(row.Row)[2]);
    };
    EXPECT_EQ(reference(64), 0x80000040U);
    EXPECT_EQ(reference(65), 0x40000041U);
    EXPECT_EQ(reference(4076), 0x40000000U + 4076);
    EXPECT_EQ(reference(4077), 4077U);
}

TEST_F(Tables, TakeNoLongValueForWhichTheyHaveNoMaps) {
    auto table = MakeTable({{u"M", ColumnType::Memo}});
    constexpr std::size_t TrailerAt = 63 + 25 + 4;  // behind header, column and name
    StoreU16(mDatabase->File().Read(table->Definition().Page).Change() + TrailerAt, 0xFFFF);
    table = ReopenTable();
    EXPECT_EQ(NumberRaised([&] { table->Insert(Row{Letters(3000)}); }), 3428);
}

TEST_F(Tables, ChainsAreLinkedAndStamped) {
    auto table = MakeTable({{u"Ole", ColumnType::LongBinary}});
    const RowPointer row = table->Insert(Row{Binary{std::string(3 * 4072, 'z')}});
    PageFile& file = mDatabase->File();
    const DataPage page(file, row.Page);
    const auto reference = page.Row(row.Row).subspan(2, 12);
    const std::uint32_t stamp = LoadU32(&reference[8]);
    EXPECT_NE(stamp, 0U);

    std::uint32_t next = LoadU32(&reference[4]);
    std::vector<std::size_t> pieces;
    for (; next != 0; next = LoadU32(DataPage(file, next >> 8).Row(0).data())) {
        const DataPage piece(file, next >> 8);
        EXPECT_EQ(LoadU32(file.Read(next >> 8).Data() + 8), pieces.empty() ? stamp : 0U);
        EXPECT_EQ(piece.RowCount(), 1U);
        pieces.push_back(piece.Row(0).size());
    }
    EXPECT_THAT(pieces, testing::ElementsAre(4076, 4076, 4076));
}

TEST_F(Tables, TakeARowOfTheLongestLengthAndNoLonger) {
    std::vector<ColumnSpec> columns;
    for (std::size_t i = 0; i < 8; ++i) {
        columns.push_back({std::u16string(1, static_cast<char16_t>(u'A' + i)), ColumnType::Text, 255});
    }
    auto table = MakeTable(columns);
    // Column count, end and offsets and count of the variable values, null mask.
    Row row(8, Value{Letters(255, u'\u0416')});
    const std::size_t overhead = 2 + 2 * (8 + 2) + 1;
    row[7] = Letters((4060 - overhead - 7 * 510) / 2, u'\u0416');
    table->Insert(row);
    EXPECT_EQ(DataPage(mDatabase->File(), table->FirstRow()->Page).Row(0).size(), 4059U);

    Row longer = row;
    std::get<std::u16string>(longer[7]).push_back(u'\u0416');
    const platform::Error error = test::ErrorOf([&] { table->Insert(longer); });
    EXPECT_EQ(error.Number, 3047);
    EXPECT_EQ(error.Description, "Record is too large.");
    EXPECT_THAT(Kept(), testing::ElementsAre(row));
}

const std::vector<ColumnSpec> KeyAndText{
    {u"Id", ColumnType::Long}, {u"Name", ColumnType::Text, 50}, {u"Note", ColumnType::Memo}};
const std::vector<IndexSpec> PrimaryAndUnique{{u"PrimaryKey", {{u"Id"}}, true},
                                              {u"Name", {{u"Name"}}, false, true}};

TEST_F(Tables, RefuseARowBeforeAnythingIsWritten) {
    auto table = MakeTable(KeyAndText, PrimaryAndUnique);
    const Row first{1, u"Smith", {}};
    table->Insert(first);
    mDatabase->Flush();
    const std::uint32_t pages = mDatabase->File().PageCount();
    const Value longNote = Letters(50'000);

    EXPECT_EQ(NumberRaised([&] { table->Insert(Row{{}, u"Jones", longNote}); }), 3058);
    EXPECT_EQ(NumberRaised([&] { table->Insert(Row{1, u"Jones", longNote}); }), 3022);
    EXPECT_EQ(NumberRaised([&] { table->Insert(Row{2, u"SMITH", longNote}); }), 3022) << "letter case";
    EXPECT_EQ(NumberRaised([&] { table->Insert(Row{{}, u"Smith", longNote}); }), 3058) << "Nulls come first";
    EXPECT_EQ(NumberRaised([&] { table->Insert(Row{2, 3, longNote}); }), 3421);
    EXPECT_EQ(NumberRaised([&] { table->Insert(Row{2, u"Jones"}); }), 3001) << "a value is missing";

    EXPECT_EQ(mDatabase->File().PageCount(), pages);
    EXPECT_THAT(Kept(), testing::ElementsAre(first));
    ExpectSoundFile();
}

TEST_F(Tables, KnowNoNullInAYesNoColumn) {
    const auto table = MakeTable({{u"A", ColumnType::Boolean}}, {{u"A", {{u"A"}}, false, true}});
    table->Insert(Row{Value{}});
    EXPECT_EQ(NumberRaised([&] { table->Insert(Row{false}); }), 3022);
    ExpectSoundFile();
}

TEST_F(Tables, LeaveNullsOutOfAnIndexThatIgnoresThem) {
    IndexSpec ignoring{u"Name", {{u"Name"}, {u"Id", false}}};
    ignoring.IgnoreNulls = true;
    auto table = MakeTable(KeyAndText);
    table->Insert(Row{{}, {}, u"neither"});
    mDatabase->CreateIndex(*table, ignoring);
    mDatabase->Flush();
    table->Insert(Row{{}, {}, u"neither"});
    table->Publish();
    table->Insert(Row{1, {}, u"one"});
    table->Insert(Row{{}, u"b", u"other"});
    table = ReopenTable();
    EXPECT_EQ(InIndexOrder(*table, 0), (std::vector<Row>{{1, {}, u"one"}, {{}, u"b", u"other"}}));
    const RowPointer first = *table->FirstRow();
    table->UpdateFixed(first, 0, 5);
    EXPECT_EQ(InIndexOrder(*table, 0).size(), 3U);
    table->UpdateFixed(first, 0, {});
    EXPECT_EQ(InIndexOrder(*table, 0).size(), 2U);
    ExpectSoundChangedFile();
}

TEST_F(Tables, GrowBeyondTheBitmapOfTheirMaps) {
    auto table =
        MakeTable({{u"A", ColumnType::Long}, {u"B", ColumnType::Binary, 510}, {u"C", ColumnType::Memo}},
                  {{u"PrimaryKey", {{u"A"}}, true}, {u"Both", {{u"B", false}, {u"A"}}}});
    constexpr int Rows = 6000;
    for (int i = 0; i < Rows; ++i) {
        table->Insert(
            Row{i * 7919 % Rows, Binary{std::string(500, 'b')}, i % 4 == 0 ? Value{Letters(2000)} : Value{}});
    }
    EXPECT_GT(mDatabase->File().PageCount(), 1500U);
    EXPECT_EQ(Kept().size(), static_cast<std::size_t>(Rows));
    ExpectSoundFile();
}

TEST_F(Tables, FillPagesUpBeforeTheyTakeNewOnes) {
    auto table = MakeTable({{u"B", ColumnType::Binary, 510}});
    const Row small{Binary{"1234567890"}};
    const std::size_t rowLength = 2 + 10 + 6 + 1 + 2;
    const std::size_t fitting = std::min<std::size_t>(255, (4096 - 14) / (rowLength + 2 - 2));
    for (std::size_t i = 0; i < fitting; ++i) table->Insert(small);
    std::optional<RowPointer> last;
    for (auto row = table->FirstRow(); row; row = table->NextRow(*row)) last = row;
    EXPECT_EQ(last->Page, table->FirstRow()->Page);
    EXPECT_NE(table->Insert(small).Page, last->Page);
}

TEST_F(Tables, GoOnFillingTheLastPageOfASharedFileOnly) {
    auto table = MakeTable(KeyAndText);
    const RowPointer first = table->Insert(Row{1, u"a", {}});
    mDatabase->Flush();
    EXPECT_GT(table->Insert(Row{2, u"b", {}}).Page, first.Page);
    constexpr std::uint32_t PageOfMSysObjects = 14;
    UsageMap(mDatabase->File(), table->Definition().FreeMap).Add(PageOfMSysObjects);
    table = ReopenTable(Sharing::Shared);
    EXPECT_EQ(table->Insert(Row{3, u"c", Letters(3000)}), (RowPointer{first.Page, 1}));
}

class FullFiles : public Tables, public testing::WithParamInterface<std::uint32_t> {};

TEST_P(FullFiles, RefuseTheRowAndStayWhole) {
    Create({.MaxPages = 150 + GetParam()});
    auto table = MakeTable(KeyAndText, PrimaryAndUnique);
    std::vector<Row> rows;
    const int number = NumberRaised([&] {
        for (std::int32_t i = 0;; ++i) {
            const std::u16string unique{static_cast<char16_t>(u'a' + i % 26),
                                        static_cast<char16_t>(u'a' + i / 26)};
            Row row{i, unique, Letters(static_cast<std::size_t>(i * 37 % 9000))};
            if (i % 3 == 0) row[1] = {};
            table->Insert(row);
            rows.push_back(row);
        }
    });
    EXPECT_EQ(number, 3036);
    EXPECT_GT(rows.size(), 20U);
    EXPECT_EQ(Kept(), rows);
    ExpectSoundFile();
}

INSTANTIATE_TEST_SUITE_P(Limits, FullFiles, testing::Range(0U, 8U));

// Changing one column

TEST_F(Tables, ChangeAFixedColumnWithItsIndexes) {
    auto table = MakeTable(
        {{u"Id", ColumnType::Long}, {u"Flag", ColumnType::Boolean}, {u"Name", ColumnType::Text, 20}},
        {{u"PrimaryKey", {{u"Id"}}, true}, {u"Both", {{u"Name"}, {u"Id", false}}}});
    std::vector<RowPointer> rows;
    for (std::int32_t i = 0; i < 5; ++i) rows.push_back(table->Insert(Row{i, false, u"same"}));
    table->UpdateFixed(rows[1], 0, 77);
    table->UpdateFixed(rows[2], 1, true);
    table->UpdateFixed(rows[0], 0, 0);

    table = ReopenTable();
    const auto ids = [&](std::size_t index) {
        std::vector<std::int32_t> found;
        for (const Row& row : InIndexOrder(*table, index)) found.push_back(std::get<std::int32_t>(row[0]));
        return found;
    };
    EXPECT_THAT(ids(0), testing::ElementsAre(0, 2, 3, 4, 77));
    EXPECT_THAT(ids(1), testing::ElementsAre(77, 4, 3, 2, 0));
    EXPECT_EQ(table->ReadColumn(rows[2], 1), Value{true});
    ExpectSoundChangedFile();
}

TEST_F(Tables, ChangeBytesOfAFixedLengthHoweverMany) {
    TableDef definition = MakeTable({{u"B", ColumnType::Binary, 100}})->Definition();
    definition.Columns[0].Flags |= Column::FixedFlag;
    WriteTableDef(mDatabase->File(), definition);
    const auto table = ReopenTable();
    table->UpdateFixed(table->Insert(Row{Binary{std::string(100, 'a')}}), 0, Binary{std::string(100, 'b')});
    EXPECT_THAT(Kept(), testing::ElementsAre(Row{Binary{std::string(100, 'b')}}));
}

TEST_F(Tables, ChangeBetweenNullAndValue) {
    auto table = MakeTable({{u"A", ColumnType::Long}, {u"B", ColumnType::Date}}, {{u"A", {{u"A"}}}});
    const RowPointer row = table->Insert(Row{5, {}});
    const Table::Change both[] = {{1, platform::OleDate{40000.5}}, {0, {}}};
    table->UpdateFixed(row, both);
    const Table::Change refused[] = {{1, {}}, {0, u"x"}};
    EXPECT_EQ(NumberRaised([&] { table->UpdateFixed(row, refused); }), 3421);
    EXPECT_THAT(Kept(), testing::ElementsAre(Row{{}, platform::OleDate{40000.5}}));
    ExpectSoundChangedFile();
}

TEST_F(Tables, RefuseAChangeBeforeAnythingIsWritten) {
    auto table = MakeTable(KeyAndText, PrimaryAndUnique);
    const RowPointer first = table->Insert(Row{1, u"a", {}});
    table->Insert(Row{2, u"b", {}});
    EXPECT_EQ(NumberRaised([&] { table->UpdateFixed(first, 0, 2); }), 3022);
    EXPECT_EQ(NumberRaised([&] { table->UpdateFixed(first, 0, {}); }), 3058);
    EXPECT_EQ(NumberRaised([&] { table->UpdateFixed(first, 0, u"x"); }), 3421);
    EXPECT_EQ(NumberRaised([&] { table->UpdateFixed(first, 1, u"x"); }), 3251);
    EXPECT_THAT(Kept(), testing::ElementsAre(Row{1, u"a", {}}, Row{2, u"b", {}}));
    ExpectSoundFile();
}

// Rows that the engine moved or deleted

class MovedRows : public Tables {
  protected:
    MovedRows() : mTable(MakeTable({{u"A", ColumnType::Long}})) {
        for (std::int32_t i = 0; i < 4; ++i) mRows.push_back(mTable->Insert(Row{i}));
    }

    void SetFlags(unsigned row, std::uint16_t flags) {
        PageHandle page = mDatabase->File().Read(mRows[0].Page);
        std::uint8_t* entry = page.Change() + 14 + 2 * row;
        StoreU16(entry, static_cast<std::uint16_t>((LoadU16(entry) & RowStartMask) | flags));
    }

    void PointTo(unsigned row, RowPointer target) {
        StoreU32(DataPage(mDatabase->File(), mRows[0].Page).ChangeRow(row).data(), target.Dword());
        SetFlags(row, RowMovedAway);
    }

    std::shared_ptr<Table> mTable;
    std::vector<RowPointer> mRows;
};

TEST_F(MovedRows, AreReadOnceAtTheirNewPlaceUnderTheirOldName) {
    PointTo(1, mRows[3]);
    SetFlags(3, RowMovedHere);
    EXPECT_EQ(RowsOf(*mTable), (std::vector<Row>{{0}, {3}, {2}}));
    mTable->UpdateFixed(mRows[1], 0, 30);
    EXPECT_EQ(mTable->ReadColumn(mRows[1], 0), Value{30});
    EXPECT_EQ(mTable->NextRow(mRows[1]), mRows[2]);
}

TEST_F(MovedRows, RowsBeyondTheHighestNumberAreNotRead) {
    DataPage page(mDatabase->File(), mRows[0].Page);
    const std::vector<std::uint8_t> row(page.Row(0).begin(), page.Row(0).end());
    while (page.RowCount() < 300) page.Append(row);
    EXPECT_EQ(RowsOf(*mTable).size(), MaxRowsPerPage);
    EXPECT_NE(mTable->Insert(Row{9}).Page, page.Number());
}

TEST_F(MovedRows, OlderAndShorterRowsAreNotChanged) {
    DataPage page(mDatabase->File(), mRows[0].Page);
    page.ChangeRow(0)[0] = 0;  // columns that the row has
    EXPECT_EQ(NumberRaised([&] { mTable->UpdateFixed(mRows[0], 0, 5); }), 3251);
    page.ResizeRow(1, 5);
    EXPECT_EQ(NumberRaised([&] { mTable->UpdateFixed(mRows[1], 0, 5); }), 3428);
}

TEST_F(MovedRows, DeletedRowsAreSkipped) {
    SetFlags(0, RowDeleted);
    SetFlags(2, RowDeleted);
    EXPECT_EQ(RowsOf(*mTable), (std::vector<Row>{{1}, {3}}));
    EXPECT_EQ(NumberRaised([&] { mTable->ReadColumn(mRows[2], 0); }), 3167);
}

TEST_F(MovedRows, APointerInACircleIsDamage) {
    PointTo(1, mRows[2]);
    PointTo(2, mRows[1]);
    EXPECT_EQ(NumberRaised([&] { mTable->ReadColumn(mRows[1], 0); }), 3428);
}

TEST_F(MovedRows, APointerToNowhereIsDamage) {
    for (const RowPointer target :
         {RowPointer{mRows[0].Page, 200}, RowPointer{0xFFFFFF, 0}, RowPointer{2, 0}, RowPointer{14, 0}}) {
        PointTo(1, target);
        EXPECT_EQ(NumberRaised([&] { mTable->ReadColumn(mRows[1], 0); }), 3428) << target.Page;
    }
    DataPage(mDatabase->File(), mRows[0].Page).ResizeRow(1, 3);
    EXPECT_EQ(NumberRaised([&] { mTable->ReadColumn(mRows[1], 0); }), 3428) << "a cut pointer";
}

}  // namespace
}  // namespace jet
