#include <array>
#include <gtest/gtest.h>
#include <windows.h>

#include "platform/code_page.h"
#include "platform/error.h"
#include "platform/file.h"
#include "platform/ole_date.h"
#include "platform/site.h"
#include "tests/support/expect_error.h"
#include "tests/support/site_folder.h"

namespace platform {
namespace {

std::span<const std::byte> Bytes(std::string_view text) {
    return std::as_bytes(std::span(text));
}

TEST(Paths, StandAsTheyAreUnlessTheyLeaveTheirShare) {
    for (const char* const path : {R"(\\SRV1\KSTLLNK\KSW\D01)", R"(C:\Program Files\x)", R"(..\x)", "C:/x"})
        EXPECT_EQ(ResolvePath(path), path);
    for (const std::string& path :
         {std::string(R"(\\SRV1)"), std::string(R"(\\\KSTLLNK\)"), std::string(R"(\\SRV1\KSTLLNK\..\secret)"),
          std::string(R"(\\SRV1\KSTLLNK\C:\secret)"), std::string(R"(\\.\PhysicalDrive0)"),
          std::string(R"(\\?\C:\secret)"), std::string("C:\\x\0y", 6)}) {
        EXPECT_FALSE(ResolvePath(path)) << path;
        EXPECT_EQ(test::ErrorOf([&] { File::Open(path, File::Mode::ReadOnly); }).Number, 76) << path;
    }
}

TEST(Shares, AnswerWhenTheyCanBeReached) {
    const test::SiteFolder site;
    test::WriteBytes(site / "share/SRV1/KSTLLNK/LINKSFILE", "links");
    EXPECT_TRUE(ShareAnswers(R"(\\SRV1\KSTLLNK\)"));
    EXPECT_TRUE(FileExists(R"(\\srv1\kstllnk\LinksFile)"));
    EXPECT_FALSE(ShareAnswers(R"(\\SRV1\OTHER\)"));
    EXPECT_FALSE(ShareAnswers(R"(\\SRV9\KSTLLNK\)"));
    EXPECT_FALSE(ShareAnswers(R"(\\\KSTLLNK\)"));
}

TEST(Names, AreListedAsTheFolderHoldsThemAndReadAsUtf8OrElseAsTheBusinesssBytes) {
    const test::ScratchFolder folder;
    std::filesystem::create_directory(folder / "Program Files");
    const std::string parent = folder.Path().string() + "\\";
    EXPECT_EQ(ListedName(parent + "PROGRAM FILES"), "Program Files");
    EXPECT_EQ(ListedName(parent), ".");
    EXPECT_EQ(ListedName(parent + "nothing"), "");
    EXPECT_EQ(ListedName(parent + "Prog*"), "") << "a pattern is no name";

    File::Open(parent + "caf\xE9", File::Mode::CreateNew);
    EXPECT_TRUE(std::filesystem::exists(folder.Path() / L"caf\u00E9"));
    EXPECT_TRUE(FileExists(parent + "caf\xC3\xA9"));
    EXPECT_EQ(ListedName(parent + "CAF\xC9"), "caf\xC3\xA9");
    EXPECT_EQ(test::ErrorOf([&] { File::Open(parent + "a|b", File::Mode::ReadOnly); }).Number, 53);
}

TEST(Names, MayBeLongerThanTheSystemOrdinarilyAllows) {
    const test::ScratchFolder folder;
    std::string path = folder.Path().string();
    while (path.size() < 400) {
        path += "\\" + std::string(50, 'n');
        const std::u16string name = WideFromUtf8("\\\\?\\" + path);
        ASSERT_NE(CreateDirectoryW(std::wstring(name.begin(), name.end()).c_str(), nullptr), 0);
    }
    File::Open(path + "/file", File::Mode::CreateNew)->WriteAt(0, Bytes("x"));
    EXPECT_EQ(ReadLines(path + "\\file"), std::vector<std::string>{"x"});
    EXPECT_EQ(ListedName(path + "\\FILE"), "file");
    RemoveFile(path + "\\file");
    EXPECT_FALSE(FileExists(path + "\\file"));
}

class Sharing : public testing::Test {
  protected:
    /// A file that another program has opened, which grants others these rights.
    void OpenElsewhere(DWORD shared) {
        mOther = CreateFileW((mFolder / "data").c_str(), GENERIC_READ | GENERIC_WRITE | DELETE, shared,
                             nullptr, OPEN_ALWAYS, 0, nullptr);
        ASSERT_NE(mOther, INVALID_HANDLE_VALUE);
    }
    ~Sharing() override { CloseHandle(mOther); }

