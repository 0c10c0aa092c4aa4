#include "engine/logical_file.h"

#include <gtest/gtest.h>

#include "tests/engine/site_builder.h"
#include "tests/support/expect_error.h"

namespace engine {
namespace {

class LogicalFiles : public testing::Test {
  protected:
    std::shared_ptr<cLogicalFile> Open(const ByteString& name) {
        if (!gEngine) mSite.Start();
        return gEngine->LogicalOpen(name);
    }

    test::SiteBuilder mSite;
};

TEST_F(LogicalFiles, NumbersOfAnEntryAreUnsignedButTheLastRecord) {
    mSite.AddFile("A", 'X', 0, 0, "");
    mSite.Directory =
        test::Padded("A", 10) + test::Hex("FF FF FE FF FE") + "X" + test::Hex("FF FF FF FE") + test::Nul(12);
    const auto file = Open("A");
    ASSERT_TRUE(file);
    EXPECT_EQ(file->Position, 16777214);
    EXPECT_EQ(file->RecordLength, 65534);
    EXPECT_EQ(file->LastRecord, -2);
    EXPECT_EQ(file->FileType, "X");
    EXPECT_EQ(file->Flags, 0x2020);
}

TEST_F(LogicalFiles, NamesAreQualifiedWithTheSiteDirectory) {
    mSite.AddFile("ARMAST", 'L', 8, 1, test::Nul(16));
    *mSite.Links += test::LinkEntry(":D02:ARMAST", "KSW:D01") + test::LinkEntry(":d01:armast2", "KSW:D01");
    const auto file = Open("ARMAST");
    test::WriteBytes(mSite.InShare("KSW/D01"), mSite.Directory.substr(0, 9));  // it is read once a name
    EXPECT_EQ(Open("armast"), file);
    test::WriteBytes(mSite.InShare("KSW/D01"), mSite.Directory);
    const auto elsewhere = Open(":D02:ARMAST");
    ASSERT_TRUE(elsewhere);
    EXPECT_NE(elsewhere, file);
    EXPECT_EQ(elsewhere->OpenFile, file->OpenFile);
    EXPECT_EQ(gLogicalFiles->Count(), 2);
    EXPECT_FALSE(Open("D02:ARMAST"));
    EXPECT_FALSE(Open(""));
    EXPECT_FALSE(Open(":"));
}

TEST_F(LogicalFiles, LinksIgnoreLetterCaseEntriesDoNot) {
    mSite.AddFile("armast", 'L', 8, 1, test::Nul(16));
    EXPECT_FALSE(Open("ARMAST"));
    EXPECT_TRUE(Open("armast"));
}

TEST_F(LogicalFiles, TheFirstOfManyEntriesIsTaken) {
    const std::int32_t first = mSite.AddFile("SAME", 'L', 8, 1, test::Nul(16));
    mSite.AddFile("SAME", 'L', 16, 2, test::Nul(16));
    for (int i = 0; i < 300; ++i)
        mSite.Directory += test::DirectoryEntryBytes("N" + std::to_string(i), i, 1, 'L', 1);
    *mSite.Links += test::LinkEntry(":D01:N299", "KSW:D01");
    EXPECT_EQ(Open("SAME")->Position, first);
    EXPECT_EQ(Open("N299")->Position, 299);
}

TEST_F(LogicalFiles, TheMarkOfTheExtendedFormatIsReadFromTheHeader) {
    const std::string marked = test::With(test::Nul(2048), 15, "09");
    mSite.AddFile("PLAIN", 'L', 2048, 1, marked);
    mSite.AddFile("SMALL", 'I', 512, 1, test::With(test::Nul(512), 15, "08"));
    mSite.AddFile("LARGE", 'I', 2048, 1, marked);
    mSite.AddFile("BEYOND", 'I', 2048, 1, "");
    EXPECT_FALSE(Open("PLAIN")->IsamPlus);
    EXPECT_FALSE(Open("SMALL")->IsamPlus);
    EXPECT_TRUE(Open("LARGE")->IsamPlus);
    EXPECT_FALSE(Open("BEYOND")->IsamPlus);
}

TEST_F(LogicalFiles, AMissingDirectoryIsCreatedEmpty) {
    *mSite.Links += test::LinkEntry(":D01:ARMAST", "KSW:D99");
    EXPECT_FALSE(Open("ARMAST"));
    EXPECT_TRUE(std::filesystem::exists(mSite.InShare("KSW/D99")));
    EXPECT_EQ(test::ReadBytes(mSite.InShare("KSW/D99")), "");
    EXPECT_FALSE(std::filesystem::exists(mSite.InShare("KSW/DDB9")));
}

TEST_F(LogicalFiles, AMissingContainerLeavesAHandleThatCannotRead) {
    mSite.AddFile("ARMAST", 'L', 8, 1, test::Nul(16));
    mSite.AddFile("INDEX", 'I', 512, 1, test::Nul(512));
    mSite.ContainerName = "ELSEWHERE";
    const auto file = Open("ARMAST");
    ASSERT_TRUE(file);
    EXPECT_FALSE(file->OpenFile);
    EXPECT_EQ(file->ActiveCount(), 0);
    EXPECT_EQ(test::ErrorOf([&] { gEngine->LreadFile(file, 1); }).Number, 91);
    EXPECT_EQ(test::ErrorOf([&] { gEngine->LogicalLock(file, 1); }).Number, 91);
    EXPECT_FALSE(std::filesystem::exists(mSite.InShare("KSW/DDB")));
    EXPECT_FALSE(Open("INDEX")->IsamPlus);
}

TEST_F(LogicalFiles, NamesThatAreNotFoundAreRaisedByTheOperations) {
    cBusinessBasic& engine = mSite.Start();
    ByteString buff, key;
    std::int32_t rec = 0;
    const std::function<void(const ByteString&)> operations[]{
        [&](const ByteString& name) { engine.KLength(name); },
        [&](const ByteString& name) { engine.LreadFile(name, 1); },
        [&](const ByteString& name) { engine.LwriteFile(name, 1, ""); },
        [&](const ByteString& name) { engine.KCount(name); },
        [&](const ByteString& name) { engine.LogicalLock(name, 1); },
        [&](const ByteString& name) { engine.DelRec(name, 1); },
        [&](const ByteString& name) { engine.GetRec(name, rec); },
        [&](const ByteString& name) { engine.InitFile(name); },
        [&](const ByteString& name) { engine.KFind(name, buff, key, rec); },
        [&](const ByteString& name) { engine.KLast(name, buff, key, rec); },
        [&](const ByteString& name) { engine.KNext(name, buff, key, rec); },
        [&](const ByteString& name) { engine.KPrev(name, buff, key, rec); },
    };
    for (const auto& operation : operations) {
        const auto error = test::ErrorOf([&] { operation("NOFILE"); });
        EXPECT_EQ(error.Number, -10);
        EXPECT_EQ(error.Source, "LogicalOpen");
        EXPECT_EQ(error.Description, "File not Found: \"NOFILE\"");
    }
    EXPECT_TRUE(mSite.Window.Statuses.empty());
}

TEST_F(LogicalFiles, LinksDoNotLeadOutOfTheShare) {
    const std::string outside[]{
        "..:D01",           "..:..:D01", "KSW:..:..:D01", R"(KSW\..\..\D01)", "KSW/../../D01",
        "KSW/../../../D01", R"(C:\D01)", "C:D01",         R"(\\SRV2\X\D01)",  "/D01"};
    for (std::size_t i = 0; i < std::size(outside); ++i)
        *mSite.Links += test::LinkEntry(":D01:" + std::to_string(i) + ":SECRET", outside[i]);
    for (const char* const folder : {"", "share", "share/SRV1", "share/SRV2/X"}) {
        test::WriteBytes(mSite.Folder() / folder / "D01", test::DirectoryEntryBytes("SECRET", 0, 8, 'L', 1));
        test::WriteBytes(mSite.Folder() / folder / "DDB", test::Nul(512));
    }
    std::ofstream(mSite.Folder() / "config/Vantora.conf", std::ios::app)
        << "[Drives]\nC=" << mSite.Folder().Path().string() << "\n";
    mSite.Start();
    for (std::size_t i = 0; i < std::size(outside); ++i) {
        const std::string name = ":D01:" + std::to_string(i) + ":SECRET";
        const auto error = test::ErrorOf([&] { gEngine->LreadFile(name, 1); });
        EXPECT_EQ(error.Description, "File not Found: \"" + name + "\"") << outside[i];
    }
}

TEST_F(LogicalFiles, TheSmallBuiltInsAreForwarded) {
    cBusinessBasic& engine = mSite.Start();
    EXPECT_EQ(engine.Max(-1, 0) + engine.Max(4, 3), 4);
    EXPECT_EQ(engine.Min(-1, 0) + engine.Min(3, 3), 2);
    std::int32_t location = 9;
    engine.StrPos(location, "abc", "bc");
    EXPECT_EQ(location, 2);
    ByteString opcode = "c";
    EXPECT_EQ(engine.Unpack(opcode, test::Hex("01 02"), 1), 258);
    EXPECT_EQ(opcode, "C");
    engine.H("\x91");
    EXPECT_EQ(mSite.Window.HexDisplays,
              (std::vector<std::string>{"000001 91" + std::string(46, ' ') + "  \xE2\x80\x98\r\n"}));
    EXPECT_EQ(engine.PhysicalLock("x", 1, 1) + engine.ReleaseLock(1), 0);
}

}  // namespace
}  // namespace engine
