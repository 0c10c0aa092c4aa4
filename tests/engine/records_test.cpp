#include "engine/records.h"

#include <gtest/gtest.h>

#include "tests/engine/site_builder.h"
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

    std::string OnDisk(int record) const {
        return mSite.ContainerBytes().substr(mFirstByte + static_cast<std::size_t>(record * Length), Length);
    }
    std::string ZeroOnDisk() const { return OnDisk(0).substr(0, 16); }

    test::SiteBuilder mSite;
    std::size_t mFirstByte = 0;
    std::shared_ptr<cLogicalFile> mFile;
};

TEST_F(Records, AreReadAndWrittenByNumber) {
    EXPECT_EQ(mFile->Position, 10);
    EXPECT_EQ(gEngine->LreadFile(mFile, 1), Active(1));
    EXPECT_EQ(gEngine->LreadFile(ByteString("ARMAST"), Last), Active(Last));
    gEngine->LwriteFile(mFile, 3, std::string(Length, '!'));
    EXPECT_EQ(OnDisk(2), Active(2));
    EXPECT_EQ(OnDisk(3), std::string(Length, '!'));
    EXPECT_EQ(OnDisk(4), Active(4));
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
    EXPECT_EQ(OnDisk(1), Active(1));
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
    EXPECT_EQ(ZeroOnDisk(), RecordZero(9, 11, 7));
}

TEST_F(Records, DeletingPutsARecordAtTheHeadOfTheChain) {
    gEngine->DelRec(mFile, 5);
    EXPECT_EQ(OnDisk(5), Deleted(9));
    EXPECT_EQ(ZeroOnDisk(), RecordZero(5, 11, 6));
    const auto error = ErrorOf([&] { gEngine->DelRec(mFile, 5); });
    EXPECT_EQ(error.Number, 81);
    EXPECT_EQ(error.Source, "DelRec");
    EXPECT_EQ(error.Description, "Attempt to delete a deleted record");
    EXPECT_EQ(ErrorOf([&] { gEngine->DelRec(mFile, 13); }).Source, "iLreadFile");
    EXPECT_EQ(ZeroOnDisk(), RecordZero(5, 11, 6));
}

TEST_F(Records, TheActiveCountNeverFallsBelowZero) {
    gEngine->WriteFile(mFile->OpenFile, RecordZero(-1, 11, 0), 5120);
    gEngine->DelRec(mFile, 1);
    EXPECT_EQ(ZeroOnDisk(), RecordZero(1, 11, 0));
    EXPECT_EQ(OnDisk(1), Deleted(-1));
}

TEST_F(Records, InitFileEmptiesAPlainFile) {
    gEngine->InitFile(mFile);
    // The header block covers records 1 to 4 and the start of 5; all are NULs again.
    EXPECT_EQ(OnDisk(0), Big(-2, 2) + Big(-1, 4) + Nul(Length - 6));
    for (int record = 1; record <= Last; ++record) EXPECT_EQ(OnDisk(record), Nul(Length)) << record;
    EXPECT_EQ(mSite.ContainerBytes().substr(0, mFirstByte), std::string(mFirstByte, '#'));
}

TEST_F(Records, InitFileMakesAnIndexOfTheTerminator) {
    mFile->FileType = "I";
    gEngine->InitFile(mFile, 16, true, 250);
    std::string header = Nul(512);
    const std::int32_t words[]{20, 25, Last, 2, 1, 50, -1};
    for (std::size_t word = 0; word < std::size(words); ++word)
        header = test::With(header, word * 2 + 1, Big(words[word], 2));
    EXPECT_EQ(mSite.ContainerBytes().substr(mFirstByte, 512), header);
    EXPECT_EQ(mSite.ContainerBytes().substr(mFirstByte + 512, 512), Big(1, 2) + std::string(510, '\xFF'));

    gEngine->InitFile(mFile, 8);
    EXPECT_EQ(mSite.ContainerBytes().substr(mFirstByte, 14),
              Big(12, 2) + Big(42, 2) + Big(Last, 2) + Big(2, 2) + Big(1, 2) + Nul(4));
    // Quotients are rounded down, below zero too.
    gEngine->InitFile(mFile, -7, false, -50);
    EXPECT_EQ(mSite.ContainerBytes().substr(mFirstByte, 14),
              Big(-3, 2) + Big(-170, 2) + Big(Last, 2) + Big(2, 2) + Big(1, 2) + Big(170, 2) + Nul(2));
    EXPECT_EQ(ErrorOf([&] { gEngine->InitFile(mFile, -4); }).Number, 11);
    EXPECT_EQ(ErrorOf([&] { gEngine->InitFile(mFile, 2147483647); }).Number, 6);
    EXPECT_EQ(ErrorOf([&] { gEngine->InitFile(mFile, -3, false, 2147483647); }).Number, 6);
}

TEST_F(Records, InitFileLeavesOtherTypesAlone) {
    const std::string before = mSite.ContainerBytes();
    mFile->FileType = "S";
    gEngine->InitFile(mFile, 16);
    EXPECT_EQ(mSite.ContainerBytes(), before);
    mFile->FileType = "L";
    mFile->OpenFile.reset();
    EXPECT_EQ(ErrorOf([&] { gEngine->InitFile(mFile); }).Source, "iwriteFile");
}

}  // namespace
}  // namespace engine