    std::string Path() const { return (mFolder / "data").string(); }

    test::ScratchFolder mFolder;
    HANDLE mOther = INVALID_HANDLE_VALUE;
};

TEST_F(Sharing, OthersReadWriteAndDeleteWhatIsOpenHere) {
    test::WriteBytes(Path(), "before");
    const auto file = File::Open(Path(), File::Mode::ReadWrite);
    ASSERT_TRUE(file->TryLock(File::Lock::Exclusive));
    OpenElsewhere(FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE);
    std::array<char, 6> bytes{};
    DWORD count = 0;
    EXPECT_NE(ReadFile(mOther, bytes.data(), 6, &count, nullptr), 0) << "our lock is none on the bytes";
    EXPECT_NE(WriteFile(mOther, "after", 5, &count, nullptr), 0);
    EXPECT_EQ(file->Length(), 11U);
    EXPECT_NE(DeleteFileW((mFolder / "data").c_str()), 0);
}

TEST_F(Sharing, ALockBeyondTheEndIsSeen) {
    OpenElsewhere(FILE_SHARE_READ | FILE_SHARE_WRITE);
    const auto file = File::Open(Path(), File::Mode::ReadWrite);
    ASSERT_NE(LockFile(mOther, 0x10000001, 0, 1, 0), 0) << "as Access locks its .ldb";
    EXPECT_FALSE(file->TryLock(File::Lock::Exclusive));
    ASSERT_NE(UnlockFile(mOther, 0x10000001, 0, 1, 0), 0);
    EXPECT_TRUE(file->TryLock(File::Lock::Exclusive));
}

TEST_F(Sharing, WhatOthersKeepToThemselvesIsRefused) {
    OpenElsewhere(0);
    EXPECT_EQ(test::ErrorOf([&] { File::Open(Path(), File::Mode::ReadWrite); }).Number, 70);
    EXPECT_EQ(test::ErrorOf([&] { RemoveFile(Path()); }).Number, 70);
}

TEST(Host, NamesAndAddresses) {
    EXPECT_EQ(HostAddress("10.4.7.21"), 0x0A040715U);
    EXPECT_EQ(HostAddress("no.such.host.invalid"), std::nullopt);
    EXPECT_FALSE(ComputerName().empty());
    EXPECT_TRUE(TempDirectory().ends_with('\\'));
    EXPECT_TRUE(std::filesystem::is_directory(DocumentsFolder()));
}

/// The user's setting of a moment.
class ShortDates : public testing::Test {
  protected:
    ShortDates() {
        GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SSHORTDATE, mBefore.data(),
                       static_cast<int>(mBefore.size()));
        SetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SSHORTDATE, L"yyyy-MM-dd");
    }
    ~ShortDates() override { SetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SSHORTDATE, mBefore.data()); }

    std::array<wchar_t, 80> mBefore{};
};

TEST_F(ShortDates, AreTheUsers) {
    EXPECT_EQ(ShortDateText(DateFromCalendar({1999, 12, 31}).value()), "1999-12-31");
    EXPECT_EQ(ShortDateText(DateFromCalendar({1600, 12, 31}).value()), "12/31/00") << "unknown to the system";
}

}  // namespace
}  // namespace platform
