#include "platform/jet/usage_map.h"

#include <algorithm>
#include <bit>

#include "platform/jet/bytes.h"
#include "platform/jet/data_page.h"

namespace jet {

namespace {

constexpr std::size_t ReferenceSize = 4;

std::optional<std::uint32_t> NextBit(std::span<const std::uint8_t> bitmap, std::uint32_t from) {
    for (std::size_t i = from / 8; i < bitmap.size(); ++i) {
        const unsigned above = i == from / 8 ? 0xFFU << (from % 8) : 0xFFU;
        const unsigned bits = bitmap[i] & above & 0xFFU;
        if (bits != 0)
            return static_cast<std::uint32_t>(i * 8) + static_cast<std::uint32_t>(std::countr_zero(bits));
    }
    return std::nullopt;
}

std::optional<std::uint32_t> LastBit(std::span<const std::uint8_t> bitmap) {
    for (std::size_t i = bitmap.size(); i > 0; --i) {
        if (bitmap[i - 1] == 0) continue;
        return static_cast<std::uint32_t>((i - 1) * 8) +
               static_cast<std::uint32_t>(std::bit_width(unsigned{bitmap[i - 1]})) - 1;
    }
    return std::nullopt;
}

}  // namespace

UsageMap::Extent UsageMap::Locate() const {
    const DataPage page(*mFile, mRow.Page);
    const RowSlot slot = page.Slot(mRow.Row);
    if (page.Owner() != MapOwner && mRow.Page != GlobalMapPage) throw mFile->Damaged();
    if (slot.Length < InlineBitmapAt) throw mFile->Damaged();

    Extent extent{mFile->Read(mRow.Page), slot.Start, slot.Length, ReferenceMap, 0};
    extent.Type = extent.Bytes()[0];
    if (extent.Type > ReferenceMap) throw mFile->Damaged();
    if (extent.Type == InlineMap) extent.FirstPage = LoadU32(extent.Bytes() + MapStartPageAt);
    if (extent.FirstPage > MaxPageCount) throw mFile->Damaged();
    return extent;
}

std::uint32_t UsageMap::Extent::PageEnd(const Layout& layout) const {
    if (Type == InlineMap) return FirstPage + static_cast<std::uint32_t>((Length - InlineBitmapAt) * 8);
    return static_cast<std::uint32_t>((Length - MapReferencesAt) / ReferenceSize) * layout.PagesPerBitmap();
}

std::optional<UsageMap::Bit> UsageMap::Find(std::uint32_t page) const {
    Extent extent = Locate();
    if (page < extent.FirstPage || page >= extent.PageEnd(mFile->Format())) return std::nullopt;
    if (extent.Type == InlineMap) {
        const std::uint32_t bit = page - extent.FirstPage;
        return Bit{std::move(extent.Holder), extent.Start + InlineBitmapAt + bit / 8,
                   static_cast<std::uint8_t>(1U << (bit % 8))};
    }
    const std::uint32_t range = page / mFile->Format().PagesPerBitmap();
    const std::uint32_t bitmapPage = LoadU32(extent.Bytes() + MapReferencesAt + range * ReferenceSize);
    if (bitmapPage == 0) return std::nullopt;
    const std::uint32_t bit = page % mFile->Format().PagesPerBitmap();
    return Bit{mFile->Read(bitmapPage, PageType::Bitmap), BitmapPageBitsAt + bit / 8,
               static_cast<std::uint8_t>(1U << (bit % 8))};
}

bool UsageMap::Contains(std::uint32_t page) const {
    const auto bit = Find(page);
    return bit && (bit->Holder.Data()[bit->Byte] & bit->Mask) != 0;
}

void UsageMap::Add(std::uint32_t page) {
    auto bit = Find(page);
    if (!bit) {
        MakeRoomFor(page);
        bit = Find(page);
    }
    if ((bit->Holder.Data()[bit->Byte] & bit->Mask) == 0) bit->Holder.Change()[bit->Byte] |= bit->Mask;
}

void UsageMap::Remove(std::uint32_t page) {
    auto bit = Find(page);
    if (!bit || (bit->Holder.Data()[bit->Byte] & bit->Mask) == 0) return;
    std::uint8_t& byte = bit->Holder.Change()[bit->Byte];
    byte = static_cast<std::uint8_t>(byte & ~bit->Mask);
}

void UsageMap::MakeRoomFor(std::uint32_t page) {
    if (Locate().Type == InlineMap) TurnIntoReferences();
    Extent extent = Locate();
    if (page >= extent.PageEnd(mFile->Format())) throw mFile->Damaged();

    const std::size_t reference = MapReferencesAt + page / mFile->Format().PagesPerBitmap() * ReferenceSize;
    if (LoadU32(extent.Bytes() + reference) != 0) return;
    const std::uint32_t bitmapPage = mFile->Allocate();
    mFile->MakeNew(bitmapPage, PageType::Bitmap);
    StoreU32(extent.Holder.Change() + extent.Start + reference, bitmapPage);
}

void UsageMap::TurnIntoReferences() {
    std::vector<std::uint32_t> pages;
    for (auto page = Next(0); page; page = Next(*page + 1)) pages.push_back(*page);

    Extent extent = Locate();
    std::uint8_t* bytes = extent.Holder.Change() + extent.Start;
    std::fill_n(bytes, extent.Length, std::uint8_t{0});
    bytes[0] = ReferenceMap;
    for (const std::uint32_t page : pages) Add(page);
}

std::optional<std::uint32_t> UsageMap::Next(std::uint32_t from) const {
    const Extent extent = Locate();
    if (from >= extent.PageEnd(mFile->Format())) return std::nullopt;
    if (extent.Type == InlineMap) {
        const std::uint32_t bit = std::max(from, extent.FirstPage) - extent.FirstPage;
        const auto next = NextBit({extent.Bytes() + InlineBitmapAt, extent.Length - InlineBitmapAt}, bit);
        return next ? std::optional(extent.FirstPage + *next) : std::nullopt;
    }
    return NextReferenced(extent, from);
}

std::optional<std::uint32_t> UsageMap::Last() const {
    const Extent extent = Locate();
    if (extent.Type == InlineMap) {
        const auto last = LastBit({extent.Bytes() + InlineBitmapAt, extent.Length - InlineBitmapAt});
        return last ? std::optional(extent.FirstPage + *last) : std::nullopt;
    }
    const std::uint32_t pagesPerBitmap = mFile->Format().PagesPerBitmap();
    for (std::uint32_t range = extent.PageEnd(mFile->Format()) / pagesPerBitmap; range > 0; --range) {
        const std::uint32_t bitmapPage =
            LoadU32(extent.Bytes() + MapReferencesAt + (range - 1) * ReferenceSize);
        if (bitmapPage == 0) continue;
        const PageHandle bitmap = mFile->Read(bitmapPage, PageType::Bitmap);
        const auto last = LastBit({bitmap.Data() + BitmapPageBitsAt, mFile->PageSize() - BitmapPageBitsAt});
        if (last) return (range - 1) * pagesPerBitmap + *last;
    }
    return std::nullopt;
}

std::vector<std::uint32_t> UsageMap::BitmapPages() const {
    const Extent extent = Locate();
    std::vector<std::uint32_t> pages;
    if (extent.Type == InlineMap) return pages;
    for (std::size_t at = MapReferencesAt; at + ReferenceSize <= extent.Length; at += ReferenceSize)
        if (const std::uint32_t page = LoadU32(extent.Bytes() + at); page != 0) pages.push_back(page);
    return pages;
}

void UsageMap::MoveTo(RowPointer row) {
    const Extent extent = Locate();
    DataPage target(*mFile, row.Page);
    const auto bytes = target.ChangeRow(row.Row);
    std::copy_n(extent.Bytes(), extent.Length, bytes.begin());
    mRow = row;
    if (extent.Type == InlineMap) return;
    for (std::size_t at = MapReferencesAt; at + ReferenceSize <= bytes.size(); at += ReferenceSize) {
        const std::uint32_t old = LoadU32(&bytes[at]);
        if (old == 0) continue;
        const std::uint32_t copy = mFile->Allocate();
        std::copy_n(mFile->Read(old, PageType::Bitmap).Data(), mFile->PageSize(),
                    mFile->MakeNew(copy, PageType::Bitmap).Change());
        StoreU32(&bytes[at], copy);
        mFile->Free(old);
    }
}

std::optional<std::uint32_t> UsageMap::NextReferenced(const Extent& extent, std::uint32_t from) const {
    const std::uint32_t pagesPerBitmap = mFile->Format().PagesPerBitmap();
    const std::uint32_t ranges = extent.PageEnd(mFile->Format()) / pagesPerBitmap;
    for (std::uint32_t range = from / pagesPerBitmap; range < ranges; ++range) {
        const std::uint32_t bitmapPage = LoadU32(extent.Bytes() + MapReferencesAt + range * ReferenceSize);
        if (bitmapPage == 0) continue;
        const PageHandle bitmap = mFile->Read(bitmapPage, PageType::Bitmap);
        const std::uint32_t rangeStart = range * pagesPerBitmap;
        const auto next = NextBit({bitmap.Data() + BitmapPageBitsAt, mFile->PageSize() - BitmapPageBitsAt},
                                  std::max(from, rangeStart) - rangeStart);
        if (next) return rangeStart + *next;
    }
    return std::nullopt;
}

}  // namespace jet
