// The engine's own files, in both formats, through the objects.
#include <algorithm>
#include <filesystem>
#include <gmock/gmock.h>

#include "tests/dao/dao_fixture.h"

namespace dao {
namespace {

class Samples : public test::DaoFixture {
  protected:
    void SetUp() override {
        if (std::getenv("VANTORA_SAMPLES") == nullptr)
            GTEST_SKIP() << "VANTORA_SAMPLES does not name the folder of sample files";
    }

    /// A copy that may be changed.
    void OpenCopy(const std::string& name) {
        std::filesystem::copy_file(std::filesystem::path(std::getenv("VANTORA_SAMPLES")) / name, Path());
        std::filesystem::permissions(Path(), std::filesystem::perms::owner_all);
        mDatabase = OpenDatabase(Path());
    }
};

TEST_F(Samples, AJet3TableIsWalkedAndSought) {
    OpenCopy("nwind.mdb");
    const auto rows = mDatabase->OpenRecordset(u"customers");
    EXPECT_EQ(rows->RecordCount(), 91);
    rows->SetIndex(u"PrimaryKey");
    const std::vector<Value> ids = ColumnValues(*rows, u"CustomerID");
    ASSERT_EQ(ids.size(), 91U);
    EXPECT_EQ(ids.front(), Value(u"ALFKI"));
    EXPECT_TRUE(std::ranges::is_sorted(ids, {}, ToText));

    rows->Seek("=", u"berGS");
    ASSERT_FALSE(rows->NoMatch());
    EXPECT_EQ(rows->Fields(u"CompanyName").GetValue(), Value(u"Berglunds snabbköp"));
    rows->SetIndex(u"City");
    rows->Seek("=", u"Århus");
    ASSERT_FALSE(rows->NoMatch());
    EXPECT_EQ(rows->Fields(u"CustomerID").GetValue(), Value(u"VAFFE"));
    rows->Seek("=", u"Arhus");
    EXPECT_TRUE(rows->NoMatch());

    const auto london = mDatabase->OpenRecordset(u"Select * from Customers Where [City] = 'LONDON'");
    EXPECT_EQ(london->RecordCount(), 6);
}

TEST_F(Samples, AJet3RowIsEditedInItsPlace) {
    OpenCopy("nwind.mdb");
    const auto rows = mDatabase->OpenRecordset(u"Products");
    rows->SetIndex(u"CategoryID");
    const std::vector<Value> before = ColumnValues(*rows, u"ProductID");
    rows->MoveFirst();
    const Value first = rows->Fields(u"ProductID").GetValue();
    Edit(*rows, {{u"CategoryID", 8}, {u"Discontinued", true}});  // from the first category to the last
    Reopen();

    const auto again = mDatabase->OpenRecordset(u"Products");
    again->SetIndex(u"PrimaryKey");
    again->Seek("=", first);
    ASSERT_FALSE(again->NoMatch());
    EXPECT_EQ(again->Fields(u"CategoryID").GetValue(), Value(8));
    EXPECT_EQ(again->Fields(u"Discontinued").GetValue(), Value(true));
    again->SetIndex(u"CategoryID");
    EXPECT_EQ(ColumnValues(*again, u"ProductID").size(), before.size());
    const std::vector<Value> categories = ColumnValues(*again, u"CategoryID");
    EXPECT_TRUE(std::ranges::is_sorted(categories, {}, ToLong));
    EXPECT_EQ(test::ErrorOf([&] { Add(*again, {1}); }).Number, 3027) << "rows are not added to this format";
}

}  // namespace
}  // namespace dao
