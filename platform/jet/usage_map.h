// A usage map: the set of pages that belong to a table, an index or a long-value column, or that have room
// for another row. A map is a row on a data page of owner 0. Its first byte is the type:
//
//   0  inline: u32 first page described, then a bitmap, least significant bit first
//   1  reference: u32 page numbers of bitmap pages, 0 = none; entry j describes pages j * N to j * N + N - 1,
//      N = (page size - 4) * 8. A bitmap page is 05 01 00 00 and the bitmap.
//
// A map starts inline. When a page beyond its bitmap joins, it becomes a reference map in the same bytes, so
// no row of the map page ever moves.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "platform/jet/page_file.h"

namespace jet {

inline constexpr std::uint8_t InlineMap = 0;
inline constexpr std::uint8_t ReferenceMap = 1;
inline constexpr std::size_t MapStartPageAt = 1;  // inline maps
inline constexpr std::size_t InlineBitmapAt = 5;
inline constexpr std::size_t MapReferencesAt = 1;  // reference maps
inline constexpr std::size_t BitmapPageBitsAt = 4;

/// A light handle: it may be copied, and keeps nothing of the map in memory.
class UsageMap {
  public:
    UsageMap(PageFile& file, RowPointer row) : mFile(&file), mRow(row) {}

    RowPointer Row() const { return mRow; }

    /// All operations raise 3428 for a map row that cannot be right.
    bool Contains(std::uint32_t page) const;

    /// Adding a page that is in the map changes nothing. Raises 3036 when a bitmap page is needed and the
    /// file is full.
    void Add(std::uint32_t page);

    /// Removing a page that is not in the map changes nothing.
    void Remove(std::uint32_t page);

    /// The lowest page of the map that is not below from.
    std::optional<std::uint32_t> Next(std::uint32_t from) const;

    /// The highest page of the map.
    std::optional<std::uint32_t> Last() const;

    /// The bitmap pages that the map has.
    std::vector<std::uint32_t> BitmapPages() const;

    /// Copies the map, with the bitmap pages it has, to a row of the same length on another page, and frees
    /// the bitmap pages. The map is that row from now on. Raises 3036 when the file is full.
    void MoveTo(RowPointer row);

    /// Whether the map has a place for the page's bit already.
    bool Covers(std::uint32_t page) const { return Find(page).has_value(); }

  private:
    /// The map's row on its page.
    struct Extent {
        PageHandle Holder;
        std::size_t Start;
        std::size_t Length;
        std::uint8_t Type;
        std::uint32_t FirstPage;

        const std::uint8_t* Bytes() const { return Holder.Data() + Start; }
        std::uint32_t PageEnd(const Layout& layout) const;
    };

    /// Where the bit of one page stands.
    struct Bit {
        PageHandle Holder;
        std::size_t Byte;
        std::uint8_t Mask;
    };

    Extent Locate() const;
    std::optional<Bit> Find(std::uint32_t page) const;
    std::optional<std::uint32_t> NextReferenced(const Extent& extent, std::uint32_t from) const;
    void MakeRoomFor(std::uint32_t page);
    void TurnIntoReferences();

    PageFile* mFile;
    RowPointer mRow;
};

}  // namespace jet
