// Files that something has damaged: every one gives an error of the data-access layer, or what is left of its
// rows. Nothing crashes, hangs or asks for more memory than the file has bytes.
#include <random>
#include <tuple>

#include "platform/jet/bytes.h"
#include "tests/jet/database_fixture.h"

namespace jet {
namespace {

using test::Row;

constexpr std::size_t PageSize = 4096;

/// A file with a table of 120 rows (long memos among them) and two indexes. Its places are known: the table's
/// definition is page 16, its maps are page 17.
class BrokenFiles : public test::NewDatabase {
  protected:
    BrokenFiles() {
        auto table = MakeTable(
            {{u"Id", ColumnType::Long}, {u"Name", ColumnType::Text, 100}, {u"Memo", ColumnType::Memo}},
            {{u"PrimaryKey", {{u"Id"}}, true}, {u"Name", {{u"Name"}}}});
        for (std::int32_t i = 0; i < 120; ++i) {
            const auto length = static_cast<std::size_t>(i * 61 % 7000);
            table->Insert(Row{i, std::u16string(60, static_cast<char16_t>(u'a' + i % 26)),
                              std::u16string(length, u'm')});
        }
        mFirstRow = *table->FirstRow();
        table->Publish();
        mRoot = table->Definition().RealIndexes[0].RootPage;
        mDatabase->Close();
        mDatabase.reset();
        mBytes = test::ReadBytes(Path());
    }

    /// Reads whatever the file offers. 0 when nothing was found wrong.
    int ReadEverything(const std::string& bytes) {
        test::WriteBytes(Path(), bytes);
        return test::NumberRaised([&] {
            const auto database = Database::Open(Path(), Sharing::Shared);
            std::vector<std::u16string> names = database->TableNames();
            names.insert(names.end(), {u"MSysObjects", u"MSysACEs"});
            for (const std::u16string& name : names) {
                const auto table = database->FindTable(name);
                if (table == nullptr) continue;
                test::RowsOf(*table);
                Row row;
                for (std::size_t i = 0; i < table->Definition().RealIndexes.size(); ++i) {
                    for (auto entry = table->Index(i).First(); !entry.AtEnd(); entry.Next()) {
                        table->Read(entry.Row(), row);
                    }
                }
            }
        });
    }

    /// The pages of long values, with or without the stamp of a chain's first piece.
    std::vector<std::uint32_t> LongValuePages(bool stamped) {
        std::vector<std::uint32_t> pages;
        for (std::uint32_t page = 19; page < mBytes.size() / PageSize; ++page) {
            if (LoadU32(At(mBytes, page, PageOwner)) == LongValueOwner &&
                (LoadU32(At(mBytes, page, 8)) != 0) == stamped) {
                pages.push_back(page);
            }
        }
        return pages;
    }

    std::uint8_t* At(std::string& bytes, std::uint32_t page, std::size_t offset) const {
        return reinterpret_cast<std::uint8_t*>(bytes.data()) + page * PageSize + offset;
    }

