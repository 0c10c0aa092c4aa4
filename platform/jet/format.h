// The numbers of the Access file format, one set for each of the two versions that this program knows: Jet 3
// (Access 97, read and updated in place) and Jet 4 (Access 2000 to 2003, also written). Integers in the file
// are little-endian unless a name says otherwise. What differs between the versions stands in Layout; what
// both share are plain constants. Nobody else in this folder writes an offset as a bare number.
#pragma once

#include <cstddef>
#include <cstdint>

namespace jet {

/// The version byte of page 0.
enum class Version : std::uint8_t { Jet3 = 0, Jet4 = 1 };

/// Where a row stands: its page and its slot on that page. In the file it is four bytes, page << 8 | row; in
/// index entries the same four bytes are big-endian.
struct RowPointer {
    std::uint32_t Page = 0;
    std::uint8_t Row = 0;

    /// The pointer that four bytes of the file stand for.
    static constexpr RowPointer FromDword(std::uint32_t dword) {
        return {dword >> 8, static_cast<std::uint8_t>(dword & 0xFF)};
    }
    constexpr std::uint32_t Dword() const { return Page << 8 | Row; }

    auto operator<=>(const RowPointer&) const = default;
};

/// First byte of a page. The second byte is PageMark on every page.
enum class PageType : std::uint8_t {
    Header = 0,
    Data = 1,
    TableDef = 2,
    IndexNode = 3,
    IndexLeaf = 4,
    Bitmap = 5,
    FreedTableDef = 8,
    FreedData = 9
};
inline constexpr std::uint8_t PageMark = 1;

// Pages with a fixed place.
inline constexpr std::uint32_t HeaderPage = 0;
inline constexpr std::uint32_t GlobalMapPage = 1;
inline constexpr std::uint32_t ObjectsPage = 2;  // table definition of MSysObjects

/// A file never holds more pages than this: 2 GB of Jet 4, 1 GB of Jet 3.
inline constexpr std::uint32_t MaxPageCount = 524'288;

// Data pages, both versions: free bytes and owner. The owner is the table-definition page, 0 on pages of
// usage maps, or LongValueOwner.
inline constexpr std::size_t PageFreeBytes = 2;
inline constexpr std::size_t PageOwner = 4;
inline constexpr std::uint32_t MapOwner = 0;
inline constexpr std::uint32_t GlobalMapOwner = 1;
inline constexpr std::uint32_t LongValueOwner = 0x4C41564C;  // the letters LVAL

// An entry of a data page's row table: where the row starts, and two flags. Both flags together mark a
// deleted row.
inline constexpr std::uint16_t RowStartMask = 0x1FFF;
inline constexpr std::uint16_t RowMovedHere = 0x8000;  // the new place of a row: reached by its pointer only
inline constexpr std::uint16_t RowMovedAway = 0x4000;  // the old place: its first four bytes point to the new
inline constexpr std::uint16_t RowDeleted = RowMovedHere | RowMovedAway;
inline constexpr std::size_t RowTableEntry = 2;
inline constexpr unsigned MaxRowsPerPage = 255;

// Constants that stand in every Jet 4 table definition; their meaning is not known.
inline constexpr std::uint32_t TableDefMark = 1625;
inline constexpr std::uint32_t IndexMark = 1923;

// The sort order of every text this program writes: English, General of Access 2000 to 2007.
inline constexpr std::uint16_t GeneralSortOrder = 0x0409;
inline constexpr std::uint16_t LatinCodePage = 1252;

inline constexpr unsigned MaxColumns = 255;
inline constexpr unsigned MaxIndexes = 32;
inline constexpr unsigned MaxIndexColumns = 10;
inline constexpr unsigned MaxNameLength = 64;
inline constexpr unsigned MaxTextLength = 255;

/// Everything that the two versions put in different places. "At" ends the name of an offset.
struct Layout {
    Version FileVersion;
    std::uint32_t PageSize;

    // data pages
    std::size_t RowCountAt;
    std::size_t RowTableAt;
    std::size_t MaxRowLength;
    std::size_t MaxInlineLongValue;  // bytes of a long value that stay in the row
    std::size_t MaxLongValuePiece;   // bytes of the longest row on a long-value page

    // usage maps
    std::size_t MapRowLength;  // of a new map

    // header of a table definition
    std::size_t TableRowsAt;
    std::size_t AutoNumberAt;
    std::size_t TableTypeAt;
    std::size_t MaxColumnNumberAt;
    std::size_t VariableColumnsAt;
    std::size_t ColumnCountAt;
    std::size_t LogicalIndexesAt;
    std::size_t RealIndexesAt;
    std::size_t OwnedMapAt;
    std::size_t FreeMapAt;
    std::size_t TableHeaderLength;  // the statistics blocks of the indexes begin here

