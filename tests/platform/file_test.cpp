#include "platform/file.h"

#include <array>
#include <gtest/gtest.h>

#include "tests/support/expect_error.h"
#include "tests/support/scratch.h"

namespace platform {
namespace {

std::span<const std::byte> Bytes(std::string_view text) {
    return std::as_bytes(std::span(text.data(), text.size()));
}

TEST(Files, ReadsAndWritesByPosition) {
    const test::ScratchFolder folder;
    const std::string path = (folder / "data").string();
    const auto file = File::Open(path, File::Mode::CreateNew);
    file->WriteAt(3, Bytes("abc"));
    EXPECT_EQ(file->Length(), 6U);
    EXPECT_EQ(test::ReadBytes(path), std::string("\0\0\0abc", 6));

    std::array<std::byte, 4> buffer{};
    EXPECT_EQ(file->ReadAt(4, buffer), 2U);
    EXPECT_EQ(buffer[1], std::byte{'c'});
    EXPECT_EQ(file->ReadAt(100, buffer), 0U);
    file->SetLength(1);
    EXPECT_EQ(file->Length(), 1U);
}

TEST(Files, FailedOpensGiveThePlatformsNumbers) {
    const test::ScratchFolder folder;
    test::WriteBytes(folder / "there", "x");
    const auto numberOf = [&](const std::string& name, File::Mode mode) {
        return test::ErrorOf([&] { File::Open((folder / name).string(), mode); }).Number;
    };
    EXPECT_EQ(numberOf("missing", File::Mode::ReadWrite), 53);
    EXPECT_EQ(numberOf("no/such/folder", File::Mode::ReadWriteOrCreate), 76);
    EXPECT_EQ(numberOf("there", File::Mode::CreateNew), 75);
    EXPECT_EQ(numberOf("there/below", File::Mode::ReadOnly), 76);
    EXPECT_EQ(numberOf(".", File::Mode::ReadOnly), 75);
    EXPECT_EQ(test::ErrorOf([] { File::Open(R"(\\NOSERVER\NOSHARE\x)", File::Mode::ReadOnly); }).Number, 76);
    EXPECT_EQ(test::ErrorOf([&] { File::Open((folder / "missing").string(), File::Mode::ReadWrite); }).Path,
              (folder / "missing").string());
}

TEST(Files, AFileThatGrantsReadingOnlyIsStillRead) {
    const test::ScratchFolder folder;
    test::WriteBytes(folder / "data", "x");
    std::filesystem::permissions(folder / "data", std::filesystem::perms{0444});
    if (std::ofstream(folder / "data", std::ios::app)) GTEST_SKIP() << "the superuser may write everything";
    const auto file = File::Open((folder / "data").string(), File::Mode::ReadWrite);
    EXPECT_FALSE(file->IsWritable());
    EXPECT_EQ(test::ErrorOf([&] { file->WriteAt(0, Bytes("y")); }).Number, 75);
}

TEST(Files, WritingAFileOpenedForReadingIsRefused) {
    const test::ScratchFolder folder;
    test::WriteBytes(folder / "data", "x");
    const auto file = File::Open((folder / "data").string(), File::Mode::ReadOnly);
    EXPECT_EQ(test::ErrorOf([&] { file->WriteAt(0, Bytes("y")); }).Number, 75);
    EXPECT_EQ(test::ErrorOf([&] { file->SetLength(0); }).Number, 75);
    EXPECT_EQ(test::ReadBytes(folder / "data"), "x");
}

TEST(Files, ALockKeepsOthersOut) {
    const test::ScratchFolder folder;
    test::WriteBytes(folder / "data", "x");
    const auto first = File::Open((folder / "data").string(), File::Mode::ReadWrite);
    const auto second = File::Open((folder / "data").string(), File::Mode::ReadWrite);
    EXPECT_TRUE(first->TryLock(File::Lock::Shared));
    EXPECT_TRUE(second->TryLock(File::Lock::Shared));
    EXPECT_FALSE(second->TryLock(File::Lock::Exclusive));
    EXPECT_EQ(test::ErrorOf([&] { RemoveFile((folder / "data").string()); }).Number, 70);
}

// Who holds the lock of a file that others no longer find is alone with it, but keeps nobody out.
TEST(Files, ALockOnALostNameIsNone) {
    const test::ScratchFolder folder;
    for (const bool isReplaced : {false, true}) {
        test::WriteBytes(folder / "data", "x");
        const auto file = File::Open((folder / "data").string(), File::Mode::ReadWrite);
        std::filesystem::rename(folder / "data", folder / "other");
        if (isReplaced) test::WriteBytes(folder / "data", "y");
        EXPECT_FALSE(file->TryLock(File::Lock::Exclusive));
    }
}

TEST(Files, RemoveAndExist) {
    const test::ScratchFolder folder;
    const std::string path = (folder / "data").string();
    EXPECT_FALSE(FileExists(path));
    test::WriteBytes(path, "x");
    EXPECT_TRUE(FileExists(path));
    EXPECT_FALSE(FileExists(folder.Path().string()));
    RemoveFile(path);
    EXPECT_FALSE(FileExists(path));
    EXPECT_EQ(test::ErrorOf([&] { RemoveFile(path); }).Number, 53);
}

TEST(Files, LinesEndInEitherWay) {
    const test::ScratchFolder folder;
    test::WriteBytes(folder / "ttymap", "WS12 7,3\r\nws13 8\n\nlast");
    EXPECT_EQ(ReadLines((folder / "ttymap").string()),
              (std::vector<std::string>{"WS12 7,3", "ws13 8", "", "last"}));
    EXPECT_FALSE(ReadLines((folder / "missing").string()));
}

}  // namespace
}  // namespace platform
