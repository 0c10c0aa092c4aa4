#include "engine/keyed_index.h"

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
using test::Nul;
using test::Terminator;

constexpr IndexFormat Small{4, false, false};
constexpr IndexFormat Large{4, true, false};
constexpr IndexFormat LargeWithDuplicates{4, true, true};

/// Two leaves under one root: block 3 over blocks 1 and 2.
std::string TwoLeaves(const IndexFormat& format) {
    return HeaderBytes(format, 3) + BlockBytes(format, 2, {{"bbbb", 10}, {"dddd", 20}, {"dddd", 30}}) +
           BlockBytes(format, format.LastLeaf(), {{"ffff", 40}, Terminator(format)}) +
           BlockBytes(format, 0, {{"dddd", 1}, {Terminator(format).Key, 2}});
}

class KeyedIndex : public testing::Test {
  protected:
    std::shared_ptr<cLogicalFile> Index(const std::string& name, const IndexFormat& format,
                                        const std::string& bytes, std::int32_t lastBlock = 3) {
        mSite.AddFile(name, 'I', static_cast<std::int32_t>(format.BlockLength()), lastBlock, bytes);
        return mSite.Start().LogicalOpen(name);
    }

    void Find(const std::shared_ptr<cLogicalFile>& file, const ByteString& key) {
        mKey = key;
        mRec = 99;
        gEngine->KFind(file, mBuff, mKey, mRec);
    }

    test::SiteBuilder mSite;
    ByteString mBuff;
    ByteString mKey;
    std::int32_t mRec = 0;
};

TEST_F(KeyedIndex, FindsTheFirstEntryNotBelowTheKey) {
    const struct {
        ByteString Key;
        ByteString KeyAfter;
        std::int32_t Rec;
        std::int32_t Entry;
    } cases[]{
        {"bbbb", "bbbb", 10, 1},
        {"dddd", "dddd", 20, 2},      // the leftmost of equal keys
        {"ddddzzzz", "dddd", 20, 2},  // cut
        {"", "bbbb", -10, 1},         // padded with zero bytes
        {"cc", "dddd", -20, 2},
        {"de", "ffff", -40, 1},  // in the next leaf
        {"ffff", "ffff", 40, 1},
        {"g", "\xFF\xFF\xFF\xFF", 0, 2},
        {"\xFF\xFF\xFF\xFF", "\xFF\xFF\xFF\xFF", 0, 2},
    };
    for (const IndexFormat& format : {Small, Large, LargeWithDuplicates}) {
        const auto file = Index("X" + std::to_string(format.EntryLength()) + (format.Extended ? "P" : ""),
                                format, TwoLeaves(format));
        for (const auto& c : cases) {
            Find(file, c.Key);
            EXPECT_EQ(mRec, c.Rec) << c.Key;
            EXPECT_EQ(mKey, c.KeyAfter) << c.Key;
            EXPECT_EQ(mBuff.substr(16, 2), Big(c.Entry, 1) + Big(2, 1)) << c.Key;
        }
    }
}

TEST_F(KeyedIndex, TheBufferHoldsHeaderPathAndBlock) {
    const auto file = Index("X", Small, TwoLeaves(Small));
    mBuff = std::string(600, '+');
    Find(file, "e");
    const std::string header = HeaderBytes(Small, 3);
    EXPECT_EQ(mBuff.substr(0, 16), header.substr(0, 16));
    EXPECT_EQ(mBuff.substr(16, 16), Big(1, 1) + Big(2, 1) + Big(3, 2) + Big(2, 2) + Nul(10));
    EXPECT_EQ(mBuff.substr(32, 512), TwoLeaves(Small).substr(2 * 512, 512));
    EXPECT_EQ(mBuff.substr(544), std::string(56, '+'));
}

TEST_F(KeyedIndex, AChainThatEndsWithoutATerminatorIsNotFound) {
    const auto file = Index("X", Small, HeaderBytes(Small, 1) + BlockBytes(Small, 0xFFFF, {{"aaaa", 5}}));
    Find(file, "b");
    EXPECT_EQ(mRec, 0);
    EXPECT_EQ(mKey, std::string("b\0\0\0", 4));
    EXPECT_EQ(mBuff.substr(16, 2), Nul(2));
}

TEST_F(KeyedIndex, TheSearchMovesRightAcrossLeaves) {
    const auto file =
        Index("X", Small,
              HeaderBytes(Small, 1) + BlockBytes(Small, 3, {{"aaaa", 5}}) +
                  BlockBytes(Small, 0xFFFF, {{"cccc", 7}, Terminator(Small)}) + BlockBytes(Small, 2, {}));
    Find(file, "b");
    EXPECT_EQ(mRec, -7);
    EXPECT_EQ(mBuff.substr(16, 2), Big(1, 1) + Big(1, 1));
    // The moves were noted by the level byte that the header copy left: first in bytes 17-18, then by the low
    // byte of block 3 in bytes 23-24.
    EXPECT_EQ(mBuff.substr(18, 2), Big(1, 2));
    EXPECT_EQ(mBuff.substr(22, 2), Big(2, 2));
}

