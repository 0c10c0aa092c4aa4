#include "engine/records.h"

#include <cerrno>
#include <gtest/gtest.h>
#include <map>

#include "tests/engine/site_builder.h"
#include "tests/support/disk_calls.h"
#include "tests/support/expect_error.h"

namespace engine {
namespace {

using test::Big;
using test::ErrorOf;
using test::Nul;

constexpr std::int32_t Length = 100;
constexpr std::int32_t Last = 12;

class Records : public testing::Test {
  protected:
    Records() {
        mSite.Container = std::string(10 * 512, '#');
        std::string bytes = RecordZero(9, 11, 7) + Nul(Length - 16);
        for (int record = 1; record <= Last; ++record) bytes += Active(record);
        mFirstByte = mSite.Container.size();
        mSite.AddFile("ARMAST", 'L', Length, Last, bytes);
        mFile = mSite.Start().LogicalOpen("ARMAST");
    }

    static std::string RecordZero(std::int32_t head, std::int32_t high, std::int32_t count) {
        return Big(-2, 2) + Big(head, 4) + Big(high, 4) + Big(count, 4) + "zz";
    }
    static std::string Active(int record) {
        return Big(1, 2) + std::string(Length - 2, static_cast<char>('a' + record));
    }
    static std::string Deleted(std::int32_t next) { return test::With(Nul(Length), 3, Big(next, 4)); }

    /// Expects the container to be as it was, but for these bytes from the start of a record on.
    void ExpectChanges(const std::map<int, std::string>& changes) const {
        std::string bytes = mSite.Container;
        for (const auto& [record, changed] : changes)
            bytes.replace(mFirstByte + static_cast<std::size_t>(record * Length), changed.size(), changed);
        EXPECT_EQ(mSite.ContainerBytes(), bytes);
    }

