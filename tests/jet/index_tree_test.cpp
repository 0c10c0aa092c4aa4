#include "platform/jet/index_tree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>

#include "platform/jet/data_page.h"
#include "platform/jet/index_key.h"
#include "platform/jet/pending_entries.h"
#include "tests/jet/index_checker.h"
#include "tests/jet/page_file_fixture.h"
#include "tests/support/expect_error.h"

namespace jet {
namespace {

using testing::IsEmpty;

std::string EntryOf(std::string key, RowPointer row) {
    AppendPointer(key, row.Dword());
    return key;
}

/// An index of its own in a new file, and beside it a plain set of the entries that it must hold.
class IndexTrees : public testing::Test {
  protected:
    explicit IndexTrees(Version version = Version::Jet4)
        : mFile(test::EmptyFile((mFolder / "t.mdb").string(), version)),
          mTablePage(AllocateBehindSystemPages()),
          mMap(*mFile, MakeMap()),
          mRoot(MakeLeaf()),
          mTree(*mFile, mMap, mTablePage, mRoot) {}

    std::uint32_t AllocateBehindSystemPages() {
        std::uint32_t page = 0;
        while (page < 6) page = mFile->Allocate();
        return page;
    }

    RowPointer MakeMap() {
        const std::vector<std::uint8_t> row(mFile->Format().MapRowLength);
        DataPage page = DataPage::Make(*mFile, mFile->Allocate(), MapOwner);
        return {page.Number(), page.Append(row)};
    }

    std::uint32_t MakeLeaf() {
        const std::uint32_t leaf = mFile->Allocate();
        mMap.Add(leaf);
        IndexTree::MakeEmptyRoot(*mFile, leaf, mTablePage);
        return leaf;
    }

    IndexPage Page(std::uint32_t page) const { return IndexPage::Read(*mFile, page, mTablePage); }

    void Insert(const std::string& key, RowPointer row) {
        mTree.Insert(key, row);
        mExpected.insert(EntryOf(key, row));
        mFile->Settle();
    }

    void Remove(const std::string& key, RowPointer row) {
        mTree.Remove(key, row);
        mExpected.erase(EntryOf(key, row));
    }

    test::IndexChecker Check() {
        test::IndexChecker checker(*mFile, mTablePage);
        checker.Check(mRoot, mMap);
        EXPECT_THAT(checker.BrokenRules, IsEmpty());
        EXPECT_EQ(checker.Entries, std::vector<std::string>(mExpected.begin(), mExpected.end()));
        return checker;
    }

    static std::string LongKey(std::int32_t value) {
        std::string key;
        AppendKey(key, value, ColumnType::Long, true, Version::Jet4);
        return key;
    }

    static RowPointer RowOf(std::uint32_t number) {
        return {number / 200, static_cast<std::uint8_t>(number % 200)};
    }

    test::ScratchFolder mFolder;
    std::unique_ptr<PageFile> mFile;
    std::uint32_t mTablePage;
    UsageMap mMap;
    std::uint32_t mRoot;
    IndexTree mTree;
    std::set<std::string> mExpected;
};

TEST_F(IndexTrees, AnEmptyIndexIsOneEmptyLeaf) {
    EXPECT_TRUE(mTree.First().AtEnd());
    EXPECT_TRUE(mTree.LowerBound("x").AtEnd());
    for (int i = 0; i < 2; ++i) EXPECT_FALSE(mTree.Contains(LongKey(i)));
    const PageHandle root = mFile->Read(mRoot);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(root.Data()), 4), "\x04\x01\x20\x0E");
    EXPECT_EQ(Check().Levels, 1U);
}

