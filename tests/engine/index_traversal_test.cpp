#include "engine/index_traversal.h"

#include <gtest/gtest.h>

#include "engine/index_layout.h"
#include "tests/engine/index_builder.h"
#include "tests/engine/site_builder.h"
#include "tests/support/expect_error.h"

namespace engine {
namespace {

using test::Big;
using test::BlockBytes;
using test::HeaderBytes;
using test::IndexFormat;
using test::KeyAndPointer;
using test::Terminator;

constexpr IndexFormat Small{4, false, false};
constexpr IndexFormat Large{4, true, false};
const std::string High = "\xFF\xFF\xFF\xFF";

using Walk = std::vector<KeyAndPointer>;

class Traversal : public testing::Test {
  protected:
    std::shared_ptr<cLogicalFile> Index(const IndexFormat& format, const std::string& bytes,
                                        std::int32_t lastBlock = 9) {
        mSite.AddFile("X", 'I', static_cast<std::int32_t>(format.BlockLength()), lastBlock, bytes);
        mFile = mSite.Start().LogicalOpen("X");
        return mFile;
    }

    /// Root 5 over 6 and 7, these over the leaves 1, 2 and 3, 4.
    void ThreeLevels() {
        Index(Small, HeaderBytes(Small, 5) + BlockBytes(Small, 2, {{"aaaa", 10}, {"bbbb", 20}}) +
                         BlockBytes(Small, 3, {{"cccc", 30}}) +
                         BlockBytes(Small, 4, {{"dddd", 40}, {"dddd", 50}}) +
                         BlockBytes(Small, 0xFFFF, {{"eeee", 60}, Terminator(Small)}) +
                         BlockBytes(Small, 0, {{"cccc", 6}, {High, 7}}) +
                         BlockBytes(Small, 0, {{"bbbb", 1}, {"cccc", 2}}) +
                         BlockBytes(Small, 0, {{"dddd", 3}, {High, 4}}));
    }

    void Find(const ByteString& key) {
        mKey = key;
        gEngine->KFind(mFile, mBuff, mKey, mRec);
    }
    void Next() { gEngine->KNext(mFile, mBuff, mKey, mRec); }
    void Previous() { gEngine->KPrev(mFile, mBuff, mKey, mRec); }

    Walk Forward() {
        Walk walk;
        for (Find(""); mRec != 0; Next()) walk.push_back({mKey, mRec < 0 ? -mRec : mRec});
        return walk;
    }
    Walk Backward() {
        Walk walk;
        for (gEngine->KLast(mFile, mBuff, mKey, mRec); mRec != 0; Previous()) walk.push_back({mKey, mRec});
        return walk;
    }

