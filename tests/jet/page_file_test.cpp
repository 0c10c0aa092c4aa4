#include "platform/jet/page_file.h"

#include <gtest/gtest.h>
#include <tuple>

#include "platform/jet/bytes.h"
#include "tests/support/expect_error.h"
#include "tests/support/hex.h"
#include "tests/support/scratch.h"

namespace jet {
namespace {

using test::ErrorOf;
using test::NumberRaised;

// Page 0 of an empty database as the engine itself writes it.
constexpr std::string_view EngineHeader =
    "00 01 00 00 53 74 61 6E 64 61 72 64 20 4A 65 74 20 44 42 00 01 00 00 00 B5 6E 03 62 60 09 C2 55 "
    "E9 A9 67 72 40 3F 00 9C 7E 9F 90 FF 85 9A 31 C5 79 BA ED 30 BC DF CC 9D 63 D9 E4 C3 9F 46 FB 8A "
    "BC 4E DF 5E EC 37 04 E1 9C FA 9F FB 28 E6 4A 13 8A 60 0D 31 7B 36 AC D7 DF B1 2E 51 13 43 96 0A "
    "B1 33 6D C4 79 5B CB 10 7C 2A 19 D7 7C 99 08 1F 98 FD 2C CA 99 AF 52 95 84 66 5F 95 F8 D0 89 24 "
    "85 67 C6 1F 27 44 D2 EE CF 65 ED FF 07 C7 46 A1 78 16 0C ED E9 2D 62 D4 54 06 00 00 34 2E 30 00";

class PageFiles : public testing::Test {
  protected:
    std::string Path() const { return (mFolder / "pages.mdb").string(); }

    std::unique_ptr<PageFile> Create(PageFileLimits limits = {}) { return PageFile::Create(Path(), limits); }

    std::string FileBytes() const { return test::ReadBytes(Path()); }

    /// A file of one page whose header has been changed at one place.
    void WriteHeader(std::size_t at, char value) const {
        std::string bytes = test::Hex(EngineHeader);
        bytes.resize(4096);
        bytes[at] = value;
        test::WriteBytes(Path(), bytes);
    }

