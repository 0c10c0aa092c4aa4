// Long values (Memo, OLE): bytes that may be longer than a row. The row holds a reference of 12 bytes:
//
//   u32 kind and length | u32 row pointer of the first piece | u32 stamp | (inline only: the bytes
//   themselves)
//
// Short values stay in the row. Values of up to one page share long-value pages, a row each. Longer ones are
// a chain of pages with one row each: the row pointer of the next piece (0 = last), then bytes. The stamp is
// not 0 for a chain and stands on its first page too.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "platform/jet/row_space.h"
#include "platform/jet/table_def.h"

namespace jet {

inline constexpr std::size_t LongValueReferenceLength = 12;
inline constexpr std::size_t MaxLongValueLength = 0x3FFFFFFF;

/// Writes the reference of a value that stays in the row; the bytes follow it.
void StoreInlineReference(std::uint8_t* reference, std::size_t length);

/// The bytes of the value whose reference (with what follows it in the row) is given. Raises 3428 for a
/// reference that cannot be right; never reads more than the file holds.
std::vector<std::uint8_t> ReadLongValue(PageFile& file, std::span<const std::uint8_t> reference);

/// Writes the values of one column that are too long for the row.
class LongValueWriter {
  public:
    LongValueWriter(PageFile& file, const LongValueMaps& maps)
        : mFile(file), mSpace(file, maps.Owned, maps.Free, LongValueOwner) {}

    /// Pages that a value of that length may need at most.
    static std::uint32_t MostNewPages(const Layout& format, std::size_t length);

    /// Stores the value and fills in its reference. Raises 3036 when the file is full.
    void Write(std::span<const std::uint8_t> value, std::uint8_t* reference);

  private:
    void WriteSingle(std::span<const std::uint8_t> value, std::uint8_t* reference);
    void WriteChain(std::span<const std::uint8_t> value, std::uint8_t* reference);

    PageFile& mFile;
    RowSpace mSpace;
    std::vector<std::uint8_t> mPiece;
};

}  // namespace jet