    test::SiteBuilder mSite;
    std::shared_ptr<cLogicalFile> mFile;
    ByteString mBuff;
    ByteString mKey;
    std::int32_t mRec = 0;
};

TEST_F(Traversal, TheEndIsTheTerminatorThenNothing) {
    ThreeLevels();
    Find("eeee");
    Next();
    EXPECT_EQ(mRec, 0);
    EXPECT_EQ(mKey, High);
    const ByteString before = mBuff;
    mKey = "kept";
    mRec = 9;
    Next();
    EXPECT_EQ(mRec, 0);
    EXPECT_EQ(mKey, "kept");
    EXPECT_EQ(mBuff, before);
}

TEST_F(Traversal, TheFrontOfTheIndexLeavesTheBufferAsItWas) {
    ThreeLevels();
    Find("aaaa");
    const ByteString before = mBuff;
    Previous();
    EXPECT_EQ(mRec, 0);
    EXPECT_EQ(mBuff, before);
    // The climb used Key: the root's entry for the block below, its highest key and its number.
    EXPECT_EQ(mKey, "cccc" + Big(6, 4));

    Find("bbbb");
    Previous();
    EXPECT_EQ(mKey, "aaaa");
    EXPECT_EQ(mRec, 10);
    EXPECT_EQ(mBuff.substr(16, 1), Big(1, 1));
}

TEST_F(Traversal, KPrevFailsWhenThePathDoesNotFitTheBlock) {
    ThreeLevels();
    Find("cccc");
    // The leaf's place in the path moves along, its parent's does not; so the leaf is looked for in the wrong
    // parent, down to the front of the buffer.
    Next();
    EXPECT_EQ(mKey, "dddd");
    EXPECT_EQ(test::ErrorOf([&] { Previous(); }).Number, 5);
}

TEST_F(Traversal, KLastKeepsItsPlace) {
    ThreeLevels();
    mBuff = "short";
    gEngine->KLast(mFile, mBuff, mKey, mRec);
    EXPECT_EQ(mBuff.size(), 544U);
    EXPECT_EQ(mBuff.substr(16, 8), Big(1, 1) + Big(3, 1) + Big(5, 2) + Big(7, 2) + Big(4, 2));
    Next();
    EXPECT_EQ(mRec, 0);
}

TEST_F(Traversal, AFreshIndex) {
    Index(Small, "");
    gEngine->InitFile(mFile, 4);
    EXPECT_EQ(gEngine->KCount(mFile), 0);
    for (const char* key : {"", "m", "\xFF\xFF\xFF\xFF"}) {
        Find(key);
        EXPECT_EQ(mRec, 0);
    }
    // The entry before the only one lies in front of the block's entries: the last bytes of the path, the
    // count and the link.
    gEngine->KLast(mFile, mBuff, mKey, mRec);
    EXPECT_EQ(mKey, test::Nul(4));
    EXPECT_EQ(mRec, 0x0001FFFF);
    EXPECT_EQ(mBuff.substr(16, 2), Big(0, 1) + Big(1, 1));
}

TEST_F(Traversal, CountingShowsItsStatus) {
    ThreeLevels();
    gEngine->KCount(mFile);
    EXPECT_EQ(mSite.Window.Statuses, (std::vector<std::string>{"Scanning Index... please wait", ""}));
    mFile->OpenFile->Close();
    EXPECT_EQ(test::ErrorOf([&] { gEngine->KCount(mFile); }).Number, 52);
    EXPECT_EQ(mSite.Window.Statuses.back(), "Scanning Index... please wait");
}

TEST_F(Traversal, CountingEndsByEitherMarkOfTheLastLeaf) {
    const auto index = [](const IndexFormat& format, std::int32_t lastLink) {
        return HeaderBytes(format, 1) + BlockBytes(format, 2, {{"aaaa", 1}, {"bbbb", 2}}) +
               BlockBytes(format, lastLink, {{"cccc", 3}, Terminator(format)});
    };
    Index(Large, index(Large, 0xFFFFFF));
    EXPECT_EQ(gEngine->KCount(mFile), 3);
    // A link of 65535 ends an extended index too, when the terminator is there.
    gEngine->WriteFile(mFile->OpenFile, Big(0xFFFF, 2) + "pp" + Big(0, 1),
                       mFile->Position * 512 + 2 * 2048 + 2);
    EXPECT_EQ(gEngine->KCount(mFile), 3);
}

TEST_F(Traversal, OtherBlockSizesCompareLinksWithZero) {
    // Block 1 is a leaf of 600 bytes; its link leads to block 2, whose link is 0: that ends the count.
    const std::string blocks = test::Padded(HeaderBytes(Small, 1), 600) +
                               test::Padded(BlockBytes(Small, 2, {{"aaaa", 1}, {"bbbb", 2}}), 600) +
                               test::Padded(BlockBytes(Small, 0, {{"cccc", 3}, Terminator(Small)}), 600);
    Index(Small, blocks);
    mFile->RecordLength = 600;
    EXPECT_EQ(gEngine->KCount(mFile), 3);
}

TEST_F(Traversal, DamagedIndexesEndInErrors) {
    Index(Small, HeaderBytes(Small, 1) + BlockBytes(Small, 2, {{"aaaa", 1}}) +
                     BlockBytes(Small, 3, {{"bbbb", 2}}) + BlockBytes(Small, 2, {{"cccc", 3}}) +
                     BlockBytes(Small, 0, {{High, 4}}));
    const auto ring = test::ErrorOf([&] { gEngine->KCount(mFile); });
    EXPECT_EQ(ring.Number, 81);
    EXPECT_EQ(ring.Source, "KCount");
    EXPECT_EQ(ring.Description, "Index blocks run in a circle.  File: X Block: 3");
    // The leaf after the cut reads as blanks, whose link 8224 reads as blanks again.
    std::filesystem::resize_file(mSite.InShare("KSW/DDB"),
                                 static_cast<std::uintmax_t>(mFile->Position + 2) * 512);
    EXPECT_EQ(test::ErrorOf([&] { gEngine->KCount(mFile); }).Number, 81);
    EXPECT_EQ(test::ErrorOf([&] { Forward(); }).Number, 31);

    gEngine->WriteFile(mFile->OpenFile, HeaderBytes(Small, 4), mFile->Position * 512);
    gEngine->WriteFile(mFile->OpenFile, BlockBytes(Small, 0, {{High, 4}}), (mFile->Position + 4) * 512);
    EXPECT_EQ(test::ErrorOf([&] { gEngine->KLast(mFile, mBuff, mKey, mRec); }).Source, "KLast");
}

TEST_F(Traversal, BuffersThatNobodyFilled) {
    ThreeLevels();
    for (const std::string& buffer : {std::string(), test::Nul(35)}) {
        mBuff = buffer;
        EXPECT_EQ(test::ErrorOf([&] { Next(); }).Number, 31);
        EXPECT_EQ(test::ErrorOf([&] { Previous(); }).Number, 31);
    }
    // Key takes the block's last entry before the path is read, which ends before level 30 here.
    Find("aaaa");
    mBuff.resize(60);
    mBuff[17] = 30;
    EXPECT_EQ(test::ErrorOf([&] { Previous(); }).Description,
              "Invalid Subscript.  UnPack(\"C\", Data$, 77)   Len(Data$) = 60");
    EXPECT_EQ(mKey, "bbbb" + Big(20, 4));
    const std::shared_ptr<cLogicalFile> none;
    EXPECT_EQ(test::ErrorOf([&] { gEngine->KNext(none, mBuff, mKey, mRec); }).Number, 91);
    EXPECT_EQ(test::ErrorOf([&] { gEngine->KPrev(none, mBuff, mKey, mRec); }).Number, 91);
    EXPECT_EQ(test::ErrorOf([&] { gEngine->KLast(none, mBuff, mKey, mRec); }).Number, 91);
    EXPECT_EQ(test::ErrorOf([&] { gEngine->KCount(none); }).Number, 91);
    EXPECT_EQ(test::ErrorOf([&] { ReadBlock(mFile->OpenFile, 0, -1, mBuff); }).Number, 5);
    EXPECT_EQ(test::ErrorOf([&] { ReadBlock(mFile->OpenFile, 0, 512, mKey); }).Number, 5);  // no room for one
}

struct RandomCase {
    unsigned Seed;
    IndexFormat Format;
    int Entries;
    int Alphabet;  // few letters make many duplicates
};

std::string RandomKey(const IndexFormat& format, int alphabet, std::mt19937& random) {
    constexpr int Letters = 4;  // spread over the key
    std::uniform_int_distribution<int> letter(0, alphabet - 1);
    std::string key(static_cast<std::size_t>(format.KeyLength), 'k');
    for (int i = 0; i < Letters; ++i)
        key[static_cast<std::size_t>(i * (format.KeyLength - 1) / (Letters - 1))] =
            static_cast<char>(letter(random));
    return key;
}

Walk SortedEntries(const RandomCase& c, std::mt19937& random) {
    Walk entries;
    for (int i = 0; i < c.Entries; ++i) entries.push_back({RandomKey(c.Format, c.Alphabet, random), i + 1});
    std::sort(entries.begin(), entries.end(), [](const auto& a, const auto& b) {
        return std::pair(a.Key, a.Pointer) < std::pair(b.Key, b.Pointer);
    });
    return entries;
}

class RandomTrees : public Traversal {
  protected:
    /// Writes a tree over sorted to the file and expects every walk to agree with it.
    void ExpectWalks(const RandomCase& c, const Walk& sorted, const test::RandomTree& tree) {
        mFile->IsamPlus = c.Format.Extended;
        mFile->RecordLength = static_cast<std::int32_t>(c.Format.BlockLength());
        mFile->LastRecord = tree.LastBlock();
        gEngine->WriteFile(mFile->OpenFile, tree.Bytes(), mFile->Position * 512);
        mBuff.clear();
        EXPECT_EQ(Forward(), sorted);
        EXPECT_EQ(gEngine->KCount(mFile), c.Entries);
        if (!c.Format.Extended && c.Entries > 0) {
            EXPECT_EQ(Backward(), Walk(sorted.rbegin(), sorted.rend()));
        }
        EXPECT_TRUE(mSite.Window.Messages.empty());
    }

