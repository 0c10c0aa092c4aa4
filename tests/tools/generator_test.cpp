// The invented values: what they claim to be exported as is what the export makes of them.
#include <algorithm>
#include <gtest/gtest.h>
#include <set>

#include "export/address_block.h"
#include "export/part_number.h"
#include "platform/error.h"
#include "tests/support/expect_error.h"
#include "tools/sample_site/part_numbers.h"
#include "tools/sample_site/site_plan.h"
#include "tools/sample_site/words.h"

namespace {

TEST(PartNumbers, AscendAndShowTheDashesOfTheirMask) {
    for (const std::int64_t parts : {8, 20'000}) {
        std::string before;
        for (std::int64_t ordinal = 1; ordinal <= parts; ++ordinal) {
            const sample::PartNumber part = sample::PartNumberAt(ordinal, parts);
            ASSERT_EQ(part.Stored.size(), 21U);
            ASSERT_EQ(exporting::FormatPartNumber(part.Stored), part.Shown);
            const std::string plain = part.Stored.substr(0, 18);
            ASSERT_LT(before, plain);
            before = plain;
        }
    }
}

TEST(PartNumbers, HaveNoneToThreeDashes) {
    std::set<std::int64_t> dashes;
    for (std::int64_t ordinal = 1; ordinal <= 200; ++ordinal) {
        const std::string shown = sample::PartNumberAt(ordinal, 200).Shown;
        dashes.insert(std::count(shown.begin(), shown.end(), '-'));
    }
    EXPECT_EQ(dashes, (std::set<std::int64_t>{0, 1, 2, 3}));
}

TEST(Addresses, StateAndPostalCodeAreWhatAnExportFinds) {
    sample::Random random(5);
    std::set<std::size_t> forms;
    for (int i = 0; i < 5'000; ++i) {
        const sample::Address address = sample::MakeAddress(random);
        ASSERT_EQ(address.Text.size(), 120U);
        ASSERT_EQ(exporting::StateCode(address.Text), address.State) << address.Text;
        ASSERT_EQ(exporting::PostalCode(address.Text), address.PostalCode) << address.Text;
        forms.insert(address.PostalCode.size());
    }
    EXPECT_TRUE(forms.contains(5) && forms.contains(9) && forms.contains(10));
}

TEST(SitePlan, EveryTableHoldsAFewRecordsAndKeysFitTheirBytes) {
    EXPECT_GE(sample::PlanOf(1).Stores, 3);
    const sample::SitePlan plan = sample::PlanOf(3'000'000);
    EXPECT_LT(sample::CustomerNumber(plan.Customers), 1 << 24);
    EXPECT_LT(sample::StoreNumber(plan.Stores), 255);
    EXPECT_LT(sample::VendorNumber(plan.Vendors), 65'535);
    EXPECT_LT(sample::LabourGroup(plan.LabourOperations), 65'535);
}

TEST(SitePlan, LessThanOneRecordIsRefused) {
    EXPECT_EQ(test::NumberRaised([] { sample::PlanOf(0); }), platform::InvalidArgument);
}

TEST(SitePlan, ClaimNumbersAscendAsUnsignedBytes) {
    constexpr std::int64_t Claims = 30;
    std::uint32_t before = 0;
    std::int64_t negative = 0;
    for (std::int64_t ordinal = 1; ordinal <= Claims; ++ordinal) {
        const auto number = static_cast<std::int32_t>(sample::ClaimNumber(ordinal, Claims));
        EXPECT_LT(before, static_cast<std::uint32_t>(number));
        EXPECT_NE(number, -1);  // the key of the terminator
        before = static_cast<std::uint32_t>(number);
        negative += number < 0 ? 1 : 0;
    }
    EXPECT_EQ(negative, 3);
}

}  // namespace
