// The text form of cells, literally.
#include "tools/sample_site/canonical_cell.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

TEST(CanonicalCell, EveryTypeHasOneForm) {
    EXPECT_EQ(sample::TextCell("N\xFA\xF1\x65z \x96 \\ \x81\t  "),
              "N\xC3\xBA\xC3\xB1\x65z \xE2\x80\x93 \\\\ \xC2\x81\\t  ");
    EXPECT_EQ(sample::SingleCell(0.1F), "0.1");
    EXPECT_EQ(sample::SingleCell(-16777216), "-16777216");
    EXPECT_EQ(sample::CurrencyCell(1), "0.0001");
    EXPECT_EQ(sample::CurrencyCell(std::numeric_limits<std::int64_t>::min()), "-922337203685477.5808");
    EXPECT_EQ(sample::DateCell({1968, 1, 1}), "1968-01-01");
}

TEST(CanonicalCell, ChecksumIsThatOfZlib) {
    EXPECT_EQ(sample::CellChecksum("123456789"), 0xCBF43926U);
    EXPECT_EQ(sample::CellChecksum(""), 0U);
}

}  // namespace
