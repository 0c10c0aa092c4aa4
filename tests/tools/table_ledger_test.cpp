// The account of a table: what is kept, what the target table would refuse, and what is written down.
#include "tools/sample_site/table_ledger.h"

#include <gtest/gtest.h>

#include "tests/support/scratch.h"
#include "tools/sample_site/canonical_cell.h"

namespace {

using sample::FieldValue;

sample::TableSpec Spec() {
    sample::TableSpec spec;
    spec.Name = "LEDGER";
    spec.Fields = {{"Id", 'U', 4, 1, -3, {}}, {"Name", 'A', 3, 5, 0, {}}, {"Amount", 'M', 4, 8, 0, {}}};
    spec.Indexes = {{"PrimaryKey", true, false, {{"Id"}}}};
    return spec;
}

std::vector<FieldValue> Row(std::int64_t id, const std::string& name, std::int64_t amount) {
    return {id, name, amount};
}

TEST(TableLedger, RowsThatTheTargetRefusesAreCountedAndNothingElse) {
    const sample::TableSpec spec = Spec();
    sample::TableLedger ledger(spec, std::nullopt);
    ledger.Offer(Row(1, "a", 100));
    ledger.Offer(Row(1, "b", 200));          // the key again
    ledger.Offer(Row(9'000'000, "c", 300));  // a key that does not fit its column
    ledger.Offer(Row(2, "d", -50));
    ledger.PassOver();
    const sample::TableAccount account = ledger.Finish();
    EXPECT_EQ(account.Rows, 2);
    EXPECT_EQ(account.RefusedRepeatedKey, 1);
    EXPECT_EQ(account.RefusedUnsetKey, 1);
    EXPECT_EQ(account.OutsideStatus, 1);
    EXPECT_EQ(account.Columns[0].Sum, 3'000);
    EXPECT_EQ(account.Columns[2].Sum, 5'000);
    EXPECT_EQ(account.Columns[1].Checksum,
              std::uint64_t{sample::CellChecksum("a  ")} + sample::CellChecksum("d  "));
}

TEST(TableLedger, AnUnsetCellIsCountedAndLeftEmpty) {
    test::ScratchFolder scratch;
    sample::TableSpec spec = Spec();
    spec.Indexes.clear();
    sample::TableLedger ledger(spec, scratch.Path());
    ledger.Offer(Row(9'000'000, "a\tb", 1));
    const sample::TableAccount account = ledger.Finish();
    EXPECT_EQ(account.Columns[0].Unset, 1);
    EXPECT_EQ(account.Columns[0].Checksum, 0U);
    EXPECT_EQ(account.Columns[0].Sum, 0);
    EXPECT_EQ(test::ReadBytes(scratch / "LEDGER.tsv"), "Id\tName\tAmount\n\ta\\tb\t0.0100\n");
}

}  // namespace