    /// Expects a search for any key to stop at the first entry that is not below it, and the step back from
    /// there to lead to the entry before.
    void ExpectSearches(const RandomCase& c, const Walk& sorted, int probes, std::mt19937& random) {
        for (int probe = 0; probe < probes; ++probe) {
            const std::string key = RandomKey(c.Format, c.Alphabet + 1, random);
            const auto place = std::find_if(sorted.begin(), sorted.end(),
                                            [&](const KeyAndPointer& entry) { return !(entry.Key < key); });
            const bool isAbove = place == sorted.end();
            Find(key);
            EXPECT_EQ(mKey, isAbove ? Terminator(c.Format).Key : place->Key);
            EXPECT_EQ(mRec, isAbove ? 0 : place->Key == key ? place->Pointer : -place->Pointer);
            if (isAbove || c.Format.Extended) continue;
            Previous();
            EXPECT_EQ(mRec, place == sorted.begin() ? 0 : std::prev(place)->Pointer);
        }
    }
};

// Four entries at most fill a block, so that these small trees have up to seven levels.
TEST_F(RandomTrees, ThousandsOfSmallOnes) {
    Index(Small, "");
    for (unsigned seed = 1; seed <= 2000 && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        RandomCase c{seed, {120, seed % 4 == 0, seed % 3 == 0}, static_cast<int>(random() % 60), 2};
        if (c.Format.Extended) c.Format.KeyLength = 490;
        if (random() % 2 == 0) c.Alphabet = 256;
        const Walk sorted = SortedEntries(c, random);
        ExpectWalks(c, sorted, test::RandomTree(c.Format, sorted, random));
        ExpectSearches(c, sorted, 5, random);
    }
}

TEST_F(RandomTrees, OfManyEntries) {
    Index(Small, "");
    for (const RandomCase& c :
         {RandomCase{2, {8, false, false}, 5000, 256}, RandomCase{3, {3, false, true}, 5000, 8},
          RandomCase{4, {60, false, false}, 3000, 4}, RandomCase{5, {2, false, true}, 400, 2},
          RandomCase{6, {20, true, false}, 9000, 256}, RandomCase{7, {30, true, true}, 8000, 2}}) {
        SCOPED_TRACE(c.Seed);
        std::mt19937 random(c.Seed);
        const Walk sorted = SortedEntries(c, random);
        const test::RandomTree tree(c.Format, sorted, random);
        EXPECT_GE(tree.Levels, c.Entries > 2000 ? 3 : 2);
        ExpectWalks(c, sorted, tree);
        ExpectSearches(c, sorted, 300, random);
    }
}

}  // namespace
}  // namespace engine
