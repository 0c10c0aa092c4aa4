#include "platform/jet/page_allocator.h"

#include <algorithm>
#include <vector>

#include "platform/jet/bytes.h"
#include "platform/jet/data_page.h"

namespace jet {

namespace {

constexpr std::uint32_t PagesPerByte = 8;
constexpr std::uint32_t GrowthBytes = 4;
constexpr std::uint32_t LowestAllocatable = 6;  // behind header, global map and the four system definitions

void SetBit(std::uint8_t* bitmap, std::uint32_t bit) {
    bitmap[bit / PagesPerByte] =
        static_cast<std::uint8_t>(bitmap[bit / PagesPerByte] | 1U << (bit % PagesPerByte));
}

}  // namespace

void PageAllocator::MakeGlobalMap(PageFile& file) {
    DataPage page = DataPage::Make(file, GlobalMapPage, GlobalMapOwner);
    std::vector<std::uint8_t> map(file.Format().MapRowLength, 0);
    std::fill(map.begin() + InlineBitmapAt, map.end(), std::uint8_t{0xFF});
    page.Append(map);
    std::ranges::fill(map, std::uint8_t{0});
    page.Append(map);

    UsageMap freePages(file, {GlobalMapPage, 0});
    for (std::uint32_t used = 0; used < file.PageCount(); ++used) freePages.Remove(used);
}

std::uint32_t PageAllocator::Allocate(std::uint32_t from) {
    if (mFile.IsShared()) mSearchFrom = 0;
    const std::uint32_t start = std::max(mSearchFrom, from);
    const auto free = mFreePages.Next(start);
    if (free && *free < mFile.PageCount()) {
        if (*free < LowestAllocatable) throw mFile.Damaged();
        if (start == mSearchFrom) mSearchFrom = *free + 1;
        mFreePages.Remove(*free);
        return *free;
    }
    const std::uint32_t page = mFile.AppendPage();
    Cover(page);
    mFreePages.Remove(page);
    if (start == mSearchFrom) mSearchFrom = mFile.PageCount();
    return page;
}

void PageAllocator::Free(std::uint32_t page) {
    Cover(page);
    mFreePages.Add(page);
    mSearchFrom = std::min(mSearchFrom, page);
}

void PageAllocator::Cover(std::uint32_t page) {
    if (mFreePages.Covers(page) || GrowInline(page + 1)) return;
    TurnIntoReferences();
    if (mFreePages.Covers(page)) return;

    const std::uint32_t range = page / mFile.Format().PagesPerBitmap();
    const std::uint32_t bitmap = MakeBitmap(mFile.AppendPage(), range);
    DataPage map(mFile, GlobalMapPage);
    const auto references = map.ChangeRow(0).subspan(MapReferencesAt);
    if ((range + 1) * sizeof bitmap > references.size()) throw mFile.Damaged();
    StoreU32(&references[range * sizeof bitmap], bitmap);
}

bool PageAllocator::GrowInline(std::uint32_t pages) {
    DataPage map(mFile, GlobalMapPage);
    const auto row = map.Row(0);
    if (row[0] != InlineMap) return false;
    const std::uint32_t described = pages - std::min(pages, LoadU32(&row[MapStartPageAt]));
    const std::uint32_t pagesPerStep = GrowthBytes * PagesPerByte;
    const std::size_t oldLength = row.size();
    const std::size_t newLength =
        InlineBitmapAt + std::size_t{GrowthBytes} * ((described + pagesPerStep - 1) / pagesPerStep);
    if (newLength <= oldLength || !map.ResizeRow(0, newLength)) return false;
    std::ranges::fill(map.ChangeRow(0).subspan(oldLength), std::uint8_t{0xFF});
    return true;
}

void PageAllocator::TurnIntoReferences() {
    std::vector<std::uint32_t> freePages;
    {
        const DataPage map(mFile, GlobalMapPage);
        if (map.Row(0)[0] != InlineMap) return;
    }
    for (auto page = mFreePages.Next(0); page && *page < mFile.PageCount();
         page = mFreePages.Next(*page + 1)) {
        freePages.push_back(*page);
    }

    std::vector<std::uint32_t> bitmaps;
    while (bitmaps.size() * mFile.Format().PagesPerBitmap() < mFile.PageCount()) {
        bitmaps.push_back(mFile.AppendPage());
    }
    DataPage map(mFile, GlobalMapPage);
    map.ResizeRow(0, mFile.Format().MapRowLength);
    const auto row = map.ChangeRow(0);
    std::ranges::fill(row, std::uint8_t{0});
    row[0] = ReferenceMap;
    for (std::uint32_t range = 0; range < bitmaps.size(); ++range) {
        StoreU32(&row[MapReferencesAt + range * sizeof(std::uint32_t)], MakeBitmap(bitmaps[range], range));
    }
    for (const std::uint32_t page : freePages) mFreePages.Add(page);
}

/// Fills a bitmap page for a range of which every page in the file is in use.
std::uint32_t PageAllocator::MakeBitmap(std::uint32_t bitmapPage, std::uint32_t range) {
    PageHandle handle = mFile.MakeNew(bitmapPage, PageType::Bitmap);
    std::uint8_t* bitmap = handle.Change() + BitmapPageBitsAt;
    const std::uint32_t pages = mFile.Format().PagesPerBitmap();
    const std::uint32_t used =
        std::min(pages, mFile.PageCount() - std::min(mFile.PageCount(), range * pages));
    for (std::uint32_t bit = used; bit < pages; ++bit) SetBit(bitmap, bit);
    return bitmapPage;
}

}  // namespace jet
