// What the disk holds of a database that is being written: the state of the last flush, before every single
// call that changes the file, and when such a call fails.
#include <array>
#include <cerrno>
#include <filesystem>
#include <random>

#include "tests/jet/database_fixture.h"
#include "tests/support/disk_calls.h"

namespace jet {
namespace {

using test::ErrorOf;
using test::NumberRaised;
using test::Row;
using test::RowsOf;

const std::array<std::u16string, 2> Names{u"Orders", u"Lines"};

class Checkpoints : public test::NewDatabase {
  protected:
    /// Two tables that grow by turns, with values that make rows, long values and indexes move and split.
    void Write(int rounds) {
        std::mt19937 random(7);
        Create({.CacheBytes = std::size_t{64} * 4096});
        for (const std::u16string& name : Names) {
            const auto table = mDatabase->CreateTable(
                name,
                {{u"Id", ColumnType::Long}, {u"Name", ColumnType::Text, 60}, {u"Memo", ColumnType::Memo}});
            mDatabase->CreateIndex(*table, {u"PrimaryKey", {{u"Id"}}, true});
            mDatabase->CreateIndex(*table, {u"Name", {{u"Name"}, {u"Id", false}}});
        }
        for (int round = 0; round < rounds; ++round) {
            for (int i = 0; i < 60; ++i) {
                const std::size_t t = random() % Names.size();
                const auto id = static_cast<std::int32_t>(mRows[t].size());
                const std::u16string name(random() % 60, static_cast<char16_t>(u'a' + random() % 26));
                const std::u16string memo(random() % 6 == 0 ? random() % 9000 : random() % 90, u'm');
                const Row row{id, name, memo};
                mDatabase->FindTable(Names[t])->Insert(row);
                mRows[t].push_back(row);
            }
            mFlushing = {mRows[0].size(), mRows[1].size()};
            mDatabase->Flush();
            mFlushed = mFlushing;
        }
        mDatabase->Close();
    }

    /// The file as it is on the disk now is sound, and each table holds the rows of the last flush or, while
    /// one is running, of that.
    void ExpectTheLastFlush() {
        const std::string copy = (mFolder / "copy.mdb").string();
        test::WriteBytes(copy, test::ReadBytes(Path()));
        ASSERT_THAT(test::FindingsIn(copy, false), testing::IsEmpty());
        const auto database = Database::Open(copy, Sharing::Exclusive);
        for (std::size_t t = 0; t < Names.size(); ++t) {
            const auto table = database->FindTable(Names[t]);
            const std::vector<Row> rows = table == nullptr ? std::vector<Row>{} : RowsOf(*table);
            ASSERT_THAT(rows.size(), testing::AnyOf(mFlushed[t], mFlushing[t]));
            ASSERT_TRUE(std::equal(rows.begin(), rows.end(), mRows[t].begin()));
        }
    }

    std::array<std::vector<Row>, 2> mRows;
    std::array<std::size_t, 2> mFlushed{};
    std::array<std::size_t, 2> mFlushing{};
};

TEST_F(Checkpoints, AtAnyMomentTheDiskHoldsTheLastFlush) {
    int calls = 0;
    {
        const test::DiskCalls watched([&] {
            // The first calls make the file.
            if (++calls > 3 && !HasFatalFailure()) ExpectTheLastFlush();
            return 0;
        });
        Write(5);
    }
    EXPECT_GT(calls, 40);
    mFlushed = mFlushing;
    ExpectTheLastFlush();
}

TEST_F(Checkpoints, AFileThatCannotBeReadIsNotCalledDamaged) {
    Write(1);
    for (int failing = 0; failing < 4; ++failing) {
        int calls = 0;
        const test::DiskCalls watched([] { return 0; }, [&] { return calls++ == failing ? EIO : 0; });
        const auto open = [&] { Database::Open(Path(), Sharing::Shared); };
        EXPECT_EQ(NumberRaised(open), failing == 0 ? 3043 : 3040) << failing;
    }
}

/// A call that fails once or from then on, and the error that all further work gives.
struct Trouble {
    bool IsInReads;
    int Errno;
    bool Lasts;
    int Number;
};

TEST_F(Checkpoints, ATroubledDiskIsReportedAtEveryCallAndLeavesTheLastFlush) {
    for (const Trouble& trouble : {Trouble{false, ENOSPC, true, 3026}, Trouble{false, EIO, false, 3043},
                                   Trouble{true, EIO, false, 3040}}) {
        int failures = 0;
        for (int failing = 0;; failing += trouble.IsInReads ? 1 + failing / 3 : 1) {
            SCOPED_TRACE(testing::Message() << trouble.Number << " at call " << failing);
            mDatabase.reset();
            std::filesystem::remove(Path());
            mRows = {};
            mFlushed = mFlushing = {};
            int calls = 0;
            std::optional<platform::Error> error;
            const auto fail = [&] {
                const bool fails = trouble.Lasts ? ++calls > failing : ++calls == failing + 1;
                return fails ? trouble.Errno : 0;
            };
            const auto pass = [] { return 0; };
            {
                const test::DiskCalls watched(trouble.IsInReads ? std::function<int()>(pass) : fail,
                                              trouble.IsInReads ? std::function<int()>(fail) : pass);
                try {
                    Write(trouble.IsInReads ? 12 : 3);
                } catch (const platform::Error& raised) {
                    error = raised;
                }
                if (error && mDatabase) {
                    EXPECT_EQ(NumberRaised([&] { mDatabase->Flush(); }), error->Number) << "and again";
                }
                mDatabase.reset();
            }
            if (!error) break;
            ++failures;
            EXPECT_EQ(error->Number, trouble.Number);
            EXPECT_EQ(error->Path, Path());
            if (std::filesystem::exists(Path())) ExpectTheLastFlush();
            if (HasFatalFailure()) return;
        }
        EXPECT_GT(failures, 10) << trouble.Number;
    }
}

}  // namespace
}  // namespace jet
