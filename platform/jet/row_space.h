// The data pages of a table, or the pages of a long-value column, as places for new rows: the page that took
// the last row, then the pages that the map of free space names, then a new page. In an Exclusive file rows
// go to pages that are new since the last checkpoint, each above the one before, so they stand in the order
// in which they came.
#pragma once

#include <cstdint>

#include "platform/jet/data_page.h"
#include "platform/jet/usage_map.h"

namespace jet {

class RowSpace {
  public:
    /// New pages one row may need: its page, and bitmap pages for both maps and the global one.
    static constexpr std::uint32_t MostNewPages = 4;

    RowSpace(PageFile& file, RowPointer ownedMap, RowPointer freeMap, std::uint32_t owner);

    /// A page with room for a row of that many bytes; pages that turn out too full leave the map of free
    /// space. Raises 3036 when the file is full, 3428 for maps that cannot be right.
    DataPage PageFor(std::size_t length);

    /// A new page for one row that fills it; no other row will be put there.
    DataPage AddFullPage();

  private:
    bool IsUsable(const DataPage& page, std::size_t length) const;

    PageFile& mFile;
    UsageMap mOwned;
    UsageMap mFree;
    std::uint32_t mOwner;
    std::uint32_t mLastPage = 0;
    std::uint32_t mHighest = 0;   // of an Exclusive file: the page above all others
    bool mFreeMapUsedUp = false;  // it names no page but mLastPage
};

}  // namespace jet