TEST_F(IndexTrees, EntriesLieOnThePageAsDocumented) {
    Insert("\x7F\x4A\x01" + std::string(1, '\0'), {27, 1});
    Insert("\x7F\x4A\x4C\x01" + std::string(1, '\0'), {27, 0});
    const PageHandle root = mFile->Read(mRoot);
    const std::string bytes(reinterpret_cast<const char*>(root.Data()), mFile->PageSize());
    EXPECT_EQ(bytes.substr(2, 2), std::string("\x0F\x0E"));  // 3616 - 17 bytes free
    EXPECT_EQ(bytes.substr(27, 3), std::string("\x00\x01\x02", 3));
    EXPECT_EQ(bytes.substr(480, 17),
              std::string("\x7F\x4A\x01\x00\x00\x00\x1B\x01\x7F\x4A\x4C\x01\x00\x00\x00\x1B\x00", 17));
}

TEST_F(IndexTrees, RowsInIndexOrderFillEveryLeaf) {
    constexpr int Rows = 50'000;
    for (int i = 0; i < Rows; ++i) Insert(LongKey(i), RowOf(static_cast<std::uint32_t>(i)));
    const auto checker = Check();
    EXPECT_EQ(checker.Levels, 2U);
    // With three bytes in common an entry takes six: no full leaf has room for another one.
    EXPECT_LT(checker.FreeInFullLeaves(), 9 * checker.LeafCount());
    EXPECT_LE(checker.LeafCount(), Rows / 590U);
}

