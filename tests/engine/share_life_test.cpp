// The share while others use it: writers beside the reader, a share that goes away, files that are replaced
// or may not be opened.
#include <array>
#include <csignal>
#include <fcntl.h>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "engine/recorded_error.h"
#include "tests/engine/index_builder.h"
#include "tests/engine/site_builder.h"
#include "tests/support/expect_error.h"

namespace engine {
namespace {

namespace fs = std::filesystem;

constexpr test::IndexFormat Small{4, false, false};
constexpr std::int32_t Length = 64;
constexpr int Turns = 50;

/// Starts a process of its own for work, which tells whether it went well.
pid_t Elsewhere(const std::function<bool()>& work) {
    const pid_t child = fork();
    if (child == 0) _exit(work() ? 0 : 1);
    return child;
}

bool WentWell(pid_t child) {
    int status = -1;
    return waitpid(child, &status, 0) == child && status == 0;
}

class ShareLife : public testing::Test {
  protected:
    ShareLife() {
        mSite.AddFile("PARTS", 'I', 512, 3,
                      test::HeaderBytes(Small, 3) + test::BlockBytes(Small, 2, {{"aaaa", 1}, {"bbbb", 2}}) +
                          test::BlockBytes(Small, 0xFFFF, {{"cccc", 3}, test::Terminator(Small)}) +
                          test::BlockBytes(Small, 0, {{"bbbb", 1}, {test::Terminator(Small).Key, 2}}));
        mFirstByte = mSite.Container.size();
        mSite.AddFile("ORDERS", 'L', Length, 1000, std::string(Length * 3, '.'));
        mSite.Start();
        mIndex = gEngine->LogicalOpen("PARTS");
        mOrders = gEngine->LogicalOpen("ORDERS");
    }

    static std::string Version(int record, int turn) {
        return test::Padded(std::to_string(record) + "/" + std::to_string(turn), Length, '=');
    }

    /// Writes a record as another program does, without the engine.
    bool WriteElsewhere(int record, int turn) const {
        const std::string bytes = Version(record, turn);
        const int file = open(mSite.InShare("KSW/DDB").c_str(), O_RDWR | O_CLOEXEC);
        const auto put =
            pwrite(file, bytes.data(), bytes.size(), static_cast<off_t>(mFirstByte) + off_t{Length} * record);
        return close(file) == 0 && put == Length;
    }

    /// Makes every read of the open container fail, as it does when the server is gone.
    void LoseServer() const {
        struct stat wanted {};
        ASSERT_EQ(stat(mSite.InShare("KSW/DDB").c_str(), &wanted), 0);
        constexpr int MostDescriptors = 256;
        const int folder = open("/", O_RDONLY | O_CLOEXEC);
        for (int descriptor = 3; descriptor < MostDescriptors; ++descriptor) {
            struct stat status {};
            if (fstat(descriptor, &status) == 0 && status.st_ino == wanted.st_ino &&
                status.st_dev == wanted.st_dev)
                dup2(folder, descriptor);
        }
        close(folder);
    }