    test::SiteBuilder mSite;
    std::size_t mFirstByte = 0;
    std::shared_ptr<cLogicalFile> mFile;
};

TEST_F(Records, AreReadAndWrittenByNumber) {
    EXPECT_EQ(mFile->Position, 10);
    EXPECT_EQ(gEngine->LreadFile(mFile, 1), Active(1));
    EXPECT_EQ(gEngine->LreadFile(ByteString("ARMAST"), Last), Active(Last));
    gEngine->LwriteFile(mFile, 3, std::string(Length, '!'));
    ExpectChanges({{3, std::string(Length, '!')}});
}

TEST_F(Records, ReadingNamesTheRefusedRecordWritingTheLastOne) {
    for (const std::int32_t record : {0, -1, Last + 1}) {
        const auto reading = ErrorOf([&] { gEngine->LreadFile(mFile, record); });
        EXPECT_EQ(reading.Number, 81);
        EXPECT_EQ(reading.Source, "iLreadFile");
        EXPECT_EQ(reading.Description,
                  "Illegal Record Number for File: ARMAST and Record: " + std::to_string(record));
        const auto writing = ErrorOf([&] { gEngine->LwriteFile(mFile, record, "short"); });
        EXPECT_EQ(writing.Number, 81);
        EXPECT_EQ(writing.Source, "iLwriteFile");
        EXPECT_EQ(writing.Description, "Illegal Record Number for File: ARMAST and Record: 12");
    }
}

TEST_F(Records, ARecordOfAnotherLengthIsRefused) {
    const auto error = ErrorOf([&] { gEngine->LwriteFile(mFile, 1, std::string(80, ' ')); });
    EXPECT_EQ(error.Number, 36);
    EXPECT_EQ(error.Source, "iLwriteFile");
    EXPECT_EQ(error.Description, "Illegal Data length for this record.  Size is:  80 and should be  100");
    ExpectChanges({});
}

TEST_F(Records, EmptyHandles) {
    const std::shared_ptr<cLogicalFile> none;
    const struct {
        std::function<void()> Call;
        int Number;
        const char* Source;
    } cases[]{
        {[&] { gEngine->LreadFile(none, 0); }, -10, "iLreadFile"},
        {[&] { gEngine->LwriteFile(none, 0, ""); }, -10, "iLwriteFile"},
        {[&] { gEngine->InitFile(none); }, -10, "iLwriteFile"},
        {[&] { gEngine->DelRec(none, 1); }, 91, ""},
        {[&] { gEngine->LogicalLock(none, 1); }, 91, ""},
    };
    for (const auto& c : cases) {
        const auto error = ErrorOf(c.Call);
        EXPECT_EQ(error.Number, c.Number);
        EXPECT_EQ(error.Source, c.Source);
        if (c.Number == -10) {
            EXPECT_EQ(error.Description, "LogicalFile parameter is undefined");
        }
    }
}

TEST_F(Records, OffsetsBeyond32BitsOverflow) {
    mFile->LastRecord = 2147483647;
    EXPECT_EQ(ErrorOf([&] { gEngine->LreadFile(mFile, 21474837); }).Number, 6);
    EXPECT_EQ(gEngine->LreadFile(mFile, 21474785), std::string(Length, ' '));
    EXPECT_EQ(ErrorOf([&] { gEngine->LreadFile(mFile, 21474786); }).Number, 6);
    mFile->Position = 16777215;
    EXPECT_EQ(ErrorOf([&] { gEngine->LreadFile(mFile, 1); }).Number, 6);
}

TEST_F(Records, NoLockIsEverGranted) {
    EXPECT_EQ(gEngine->LogicalLock(mFile, 5), 0);
    std::int32_t record = 99;
    const auto error = ErrorOf([&] { gEngine->GetRec(mFile, record); });
    EXPECT_EQ(error.Number, 57);
    EXPECT_EQ(error.Source, "iGetRec");
    EXPECT_EQ(error.Description, "Could not obtain a Lock on Record Zero of ARMAST");
    EXPECT_EQ(record, 99);
    ExpectChanges({});
}

TEST_F(Records, DeletingPutsARecordAtTheHeadOfTheChain) {
    gEngine->DelRec(mFile, 5);
    const std::map<int, std::string> deleted{{0, RecordZero(5, 11, 6)}, {5, Deleted(9)}};
    ExpectChanges(deleted);
    const auto error = ErrorOf([&] { gEngine->DelRec(mFile, 5); });
    EXPECT_EQ(error.Number, 81);
    EXPECT_EQ(error.Source, "DelRec");
    EXPECT_EQ(error.Description, "Attempt to delete a deleted record");
    EXPECT_EQ(ErrorOf([&] { gEngine->DelRec(mFile, 13); }).Source, "iLreadFile");
    ExpectChanges(deleted);
}

TEST_F(Records, TheActiveCountNeverFallsBelowZero) {
    gEngine->WriteFile(mFile->OpenFile, RecordZero(-1, 11, 0), 5120);
    gEngine->DelRec(mFile, 1);
    ExpectChanges({{0, RecordZero(1, 11, 0)}, {1, Deleted(-1)}});
}

TEST_F(Records, InitFileEmptiesAPlainFile) {
    gEngine->InitFile(mFile);
    // The header block covers records 1 to 4 and the start of 5; all are NULs again.
    ExpectChanges({{0, test::Padded(Big(-2, 2) + Big(-1, 4), Length * (Last + 1), '\0')}});
}

TEST_F(Records, InitFileMakesAnIndexOfTheTerminator) {
    mFile->FileType = "I";
    gEngine->InitFile(mFile, 16, true, 250);
    std::string header = Nul(512);
    const std::int32_t words[]{20, 25, Last, 2, 1, 50, -1};
    for (std::size_t word = 0; word < std::size(words); ++word)
        header = test::With(header, word * 2 + 1, Big(words[word], 2));
    const std::string leaf = Big(1, 2) + std::string(510, '\xFF');
    ExpectChanges({{0, header + leaf}});

    gEngine->InitFile(mFile, 8);
    header = Big(12, 2) + Big(42, 2) + Big(Last, 2) + Big(2, 2) + Big(1, 2);
    ExpectChanges({{0, test::Padded(header, 512, '\0') + leaf}});
    // Quotients are rounded down, below zero too.
    gEngine->InitFile(mFile, -7, false, -50);
    header = Big(-3, 2) + Big(-170, 2) + Big(Last, 2) + Big(2, 2) + Big(1, 2) + Big(170, 2);
    ExpectChanges({{0, test::Padded(header, 512, '\0') + leaf}});
    EXPECT_EQ(ErrorOf([&] { gEngine->InitFile(mFile, -4); }).Number, 11);
    EXPECT_EQ(ErrorOf([&] { gEngine->InitFile(mFile, 2147483647); }).Number, 6);
    EXPECT_EQ(ErrorOf([&] { gEngine->InitFile(mFile, -3, false, 2147483647); }).Number, 6);
}

TEST_F(Records, AFailureInTheMiddleLeavesTheFilePartlyWritten) {
    // Of each operation the second write fails.
    int calls = 0;
    const test::DiskCalls watched([&] { return ++calls % 2 == 0 ? ENOSPC : 0; });
    EXPECT_EQ(ErrorOf([&] { gEngine->DelRec(mFile, 5); }).Number, 61);
    ExpectChanges({{5, Deleted(9)}});
    EXPECT_EQ(ErrorOf([&] { gEngine->InitFile(mFile); }).Number, 61);
    ExpectChanges({{0, test::Padded(Big(-2, 2) + Big(-1, 4), 512, '\0')}, {5, Nul(Length)}});
}

TEST_F(Records, InitFileLeavesOtherTypesAlone) {
    mFile->FileType = "S";
    gEngine->InitFile(mFile, 16);
    ExpectChanges({});
    mFile->FileType = "L";
    mFile->RecordLength = -1;
    EXPECT_EQ(ErrorOf([&] { gEngine->InitFile(mFile); }).Number, 5);
    mFile->RecordLength = Length;
    mFile->OpenFile.reset();
    EXPECT_EQ(ErrorOf([&] { gEngine->InitFile(mFile); }).Source, "iwriteFile");
}

}  // namespace
}  // namespace engine
