// A site laid out by hand, byte for byte: no builder of records or indexes has a part in it.
#include <fstream>
#include <gtest/gtest.h>
#include <tuple>

#include "engine/records.h"
#include "tests/engine/site_builder.h"

namespace engine {
namespace {

using test::Hex;
using test::Padded;

/// A block of the container: the bytes given, then NULs.
std::string Block(const std::string& hex, std::size_t length = 512) {
    return Padded(Hex(hex), length, '\0');
}

// Block 1 on: PARTS, an index of two-byte keys. Root 6 over 5 and 7, these over the leaves 1, 2 and 4, 3.
// What stands behind the entries of leaves that were fuller is no part of them.
const std::string Parts = Block("00 06 00 54 00 07 00 08 00 06 00 00 FF FF") +
                          Block("00 02 00 02 41 41 00 00 00 01 42 42 00 00 00 07 41 42 00 00 00 09") +
                          Block("00 01 00 04 42 42 00 00 00 02 42 43 00 00 00 09") +
                          Block("00 02 FF FF 44 44 00 00 00 05 FF FF FF FF FF FF") +
                          Block("00 01 00 03 43 43 00 00 00 03 FF FF FF FF FF FF") +
                          Block("00 02 00 00 42 42 00 00 00 01 42 42 00 00 00 02 FF FF 00 00 00 03") +
                          Block("00 02 00 00 42 42 00 00 00 05 FF FF 00 00 00 07") +
                          Block("00 02 00 00 43 43 00 00 00 04 FF FF 00 00 00 03");

// Block 9 on: STRAY, whose root is an interior block that ends below "ZZ". Its link 0 leads to the header,
// which reads as a leaf of 6 entries from byte 5 on: key "aa", pointer 00 05 00 01.
const std::string Stray = Block("00 06 00 54 61 61 00 05 00 01") + Block("00 01 00 00 41 41 00 00 00 01");

// Block 11: ORDERS, seven records of 8 bytes and record zero. Active are 1, 3 and 7; deleted 5, then 2.
const std::string Orders = Block(
    "FF FE 00 00 00 05 00 00 00 07 00 00 00 03 7A 7A "  // records 0 and 1 share the header's 16 bytes
    "00 00 00 00 00 00 00 00  00 01 43 33 33 33 33 33 "
    "00 02 44 44 44 44 44 44  00 00 00 00 00 02 00 00 "
    "00 00 00 00 00 00 00 00  7F FF 47 47 47 47 47 47");

// Blocks 12 and 16: the headers of SINGLE and TWINS, marked "09", with the root 01 00 02 in three bytes;
// TWINS admits duplicate keys. Their other blocks lie far behind.
const std::string Single = Block("00 06 00 00 00 00 00 00 00 02 00 00 00 00 30 39 01 01 01", 2048);
const std::string Twins = Block("00 08 00 00 00 00 00 00 00 02 00 00 FF FF 30 39 01 01 01", 2048);

// The name field of ten bytes holds the flags, bytes 7 and 8: NULs, tabs, blanks, or letters of a long name.
// The last entry is cut.
const std::string Directory =
    Hex("50 41 52 54 53 00 01 00 00 00  00 00 01 02 00 49  00 00 00 04  00 00 00 00 00 00 00 00 00 00 00 00 "
        "50 41 52 54 53 00 00 00 00 00  00 00 01 02 00 49  00 00 00 07  FF FF FF FF FF FF FF FF FF FF FF FF "
        "53 54 52 41 59 20 09 0A 0D 00  00 00 09 02 00 49  00 00 00 01  00 00 00 00 00 00 00 00 00 00 00 00 "
        "4F 52 44 45 52 53 48 45 4C 44  00 00 0B 00 08 4C  00 00 00 07  00 00 00 00 00 00 00 00 00 00 00 00 "
        "53 49 4E 47 4C 45 00 00 00 00  00 00 0C 08 00 49  00 01 00 03  00 00 00 00 00 00 00 00 00 00 00 00 "
        "54 57 49 4E 53 00 00 00 00 00  00 00 10 08 00 49  00 01 00 03  00 00 00 00 00 00 00 00 00 00 00 00 "
        "43 55 54 00 00 00 00 00 00 00  00 00 01 02 00 49  00 00 00 07");

class HandLaidSite : public testing::Test {
  protected:
    HandLaidSite() {
        mSite.Directory = Directory;
        mSite.Container += Parts + Stray + Orders + Single + Twins;
        // The first of two links of one name stays; the last link is cut by the end of the file.
        mSite.Links = "?" + Padded(":D01:PARTS", 79, '\0') + "?" + Padded("KSW:D01", 79, '\t') +  //
                      "!" + Padded(":D01:STRAY \t\r\n", 79) + "!" + Padded("KSW:D01", 79) +       //
                      "?" + Padded(":d01:Parts", 79) + "?" + Padded("KSW:D02", 79) +              //
                      std::string(160, ' ') +                                                     //
                      "?" + Padded(":D01:CUT", 79) + "?" + Padded("KSW:D01", 79) +                //
                      "?" + Padded(":D01:SINGLE", 79) + "?" + Padded("KSW:D01", 79) +             //
                      "?" + Padded(":D01:TWINS", 79) + "?" + Padded("KSW:D01", 79) +              //
                      "?" + Padded(":d01:ordersheld", 79) + "?KSW:D01";
        mSite.Start();
    }