TEST_F(KeyedIndex, ABlockBeyondTheLastOneIsToldAndNotFound) {
    const auto root = Index("FAR", Small, HeaderBytes(Small, 4));
    Find(root, "a");
    EXPECT_EQ(mRec, 0);
    EXPECT_EQ(mKey, std::string("a\0\0\0", 4));
    EXPECT_EQ(mBuff.substr(0, 16), HeaderBytes(Small, 4).substr(0, 16));
    ASSERT_EQ(mSite.Window.Messages.size(), 1U);
    const platform::Message& message = mSite.Window.Messages[0];
    EXPECT_EQ(message.Text, "Index is returning information out of Range.  File: FAR LastRec:  3");
    EXPECT_EQ(message.Title, platform::DefaultTitle);
    EXPECT_TRUE(message.Critical);

    const auto child = Index("CHILD", Small, HeaderBytes(Small, 1) + BlockBytes(Small, 0, {{"zzzz", 4}}));
    Find(child, "a");
    EXPECT_EQ(mRec, 0);
    EXPECT_EQ(mSite.Window.Messages.size(), 2U);
}

TEST_F(KeyedIndex, DamagedIndexesEndInErrors) {
    const auto upTo = [](const char* key, std::int32_t child) {
        return BlockBytes(Small, 0, {{key, child}});
    };
    const struct {
        const char* What;
        IndexFormat Format;
        std::string Bytes;
        int Number;
        const char* Source;
    } cases[]{
        {"a root above itself", Small, HeaderBytes(Small, 1) + upTo("zzzz", 1), 81, "KFind"},
        {"two blocks above each other", Small, HeaderBytes(Small, 1) + upTo("zzzz", 2) + upTo("zzzz", 1), 81,
         "KFind"},
        {"leaves in a ring", Large,
         HeaderBytes(Large, 1) + BlockBytes(Large, 2, {{"aaaa", 1}}) + BlockBytes(Large, 1, {{"aaaa", 1}}),
         81, "KFind"},
        {"an entry length of zero", Small, Nul(512), 5, ""},
        {"an entry length without a key", Small, Big(3, 2) + Nul(510), 5, ""},
        {"more entries than the block holds", Small,
         HeaderBytes(Small, 1) + Big(500, 2) + Big(0xFFFF, 2) + Nul(508), 31, "UnPack"},
        {"a negative child", Small, HeaderBytes(Small, 1) + upTo("zzzz", -100), 63, ""},
    };
    int number = 0;
    for (const auto& c : cases) {
        const auto file = Index("X" + std::to_string(++number), c.Format, c.Bytes);
        mBuff.clear();
        const auto error = test::ErrorOf([&] { Find(file, "m"); });
        EXPECT_EQ(error.Number, c.Number) << c.What;
        EXPECT_EQ(error.Source, c.Source) << c.What;
    }
    EXPECT_TRUE(mSite.Window.Messages.empty());
}

TEST_F(KeyedIndex, ARecordNumberWithoutANegativeOverflowsBeforeThePlaceIsNoted) {
    const auto file =
        Index("X", Small, HeaderBytes(Small, 1) + BlockBytes(Small, 0xFFFF, {{"bbbb", -2147483647 - 1}}));
    Find(file, "bbbb");
    EXPECT_EQ(mRec, -2147483647 - 1);
    mBuff.clear();
    EXPECT_EQ(test::ErrorOf([&] { Find(file, "a"); }).Number, 6);
    EXPECT_EQ(mKey, std::string("a\0\0\0", 4));
    EXPECT_EQ(mBuff.substr(16, 2), Nul(2));
}

TEST_F(KeyedIndex, EmptyAndShortFiles) {
    const auto file = Index("X", Small, HeaderBytes(Small, 1));
    EXPECT_EQ(test::ErrorOf([&] { Find(nullptr, "a"); }).Number, 91);
    // Every word of a header is read, used or not, and the high bytes of a marked one.
    const auto marked = Index("MARKED", Small, test::With(HeaderBytes(Small, 1), 15, "09"));
    for (const auto& [length, missing] : {std::pair(3, "C\", Data$, 3)"),
                                          {8, "C\", Data$, 9)"},
                                          {15, "C\", Data$, 15)"},
                                          {17, "B\", Data$, 18)"}}) {
        marked->RecordLength = length;
        EXPECT_EQ(test::ErrorOf([&] { Find(marked, "a"); }).Description,
                  "Invalid Subscript.  UnPack(\"" + std::string(missing) +
                      "   Len(Data$) = " + std::to_string(length));
    }
    file->OpenFile.reset();
    EXPECT_EQ(test::ErrorOf([&] { Find(file, "a"); }).Number, 91);
}

TEST_F(KeyedIndex, KLengthReadsAtThePositionItself) {
    mSite.Container = Nul(1) + Big(30, 1) + Nul(510);
    const auto file = Index("X", LargeWithDuplicates, HeaderBytes(LargeWithDuplicates, 1));
    EXPECT_EQ(file->Position, 1);
    EXPECT_EQ(gEngine->KLength(file), 30 * 256 - 4);  // offsets 1 and 2 of the container
    file->Position = 512;
    EXPECT_EQ(gEngine->KLength(file), 10 - 4);
    EXPECT_EQ(test::ErrorOf([] { gEngine->KLength(std::shared_ptr<cLogicalFile>()); }).Number, 91);
}

TEST(Keys, CompareAsUnsignedBytesThenByLength) {
    EXPECT_LT(CompareKeys("a", "b"), 0);
    EXPECT_GT(CompareKeys("\x80", "\x7F"), 0);
    EXPECT_LT(CompareKeys("ab", "abc"), 0);
    EXPECT_GT(CompareKeys("b", "abc"), 0);
    EXPECT_EQ(CompareKeys("", ""), 0);
    EXPECT_GT(CompareKeys(std::string("\0\1", 2), std::string("\0\0\5", 3)), 0);
}

}  // namespace
}  // namespace engine
