#include "engine/open_file.h"

#include <gtest/gtest.h>

#include "tests/engine/site_builder.h"
#include "tests/support/expect_error.h"

namespace engine {
namespace {

using test::ErrorOf;

class PhysicalFiles : public testing::Test {
  protected:
    PhysicalFiles() : mEngine(mSite.Start()) {
        for (int block = 0; block < 4; ++block) mBytes += std::string(512, static_cast<char>('0' + block));
        test::WriteBytes(mSite.InShare("DATA"), mBytes);
    }

    std::shared_ptr<cOpenFile> Open(ByteString name) { return mEngine.OpenFile(name); }
    std::string OnDisk() const { return test::ReadBytes(mSite.InShare("DATA")); }

    test::SiteBuilder mSite;
    cBusinessBasic& mEngine;
    std::string mBytes;
};

TEST_F(PhysicalFiles, ANameWithoutABackslashMeansTheLinkShare) {
    ByteString name = "DATA";
    const auto file = mEngine.OpenFile(name);
    ASSERT_TRUE(file);
    EXPECT_EQ(name, R"(\\SRV1\KSTLLNK\DATA)");
    EXPECT_EQ(file->Path, name);
    EXPECT_EQ(file->Position, 0);
    EXPECT_EQ(file->vbFileNumber, 1);
    EXPECT_EQ(mEngine.OpenFile(name), file);
    EXPECT_EQ(Open(R"(\\srv1\kstllnk\data)"), file);
    EXPECT_EQ(gOpenFiles->Count(), 1);
}

TEST_F(PhysicalFiles, FileNumbersAreTheNextFreeOnes) {
    test::WriteBytes(mSite.InShare("MORE"), "x");
    Open("DATA");
    EXPECT_EQ(Open("MORE")->vbFileNumber, 2);
    mEngine.CloseFile(ByteString("DATA"));
    EXPECT_EQ(Open("DATA")->vbFileNumber, 1);
}

TEST_F(PhysicalFiles, AMissingFileIsEmptyAndNoError) {
    EXPECT_FALSE(Open("NOTHING"));
    EXPECT_FALSE(Open(R"(\\SRV9\X\Y)"));
    EXPECT_FALSE(Open("KSW"));
    EXPECT_FALSE(Open(""));
    EXPECT_EQ(gOpenFiles->Count(), 0);
    EXPECT_FALSE(std::filesystem::exists(mSite.InShare("NOTHING")));
}

TEST_F(PhysicalFiles, ReadsPastTheEndAreBlanks) {
    const auto file = Open("DATA");
    file->Position = 7;
    EXPECT_EQ(mEngine.ReadFile(file, 4, 510), "0011");
    EXPECT_EQ(mEngine.ReadFile(file, 6, 2045), "333   ");
    EXPECT_EQ(mEngine.ReadFile(file, 16, 2048), std::string(16, ' '));
    EXPECT_EQ(mEngine.ReadFile(file, 3, 2147483646), "   ");
    EXPECT_EQ(mEngine.ReadFile(file, 0, 0), "");
    EXPECT_EQ(mEngine.ReadFile(ByteString("DATA"), 1, 512), "1");
    EXPECT_EQ(mEngine.BlockReadFile(file, 3), std::string(512, '3'));
    EXPECT_EQ(file->Position, 7);
}

TEST_F(PhysicalFiles, WritesLandAtThePositionOrTheStoredOne) {
    const auto file = Open("DATA");
    mEngine.WriteFile(file, "abc", 10);
    EXPECT_EQ(file->Position, 10);
    mEngine.WriteFile(file, "X", -1);
    EXPECT_EQ(file->Position, 10);
    EXPECT_EQ(OnDisk(), test::With(mBytes, 11, "Xbc"));
    mEngine.WriteFile(file, "Y", 0);
    EXPECT_EQ(file->Position, 0);
    mEngine.BlockWriteFile(file, 4, "end");
    EXPECT_EQ(OnDisk(), "Y" + test::With(mBytes, 11, "Xbc").substr(1) + "end");
}

TEST_F(PhysicalFiles, ErrorsOfReadingAndWriting) {
    const auto file = Open("DATA");
    const std::shared_ptr<cOpenFile> none;
    const struct {
        const char* What;
        std::function<void()> Call;
        int Number;
    } cases[]{
        {"read without a handle", [&] { mEngine.ReadFile(none, 1, 0); }, 91},
        {"negative count", [&] { mEngine.ReadFile(none, -1, 0); }, 5},
        {"negative offset", [&] { mEngine.ReadFile(file, 1, -1); }, 63},
        {"offset beyond 32 bits", [&] { mEngine.ReadFile(file, 1, 2147483647); }, 6},
        {"block beyond 32 bits", [&] { mEngine.BlockReadFile(none, 4194304); }, 6},
        {"last block of 32 bits", [&] { mEngine.BlockReadFile(file, 4194303); }, 0},
        {"block write beyond 32 bits", [&] { mEngine.BlockWriteFile(none, 4194304, ""); }, 6},
        {"write without a handle", [&] { mEngine.WriteFile(none, "x"); }, -10},
        {"a name that is none", [&] { mEngine.WriteFile(ByteString("NOTHING"), "x"); }, -10},
        {"write beyond 32 bits", [&] { mEngine.WriteFile(file, "x", 2147483647); }, 6},
        {"close without a handle", [&] { mEngine.CloseFile(none); }, 91},
    };
    for (const auto& c : cases) EXPECT_EQ(test::NumberRaised(c.Call), c.Number) << c.What;
    const auto error = ErrorOf([&] { mEngine.WriteFile(none, "x"); });
    EXPECT_EQ(error.Source, "iwriteFile");
    EXPECT_EQ(ErrorOf([&] { mEngine.ReadFile(file, 1, -1); }).Description, "Bad record number");
    EXPECT_EQ(error.Description, "OpenFile parameter is undefined");
    EXPECT_EQ(OnDisk(), mBytes);
}

TEST_F(PhysicalFiles, AClosedHandleIsStale) {
    const auto file = Open("DATA");
    mEngine.CloseFile(file);
    EXPECT_EQ(gOpenFiles->Count(), 0);
    EXPECT_EQ(ErrorOf([&] { mEngine.ReadFile(file, 1, 0); }).Number, 52);
    EXPECT_EQ(ErrorOf([&] { mEngine.WriteFile(file, "x", 0); }).Number, 52);
    mEngine.CloseFile(file);
    // A name is opened first, so closing a file that is not open opens and closes it.
    mEngine.CloseFile(ByteString("DATA"));
    EXPECT_EQ(gOpenFiles->Count(), 0);
    EXPECT_NE(Open("DATA"), file);
}

TEST(Collections, AreOrderedAndIgnoreLetterCaseInKeys) {
    cOpenFiles files;
    const auto first = files.Add(1, "a", 0, "Key");
    const auto second = files.Add(2, "b", 0);
    EXPECT_EQ(files.Count(), 2);
    EXPECT_EQ(files.Item("KEY"), first);
    EXPECT_EQ(files.Item(2), second);
    EXPECT_STREQ(ErrorOf([&] { files.Add(3, "c", 0, "kEY"); }).what(),
                 "error 457: This key is already associated with an element of this collection");
    EXPECT_EQ(ErrorOf([&] { files.Item("b"); }).Number, 5);
    for (const int index : {0, 3}) EXPECT_EQ(ErrorOf([&] { files.Item(index); }).Number, 9);
    EXPECT_EQ(ErrorOf([&] { second->File(); }).Number, 52);
    files.Remove(1);
    EXPECT_EQ(files.NewEnum(), (std::vector<std::shared_ptr<cOpenFile>>{second}));
    files.Add(1, "a", 0, "Key");
    files.Remove("key");
    EXPECT_EQ(ErrorOf([&] { files.Remove("key"); }).Number, 5);
    files.Remove(1);
    EXPECT_EQ(files.Count(), 0);
}

}  // namespace
}  // namespace engine