    void Find(const char* name, const ByteString& key) {
        mFile = gEngine->LogicalOpen(name);
        mBuff.clear();
        mKey = key;
        gEngine->KFind(mFile, mBuff, mKey, mRec);
    }

    /// The keys and record numbers from the lowest key on, as in "AA1 BB7".
    std::string Walk(const char* name) {
        std::string walk;
        for (Find(name, ""), mRec = -mRec; mRec != 0; gEngine->KNext(mFile, mBuff, mKey, mRec))
            walk += mKey + std::to_string(mRec) + " ";
        return walk;
    }

    test::SiteBuilder mSite;
    std::shared_ptr<cLogicalFile> mFile;
    ByteString mBuff;
    ByteString mKey;
    std::int32_t mRec = 0;
};

TEST_F(HandLaidSite, EntriesAreFoundBehindEveryKindOfPadding) {
    EXPECT_EQ(gLinks->Count(), 6);
    EXPECT_EQ(gEngine->LogicalOpen("PARTS")->LastRecord, 7);  // the entry before it has a flag in its name
    EXPECT_EQ(gEngine->LogicalOpen("STRAY")->Flags, 0x090A);
    const auto orders = gEngine->LogicalOpen("ORDERSHELD");
    ASSERT_TRUE(orders);
    EXPECT_EQ(orders->FileName, "ORDERSHELD");
    EXPECT_EQ(orders->FileType, "L");
    EXPECT_EQ(orders->OpenFile->Path, R"(\\SRV1\KSTLLNK\KSW\DDB)");
    EXPECT_EQ(orders->Position, 11);
    EXPECT_EQ(orders->Flags, 0x4845);  // letters of the name
    EXPECT_EQ(orders->RecordLength, 8);
    EXPECT_EQ(orders->LastRecord, 7);
    EXPECT_FALSE(orders->IsamPlus);
    EXPECT_FALSE(gEngine->LogicalOpen("CUT"));
    EXPECT_EQ(gLinks->Item(":d01:PARTS")->ResolutionFile, "KSW:D01");
}

TEST_F(HandLaidSite, ALinkFileCutAnywhereGivesWhatIsLeft) {
    const std::string whole = "?:" + std::string(78, 'N') + "?KSW:" + std::string(75, 'R');
    for (const auto& [length, name, resolution] :
         {std::tuple(1U, 0U, 0U), {2U, 1U, 0U}, {80U, 79U, 0U}, {159U, 79U, 78U}, {161U, 79U, 79U}}) {
        mSite.Links = (whole + whole).substr(0, length);
        mSite.Start();
        const auto links = gLinks->NewEnum();
        ASSERT_EQ(links.size(), name > 0 ? 1U : 0U) << length;
        if (links.empty()) continue;
        EXPECT_EQ(links[0]->LinkFile, whole.substr(1, name)) << length;
        EXPECT_EQ(links[0]->ResolutionFile, whole.substr(81, resolution)) << length;
    }
}

TEST_F(HandLaidSite, ThreeLevelsAreWalkedBothWaysAndSearched) {
    EXPECT_EQ(Walk("PARTS"), "AA1 BB7 BB2 CC3 DD5 ");
    EXPECT_EQ(mBuff.substr(16, 8), Hex("02 03 00 06 00 05 00 03"));  // entry, level, root, child, last leaf
    std::string back;
    for (gEngine->KLast(mFile, mBuff, mKey, mRec); mRec != 0; gEngine->KPrev(mFile, mBuff, mKey, mRec))
        back += mKey + std::to_string(mRec) + " ";
    EXPECT_EQ(back, "DD5 CC3 BB2 BB7 AA1 ");
    EXPECT_EQ(gEngine->KCount(mFile), 5);
    EXPECT_EQ(gEngine->KLength(mFile), -4);  // at byte 1 of the container, where nothing is
    for (const auto& [key, foundKey, rec, path] : {std::tuple("AB", "BB", -7, "02 03 00 06 00 05 00 01"),
                                                   {"BB", "BB", 7, "02 03 00 06 00 05 00 01"},
                                                   {"BC", "CC", -3, "01 03 00 06 00 07 00 04"},
                                                   {"DDx", "DD", 5, "01 03 00 06 00 07 00 03"},
                                                   {"E", "\xFF\xFF", 0, "02 03 00 06 00 07 00 03"}}) {
        Find("PARTS", key);
        EXPECT_EQ(mKey, foundKey);
        EXPECT_EQ(mRec, rec) << key;
        EXPECT_EQ(mBuff.substr(16, 8), Hex(path)) << key;
    }
}

TEST_F(HandLaidSite, AnInteriorBlockThatEndsBelowTheKeyLeadsToTheHeader) {
    Find("STRAY", "ZZ");
    EXPECT_EQ(mKey, "aa");
    EXPECT_EQ(mRec, -0x00050001);
    EXPECT_EQ(mBuff.substr(16, 2), Hex("01 01"));
    EXPECT_EQ(mBuff.substr(32, 10), Stray.substr(0, 10));
}

// Root 01 00 02 over the leaves 01 00 03, 01 00 00, 00 FF FF, by links whose low words alone mean other
// things. Bytes 5, 6 and 8 of a block are noise.
TEST_F(HandLaidSite, BlocksOfTheExtendedFormatHaveNumbersOf24Bits) {
    const struct {
        const char* Name;
        std::int32_t FirstBlock;
        std::pair<std::int32_t, const char*> Blocks[4];
    } cases[]{
        {"SINGLE",
         12,
         {{0x010002, "00 02 00 00 77 77 00 77  42 42 00 01 00 03  FF FF 00 01 00 00"},
          {0x010003, "00 02 00 00 77 77 01 77  41 41 00 00 00 01  42 42 00 00 00 07  43 00 00 00 00 09"},
          {0x010000, "00 01 FF FF 77 77 00 77  43 43 00 00 00 02"},
          {0x00FFFF, "00 02 FF FF 77 77 FF 77  44 44 00 01 00 00  FF FF FF FF FF FF"}}},
        {"TWINS",
         16,
         {{0x010002, "00 02 00 00 77 77 00 77  42 42 7E 7E 00 01 00 03  FF FF FF FF 00 01 00 00"},
          {0x010003, "00 02 00 00 77 77 01 77  41 41 7E 7E 00 00 00 01  42 42 00 01 00 00 00 07"},
          {0x010000, "00 01 FF FF 77 77 00 77  42 42 00 02 00 00 00 02"},
          {0x00FFFF, "00 02 FF FF 77 77 FF 77  44 44 FF FF 00 01 00 00  FF FF FF FF FF FF FF FF"}}},
    };
    for (const auto& c : cases) {
        std::fstream container(mSite.InShare("KSW/DDB"), std::ios::in | std::ios::out | std::ios::binary);
        for (const auto& [number, hex] : c.Blocks)
            container.seekp(c.FirstBlock * 512 + std::streamoff{number} * 2048) << Block(hex, 2048);
        container.close();
        const bool isTwins = c.FirstBlock == 16;
        EXPECT_EQ(Walk(c.Name), isTwins ? "AA1 BB7 BB2 DD65536 " : "AA1 BB7 CC2 DD65536 ");
        EXPECT_EQ(gEngine->KCount(mFile), 4);
        Find(c.Name, "BBB");
        EXPECT_EQ(mRec, 7);
        EXPECT_EQ(mBuff.size(), 2048U + 32U);
        EXPECT_EQ(mBuff.substr(16, 4), Hex("02 02 01 00"));  // no path: the header's bytes from 19 on
        Find(c.Name, "C");
        EXPECT_EQ(mRec, isTwins ? -65536 : -2);
    }
}

TEST_F(HandLaidSite, TheEntryNumberIsKeptInOneByte) {
    // One leaf of 300 keys of a byte, each twice, and the terminator.
    std::string leaf = Hex("01 2D FF FF 00 00 FF 00");
    for (int i = 0; i < 300; ++i) leaf += test::Big(i / 2, 1) + test::Big(i + 1, 4);
    mSite.Directory.clear();
    mSite.Links = "";
    mSite.AddFile("SHORT", 'I', 2048, 1,
                  Block("00 05 00 00 00 00 00 00 00 01 00 00 00 00 30 39 00 00 00", 2048) + leaf +
                      Hex("FF FF FF FF FF"));
    mSite.Start();
    Find("SHORT", "\x8C");
    EXPECT_EQ(mRec, 281);
    EXPECT_EQ(mBuff.substr(16, 1), Hex("19"));  // 281 modulo 256
    // So the next step goes on from the wrapped number.
    gEngine->KNext(mFile, mBuff, mKey, mRec);
    EXPECT_EQ(mRec, 26);
}

TEST_F(HandLaidSite, RecordsAndTheirChainChangeByteForByte) {
    const auto file = gEngine->LogicalOpen("ORDERSHELD");
    EXPECT_EQ(file->HighUsedRecord(), 7);
    EXPECT_EQ(file->ActiveCount(true), 3);
    EXPECT_EQ(gEngine->LogicalOpen("PARTS")->HighUsedRecord(), 0);  // a keyed file has no such header
    EXPECT_EQ(gEngine->LogicalOpen("PARTS")->ActiveCount(), 0);
    EXPECT_EQ(gEngine->LreadFile(file, 7), Hex("7F FF 47 47 47 47 47 47"));
    // Without a lock: the chain's head is deleted record 5, its next one 2.
    gEngine->DelRec(file, 7);
    EXPECT_EQ(TakeFreeRecord(file), 7);
    EXPECT_EQ(TakeFreeRecord(file), 5);
    const std::string before = mSite.Container;
    std::string after = test::With(before, 11 * 512 + 3, Hex("00 00 00 02 00 00 00 07 00 00 00 04"));
    after = test::With(after, 11 * 512 + 7 * 8 + 1, Hex("00 00 00 00 00 05 00 00"));
    EXPECT_EQ(mSite.ContainerBytes(), after);
    // Then 2, whose next is 0: the chain is empty, and the number above the highest one follows.
    EXPECT_EQ(TakeFreeRecord(file), 2);
    EXPECT_EQ(TakeFreeRecord(file), 8);
    EXPECT_EQ(file->HighUsedRecord(), 8);
    // The header of an emptied file is a whole block, over whatever else is in it.
    gEngine->InitFile(file);
    EXPECT_EQ(mSite.ContainerBytes(),
              before.substr(0, 11 * 512) + Block("FF FE FF FF FF FF") + Single + Twins);
}

}  // namespace
}  // namespace engine