    test::ScratchFolder mFolder;
};

TEST_F(PageFiles, ANewFileBeginsWithTheEnginesOwnHeader) {
    Create()->Checkpoint();
    const std::string bytes = FileBytes();
    ASSERT_EQ(bytes.size(), 2 * 4096U);
    EXPECT_EQ(test::ToHex(bytes.substr(0, 0xA0)), EngineHeader);
    EXPECT_EQ(bytes.substr(0xA0, 0xE00 - 0xA0), std::string(0xE00 - 0xA0, '\0'));
    EXPECT_EQ(test::ToHex(bytes.substr(0xE00, 6)), "01 01 00 01 00 01");
    EXPECT_EQ(test::ToHex(bytes.substr(0xFFC, 4)), "00 01 00 01");
}

TEST_F(PageFiles, ANewGlobalMapHasOnlyTheFirstTwoPagesInUse) {
    Create()->Checkpoint();
    const std::string page = FileBytes().substr(4096);
    EXPECT_EQ(test::ToHex(page.substr(0, 18)), "01 01 64 0F 01 00 00 00 00 00 00 00 02 00 BB 0F 76 0F");
    EXPECT_EQ(page.substr(0xF76, 69), std::string(69, '\0'));
    EXPECT_EQ(page.substr(0xFBB), test::Hex("00 00 00 00 00 FC") + std::string(63, '\xFF'));
}

TEST_F(PageFiles, CreatingRefusesWhatIsThere) {
    test::WriteBytes(Path(), "something");
    const platform::Error error = ErrorOf([&] { Create(); });
    EXPECT_EQ(error.Number, 3204);
    EXPECT_EQ(error.Source, "DAO.Database");
    EXPECT_EQ(error.Description, "Database already exists.");
    EXPECT_EQ(NumberRaised([&] { PageFile::Create((mFolder / "no/such/folder.mdb").string()); }), 3044);
}

TEST_F(PageFiles, OpeningSaysWhatIsWrong) {
    const auto open = [&] { return PageFile::Open(Path(), Sharing::Shared); };
    EXPECT_EQ(ErrorOf(open).Description, "Could not find file '" + Path() + "'.");
    for (const char* const bytes : {"", "this is no database"}) {
        test::WriteBytes(Path(), bytes);
        EXPECT_EQ(ErrorOf(open).Description, "Unrecognized database format '" + Path() + "'.");
    }
    const std::tuple<std::size_t, char, const char*> strange[] = {{0x00, 1, "not the first page"},
                                                                  {0x01, 0, "not the mark of a page"},
                                                                  {0x05, 'T', "another engine's name"},
                                                                  {0x14, 2, "a later version"},
                                                                  {0x3E, 0, "encrypted"}};
    for (const auto& [at, byte, what] : strange) {
        WriteHeader(at, byte);
        EXPECT_EQ(NumberRaised(open), 3343) << what;
    }
    WriteHeader(0x14, 0);
    EXPECT_EQ(open()->PageSize(), 2048U);
    WriteHeader(0x14, 1);
    EXPECT_EQ(open()->PageSize(), 4096U);
    std::filesystem::resize_file(Path(), std::uintmax_t{MaxPageCount + 1} * 4096);
    EXPECT_EQ(NumberRaised(open), 3343) << "longer than a database can be";
}

TEST_F(PageFiles, AnExclusiveFileKeepsOthersOut) {
    const auto file = Create();
    file->Checkpoint();
    EXPECT_EQ(NumberRaised([&] { PageFile::Open(Path(), Sharing::Shared); }), 3051);
    EXPECT_EQ(NumberRaised([&] { PageFile::Open(Path(), Sharing::Exclusive); }), 3045);
}

TEST_F(PageFiles, ASmallCacheHoldsAnyNumberOfPages) {
    constexpr std::uint32_t Pages = 1000;
    auto file = Create({.CacheBytes = 64 * 4096});
    const PageHandle held = file->MakeNew(file->Allocate(), PageType::Data);
    for (std::uint32_t i = 0; i < Pages; ++i) {
        PageHandle page = file->MakeNew(file->Allocate(), PageType::Data);
        StoreU32(page.Change() + 100, page.Number() * 7);
    }
    const std::uint8_t* heldBytes = held.Data();
    for (std::uint32_t page = held.Number() + 1; page <= held.Number() + Pages; ++page) {
        ASSERT_EQ(LoadU32(file->Read(page).Data() + 100), page * 7);
    }
    EXPECT_EQ(held.Data(), heldBytes) << "a held page stays where it is";
    file->Checkpoint();
    std::vector<PageHandle> all;
    while (all.size() < Pages) all.push_back(file->Read(held.Number() + 1 + std::uint32_t(all.size())));
    for (const PageHandle& page : all) ASSERT_EQ(LoadU32(page.Data() + 100), page.Number() * 7);
}

TEST_F(PageFiles, APageChangedWhileItIsHeldKeepsAllChanges) {
    auto file = Create();
    PageHandle held = file->MakeNew(file->Allocate(), PageType::Data);
    std::uint8_t* bytes = held.Change();
    file->Checkpoint();
    bytes[50] = 99;  // through the pointer taken before the flush
    const std::uint32_t number = held.Number();
    held.Release();
    file->Checkpoint();
    EXPECT_EQ(FileBytes()[number * 4096 + 50], 99);
}

TEST_F(PageFiles, FreePagesAreTakenLowestFirst) {
    auto file = Create();
    std::uint32_t last = 0;
    for (int i = 0; i < 30; ++i) last = file->Allocate();
    EXPECT_EQ(last, 31U);
    for (const std::uint32_t page : {20U, 9U, 15U}) file->Free(page);
    EXPECT_EQ(file->Allocate(), 9U);
    EXPECT_EQ(file->Allocate(), 15U);
    file->Free(10);
    EXPECT_EQ(file->Allocate(), 10U);
    EXPECT_EQ(file->Allocate(), 20U);
    EXPECT_EQ(file->Allocate(), 32U);

    for (std::uint32_t page = 25; page <= 32; ++page) file->Free(page);
    file->Checkpoint();
    EXPECT_EQ(FileBytes().size(), 33 * 4096U) << "pages that nobody wrote";
    file->Sync();
    EXPECT_EQ(FileBytes().size(), 25 * 4096U) << "those that are free at the end";
    file->Free(2);
    file->Sync();
    EXPECT_EQ(NumberRaised([&] { file->Allocate(); }), 3428) << "a definition that every database needs";
}

TEST_F(PageFiles, TheLimitIsAnErrorBeforeAnythingIsTaken) {
    auto file = Create({.MaxPages = 10});
    file->Reserve(8);
    const platform::Error error = ErrorOf([&] { file->Reserve(9); });
    EXPECT_EQ(error.Number, 3036);
    EXPECT_EQ(error.Description, "Database has reached maximum size.");
    for (std::uint32_t page = 2; page < 10; ++page) EXPECT_EQ(file->Allocate(), page);
    EXPECT_EQ(NumberRaised([&] { file->Allocate(); }), 3036);
    EXPECT_EQ(file->PageCount(), 10U);
}

class SharedPageFiles : public PageFiles {
  protected:
    SharedPageFiles() {
        Create()->Checkpoint();
        mMine = PageFile::Open(Path(), Sharing::Shared);
        mTheirs = PageFile::Open(Path(), Sharing::Shared);
    }