    test::SiteBuilder mSite;
    std::size_t mFirstByte = 0;
    std::shared_ptr<cLogicalFile> mIndex;
    std::shared_ptr<cLogicalFile> mOrders;
};

TEST_F(ShareLife, EachReadSeesWhatTwoOtherProcessesWrote) {
    for (int turn = 1; turn <= Turns; ++turn) {
        const pid_t rewriting = Elsewhere([&] { return WriteElsewhere(1, turn); });
        const pid_t appending = Elsewhere([&] { return WriteElsewhere(1 + turn, turn); });
        // Meanwhile any mixture may be read, but only of what was written or of blanks past the end.
        const ByteString during = gEngine->LreadFile(mOrders, 1 + turn);
        EXPECT_EQ(during.find_first_not_of(test::Nul(1) + "0123456789/=. "), ByteString::npos) << during;
        ASSERT_TRUE(WentWell(rewriting));
        ASSERT_TRUE(WentWell(appending));
        ASSERT_EQ(gEngine->LreadFile(mOrders, 1), Version(1, turn));
        ASSERT_EQ(gEngine->LreadFile(mOrders, 1 + turn), Version(1 + turn, turn));
    }
}

TEST_F(ShareLife, AShareThatVanishesIsError57WithThePath) {
    ByteString buff, key;
    std::int32_t rec = 0;
    gEngine->KFind(mIndex, buff, key, rec);
    gEngine->KNext(mIndex, buff, key, rec);
    LoseServer();
    const std::function<void()> operations[]{
        [&] { gEngine->LreadFile(mOrders, 1); },
        [&] { gEngine->ReadFile(mOrders->OpenFile, 1); },
        [&] { gEngine->KFind(mIndex, buff, key, rec); },
        [&] { gEngine->KNext(mIndex, buff, key, rec); },
        [&] { gEngine->KLast(mIndex, buff, key, rec); },
        [&] { gEngine->KCount(mIndex); },
        [&] { gEngine->KLength(mIndex); },
        [&] { mOrders->ActiveCount(); },
    };
    for (const auto& operation : operations) {
        const auto error = test::ErrorOf(operation);
        EXPECT_EQ(error.Number, 57);
        EXPECT_EQ(error.Path, mIndex->OpenFile->Path);
    }
    // What is not open yet is not found; nothing is created in its place.
    fs::rename(mSite.InShare(""), mSite.InTemp("away"));
    EXPECT_FALSE(gEngine->LogicalOpen("LATER"));
    EXPECT_EQ(test::ErrorOf([&] { gEngine->LreadFile(ByteString("LATER"), 1); }).Number, -10);
    EXPECT_FALSE(fs::exists(mSite.InShare("")));
}

TEST_F(ShareLife, AFailedOpenIsRecordedNotRaised) {
    // A program that is running may be opened for writing by nobody, neither its owner nor the superuser.
    const std::string program = mSite.InShare("DATA").string();
    std::filesystem::copy_file("/bin/sleep", program, std::filesystem::copy_options::overwrite_existing);
    ByteString data = "DATA";
    std::string name = "sleep", seconds = "600";
    const std::array<char*, 3> words{name.data(), seconds.data(), nullptr};
    pid_t child = 0;
    ASSERT_EQ(posix_spawn(&child, program.c_str(), nullptr, nullptr, words.data(), environ), 0);
    EXPECT_FALSE(gEngine->OpenFile(data));
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    ASSERT_TRUE(LastRecordedError());
    EXPECT_EQ(LastRecordedError()->Number, 70);
    EXPECT_EQ(LastRecordedError()->Source, "iOpenFile");
    EXPECT_EQ(LastRecordedError()->Description, R"(Could not open file: \\SRV1\KSTLLNK\DATA)");
}

TEST_F(ShareLife, AShorterFileEndsInBlanksAndAReplacedOneIsReadAfterReopening) {
    const fs::path container = mSite.InShare("KSW/DDB");
    const std::string before = mSite.ContainerBytes();
    fs::resize_file(container, mFirstByte + Length + 10);
    EXPECT_EQ(gEngine->LreadFile(mOrders, 1), test::Padded(std::string(10, '.'), Length));
    test::WriteBytes(mSite.InTemp("new"), before.substr(0, mFirstByte) + std::string(2 * Length, 'n'));
    fs::rename(mSite.InTemp("new"), container);
    EXPECT_EQ(gEngine->LreadFile(mOrders, 1), test::Padded(std::string(10, '.'), Length));
    gEngine->CloseFile(mOrders->OpenFile);
    EXPECT_EQ(test::ErrorOf([&] { gEngine->LreadFile(mOrders, 1); }).Number, 52);
    mOrders->OpenFile = gEngine->OpenFile(mOrders->OpenFile->Path);
    EXPECT_EQ(gEngine->LreadFile(mOrders, 1), std::string(Length, 'n'));
}

TEST_F(ShareLife, ReadingChangesNoFile) {
    const auto everyFile = [&] {
        std::map<std::string, std::string> bytes;
        for (const auto& entry : fs::recursive_directory_iterator(mSite.InShare(""))) {
            if (entry.is_regular_file()) bytes[entry.path().string()] = test::ReadBytes(entry.path());
        }
        return bytes;
    };
    const auto before = everyFile();
    EXPECT_EQ(before.size(), 4U);
    ByteString buff, key;
    std::int32_t rec = 0;
    for (gEngine->KFind(mIndex, buff, key, rec); rec != 0; gEngine->KNext(mIndex, buff, key, rec))
        gEngine->LreadFile(mOrders, rec < 0 ? -rec : rec);
    for (gEngine->KLast(mIndex, buff, key, rec); rec != 0;) gEngine->KPrev(mIndex, buff, key, rec);
    gEngine->KCount(mIndex);
    gEngine->KLength(mIndex);
    EXPECT_FALSE(gEngine->LogicalOpen("NOTHING"));
    EXPECT_EQ(test::ErrorOf([&] { gEngine->GetRec(mOrders, rec); }).Number, 57);
    gEngine.reset();
    EXPECT_EQ(everyFile(), before);
}

}  // namespace
}  // namespace engine
