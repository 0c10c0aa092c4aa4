// Record numbers, deleted chains and record zero, as bytes.
#include "tools/sample_site/record_writer.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <numeric>

#include "engine/field_codec.h"
#include "platform/error.h"
#include "tests/support/expect_error.h"
#include "tests/support/scratch.h"

namespace {

using sample::RecordNumbers;
using sample::RecordWindow;

TEST(RecordNumbers, EveryNumberOfAWindowIsARowOrDeleted) {
    sample::Random random(3);
    RecordNumbers numbers(random);
    const RecordWindow first = numbers.Next(20, 4, RecordNumbers::Order::Ascending);
    const RecordWindow second = numbers.Next(5, 1, RecordNumbers::Order::Shuffled);
    EXPECT_TRUE(std::is_sorted(first.Rows.begin(), first.Rows.end()));
    EXPECT_EQ(first.First, 1);
    EXPECT_EQ(second.First, 25);

    std::vector<std::int32_t> all;
    for (const RecordWindow* window : {&first, &second}) {
        all.insert(all.end(), window->Rows.begin(), window->Rows.end());
        all.insert(all.end(), window->Deleted.begin(), window->Deleted.end());
    }
    std::sort(all.begin(), all.end());
    std::vector<std::int32_t> wanted(30);
    std::iota(wanted.begin(), wanted.end(), 1);
    EXPECT_EQ(all, wanted);
}

class RecordFile : public testing::Test {
  protected:
    static constexpr std::int32_t Length = 20;
    static constexpr std::size_t FirstBlock = 512;

    std::string Record(std::int32_t number) const {
        return mBytes.substr(FirstBlock + static_cast<std::size_t>(number * Length), Length);
    }

    test::ScratchFolder mScratch;
    sample::ShareWriter mShare{mScratch / "share"};
    std::string mBytes;
};

TEST_F(RecordFile, DeletedRecordsAreChainedAcrossWindows) {
    sample::RecordWriter file(mShare.Reserve("KSW", "RECORD", 'L', Length, 20));
    const std::string row = std::string("\x00\x01", 2) + "abcdefghijklmnopqr";
    const std::vector<RecordWindow> windows{{1, 4, {4, 1}, {3, 2}}, {5, 3, {6, 7}, {5}}};
    for (const RecordWindow& window : windows) {
        file.Open(window);
        for (const std::int32_t number : window.Rows) file.Put(number, row);
        file.Close();
    }
    file.Finish();
    mBytes = test::ReadBytes(mScratch / "share/KSW/DDB");

    const std::string header = Record(0);
    EXPECT_EQ(engine::iUnpack('L', header, 3), 5);
    EXPECT_EQ(engine::iUnpack('L', header, 7), 7);
    EXPECT_EQ(engine::iUnpack('L', header, 11), 4);
    for (const std::int32_t number : {1, 4, 6, 7}) EXPECT_EQ(Record(number), row) << number;
    const std::vector<std::pair<std::int32_t, std::int32_t>> chain{{5, 2}, {2, 3}, {3, -1}};
    for (const auto& [number, next] : chain) {
        EXPECT_EQ(engine::iUnpack('J', Record(number), 1), 0) << number;
        EXPECT_EQ(engine::iUnpack('L', Record(number), 3), next) << number;
    }
}

TEST_F(RecordFile, AContainerBeyond32BitOffsetsIsRefused) {
    mShare.Reserve("KSW", "FIRST", 'L', 1'000, 2'000'000);
    EXPECT_EQ(test::NumberRaised([&] { mShare.Reserve("KSW", "SECOND", 'L', 1'000, 200'000); }),
              platform::Overflow);
    mShare.Reserve("ARX", "SECOND", 'L', 1'000, 200'000);
}

TEST_F(RecordFile, ANameThatReachesTheFlagsIsRefused) {
    EXPECT_EQ(test::NumberRaised([&] { mShare.Reserve("KSW", "SEVENTH", 'L', 100, 1); }),
              platform::InvalidArgument);
}

}  // namespace
