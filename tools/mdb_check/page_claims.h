// Who uses which page. Every page has one user at most, but for pages of usage maps, which several maps
// share.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/jet/page_file.h"
#include "platform/jet/usage_map.h"
#include "tools/mdb_check/report.h"

namespace mdb_check {

class PageClaims {
  public:
    PageClaims(jet::PageFile& file, Report& report)
        : mFile(file), mReport(report), mUsers(file.PageCount()) {}

    /// Notes that user has the page. False, with a damage reported, when the file has no such page, when
    /// another user has it, or when it was claimed by this very user before.
    bool Claim(std::uint32_t page, const std::string& user);

    /// Claims the page that a usage map's row lies on and the map's bitmap pages.
    void ClaimMap(jet::RowPointer map, const std::string& user);

    /// Compares with the global map: no page in use is free there (damage), no page is neither in use nor
    /// free (note).
    void CompareWithGlobalMap();

  private:
    void ClaimMapPage(std::uint32_t page, const std::string& user);

    jet::PageFile& mFile;
    Report& mReport;
    std::vector<std::string> mUsers;  // by page; empty = nobody
};

}  // namespace mdb_check
