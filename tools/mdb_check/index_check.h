// Checks one index of a table against the table's rows: the shape of its tree, the order of its entries, and
// that every row has exactly the entry that its values make.
#pragma once

#include <cstdint>
#include <string>

#include "platform/jet/table.h"
#include "tools/mdb_check/page_claims.h"
#include "tools/mdb_check/report.h"
#include "tools/mdb_check/row_set.h"

namespace mdb_check {

class IndexCheck {
  public:
    /// user names the index in findings. rows are the rows that the table has.
    IndexCheck(jet::PageFile& file, const jet::Table& table, std::size_t realIndex, std::string user,
               const RowSet& rows, PageClaims& claims, Report& report);

    void Run();

  private:
    void Visit(std::uint32_t page, unsigned depth);
    void VisitNode(const jet::IndexPage& node, unsigned depth);
    void VisitLeaf(const jet::IndexPage& leaf, unsigned depth);
    void CheckEntry(const std::string& entry);
    void CheckKey(const std::string& key, jet::RowPointer row);
    void CheckMap();
    void CheckCounts();
    std::uint64_t RowsListed();
    bool MakeKey(jet::RowPointer row);
    void Damage(const std::string& text) { mReport.Damage(mUser + ": " + text); }

    jet::PageFile& mFile;
    const jet::Table& mTable;
    const jet::RealIndex& mIndex;
    jet::TableIndex mRules;
    std::string mUser;
    const RowSet& mRows;
    PageClaims& mClaims;
    Report& mReport;

    RowSet mSeen;
    jet::UsageMap mMap;
    std::vector<jet::Value> mValues;
    jet::RowKey mKey;
    std::string mLastEntry;
    std::uint64_t mEntries = 0;
    std::uint64_t mDistinct = 0;
    std::uint32_t mPages = 0;
    std::uint32_t mLastLeaf = 0;
    std::uint32_t mAnnouncedNext = 0;
    unsigned mLeafDepth = 0;
    bool mKeysCanBeMade = true;
    bool mHasText = false;
};

}  // namespace mdb_check
