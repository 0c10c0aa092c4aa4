// Indexes as the bulk writer makes them, read by the engine.
#include "tools/sample_site/index_writer.h"

#include <gtest/gtest.h>
#include <stdexcept>

#include "engine/field_codec.h"
#include "engine/index_layout.h"
#include "tests/support/expect_error.h"
#include "tests/tools/site_fixture.h"
#include "tools/sample_site/site_files.h"

namespace {

using sample::IndexFormat;
using sample::IndexShape;

struct IndexCase {
    IndexFormat Format;
    int KeyLength;
    bool Duplicates;
    std::int64_t Keys;
    std::uint64_t Seed;
};

constexpr const char* IndexName = "TESTIX";

/// The key of entry i, from 1: even numbers, so that there is room between them; with duplicates every number
/// seven times.
std::string KeyAt(const IndexCase& one, std::int64_t i) {
    const std::int64_t number = 2 * (one.Duplicates ? (i + 6) / 7 : i);
    std::string key(static_cast<std::size_t>(one.KeyLength), '\0');
    engine::iPack('D', key, static_cast<std::int32_t>(number), 1);
    return key;
}

class WrittenIndex : public test::SiteFixture, public testing::WithParamInterface<IndexCase> {
  protected:
    void SetUp() override {
        const IndexCase& one = GetParam();
        sample::WriteSiteFiles(Folder, "WS1");
        sample::ShareWriter share(Share());
        const IndexShape shape{one.Format, one.KeyLength, one.Duplicates};
        sample::Random random(one.Seed);
        share.Reserve("KSW", "BEFORE", 'L', 100, 7);
        sample::IndexWriter writer(
            shape, share.Reserve("KSW", IndexName, 'I', shape.BlockSize(), shape.BlocksFor(one.Keys)),
            random);
        for (std::int64_t i = 1; i <= one.Keys; ++i) writer.Add(KeyAt(one, i), static_cast<std::int32_t>(i));
        writer.Finish();
        share.Finish();
        Levels = writer.Levels();
        StartEngine();
    }