    static void SetByte(PageFile& file, std::uint8_t value) { file.Read(1).Change()[ByteAt] = value; }
    static int ByteOf(PageFile& file) { return file.Read(1).Data()[ByteAt]; }

    static constexpr std::size_t ByteAt = 1000;
    std::unique_ptr<PageFile> mMine;
    std::unique_ptr<PageFile> mTheirs;
};

TEST_F(SharedPageFiles, AChangeWithoutCommitIsForgotten) {
    PageHandle held;
    {
        SharedChange change(*mMine);
        SetByte(*mMine, 5);
        EXPECT_EQ(ByteOf(*mTheirs), 0);
        EXPECT_EQ(mMine->Allocate(), 2U);
        EXPECT_EQ(NumberRaised([&] { mMine->Read(99); }), 3428);
        held = mMine->Read(1);
    }
    EXPECT_EQ(mMine->PageCount(), 2U);
    EXPECT_EQ(ByteOf(*mMine), 0) << "though the page is held";
    held.Release();
    EXPECT_EQ(ByteOf(*mMine), 0);
}

TEST_F(SharedPageFiles, NothingIsWrittenOverAnothersChange) {
    for (const bool isHeldAtCommit : {false, true}) {
        PageHandle held;
        for (const std::uint8_t mine : {std::uint8_t{8}, std::uint8_t{9}}) {
            const auto theirs = static_cast<std::uint8_t>(mine + 10);
            {
                SharedChange change(*mTheirs);
                SetByte(*mTheirs, theirs);
                change.Commit();
            }
            SharedChange change(*mMine);
            PageHandle page = mMine->Read(1);
            page.Change()[ByteAt + 1] = mine;
            if (isHeldAtCommit) held = std::move(page);
            page.Release();
            change.Commit();
            held.Release();
            EXPECT_EQ(ByteOf(*mTheirs), theirs) << isHeldAtCommit;
        }
        mMine->Sync();
    }
    EXPECT_EQ(ByteOf(*mTheirs), 19);
}

TEST_F(SharedPageFiles, PagesThatAnotherAppendedCanBeRead) {
    {
        SharedChange change(*mTheirs);
        mTheirs->MakeNew(mTheirs->Allocate(), PageType::Data);
        change.Commit();
    }
    EXPECT_EQ(mMine->Read(2).Type(), PageType::Data);
    std::filesystem::resize_file(Path(), 2 * 4096 + 100);
    EXPECT_EQ(NumberRaised([&] { mMine->Read(2); }), 3428) << "nor when he has cut one since";
}

}  // namespace
}  // namespace jet
