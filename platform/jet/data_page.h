// A data page: rows of a table, rows of usage maps or long values.
//
//   01 01 | u16 free bytes | u32 owner | (Jet 4: u32 stamp) | u16 number of rows n | n u16 row starts | free
//   | rows
//
// Rows fill the page from its end downwards: row 0 ends at the page's end, row i ends where row i - 1 starts.
// The free bytes are those between the row table and the lowest row.
#pragma once

#include <cstdint>
#include <span>

#include "platform/jet/page_file.h"

namespace jet {

/// One slot of the row table.
struct RowSlot {
    std::uint16_t Flags = 0;
    std::uint16_t Start = 0;
    std::uint16_t Length = 0;

    bool IsOrdinary() const { return Flags == 0; }
    bool IsDeleted() const { return Flags == RowDeleted; }
    bool IsMovedAway() const { return Flags == RowMovedAway; }
};

class DataPage {
  public:
    /// Raises 3428 for a page of another type or with an impossible number of rows.
    DataPage(PageFile& file, std::uint32_t page);

    /// A fresh page without rows on an allocated page number.
    static DataPage Make(PageFile& file, std::uint32_t page, std::uint32_t owner);

    std::uint32_t Number() const { return mPage.Number(); }
    std::uint32_t Owner() const;
    unsigned RowCount() const { return mRowCount; }

    /// Raises 3428 for a slot that there is not, or that leaves the page.
    RowSlot Slot(unsigned row) const;

    /// The row's bytes. Raises 3428 as Slot.
    std::span<const std::uint8_t> Row(unsigned row) const;
    std::span<std::uint8_t> ChangeRow(unsigned row);

    /// Whether a further row of that many bytes fits.
    bool HasRoom(std::size_t length) const;

    /// Adds a row that fits (HasRoom) and returns its slot.
    std::uint8_t Append(std::span<const std::uint8_t> row);

    /// Takes the row of the highest slot off the page.
    void RemoveLast();

    /// Makes a row longer or shorter in place; rows with higher slots move. The bytes behind its former end
    /// are zero. False when the page has no room.
    bool ResizeRow(unsigned row, std::size_t length);

    /// Jet 4: the dword that ties the first page of a long-value chain to its reference.
    void SetStamp(std::uint32_t stamp);

  private:
    DataPage(PageFile& file, PageHandle page);

    std::size_t EntryAt(unsigned row) const { return mFile->Format().RowTableAt + row * RowTableEntry; }
    std::size_t LowestRow() const;

    PageFile* mFile;
    PageHandle mPage;
    unsigned mRowCount;
};

}  // namespace jet
