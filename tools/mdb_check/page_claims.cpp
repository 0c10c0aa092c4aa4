#include "tools/mdb_check/page_claims.h"

#include "platform/jet/bytes.h"
#include "platform/jet/data_page.h"

namespace mdb_check {

namespace {

const std::string MapUser = "usage maps";

std::string PageName(std::uint32_t page) {
    return "page " + std::to_string(page);
}

}  // namespace

bool PageClaims::Claim(std::uint32_t page, const std::string& user) {
    if (page >= mUsers.size()) {
        mReport.Damage(user + " names " + PageName(page) + ", which the file does not have");
        return false;
    }
    if (!mUsers[page].empty()) {
        mReport.Damage(PageName(page) + " is used by " + mUsers[page] + " and by " + user);
        return false;
    }
    mUsers[page] = user;
    return true;
}

void PageClaims::ClaimMapPage(std::uint32_t page, const std::string& user) {
    if (page < mUsers.size() && mUsers[page] == MapUser) return;
    if (page < mUsers.size() && mUsers[page].empty()) {
        mUsers[page] = MapUser;
    } else {
        Claim(page, "a usage map of " + user);
    }
}

void PageClaims::ClaimMap(jet::RowPointer map, const std::string& user) {
    if (map.Page != jet::GlobalMapPage) ClaimMapPage(map.Page, user);
    const jet::DataPage page(mFile, map.Page);
    const auto row = page.Row(map.Row);
    if (row.empty() || row[0] != jet::ReferenceMap) return;
    for (std::size_t at = jet::MapReferencesAt; at + sizeof(std::uint32_t) <= row.size();
         at += sizeof(std::uint32_t)) {
        const std::uint32_t bitmap = jet::LoadU32(&row[at]);
        if (bitmap != 0) Claim(bitmap, "a bitmap of " + user);
    }
}

void PageClaims::CompareWithGlobalMap() {
    const jet::UsageMap freePages(mFile, {jet::GlobalMapPage, 0});
    std::size_t lost = 0;
    for (std::uint32_t page = 0; page < mUsers.size(); ++page) {
        const bool isFree = freePages.Contains(page);
        if (isFree && !mUsers[page].empty()) {
            mReport.Damage(PageName(page) + " is free in the global map but used by " + mUsers[page]);
        }
        if (!isFree && mUsers[page].empty()) ++lost;
    }
    if (lost > 0) mReport.Note(std::to_string(lost) + " pages are neither free nor used by anything");
}

}  // namespace mdb_check
