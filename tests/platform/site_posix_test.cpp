#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/bounded_call.h"
#include "platform/file.h"
#include "platform/share_mounts.h"
#include "platform/site.h"
#include "tests/support/expect_error.h"
#include "tests/support/scratch.h"

namespace platform {
namespace {

namespace fs = std::filesystem;

class SharePaths : public testing::Test {
  protected:
    SharePaths()
        : mConfig("XDG_CONFIG_HOME", (mFolder / "config").string()),
          mRuntime("XDG_RUNTIME_DIR", (mFolder / "run").string()) {
        test::WriteBytes(mFolder / "config/Vantora.conf",
                         "[Shares]\nRoot=" + (mFolder / "share").string() +
                             "\n[Drives]\nC=" + (mFolder / "drive_c").string() + "\n");
        test::WriteBytes(mFolder / "share/SRV1/KSTLLNK/KSW/D01", "entries");
        test::WriteBytes(mFolder / "drive_c/Program Files/Home.mdb", "catalogue");
        test::WriteBytes(mFolder / "run/gvfs/smb-share:server=srv2,share=kstllnk,user=ops/LINKSFILE",
                         "links");
    }

    std::string In(const std::string& rest) const { return (mFolder.Path() / rest).string(); }

    test::ScratchFolder mFolder;
    test::ScopedVariable mConfig;
    test::ScopedVariable mRuntime;
};

TEST_F(SharePaths, ResolveThroughSettingsDrivesAndVirtualFolders) {
    const std::pair<const char*, std::string> cases[]{
        {R"(\\SRV1\KSTLLNK\KSW\D01)", In("share/SRV1/KSTLLNK/KSW/D01")},
        {R"(\\srv1\kstllnk\ksw\d01)", In("share/SRV1/KSTLLNK/KSW/D01")},
        {R"(\\SRV1\KSTLLNK\ksw\LATER)", In("share/SRV1/KSTLLNK/KSW/LATER")},
        {R"(C:\program files\HOME.MDB)", In("drive_c/Program Files/Home.mdb")},
        {R"(\\SRV2\KSTLLNK\linksfile)",
         In("run/gvfs/smb-share:server=srv2,share=kstllnk,user=ops/LINKSFILE")},
        {"/plain/path", "/plain/path"},
    };
    for (const auto& [path, resolved] : cases) EXPECT_EQ(ResolvePath(path), resolved) << path;
    EXPECT_EQ(ResolvePath(In("share") + R"(\srv1\KSTLLNK)"), In("share/SRV1/KSTLLNK"));
}

TEST_F(SharePaths, WhatCannotBeResolved) {
    for (const std::string& path :
         {std::string(R"(\\SRV9\KSTLLNK\X)"), std::string(R"(\\SRV1)"), std::string(R"(X:\file)"),
          std::string(R"(\\SRV1\KSTLLNK\..\..\secret)"), std::string(R"(C:\..\secret)"),
          std::string(R"(\\SRV1\KSTLLNK\C:\secret)"), R"(\\SRV1\KSTLLNK\KSW\D01)" + std::string("\0x", 2)}) {
        EXPECT_FALSE(ResolvePath(path)) << path;
    }
}

TEST_F(SharePaths, TheExactNameWinsThenTheFirstInByteOrder) {
    for (const char* name : {"Name", "NAME", "nAme"})
        test::WriteBytes(mFolder / "share/SRV1/KSTLLNK" / name, name);
    EXPECT_EQ(ResolvePath(R"(\\SRV1\KSTLLNK\Name)"), In("share/SRV1/KSTLLNK/Name"));
    EXPECT_EQ(ResolvePath(R"(\\SRV1\KSTLLNK\name)"), In("share/SRV1/KSTLLNK/NAME"));
}

TEST_F(SharePaths, AShareAnswersWhenItsFolderCanBeListed) {
    EXPECT_TRUE(ShareAnswers(R"(\\SRV1\KSTLLNK\)"));
    EXPECT_FALSE(ShareAnswers(R"(\\SRV1\OTHER\)"));
    EXPECT_FALSE(ShareAnswers(R"(\\\KSTLLNK\)"));
}

TEST_F(SharePaths, ListedNamesComeAsTheFolderHoldsThem) {
    EXPECT_EQ(ListedName(R"(c:\PROGRAM FILES)"), "Program Files");
    EXPECT_EQ(ListedName(In("share") + "/"), ".");
    EXPECT_EQ(ListedName(In("nothing")), "");
}

TEST(Shares, AShareThatHangsIsGivenUp) {
    const test::ScratchFolder folder;
    SetCallPatience(std::chrono::milliseconds(50));
    // Nobody ever writes into this pipe.
    const std::string pipe = (folder / "pipe").string();
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(test::ErrorOf([&] { File::Open(pipe, File::Mode::ReadOnly); }).Number, 57);
    EXPECT_EQ(test::ErrorOf([&] { File::Open(pipe, File::Mode::ReadOnly); }).Path, pipe);
    SetCallPatience(std::chrono::minutes(1));
    EXPECT_EQ(test::ErrorOf([&] { File::Open(pipe + "2", File::Mode::ReadOnly); }).Number, 53);
}

TEST(Locks, OfAByteBeyondTheEndAreSeen) {
    const test::ScratchFolder folder;
    test::WriteBytes(folder / "a.ldb", "x");
    const auto file = File::Open((folder / "a.ldb").string(), File::Mode::ReadWrite);
    const int other = open((folder / "a.ldb").c_str(), O_RDWR | O_CLOEXEC);
    struct flock byte {};
    byte.l_type = F_WRLCK;
    byte.l_start = 0x10000001;  // as Access locks its .ldb
    byte.l_len = 1;
    ASSERT_EQ(fcntl(other, F_OFD_SETLK, &byte), 0);
    EXPECT_FALSE(file->TryLock(File::Lock::Exclusive));
    close(other);
}

TEST(ShareMounts, AreFoundInTheMountTable) {
    const std::string table =
        "22 1 8:1 / / rw - ext4 /dev/sda1 rw\n"
        "31 22 0:40 / /mnt/old rw,relatime shared:7 - cifs //srv1/KSTLLNK rw,vers=3.0\n"
        "32 22 0:41 / /mnt/data\\040share rw - smb3 //SRV1/kstllnk rw\n"
        "33 22 0:42 / /mnt/sub rw - cifs //srv1/kstllnk rw,prefixpath=KSW\n"
        "34 22 0:43 / /mnt/nfs rw - nfs srv1:/kstllnk rw\n";
    const std::vector<std::string> other{"SRV1", "KSTLLNK", "LINKSFILE"};
    const auto plain = FindShareMount(table, other);
    ASSERT_TRUE(plain);
    EXPECT_EQ(plain->Folder, "/mnt/data share");
    EXPECT_EQ(plain->Components, 2U);

    const std::vector<std::string> below{"SRV1", "KSTLLNK", "ksw", "D01"};
    const auto deeper = FindShareMount(table, below);
    ASSERT_TRUE(deeper);
    EXPECT_EQ(deeper->Folder, "/mnt/sub");
    EXPECT_EQ(deeper->Components, 3U);

    const std::vector<std::string> unknown{"SRV2", "KSTLLNK"};
    EXPECT_FALSE(FindShareMount(table, unknown));
    EXPECT_FALSE(FindShareMount("garbage\n1 2 3 4 5 - cifs\n", other));
}

}  // namespace
}  // namespace platform