    // blocks of a table definition
    std::size_t StatisticsLength;
    std::size_t ColumnLength;
    std::size_t ColumnNumberAt;
    std::size_t ColumnVariableAt;
    std::size_t ColumnOrdinalAt;
    std::size_t ColumnSortOrderAt;
    std::size_t ColumnFlagsAt;
    std::size_t ColumnFixedAt;
    std::size_t ColumnSizeAt;
    std::size_t RealIndexLength;
    std::size_t RealIndexKeysAt;
    std::size_t RealIndexMapAt;
    std::size_t RealIndexRootAt;
    std::size_t RealIndexFlagsAt;
    std::size_t LogicalIndexLength;
    std::size_t LogicalIndexNumberAt;  // the other fields follow it in the same order in both versions

    // index pages
    std::size_t IndexPreviousAt;
    std::size_t IndexNextAt;
    std::size_t IndexTailAt;
    std::size_t IndexPrefixAt;
    std::size_t IndexPrefixSize;
    std::size_t IndexLevelAt;
    std::size_t IndexMaskAt;
    std::size_t IndexEntriesAt;

    /// Pages that one bitmap page describes.
    constexpr std::uint32_t PagesPerBitmap() const { return (PageSize - 4) * 8; }
};

inline constexpr Layout Jet3Layout{.FileVersion = Version::Jet3,
                                   .PageSize = 2048,
                                   .RowCountAt = 8,
                                   .RowTableAt = 10,
                                   .MaxRowLength = 2012,
                                   .MaxInlineLongValue = 32,
                                   .MaxLongValuePiece = 2036,
                                   .MapRowLength = 133,
                                   .TableRowsAt = 0x0C,
                                   .AutoNumberAt = 0x10,
                                   .TableTypeAt = 0x14,
                                   .MaxColumnNumberAt = 0x15,
                                   .VariableColumnsAt = 0x17,
                                   .ColumnCountAt = 0x19,
                                   .LogicalIndexesAt = 0x1B,
                                   .RealIndexesAt = 0x1F,
                                   .OwnedMapAt = 0x23,
                                   .FreeMapAt = 0x27,
                                   .TableHeaderLength = 0x2B,
                                   .StatisticsLength = 8,
                                   .ColumnLength = 18,
                                   .ColumnNumberAt = 1,
                                   .ColumnVariableAt = 3,
                                   .ColumnOrdinalAt = 5,
                                   .ColumnSortOrderAt = 9,
                                   .ColumnFlagsAt = 13,
                                   .ColumnFixedAt = 14,
                                   .ColumnSizeAt = 16,
                                   .RealIndexLength = 39,
                                   .RealIndexKeysAt = 0,
                                   .RealIndexMapAt = 30,
                                   .RealIndexRootAt = 34,
                                   .RealIndexFlagsAt = 38,
                                   .LogicalIndexLength = 20,
                                   .LogicalIndexNumberAt = 0,
                                   .IndexPreviousAt = 8,
                                   .IndexNextAt = 12,
                                   .IndexTailAt = 16,
                                   .IndexPrefixAt = 20,
                                   .IndexPrefixSize = 1,
                                   .IndexLevelAt = 21,
                                   .IndexMaskAt = 22,
                                   .IndexEntriesAt = 248};

inline constexpr Layout Jet4Layout{.FileVersion = Version::Jet4,
                                   .PageSize = 4096,
                                   .RowCountAt = 12,
                                   .RowTableAt = 14,
                                   .MaxRowLength = 4060,
                                   .MaxInlineLongValue = 64,
                                   .MaxLongValuePiece = 4076,
                                   .MapRowLength = 69,
                                   .TableRowsAt = 0x10,
                                   .AutoNumberAt = 0x14,
                                   .TableTypeAt = 0x28,
                                   .MaxColumnNumberAt = 0x29,
                                   .VariableColumnsAt = 0x2B,
                                   .ColumnCountAt = 0x2D,
                                   .LogicalIndexesAt = 0x2F,
                                   .RealIndexesAt = 0x33,
                                   .OwnedMapAt = 0x37,
                                   .FreeMapAt = 0x3B,
                                   .TableHeaderLength = 0x3F,
                                   .StatisticsLength = 12,
                                   .ColumnLength = 25,
                                   .ColumnNumberAt = 5,
                                   .ColumnVariableAt = 7,
                                   .ColumnOrdinalAt = 9,
                                   .ColumnSortOrderAt = 11,
                                   .ColumnFlagsAt = 15,
                                   .ColumnFixedAt = 21,
                                   .ColumnSizeAt = 23,
                                   .RealIndexLength = 52,
                                   .RealIndexKeysAt = 4,
                                   .RealIndexMapAt = 34,
                                   .RealIndexRootAt = 38,
                                   .RealIndexFlagsAt = 46,
                                   .LogicalIndexLength = 28,
                                   .LogicalIndexNumberAt = 4,
                                   .IndexPreviousAt = 12,
                                   .IndexNextAt = 16,
                                   .IndexTailAt = 20,
                                   .IndexPrefixAt = 24,
                                   .IndexPrefixSize = 2,
                                   .IndexLevelAt = 26,
                                   .IndexMaskAt = 27,
                                   .IndexEntriesAt = 480};

/// The offsets and sizes of a version.
constexpr const Layout& LayoutOf(Version version) {
    return version == Version::Jet3 ? Jet3Layout : Jet4Layout;
}

}  // namespace jet
