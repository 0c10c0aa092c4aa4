// Checks one table: its definition, maps, data pages, rows, long values and indexes.
#pragma once

#include <cstdint>
#include <string>

#include "platform/jet/table.h"
#include "tools/mdb_check/page_claims.h"
#include "tools/mdb_check/report.h"
#include "tools/mdb_check/row_set.h"

namespace mdb_check {

class TableCheck {
  public:
    TableCheck(jet::PageFile& file, std::uint32_t definitionPage, std::string name, PageClaims& claims,
               Report& report);

    void Run();

  private:
    void ClaimDefinition();
    void CheckMaps(jet::RowPointer owned, jet::RowPointer free, std::uint32_t owner, const std::string& user);
    void CheckPage(std::uint32_t page, std::uint32_t owner, const std::string& user);
    void CheckRows();
    void CheckMovedRows(const jet::DataPage& page);
    void CheckIndexes();
    void Damage(const std::string& text) { mReport.Damage(mName + ": " + text); }

    jet::PageFile& mFile;
    std::uint32_t mPage;
    std::string mName;
    PageClaims& mClaims;
    Report& mReport;
    jet::Table mTable;
    RowSet mRows;
};

}  // namespace mdb_check
