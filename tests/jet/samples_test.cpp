// Files made by the engine itself: what this code reads in them, and that it writes an empty database as the
// engine does. VANTORA_SAMPLES names their folder.
#include <cstdlib>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>

#include "platform/jet/bytes.h"
#include "platform/jet/database.h"
#include "platform/jet/system_tables.h"
#include "tests/jet/database_fixture.h"

namespace jet {
namespace {

using test::Row;
using test::RowsOf;

class Samples : public test::NewDatabase {
  protected:
    void SetUp() override {
        const char* folder = std::getenv("VANTORA_SAMPLES");
        if (folder == nullptr) GTEST_SKIP() << "VANTORA_SAMPLES names no folder with the engine's files";
        mSamples = folder;
    }

    std::string Sample(const std::string& name) const { return (mSamples / name).string(); }

    /// A sample's copy, open for changing.
    void OpenCopy(const std::string& name, Sharing sharing) {
        std::filesystem::copy_file(Sample(name), Path());
        std::filesystem::permissions(Path(), std::filesystem::perms::owner_all);
        mDatabase = Database::Open(Path(), sharing);
    }

    std::shared_ptr<Table> TableOf(const std::string& sample, std::u16string_view table) {
        mDatabase.reset();
        mDatabase = Database::Open(Sample(sample), Sharing::Shared);
        return mDatabase->FindTable(table);
    }

