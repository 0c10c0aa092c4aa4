// Record numbers, and what a container takes.
#include "tools/sample_site/record_writer.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <numeric>

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

TEST(RecordFiles, RefuseAContainerBeyond32BitOffsetsAndANameThatReachesTheFlags) {
    const test::ScratchFolder scratch;
    sample::ShareWriter share(scratch / "share");
    share.Reserve("KSW", "FIRST", 'L', 1'000, 2'000'000);
    EXPECT_EQ(test::NumberRaised([&] { share.Reserve("KSW", "SECOND", 'L', 1'000, 200'000); }),
              platform::Overflow);
    share.Reserve("ARX", "SECOND", 'L', 1'000, 200'000);
    EXPECT_EQ(test::NumberRaised([&] { share.Reserve("KSW", "SEVENTH", 'L', 100, 1); }),
              platform::InvalidArgument);
}

}  // namespace
