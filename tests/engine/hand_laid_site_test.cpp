// A site laid out by hand, byte for byte: no builder of records or indexes has a part in it.
#include <gtest/gtest.h>

#include "engine/records.h"
#include "tests/engine/site_builder.h"

namespace engine {
namespace {

using test::Hex;
using test::Padded;

/// A block of the container: the bytes given, then NULs.
std::string Block(const std::string& hex) {
    return Padded(Hex(hex), 512, '\0');
}

// Block 1 on: PARTS, an index of two-byte keys. Root 3 over the leaves 1 and 2.
const std::string Parts = Block("00 06 00 54 00 05 00 04 00 03") +
                          Block("00 02 00 02 41 41 00 00 00 01 42 42 00 00 00 07") +
                          Block("00 02 FF FF 43 43 00 00 00 03 FF FF FF FF FF FF") +
                          Block("00 02 00 00 42 42 00 00 00 01 FF FF 00 00 00 02");

// Block 5 on: STRAY, whose root is an interior block that ends below "ZZ". Its link 0 leads to the header,
// which reads as a leaf of 6 entries from byte 5 on: key "aa", pointer 00 05 00 01.
const std::string Stray = Block("00 06 00 54 61 61 00 05 00 01") + Block("00 01 00 00 41 41 00 00 00 01");

// Block 7 on: ORDERS, seven records of 8 bytes and record zero. Active are 1, 3 and 7; deleted 5, then 2.
const std::string Orders = Block(
    "FF FE 00 00 00 05 00 00 00 07 00 00 00 03 7A 7A "  // records 0 and 1 share the header's 16 bytes
    "00 00 00 00 00 00 00 00  00 01 43 33 33 33 33 33 "
    "00 02 44 44 44 44 44 44  00 00 00 00 00 02 00 00 "
    "00 00 00 00 00 00 00 00  7F FF 47 47 47 47 47 47");

// The name field of ten bytes holds the flags, bytes 7 and 8: NULs, tabs, blanks, or letters of a long name.
const std::string Directory =
    Hex("50 41 52 54 53 00 01 00 00 00  00 00 01 02 00 49  00 00 00 04  00 00 00 00 00 00 00 00 00 00 00 00 "
        "50 41 52 54 53 00 00 00 00 00  00 00 01 02 00 49  00 00 00 03  FF FF FF FF FF FF FF FF FF FF FF FF "
        "53 54 52 41 59 20 09 0A 0D 00  00 00 05 02 00 49  00 00 00 01  00 00 00 00 00 00 00 00 00 00 00 00 "
        "4F 52 44 45 52 53 48 45 4C 44  00 00 07 00 08 4C  00 00 00 07  00 00 00 00 00 00 00 00 00 00 00 00 "
        "43 55 54");

class HandLaidSite : public testing::Test {
  protected:
    HandLaidSite() {
        mSite.Directory = Directory;
        mSite.Container += Parts + Stray + Orders;
        // The first of two links of one name stays; the last link is cut by the end of the file.
        mSite.Links = "?" + Padded(":D01:PARTS", 79, '\0') + "?" + Padded("KSW:D01", 79, '\t') +  //
                      "!" + Padded(":D01:STRAY \t\r\n", 79) + "!" + Padded("KSW:D01", 79) +       //
                      "?" + Padded(":d01:Parts", 79) + "?" + Padded("KSW:D02", 79) +              //
                      std::string(160, ' ') +                                                     //
                      "?" + Padded(":D01:CUT", 79) + "?" + Padded("KSW:D01", 79) +                //
                      "?" + Padded(":d01:ordersheld", 79) + "?KSW:D01";
        mSite.Start();
    }

    test::SiteBuilder mSite;
};

TEST_F(HandLaidSite, EntriesAreFoundBehindEveryKindOfPadding) {
    EXPECT_EQ(gLinks->Count(), 4);
    EXPECT_EQ(gEngine->LogicalOpen("PARTS")->LastRecord, 3);  // the entry before it has a flag in its name
    EXPECT_EQ(gEngine->LogicalOpen("STRAY")->Flags, 0x090A);
    const auto orders = gEngine->LogicalOpen("ORDERSHELD");
    EXPECT_EQ(orders->Flags, 0x4845);  // letters of the name
    EXPECT_EQ(orders->RecordLength, 8);
    EXPECT_FALSE(gEngine->LogicalOpen("CUT"));
    EXPECT_EQ(gLinks->Item(":d01:PARTS")->ResolutionFile, "KSW:D01");
}

TEST_F(HandLaidSite, TheIndexIsWalkedAndSearched) {
    const auto file = gEngine->LogicalOpen("PARTS");
    const std::pair<const char*, std::int32_t> sorted[]{{"AA", 1}, {"BB", 7}, {"CC", 3}};
    ByteString buff, key;
    std::int32_t rec = 0;
    gEngine->KFind(file, buff, key, rec);
    rec = -rec;
    for (const auto& [wantedKey, wantedRec] : sorted) {
        EXPECT_EQ(key, wantedKey);
        EXPECT_EQ(rec, wantedRec);
        gEngine->KNext(file, buff, key, rec);
    }
    EXPECT_EQ(rec, 0);
    EXPECT_EQ(buff.substr(16, 6), Hex("02 02 00 03 00 02"));  // entry, level, root, second leaf
    EXPECT_EQ(gEngine->KCount(file), 3);
    EXPECT_EQ(gEngine->KLength(file), -4);  // at byte 1 of the container, where nothing is

    const auto stray = gEngine->LogicalOpen("STRAY");
    key = "ZZ";
    buff.clear();
    gEngine->KFind(stray, buff, key, rec);
    EXPECT_EQ(key, "aa");
    EXPECT_EQ(rec, -0x00050001);
    EXPECT_EQ(buff.substr(16, 2), Hex("01 01"));
    EXPECT_EQ(buff.substr(32, 10), Stray.substr(0, 10));
}

TEST_F(HandLaidSite, RecordsAndTheirChainChangeByteForByte) {
    const auto file = gEngine->LogicalOpen("ORDERSHELD");
    EXPECT_EQ(file->HighUsedRecord(), 7);
    EXPECT_EQ(file->ActiveCount(), 3);
    EXPECT_EQ(gEngine->LreadFile(file, 7), Hex("7F FF 47 47 47 47 47 47"));
    // Without a lock: the chain's head is deleted record 5, its next one 2.
    gEngine->DelRec(file, 7);
    EXPECT_EQ(TakeFreeRecord(file), 7);
    EXPECT_EQ(TakeFreeRecord(file), 5);
    const std::string before = mSite.Container;
    std::string after = test::With(before, 7 * 512 + 3, Hex("00 00 00 02 00 00 00 07 00 00 00 04"));
    after = test::With(after, 7 * 512 + 7 * 8 + 1, Hex("00 00 00 00 00 05 00 00"));
    EXPECT_EQ(mSite.ContainerBytes(), after);
    // Then 2, whose next is 0: the chain is empty, and the number above the highest one follows.
    EXPECT_EQ(TakeFreeRecord(file), 2);
    EXPECT_EQ(TakeFreeRecord(file), 8);
    EXPECT_EQ(file->HighUsedRecord(), 8);
}

}  // namespace
}  // namespace engine
