// The global map of free pages (row 0 of page 1): bit set = free. Pages beyond the end of the file are free,
// and so are pages that the map does not reach. The map stays inline while page 1 has room for it, growing by
// four bytes at a time; beyond that it becomes a reference map with one bitmap page for each range of pages.
#pragma once

#include <cstdint>

#include "platform/jet/usage_map.h"

namespace jet {

class PageAllocator {
  public:
    explicit PageAllocator(PageFile& file) : mFile(file), mFreePages(file, {GlobalMapPage, 0}) {}

    /// The lowest free page that is not below from, else a page at the file's end.
    std::uint32_t Allocate(std::uint32_t from);
    void Free(std::uint32_t page);
    bool IsFree(std::uint32_t page) const { return mFreePages.Contains(page); }

    /// Fills the empty page 1 of a new database.
    static void MakeGlobalMap(PageFile& file);

  private:
    void Cover(std::uint32_t page);
    bool GrowInline(std::uint32_t pages);
    void TurnIntoReferences();
    std::uint32_t MakeBitmap(std::uint32_t bitmapPage, std::uint32_t range);

    PageFile& mFile;
    UsageMap mFreePages;
    std::uint32_t mSearchFrom = 0;  // no page below is free
};

}  // namespace jet