    int Levels = 0;
};

TEST_P(WrittenIndex, HoldsEveryKeyInOrder) {
    const IndexCase& one = GetParam();
    const auto file = Opened(IndexName);
    EXPECT_EQ(file->IsamPlus, one.Format == IndexFormat::Extended2048);
    EXPECT_EQ(engine::gEngine->KCount(file), one.Keys);
    const auto entries = Walk(IndexName);
    ASSERT_EQ(std::ssize(entries), one.Keys);
    for (std::int64_t i = 1; i <= one.Keys; ++i) {
        const auto& entry = entries[static_cast<std::size_t>(i - 1)];
        ASSERT_EQ(entry.Key, KeyAt(one, i));
        ASSERT_EQ(entry.Record, i);
    }
}

TEST_P(WrittenIndex, FindsEveryKeyAndTheNextOneBetweenTwo) {
    const IndexCase& one = GetParam();
    const engine::LogicalFileArgument file = Opened(IndexName);
    std::string buffer;
    const std::int64_t step = one.Keys / 50 + 1;
    for (std::int64_t i = 1; i <= one.Keys; i += step) {
        std::string key = KeyAt(one, i);
        std::int32_t record = 0;
        engine::gEngine->KFind(file, buffer, key, record);
        const std::int64_t first = one.Duplicates ? (i - 1) / 7 * 7 + 1 : i;  // of equal keys
        ASSERT_EQ(record, first);

        engine::iPack('D', key, engine::iUnpack('D', key, 1) - 1, 1);
        engine::gEngine->KFind(file, buffer, key, record);
        ASSERT_EQ(record, -first);
        ASSERT_EQ(key, KeyAt(one, i));
    }
    std::string beyond(static_cast<std::size_t>(one.KeyLength), '\xFE');
    std::int32_t record = 1;
    engine::gEngine->KFind(file, buffer, beyond, record);
    EXPECT_EQ(record, 0);
}

/// Only this format can be walked backwards, and only from a last key.
class WrittenPlainIndex : public WrittenIndex {};

TEST_P(WrittenPlainIndex, CanBeWalkedBackwards) {
    const IndexCase& one = GetParam();
    const engine::LogicalFileArgument file = Opened(IndexName);
    std::string buffer;
    std::string key;
    std::int32_t record = 0;
    engine::gEngine->KLast(file, buffer, key, record);
    std::int64_t walked = 0;
    for (; record != 0; engine::gEngine->KPrev(file, buffer, key, record)) {
        ASSERT_EQ(record, one.Keys - walked);
        ++walked;
    }
    EXPECT_EQ(walked, one.Keys);
}

std::string NameOf(const testing::TestParamInfo<IndexCase>& tested) {
    const IndexCase& one = tested.param;
    return std::string(one.Format == IndexFormat::Block512 ? "Plain" : "Extended") + "Key" +
           std::to_string(one.KeyLength) + (one.Duplicates ? "Repeated" : "Single") +
           std::to_string(one.Keys);
}

// Entries of 16 bytes: 31 in a block of 512, and with two bytes more 113 in a block of 2048.
const auto PlainCases = testing::Values(
    IndexCase{IndexFormat::Block512, 12, false, 1, 1}, IndexCase{IndexFormat::Block512, 12, false, 30, 2},
    IndexCase{IndexFormat::Block512, 12, false, 31, 2}, IndexCase{IndexFormat::Block512, 12, false, 32, 3},
    IndexCase{IndexFormat::Block512, 3, false, 5'000, 4},
    IndexCase{IndexFormat::Block512, 40, false, 3'000, 5},
    IndexCase{IndexFormat::Block512, 12, true, 2'000, 6});
const auto OtherCases = testing::Values(IndexCase{IndexFormat::Block512, 12, false, 0, 1},
                                        IndexCase{IndexFormat::Extended2048, 12, false, 0, 1},
                                        IndexCase{IndexFormat::Extended2048, 12, false, 1, 1},
                                        IndexCase{IndexFormat::Extended2048, 4, false, 20'000, 2},
                                        IndexCase{IndexFormat::Extended2048, 60, false, 6'000, 3},
                                        IndexCase{IndexFormat::Extended2048, 12, true, 113, 4},
                                        IndexCase{IndexFormat::Extended2048, 3, true, 9'000, 5});
INSTANTIATE_TEST_SUITE_P(Plain, WrittenIndex, PlainCases, NameOf);
INSTANTIATE_TEST_SUITE_P(Other, WrittenIndex, OtherCases, NameOf);
INSTANTIATE_TEST_SUITE_P(Plain, WrittenPlainIndex, PlainCases, NameOf);

class IndexOrder : public testing::Test {
  protected:
    test::ScratchFolder mScratch;
    sample::ShareWriter mShare{mScratch / "share"};
    sample::Random mRandom{1};
};

TEST_F(IndexOrder, KeysThatDescendOrRepeatAreRefused) {
    const IndexShape shape{IndexFormat::Block512, 3, false};
    sample::IndexWriter writer(shape, mShare.Reserve("KSW", IndexName, 'I', shape.BlockSize(), 10), mRandom);
    writer.Add("bbb", 1);
    EXPECT_THROW(writer.Add("bba", 2), std::logic_error);
    EXPECT_THROW(writer.Add("bbb", 3), std::logic_error);
    EXPECT_THROW(writer.Add("bbbb", 4), std::logic_error);
}

TEST_F(IndexOrder, MoreKeysThanBlockNumbersCanReachAreRefused) {
    const IndexShape plain{IndexFormat::Block512, 12, false};
    EXPECT_EQ(test::NumberRaised([&] { plain.BlocksFor(10'000'000); }), platform::Overflow);
    EXPECT_GT((IndexShape{IndexFormat::Extended2048, 12, false}.BlocksFor(10'000'000)), 65'535);
}

TEST_F(IndexOrder, LeavesAreNotInTheOrderOfTheirBlocks) {
    const IndexShape shape{IndexFormat::Block512, 12, false};
    sample::IndexWriter writer(shape, mShare.Reserve("KSW", IndexName, 'I', shape.BlockSize(), 200), mRandom);
    for (std::int32_t i = 1; i <= 1'000; ++i)
        writer.Add(KeyAt({IndexFormat::Block512, 12, false, 1'000, 1}, i), i);
    writer.Finish();
    EXPECT_GE(writer.Levels(), 3);
    const std::string bytes = test::ReadBytes(mScratch / "share/KSW/DDB");
    constexpr std::size_t Header = 512;  // the index begins at block 1 of the container
    const std::string first = bytes.substr(Header + 2 * 512, 512);
    EXPECT_EQ(engine::iUnpack('C', first, 3), 1);  // the leaf in block 2 leads to the one in block 1
}

}  // namespace
