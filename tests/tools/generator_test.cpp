// The invented values: what they claim to be exported as is what the export makes of them.
#include <gtest/gtest.h>
#include <set>

#include "export/address_block.h"
#include "platform/error.h"
#include "tests/support/expect_error.h"
#include "tools/sample_site/site_plan.h"
#include "tools/sample_site/words.h"

namespace {

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
    EXPECT_EQ(test::NumberRaised([] { sample::PlanOf(0); }), platform::InvalidArgument);
}

}  // namespace
