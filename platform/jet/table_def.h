// A table definition: columns, indexes and the places of the table's usage maps. In the file it is one byte
// string over a chain of pages of type 2; every further page begins with an 8-byte header that is not part of
// the string. The string holds, without gaps:
//
//   header (row count, counts of columns and indexes, the two usage maps)
//   a statistics block for each real index
//   a block for each column, then their names
//   a block for each real index, then a block for each logical index, then the names of these
//   10 bytes for each long-value column: its number, the map of its pages, the map of those with room; FF FF
//
// A real index is a tree of pages. A logical index is a name for one; two names may share a tree.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/jet/page_file.h"
#include "platform/jet/value.h"

namespace jet {

/// Bytes of a value of fixed length; 0 for types whose values vary in length. A Boolean takes no room in a
/// row but counts as one byte.
std::size_t FixedSize(ColumnType type);

struct Column {
    std::u16string Name;
    ColumnType Type = ColumnType::Text;
    std::uint16_t Number = 0;         // place in the null mask, never used again after a deletion
    std::uint16_t VariableIndex = 0;  // place among the variable values of a row
    std::uint16_t Ordinal = 0;
    std::uint16_t SortOrder = GeneralSortOrder;
    std::uint8_t SortVersion = 0;
    std::uint8_t Flags = 0;
    bool Compressed = false;        // Latin text is stored in single bytes
    std::uint16_t FixedOffset = 0;  // in the fixed area of a row
    std::uint16_t Size = 0;         // bytes; 0 for long values

    static constexpr std::uint8_t FixedFlag = 0x01;
    static constexpr std::uint8_t UpdatableFlag = 0x02;
    static constexpr std::uint8_t AutoNumberFlag = 0x04;
    static constexpr std::uint8_t SystemFlag = 0x10;
    static constexpr std::uint8_t SecurityFlag = 0x20;

    bool IsFixed() const { return (Flags & FixedFlag) != 0; }
    bool IsLongValue() const { return Type == ColumnType::Memo || Type == ColumnType::LongBinary; }

    /// Text of at most this many characters (Text columns), bytes otherwise.
    std::uint16_t Characters(Version version) const {
        return version == Version::Jet4 ? static_cast<std::uint16_t>(Size / 2) : Size;
    }
};

/// One of up to ten columns of an index.
struct IndexKeyColumn {
    std::uint16_t ColumnNumber = 0;
    bool Ascending = true;
};

/// A tree of pages over some columns.
struct RealIndex {
    std::vector<IndexKeyColumn> Columns;
    RowPointer Map;
    std::uint32_t RootPage = 0;
    std::uint8_t Flags = 0;
    std::uint32_t Entries = 0;   // when the index was built
    std::uint32_t Distinct = 0;  // grows with every new key, never falls

    static constexpr std::uint8_t UniqueFlag = 0x01;
    static constexpr std::uint8_t IgnoreNullsFlag = 0x02;
    static constexpr std::uint8_t RequiredFlag = 0x08;
    static constexpr std::uint8_t Jet4Flag = 0x80;  // in every index of a Jet 4 file

    bool IsUnique() const { return (Flags & UniqueFlag) != 0; }
    bool IgnoresNulls() const { return (Flags & IgnoreNullsFlag) != 0; }
    bool IsRequired() const { return (Flags & RequiredFlag) != 0; }
};

/// What a logical index is for.
enum class LogicalIndexType : std::uint8_t { Plain = 0, Primary = 1, Relation = 2 };

/// A name for a real index.
struct LogicalIndex {
    static constexpr std::uint32_t NoIndex = 0xFFFFFFFF;
    static constexpr std::uint8_t NoCascade = 4;  // what stands there without a relation

    std::u16string Name;
    std::uint32_t Number = 0;
    std::uint32_t RealIndexNumber = 0;
    std::uint8_t RelationSide = 0;  // 0 none, 1 this table is the "one" side, 2 the foreign side
    std::uint32_t OtherIndex = NoIndex;
    std::uint32_t OtherTable = 0;
    std::uint8_t CascadeUpdates = NoCascade;
    std::uint8_t CascadeDeletes = NoCascade;
    LogicalIndexType Type = LogicalIndexType::Plain;
};

/// Where the pages of a long-value column are told.
struct LongValueMaps {
    std::uint16_t ColumnNumber = 0;
    RowPointer Owned;
    RowPointer Free;
};

/// Who made a table: the letter in its definition.
enum class TableType : std::uint8_t { User = 0x4E, System = 0x53 };

/// A table definition as it stands in the file.
struct TableDef {
    std::uint32_t Page = 0;
    std::uint32_t RowCount = 0;
    std::uint32_t LastAutoNumber = 0;
    TableType Type = TableType::User;
    std::uint16_t MaxColumnNumber = 0;  // highest ever used + 1: the column count of a new row
    std::uint16_t VariableColumns = 0;  // ever used: the number of variable values of a new row
    RowPointer OwnedMap;
    RowPointer FreeMap;
    std::vector<Column> Columns;               // by (ordinal, name): the order of the fields
    std::vector<RealIndex> RealIndexes;        // by their number
    std::vector<LogicalIndex> LogicalIndexes;  // by name
    std::vector<LongValueMaps> LongValues;

    /// Position in Columns, without regard to letter case.
    std::optional<std::size_t> FindColumn(std::u16string_view name) const;
    std::optional<std::size_t> FindColumnNumber(std::uint16_t number) const;

    /// The logical index of that name, without regard to letter case; null when there is none.
    const LogicalIndex* FindIndex(std::u16string_view name) const;
};

/// Reads the definition that begins on page. Raises 3428 for one that cannot be right.
TableDef ReadTableDef(PageFile& file, std::uint32_t page);

/// Writes a Jet 4 definition that begins on definition.Page (which is allocated already), sorting its columns
/// and logical indexes into the order that the file wants; allocates and frees its further pages.
void WriteTableDef(PageFile& file, TableDef& definition);

/// Writes what changes with the rows of a Jet 4 table of an Exclusive file, with the rows' places: its maps,
/// and the maps and root pages of its indexes. Nothing of it is on the disk before the definition's first
/// page is.
void WriteTablePlaces(PageFile& file, const TableDef& definition);

/// What changes with the rows: row count, last autonumber, distinct keys of each index. Read again where
/// another program may have added rows, and written without the rest of the definition.
void ReadTableCounts(PageFile& file, TableDef& definition);
void WriteTableCounts(PageFile& file, const TableDef& definition);

}  // namespace jet
