// A set of rows, named by page and slot.
#pragma once

#include <bitset>
#include <cstdint>
#include <unordered_map>

#include "platform/jet/format.h"

namespace mdb_check {

class RowSet {
  public:
    /// False when the row was there already.
    bool Add(jet::RowPointer row) {
        auto& slots = mPages[row.Page];
        if (slots.test(row.Row)) return false;
        slots.set(row.Row);
        ++mCount;
        return true;
    }

    bool Contains(jet::RowPointer row) const {
        const auto page = mPages.find(row.Page);
        return page != mPages.end() && page->second.test(row.Row);
    }

    std::uint64_t Count() const { return mCount; }

  private:
    static constexpr std::size_t SlotsPerPage = 256;

    std::unordered_map<std::uint32_t, std::bitset<SlotsPerPage>> mPages;
    std::uint64_t mCount = 0;
};

}  // namespace mdb_check