TEST_F(IndexTrees, LowerBoundFindsTheFirstKeyNotBelow) {
    for (int i = 0; i < 2'000; ++i) Insert(LongKey(10 * i), RowOf(static_cast<std::uint32_t>(i)));
    EXPECT_EQ(mTree.LowerBound(LongKey(-5)).Key(), LongKey(0));
    EXPECT_EQ(mTree.LowerBound(LongKey(12'340)).Key(), LongKey(12'340));
    EXPECT_EQ(mTree.LowerBound(LongKey(12'341)).Key(), LongKey(12'350));
    EXPECT_TRUE(mTree.LowerBound(LongKey(19'991)).AtEnd());
    EXPECT_TRUE(mTree.Contains(LongKey(12'340)));
    EXPECT_FALSE(mTree.Contains(LongKey(12'341)));
}

TEST_F(IndexTrees, ALeafWhoseEntriesBeginAlikeIsNotTakenForAnother) {
    const std::string a(1'799, 'a');
    const std::string b(1'799, 'b');
    for (const char* const end : {"1", "2", "3"}) Insert(a + end, {5, 5});
    EXPECT_EQ(mTree.LowerBound("B").Key(), a + "1");
    EXPECT_TRUE(mTree.LowerBound("b").AtEnd());
    auto cursor = mTree.LowerBound(a + "2");
    for (const char* const end : {"1", "2", "3"}) Remove(a + end, {5, 5});
    for (const char* const end : {"1", "2", "3"}) Insert(b + end, {5, 5});
    cursor.Next();
    EXPECT_EQ(cursor.Key(), b + "1") << "the entries stand where the others stood";
}

TEST_F(IndexTrees, AKeyIsFoundBehindASeparatorThatOutlivedItsEntry) {
    const std::string b(1'800, 'b');
    Insert(std::string(1'800, 'a'), {1, 1});
    for (const std::uint8_t row : {std::uint8_t{1}, std::uint8_t{2}}) Insert(b, {1, row});
    IndexPage leaf = Page(Page(mRoot).Child(0));
    leaf.Erase(leaf.LastEntry());
    EXPECT_TRUE(mTree.Contains(b));
    EXPECT_FALSE(mTree.Contains("b"));
}

TEST_F(IndexTrees, ANodeWithATailOnlyIsEmptiedToo) {
    IndexPage root = Page(mRoot);
    root.Clear(PageType::IndexNode);
    root.SetTail(MakeLeaf());
    Insert(LongKey(1), {5, 5});
    Remove(LongKey(1), {5, 5});
    EXPECT_EQ(Check().Pages, std::set<std::uint32_t>{mRoot});
}

TEST_F(IndexTrees, ANodeWithAnEntryLongerThanAnyKeyIsDamage) {
    IndexPage root = Page(mRoot);
    root.Clear(PageType::IndexNode);
    root.SetTail(MakeLeaf());
    const std::string entry(2'500, 'm');
    const std::uint32_t child = MakeLeaf();
    Page(child).Insert(0, entry);
    root.Insert(0, EntryOf(entry, RowPointer::FromDword(child)));
    EXPECT_EQ(test::ErrorOf([&] { Insert(std::string(1'800, 'a'), {5, 5}); }).Number, 3428);
}

TEST_F(IndexTrees, RefusesAKeyThatLeavesNoRoomForASecond) {
    const std::size_t longest = IndexTree::MaxKeyLength(mFile->Format());
    EXPECT_EQ(longest, 1800U);
    EXPECT_EQ(test::ErrorOf([&] { mTree.Insert(std::string(longest + 1, 'k'), {9, 9}); }).Number, 3047);
    for (char c = 'a'; c <= 'z'; ++c) Insert(std::string(longest, c), {9, static_cast<std::uint8_t>(c)});
    EXPECT_GE(Check().Levels, 3U);
}

TEST_F(IndexTrees, AnEntryTwiceOrAMissingOneIsDamage) {
    Insert(LongKey(1), {5, 5});
    EXPECT_EQ(test::ErrorOf([&] { mTree.Insert(LongKey(1), {5, 5}); }).Number, 3428);
    EXPECT_EQ(test::ErrorOf([&] { mTree.Remove(LongKey(1), {5, 6}); }).Number, 3428);
    Check();
    PendingEntries waiting;
    waiting.Add(LongKey(1), {5, 5});
    EXPECT_EQ(test::ErrorOf([&] { mTree.Merge(waiting); }).Number, 3428);
}

TEST_F(IndexTrees, ACursorGoesOnBehindItsEntryWhateverHappens) {
    Insert(LongKey(-2), {9'003, 0});
    auto first = mTree.First();
    for (int i = 0; i < 3'000; ++i) Insert(LongKey(2 * i), RowOf(static_cast<std::uint32_t>(i)));
    first.Next();
    EXPECT_EQ(first.Key(), LongKey(0)) << "the root was a leaf";
    auto cursor = mTree.LowerBound(LongKey(1'000));
    // Entries before it move its own; one behind it appears; then its own goes, with its leaf's neighbours.
    for (int i = 0; i < 500; ++i) Insert(LongKey(2 * i + 1), {9'000, static_cast<std::uint8_t>(i % 200)});
    Insert(LongKey(1'003), {9'001, 0});
    Insert(LongKey(999) + 'x', {9'002, 0});
    cursor.Next();
    EXPECT_EQ(cursor.Key(), LongKey(1'002));
    cursor.Next();
    EXPECT_EQ(cursor.Key(), LongKey(1'003));
    for (int i = 0; i < 3'000; ++i) {
        if (i != 2'500) Remove(LongKey(2 * i), RowOf(static_cast<std::uint32_t>(i)));
    }
    for (int i = 0; i < 500; ++i) Remove(LongKey(2 * i + 1), {9'000, static_cast<std::uint8_t>(i % 200)});
    Remove(LongKey(1'003), {9'001, 0});
    Remove(LongKey(999) + 'x', {9'002, 0});
    for (int i = 0; i < 9; ++i) IndexPage::Make(*mFile, mFile->Allocate(), PageType::IndexLeaf, 99);
    cursor.Next();
    EXPECT_EQ(cursor.Key(), LongKey(5'000)) << "its page is a leaf of another table";
    for (int i = 0; i < 2; ++i) cursor.Next();
    EXPECT_TRUE(cursor.AtEnd());
}

// Random histories against the set.

struct History {
    const char* Name;
    unsigned Seed;
    std::size_t KeyLength;  // padding that makes pages hold few entries and trees high
    std::int32_t Range;     // keys 0 to Range - 1
    int Steps;
    int RemovePercent;
    std::size_t LeastLevels;
    Version FileVersion = Version::Jet4;
};

class RandomHistories : public IndexTrees, public testing::WithParamInterface<History> {
  protected:
    RandomHistories() : IndexTrees(GetParam().FileVersion) {}
};

TEST_P(RandomHistories, KeepEveryRule) {
    const History& history = GetParam();
    std::mt19937 random(history.Seed);
    std::vector<std::pair<std::string, RowPointer>> present;
    std::size_t levels = 0;
    for (int step = 0; step < history.Steps; ++step) {
        const bool removes = static_cast<int>(random() % 100) < history.RemovePercent && !present.empty();
        if (removes) {
            std::swap(present[random() % present.size()], present.back());
            Remove(present.back().first, present.back().second);
            present.pop_back();
        } else {
            // Lengths vary, so that separators change theirs when they are corrected.
            const auto value = static_cast<std::int32_t>(random() % static_cast<unsigned>(history.Range));
            std::string key = LongKey(value) + std::string(random() % (history.KeyLength + 1), 'p') + '\0';
            const RowPointer row{static_cast<std::uint32_t>(random() % 0xFFFF),
                                 static_cast<std::uint8_t>(random() % 255)};
            if (mExpected.contains(EntryOf(key, row))) continue;
            Insert(key, row);
            present.emplace_back(std::move(key), row);
        }
        if (step % (history.Steps / 20) == 0) levels = std::max(levels, Check().Levels);
    }
    while (!present.empty() && history.RemovePercent > 0) {
        Remove(present.back().first, present.back().second);
        present.pop_back();
        if (present.size() % 97 == 0) Check();
    }
    Check();
    EXPECT_GE(levels, history.LeastLevels);
}

INSTANTIATE_TEST_SUITE_P(All, RandomHistories,
                         testing::Values(History{"InsertsOnly", 1, 12, 1'000'000, 20'000, 0, 2},
                                         History{"ManyEqualKeys", 2, 0, 20, 8'000, 20, 2},
                                         History{"LongKeys", 3, 900, 1'000'000, 3'000, 30, 3},
                                         History{"LongestKeys", 4, 1'794, 1'000'000, 1'500, 30, 4},
                                         History{"RemovesNearlyAsMuch", 5, 600, 1'000'000, 6'000, 48, 2},
                                         History{"ShortAndLongMixed", 6, 1'794, 50, 2'000, 45, 3},
                                         History{"InJet3", 7, 886, 50, 2'000, 45, 3, Version::Jet3}),
                         [](const auto& instance) { return std::string(instance.param.Name); });

// Entries that wait and are merged.

struct Merging {
    const char* Name;
    unsigned Seed;
    std::size_t KeyLength;
    std::int32_t Range;
    int PerRound;
    int CheckpointPercent;  // of the rounds
};

class RandomMerges : public IndexTrees, public testing::WithParamInterface<Merging> {};

TEST_P(RandomMerges, KeepEveryRuleAndCountNewKeys) {
    const Merging& merging = GetParam();
    std::mt19937 random(merging.Seed);
    PendingEntries waiting;
    std::set<std::string> keys;
    for (int round = 0; round < 12; ++round) {
        const std::size_t before = keys.size();
        // Ascending rounds alternate with those in any order, so leaves stay untouched, fill up and are
        // split.
        const auto base = static_cast<std::int32_t>(keys.size());
        for (int i = 0; i < merging.PerRound; ++i) {
            const auto any = static_cast<std::int32_t>(random() % static_cast<unsigned>(merging.Range));
            const std::int32_t value = round % 3 == 2 ? any : (base + i) % merging.Range;
            const std::string key = LongKey(value) + std::string(random() % (merging.KeyLength + 1), 'p');
            const RowPointer row{static_cast<std::uint32_t>(random() % 0xFFFF),
                                 static_cast<std::uint8_t>(round)};
            if (!mExpected.insert(EntryOf(key, row)).second) continue;
            waiting.Add(key, row);
            EXPECT_EQ(waiting.Contains(key + '\x01'), false);
            EXPECT_TRUE(waiting.Contains(key));
            keys.insert(key);
        }
        const std::uint32_t most = mTree.PagesToMerge(waiting.Sizes());
        EXPECT_EQ(mTree.Merge(waiting), keys.size() - before);
        EXPECT_TRUE(waiting.IsEmpty());
        mRoot = mTree.RootPage();
        EXPECT_LE(Check().Pages.size(), most);
        if (static_cast<int>(random() % 100) < merging.CheckpointPercent) mFile->Checkpoint();
    }
}

INSTANTIATE_TEST_SUITE_P(All, RandomMerges,
                         testing::Values(Merging{"Ascending", 1, 0, 1'000'000, 2'000, 30},
                                         Merging{"ManyEqualKeys", 2, 0, 40, 500, 50},
                                         Merging{"LongKeys", 3, 900, 1'000'000, 300, 50},
                                         Merging{"LongestKeys", 4, 1'794, 3'000, 120, 30},
                                         Merging{"AFewEntriesAtATime", 5, 60, 1'000'000, 3, 0}),
                         [](const auto& instance) { return std::string(instance.param.Name); });

// Pages that no engine wrote.

struct Damage {
    const char* Name;
    std::size_t Offset;
    std::string Bytes;
};

TEST_F(IndexTrees, DamagedPagesRaiseTheirErrorAndNeverLoop) {
    const Damage places[] = {{"PageType", 0, "\x01"},
                             {"Owner", 4, "\x63"},
                             {"FreeTooLarge", 2, "\xFF\xFF"},
                             {"FreeInsideAnEntry", 2, "\x02"},
                             {"PrefixBeyondTheFirstEntry", 24, "\xFF\x0F"}};
    for (std::uint32_t i = 0; i < 2'000; ++i) Insert(LongKey(static_cast<std::int32_t>(i)), RowOf(i));
    const auto readAll = [&] {
        for (auto cursor = mTree.First(); !cursor.AtEnd(); cursor.Next()) {
        }
        for (int i = 0; i < 2'000; i += 50) mTree.Contains(LongKey(i));
    };
    for (const std::uint32_t page : {mRoot, *mMap.Next(mRoot + 1)}) {
        for (const Damage& damage : places) {
            PageHandle handle = mFile->Read(page);
            const std::string before(reinterpret_cast<const char*>(handle.Data()), mFile->PageSize());
            std::ranges::copy(damage.Bytes, handle.Change() + damage.Offset);
            EXPECT_EQ(test::NumberRaised(readAll), 3428) << damage.Name << " on page " << page;
            std::ranges::copy(before, handle.Change());
        }
    }
    Check();
}

TEST_F(IndexTrees, LoopsAndPagesBeyondTheFileAreFound) {
    for (std::uint32_t i = 0; i < 2'000; ++i) Insert(LongKey(static_cast<std::int32_t>(i)), RowOf(i));
    const auto walk = [&] {
        for (auto cursor = mTree.First(); !cursor.AtEnd(); cursor.Next()) {
        }
    };
    const std::uint32_t leaf = *mMap.Next(mRoot + 1);
    const auto put = [&](std::uint32_t page, std::size_t offset, std::uint32_t value) {
        StoreU32(mFile->Read(page).Change() + offset, value);
    };
    // A leaf followed by a page that the file does not have, by a node, and by itself.
    for (const std::uint32_t next : {0xFFFFFFU, mRoot, leaf}) {
        put(leaf, 16, next);
        EXPECT_EQ(test::ErrorOf(walk).Number, 3428) << next;
        EXPECT_EQ(test::ErrorOf([&] { mTree.PagesToMerge({}); }).Number, 3428) << next;
    }
    Page(leaf).Clear(PageType::IndexLeaf);
    EXPECT_EQ(test::ErrorOf(walk).Number, 3428) << "an empty one that follows itself";
    put(mRoot, 20, mRoot);
    EXPECT_EQ(test::ErrorOf([&] { mTree.Contains(LongKey(1'999)); }).Number, 3428) << "a node below itself";
    Page(mRoot).Clear(PageType::IndexNode);
    EXPECT_EQ(test::ErrorOf([&] { mTree.Contains(LongKey(1'999)); }).Number, 3428) << "one without children";
}

}  // namespace
}  // namespace jet