    RowPointer mFirstRow;
    std::uint32_t mRoot = 0;  // of the primary key
    std::string mBytes;
};

TEST_F(BrokenFiles, TheSoundOneHasNothingWrong) {
    EXPECT_EQ(ReadEverything(mBytes), 0);
}

TEST_F(BrokenFiles, CutAnywhere) {
    for (std::size_t pages = 1; pages < mBytes.size() / PageSize; pages += 5) {
        const int number = ReadEverything(mBytes.substr(0, pages * PageSize + 100));
        EXPECT_TRUE(number == 3428 || number == 3049) << pages << " pages: " << number;
    }
    EXPECT_EQ(ReadEverything(mBytes.substr(0, 0x97)), 3343);
}

constexpr std::uint32_t FirstRowPage = 0;
constexpr std::uint32_t RootPage = 1;

struct Break {
    const char* Name;
    std::uint32_t Page;
    std::size_t Offset;
    std::uint32_t Dword;
    int Number = 3428;
};

TEST_F(BrokenFiles, DamagedPlacesAreFound) {
    const Break places[] = {{"ObjectsDefinitionIsADataPage", 2, 0, 0x0D480101, 3049},
                            {"ObjectsDefinitionTooLong", 2, 8, 0x7FFFFFFF, 3049},
                            {"AcesDefinitionRunsInACircle", 3, 4, 3, 3049},
                            {"VariableColumnsBeyondAllColumns", 16, 0x29, 0x00050003},
                            {"LongOfAnotherSize", 16, 108, 0x00050000},
                            {"IndexOfAMissingColumn", 16, 192, 0xFF010063},
                            {"OwnedMapOnNoDataPage", 16, 0x37, 0x00001000},
                            {"OwnedMapSlotMissing", 16, 0x37, 0x000011FF},
                            {"OwnedMapOnATablesPage", 16, 0x37, 0x00000E00},
                            {"MapOfUnknownType", 17, PageSize - 69, 0x00000007},
                            {"MapNamesPagesBeyondTheEnd", 17, PageSize - 4, 0xFFFFFFFF},
                            {"MapNamesAnotherTablesPage", 17, PageSize - 69 + 5, 0x00004000},
                            {"DataPageWithoutType", FirstRowPage, 0, 0},
                            {"DataPageOfAnotherOwner", FirstRowPage, 4, 99},
                            {"RowCountBeyondThePage", FirstRowPage, 12, 0x0FFFFFFF},
                            {"SlotsOutsideThePage", FirstRowPage, 14, 0x1FFF1FFF},
                            {"SlotsInTheRowTable", FirstRowPage, 14, 0x00040004},
                            {"SlotsAscend", FirstRowPage, 14, 0x0FFF0010},
                            {"ShortReferenceToAMemo", FirstRowPage, PageSize - 9, 0x004C0050},
                            {"RootIsNoIndexPage", RootPage, 0, 0x00000101},
                            {"RootOfAnotherTable", RootPage, 4, 99}};
    for (const Break& place : places) {
        std::string bytes = mBytes;
        const std::uint32_t page = place.Page == FirstRowPage ? mFirstRow.Page
                                   : place.Page == RootPage   ? mRoot
                                                              : place.Page;
        StoreU32(At(bytes, page, place.Offset), place.Dword);
        EXPECT_EQ(ReadEverything(bytes), place.Number) << place.Name;
    }
}

TEST_F(BrokenFiles, ALongValueMayNotClaimMoreThanTheFile) {
    // The first row's memo has length 0; the last 12 bytes before its trailer of 10 bytes are the reference.
    std::string bytes = mBytes;
    ASSERT_EQ(LoadU32(At(bytes, mFirstRow.Page, PageSize - 21)), 0x80000000U);
    for (const std::uint32_t length : {0x3FFFFFFFU, 0x7FFFFFFFU, 0x00100000U, 0xBFFFFFFFU, 0x80000001U}) {
        StoreU32(At(bytes, mFirstRow.Page, PageSize - 21), length);
        EXPECT_EQ(ReadEverything(bytes), 3428) << length;
    }
    StoreU32(At(bytes, mFirstRow.Page, PageSize - 21), 0);
    EXPECT_EQ(ReadEverything(bytes), 0) << "no text, and no piece that holds it";
}

TEST_F(BrokenFiles, AChainOfPiecesThatRunsInACircleEnds) {
    std::string bytes = mBytes;
    ASSERT_FALSE(LongValuePages(true).empty());
    for (const std::uint32_t page : LongValuePages(true)) StoreU32(At(bytes, page, 20), page << 8);
    const int number = ReadEverything(bytes);
    EXPECT_TRUE(number == 0 || number == 3428) << number;
}

TEST_F(BrokenFiles, PiecesThatAreDeletedOrTooShortAreFound) {
    const std::tuple<bool, std::uint16_t, const char*> slots[] = {
        {true, 0xCFFC, "deleted"}, {true, 0x0FFC, "a link only"}, {false, 0x0FFC, "too short"}};
    for (const auto& [stamped, slot, what] : slots) {
        std::string bytes = mBytes;
        for (const std::uint32_t page : LongValuePages(stamped)) StoreU16(At(bytes, page, 14), slot);
        EXPECT_EQ(ReadEverything(bytes), 3428) << what;
    }
}

TEST_F(BrokenFiles, RandomBytesNeverCrash) {
    std::mt19937 random(20240229);
    const auto below = [&random](std::size_t end) { return static_cast<std::size_t>(random() % end); };
    for (int round = 0; round < 150; ++round) {
        std::string bytes = mBytes;
        const std::size_t changes = 1 + below(8);
        for (std::size_t i = 0; i < changes; ++i) {
            // Mostly in the heads of pages, where the structure is.
            const std::size_t page = below(bytes.size() / PageSize);
            const std::size_t offset = below(3) == 0 ? below(PageSize) : below(0x60);
            bytes[page * PageSize + offset] = static_cast<char>(below(256));
        }
        const int number = ReadEverything(bytes);
        EXPECT_TRUE(number == 0 || (number >= 3000 && number < 4000)) << "round " << round << ": " << number;
    }
}

}  // namespace
}  // namespace jet