    std::filesystem::path mSamples;
};

// Bytes that engines leave as they were: places of variable columns in the fixed area, third bytes of unused
// key slots, a dword of index blocks.
const std::map<std::size_t, std::vector<std::size_t>> LeftAsTheyWere{
    {2, {0xE9, 0x134, 0x135, 0x14D, 0x14E, 0x167, 0x17F, 0x199, 0x1E3, 0x321, 0x327}},
    {3, {0xAB, 0xFA, 0x106, 0x109, 0x115, 0x117}},
    {4, {0x7A, 0xC5, 0xDE, 0x110, 0x19F, 0x1A5, 0x1AB, 0x1B7, 0x1B9}}};

TEST_F(Samples, AnEmptyDatabaseIsWrittenAsTheEngineWritesIt) {
    Create();
    mDatabase->Close();
    const std::string expected = test::ReadBytes(Sample("adox_jet4.mdb"));
    const std::string written = test::ReadBytes(Path());
    ASSERT_EQ(written.size(), expected.size());

    std::set<std::size_t> ignored;
    for (const auto& [page, offsets] : LeftAsTheyWere) {
        for (const std::size_t offset : offsets) ignored.insert(page * 4096 + offset);
    }
    // The two dates of each object, behind count, ids and type.
    constexpr std::size_t ObjectsData = 14 * 4096;
    for (const std::size_t row : {0xFB5U, 0xF64U, 0xF0BU, 0xEC0U, 0xE6BU, 0xE1CU, 0xDC7U, 0xD66U}) {
        for (std::size_t i = 0; i < 16; ++i) ignored.insert(ObjectsData + row + 12 + i);
    }
    std::vector<std::size_t> different;
    for (std::size_t i = 0; i < expected.size(); ++i) {
        if (written[i] != expected[i] && !ignored.contains(i)) different.push_back(i);
    }
    EXPECT_THAT(different, testing::IsEmpty());
}

struct KnownTable {
    const char* File;
    std::u16string Table;
    std::size_t Rows;
    std::size_t Columns;
};

TEST_F(Samples, TablesHoldTheirRows) {
    const KnownTable tables[] = {{"nwind.mdb", u"Order Details", 2155, 5},
                                 {"nwind.mdb", u"Orders", 830, 14},
                                 {"nwind.mdb", u"Customers", 91, 11},
                                 {"nwind.mdb", u"Employees", 9, 17},
                                 {"nwind.mdb", u"Categories", 8, 4},
                                 {"testV1997.mdb", u"Table1", 2, 9},
                                 {"testV1997.mdb", u"Table2", 0, 89},
                                 {"delColTestV1997.mdb", u"Table1", 2, 4},
                                 {"testIndexCodesV1997.mdb", u"Table1", 275, 2},
                                 {"testIndexCodesV1997.mdb", u"Table14_desc", 256, 2},
                                 {"indexTestV1997.mdb", u"Table1", 4, 5},
                                 {"indexTestV2000.mdb", u"Table1", 4, 5},
                                 {"compIndexTestV2000.mdb", u"Table1", 512, 3},
                                 {"delTestV2000.mdb", u"Table", 2, 2},
                                 {"overflowTestV2000.mdb", u"Table1", 7, 9},
                                 {"fixedTextTestV2000.mdb", u"users", 2, 10},
                                 {"test2V2000.mdb", u"MSP_PROJECTS", 1, 74}};
    for (const KnownTable& known : tables) {
        SCOPED_TRACE(known.File);
        const auto table = TableOf(known.File, known.Table);
        ASSERT_NE(table, nullptr);
        EXPECT_EQ(RowsOf(*table).size(), known.Rows);
        EXPECT_EQ(table->RowCount(), known.Rows);
        EXPECT_EQ(table->Definition().Columns.size(), known.Columns);
    }
}

TEST_F(Samples, LongValuesOfEveryKindAreRead) {
    std::vector<std::size_t> lengths;
    for (const auto& [file, name] :
         {std::pair("nwind.mdb", u"Categories"), std::pair("test2V2000.mdb", u"MSysObjects"),
          std::pair("test2V2000.mdb", u"MSysAccessObjects"), std::pair("test2V2000.mdb", u"MSP_PROJECTS")}) {
        for (const Row& row : RowsOf(*TableOf(file, name))) {
            for (const Value& value : row) {
                if (const auto* bytes = std::get_if<Binary>(&value)) lengths.push_back(bytes->Bytes.size());
            }
        }
    }
    EXPECT_THAT(lengths, testing::IsSupersetOf({10'746U, 12'757U, 22'970U})) << "chains of pages";
}

/// Changes the first Long of every row of a table with indexes, in both versions of the format.
class ChangedSamples : public Samples, public testing::WithParamInterface<const char*> {};

TEST_P(ChangedSamples, KeepIndexesAndRowsTogether) {
    OpenCopy(GetParam(), Sharing::Shared);
    auto table = mDatabase->FindTable(u"Table1");
    const std::size_t column = *table->Definition().FindColumn(u"id");
    std::vector<Row> expected = RowsOf(*table);
    for (Row& row : expected) row[column] = std::get<std::int32_t>(row[column]) + 1000;
    for (auto row = table->FirstRow(); row; row = table->NextRow(*row)) {
        table->UpdateFixed(*row, column, std::get<std::int32_t>(table->ReadColumn(*row, column)) + 1000);
    }
    Reopen();
    EXPECT_EQ(RowsOf(*mDatabase->FindTable(u"Table1")), expected);
    ExpectSoundChangedFile();
}

INSTANTIATE_TEST_SUITE_P(Versions, ChangedSamples,
                         testing::Values("indexTestV1997.mdb", "indexTestV2000.mdb"));

TEST_F(Samples, ATableCanBeAddedToAFileOfTheEngine) {
    OpenCopy("indexTestV2000.mdb", Sharing::Exclusive);
    auto table = mDatabase->CreateTable(u"New", {{u"A", ColumnType::Long}, {u"B", ColumnType::Memo}});
    mDatabase->CreateIndex(*table, {u"PrimaryKey", {{u"A"}}, true});
    table->Insert(Row{1, std::u16string(3000, u'x')});
    Reopen();
    EXPECT_THAT(RowsOf(*mDatabase->FindTable(u"New")),
                testing::ElementsAre(Row{1, std::u16string(3000, u'x')}));
    const auto objects = mDatabase->FindTable(u"MSysObjects");
    const std::size_t owner = *objects->Definition().FindColumn(u"Owner");
    const std::size_t name = *objects->Definition().FindColumn(u"Name");
    std::map<std::u16string, Value> owners;
    for (const Row& row : RowsOf(*objects)) owners[std::get<std::u16string>(row[name])] = row[owner];
    EXPECT_EQ(owners.at(u"New"), owners.at(u"MSysDb")) << "ids are taken from the file";
}

}  // namespace
}  // namespace jet
