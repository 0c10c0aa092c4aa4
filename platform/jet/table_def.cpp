#include "platform/jet/table_def.h"

#include <algorithm>
#include <span>
#include <utility>

#include "platform/code_page.h"
#include "platform/jet/bytes.h"

namespace jet {

namespace {

// Header of every page of the chain; the string continues behind it on further pages.
constexpr std::size_t PageFreeAt = 2;
constexpr std::size_t NextPageAt = 4;
constexpr std::size_t ContinuationAt = 8;

// Header of the string. What Layout holds differs between the versions.
constexpr std::size_t StringLengthAt = 8;
constexpr std::size_t MarkAt = 0x0C;       // Jet 4
constexpr std::size_t AlwaysOneAt = 0x18;  // Jet 4: 1 in every table
constexpr std::size_t MaxStringLength = std::size_t{1} << 20;

// Statistics block.
constexpr std::size_t StatisticsDistinctAt = 4;

// Column block: where only Jet 4 has something.
constexpr std::size_t ColumnMarkAt = 1;
constexpr std::size_t ColumnSortVersionAt = 14;
constexpr std::size_t ColumnExtendedFlagsAt = 16;
constexpr std::uint8_t CompressedFlag = 0x01;

// Key slots of a real index.
constexpr std::size_t KeySlotLength = 3;
constexpr std::uint16_t UnusedSlot = 0xFFFF;

// Fields of a logical index, from its number on.
constexpr std::size_t LogicalRealAt = 4;
constexpr std::size_t LogicalSideAt = 8;
constexpr std::size_t LogicalOtherIndexAt = 9;
constexpr std::size_t LogicalOtherTableAt = 13;
constexpr std::size_t LogicalUpdatesAt = 17;
constexpr std::size_t LogicalDeletesAt = 18;
constexpr std::size_t LogicalTypeAt = 19;

// Entry of the long-value trailer.
constexpr std::size_t TrailerEntryLength = 10;
constexpr std::size_t TrailerOwnedAt = 2;
constexpr std::size_t TrailerFreeAt = 6;
constexpr std::uint16_t TrailerEnd = 0xFFFF;

using Bytes = std::vector<std::uint8_t>;

bool NameBefore(std::u16string_view a, std::u16string_view b) {
    return std::ranges::lexicographical_compare(a, b, {}, platform::FoldCase, platform::FoldCase);
}

/// The files's order of columns, which is also the order of the fields.
bool ColumnBefore(const Column& a, const Column& b) {
    return a.Ordinal != b.Ordinal ? a.Ordinal < b.Ordinal : NameBefore(a.Name, b.Name);
}

/// The pages of a chain. Raises 3428 for one that begins nowhere or is longer than the string can need.
std::vector<std::uint32_t> ChainPages(PageFile& file, std::uint32_t first) {
    if (first == 0) throw file.Damaged();
    std::vector<std::uint32_t> pages;
    for (std::uint32_t page = first; page != 0;) {
        if (pages.size() > MaxStringLength / file.PageSize()) throw file.Damaged();
        pages.push_back(page);
        page = LoadU32(file.Read(page, PageType::TableDef).Data() + NextPageAt);
    }
    return pages;
}

Bytes ReadString(PageFile& file, std::uint32_t first) {
    Bytes bytes;
    for (const std::uint32_t page : ChainPages(file, first)) {
        const PageHandle handle = file.Read(page, PageType::TableDef);
        const std::size_t skipped = page == first ? 0 : ContinuationAt;
        bytes.insert(bytes.end(), handle.Data() + skipped, handle.Data() + file.PageSize());
    }
    const std::size_t length = LoadU32(&bytes[StringLengthAt]);
    if (length < file.Format().TableHeaderLength || length > bytes.size()) throw file.Damaged();
    bytes.resize(length);
    return bytes;
}

/// Where in a definition's string the rows' places stand: for each real index its block, for each long-value
/// column (in the order of TableDef::LongValues) its entry.
struct PlaceOffsets {
    std::vector<std::size_t> RealIndexes;
    std::vector<std::size_t> LongValues;
};

/// Takes the string apart from front to back; every step checks that it stays inside.
class DefinitionReader {
  public:
    DefinitionReader(PageFile& file, std::uint32_t page)
        : mFile(file), mFormat(file.Format()), mBytes(ReadString(file, page)) {
        mDefinition.Page = page;
    }

    TableDef Read() {
        ReadHeader();
        ReadStatistics();
        ReadColumns();
        ReadRealIndexes();
        ReadLogicalIndexes();
        ReadLongValues();
        std::ranges::stable_sort(mDefinition.Columns, ColumnBefore);
        return std::move(mDefinition);
    }

    /// Known once Read has returned.
    const PlaceOffsets& Offsets() const { return mOffsets; }

  private:
    const std::uint8_t* Take(std::size_t length) {
        if (length > mBytes.size() - mAt) throw mFile.Damaged();
        return mBytes.data() + std::exchange(mAt, mAt + length);
    }

    std::u16string TakeName() {
        if (mFormat.FileVersion == Version::Jet3) {
            const std::size_t length = *Take(1);
            const std::uint8_t* bytes = Take(length);
            return platform::WideFromBytes(std::string(bytes, bytes + length));
        }
        const std::size_t length = LoadU16(Take(2));
        const std::uint8_t* bytes = Take(length);
        std::u16string name;
        for (std::size_t i = 0; i + 1 < length; i += 2) name.push_back(LoadU16(bytes + i));
        return name;
    }

    void ReadHeader() {
        const std::uint8_t* header = Take(mFormat.TableHeaderLength);
        TableDef& table = mDefinition;
        table.RowCount = LoadU32(header + mFormat.TableRowsAt);
        table.LastAutoNumber = LoadU32(header + mFormat.AutoNumberAt);
        table.Type = static_cast<TableType>(header[mFormat.TableTypeAt]);
        table.MaxColumnNumber = LoadU16(header + mFormat.MaxColumnNumberAt);
        table.VariableColumns = LoadU16(header + mFormat.VariableColumnsAt);
        table.OwnedMap = RowPointer::FromDword(LoadU32(header + mFormat.OwnedMapAt));
        table.FreeMap = RowPointer::FromDword(LoadU32(header + mFormat.FreeMapAt));
        mColumnCount = LoadU16(header + mFormat.ColumnCountAt);
        mLogicalCount = LoadU32(header + mFormat.LogicalIndexesAt);
        mRealCount = LoadU32(header + mFormat.RealIndexesAt);
        if (table.VariableColumns > table.MaxColumnNumber || mColumnCount > table.MaxColumnNumber) {
            throw mFile.Damaged();
        }
        // The statistics blocks must stay on the first page.
        const std::size_t room = mFile.PageSize() - mFormat.TableHeaderLength;
        if (mRealCount > room / mFormat.StatisticsLength) throw mFile.Damaged();
    }

    void ReadStatistics() {
        for (std::uint32_t i = 0; i < mRealCount; ++i) {
            const std::uint8_t* block = Take(mFormat.StatisticsLength);
            RealIndex& index = mDefinition.RealIndexes.emplace_back();
            index.Entries = LoadU32(block);
            index.Distinct = LoadU32(block + StatisticsDistinctAt);
        }
    }

    void ReadColumns() {
        for (unsigned i = 0; i < mColumnCount; ++i) {
            const std::uint8_t* block = Take(mFormat.ColumnLength);
            Column& column = mDefinition.Columns.emplace_back();
            column.Type = static_cast<ColumnType>(block[0]);
            column.Number = LoadU16(block + mFormat.ColumnNumberAt);
            column.VariableIndex = LoadU16(block + mFormat.ColumnVariableAt);
            column.Ordinal = LoadU16(block + mFormat.ColumnOrdinalAt);
            column.SortOrder = LoadU16(block + mFormat.ColumnSortOrderAt);
            column.Flags = block[mFormat.ColumnFlagsAt];
            column.FixedOffset = LoadU16(block + mFormat.ColumnFixedAt);
            column.Size = LoadU16(block + mFormat.ColumnSizeAt);
            CheckColumn(column);
            if (mFormat.FileVersion == Version::Jet3) continue;
            column.SortVersion = block[ColumnSortVersionAt];
            column.Compressed = (block[ColumnExtendedFlagsAt] & CompressedFlag) != 0;
        }
        for (Column& column : mDefinition.Columns) column.Name = TakeName();
    }

    void CheckColumn(const Column& column) const {
        const TableDef& table = mDefinition;
        const bool placed = column.IsFixed() || column.VariableIndex < table.VariableColumns;
        const std::size_t size = FixedSize(column.Type);
        const bool sized = size == 0 || column.Size == size;
        if (column.Number >= table.MaxColumnNumber || !placed || !sized) throw mFile.Damaged();
    }

    void ReadRealIndexes() {
        for (RealIndex& index : mDefinition.RealIndexes) {
            mOffsets.RealIndexes.push_back(mAt);
            const std::uint8_t* block = Take(mFormat.RealIndexLength);
            const std::uint8_t* slot = block + mFormat.RealIndexKeysAt;
            for (unsigned i = 0; i < MaxIndexColumns; ++i, slot += KeySlotLength) {
                if (LoadU16(slot) != UnusedSlot) index.Columns.push_back({LoadU16(slot), slot[2] != 0});
            }
            index.Map = RowPointer::FromDword(LoadU32(block + mFormat.RealIndexMapAt));
            index.RootPage = LoadU32(block + mFormat.RealIndexRootAt);
            index.Flags = block[mFormat.RealIndexFlagsAt];
        }
    }

    void ReadLogicalIndexes() {
        for (std::uint32_t i = 0; i < mLogicalCount; ++i) {
            const std::uint8_t* block = Take(mFormat.LogicalIndexLength) + mFormat.LogicalIndexNumberAt;
            LogicalIndex& index = mDefinition.LogicalIndexes.emplace_back();
            index.Number = LoadU32(block);
            index.RealIndexNumber = LoadU32(block + LogicalRealAt);
            index.RelationSide = block[LogicalSideAt];
            index.OtherIndex = LoadU32(block + LogicalOtherIndexAt);
            index.OtherTable = LoadU32(block + LogicalOtherTableAt);
            index.CascadeUpdates = block[LogicalUpdatesAt];
            index.CascadeDeletes = block[LogicalDeletesAt];
            index.Type = static_cast<LogicalIndexType>(block[LogicalTypeAt]);
            if (index.RealIndexNumber >= mDefinition.RealIndexes.size()) throw mFile.Damaged();
        }
        for (LogicalIndex& index : mDefinition.LogicalIndexes) index.Name = TakeName();
    }

    void ReadLongValues() {
        while (mBytes.size() - mAt >= TrailerEntryLength && LoadU16(&mBytes[mAt]) != TrailerEnd) {
            mOffsets.LongValues.push_back(mAt);
            const std::uint8_t* entry = Take(TrailerEntryLength);
            mDefinition.LongValues.push_back({LoadU16(entry),
                                              RowPointer::FromDword(LoadU32(entry + TrailerOwnedAt)),
                                              RowPointer::FromDword(LoadU32(entry + TrailerFreeAt))});
        }
    }

    PageFile& mFile;
    const Layout& mFormat;
    Bytes mBytes;
    std::size_t mAt = 0;
    std::size_t mColumnCount = 0;
    std::uint32_t mRealCount = 0;
    std::uint32_t mLogicalCount = 0;
    TableDef mDefinition;
    PlaceOffsets mOffsets;
};

void StoreIndexPlace(std::uint8_t* block, const RealIndex& index) {
    StoreU32(block + Jet4Layout.RealIndexMapAt, index.Map.Dword());
    StoreU32(block + Jet4Layout.RealIndexRootAt, index.RootPage);
}

void StoreLongValuePlace(std::uint8_t* entry, const LongValueMaps& maps) {
    StoreU32(entry + TrailerOwnedAt, maps.Owned.Dword());
    StoreU32(entry + TrailerFreeAt, maps.Free.Dword());
}

/// What changes with the rows, in the string's beginning, which stands on the first page.
void StoreCounts(std::uint8_t* string, const Layout& format, const TableDef& definition) {
    StoreU32(string + format.TableRowsAt, definition.RowCount);
    StoreU32(string + format.AutoNumberAt, definition.LastAutoNumber);
    std::uint8_t* block = string + format.TableHeaderLength;
    for (const RealIndex& index : definition.RealIndexes) {
        StoreU32(block + StatisticsDistinctAt, index.Distinct);
        block += format.StatisticsLength;
    }
}

/// Puts the Jet 4 string together; the mirror of DefinitionReader.
class DefinitionWriter {
  public:
    explicit DefinitionWriter(const TableDef& table) : mTable(table) {}

    Bytes Write() {
        AppendHeader();
        for (const RealIndex& index : mTable.RealIndexes) AppendStatistics(index);
        for (const Column& column : mTable.Columns) AppendColumn(column);
        for (const Column& column : mTable.Columns) AppendName(column.Name);
        for (const RealIndex& index : mTable.RealIndexes) AppendRealIndex(index);
        for (const LogicalIndex& index : mTable.LogicalIndexes) AppendLogicalIndex(index);
        for (const LogicalIndex& index : mTable.LogicalIndexes) AppendName(index.Name);
        for (const LongValueMaps& maps : mTable.LongValues) AppendLongValue(maps);
        StoreU16(Append(2), TrailerEnd);
        StoreU32(&mBytes[StringLengthAt], static_cast<std::uint32_t>(mBytes.size()));
        return std::move(mBytes);
    }

  private:
    std::uint8_t* Append(std::size_t length) {
        mBytes.resize(mBytes.size() + length);
        return &mBytes[mBytes.size() - length];
    }

    void AppendName(std::u16string_view name) {
        StoreU16(Append(2), static_cast<std::uint16_t>(2 * name.size()));
        for (const char16_t c : name) StoreU16(Append(2), c);
    }

    void AppendHeader() {
        std::uint8_t* header = Append(mFormat.TableHeaderLength);
        StoreU32(header + MarkAt, TableDefMark);
        StoreU32(header + mFormat.TableRowsAt, mTable.RowCount);
        StoreU32(header + mFormat.AutoNumberAt, mTable.LastAutoNumber);
        StoreU32(header + AlwaysOneAt, 1);
        header[mFormat.TableTypeAt] = static_cast<std::uint8_t>(mTable.Type);
        StoreU16(header + mFormat.MaxColumnNumberAt, mTable.MaxColumnNumber);
        StoreU16(header + mFormat.VariableColumnsAt, mTable.VariableColumns);
        StoreU16(header + mFormat.ColumnCountAt, static_cast<std::uint16_t>(mTable.Columns.size()));
        StoreU32(header + mFormat.LogicalIndexesAt, static_cast<std::uint32_t>(mTable.LogicalIndexes.size()));
        StoreU32(header + mFormat.RealIndexesAt, static_cast<std::uint32_t>(mTable.RealIndexes.size()));
        StoreU32(header + mFormat.OwnedMapAt, mTable.OwnedMap.Dword());
        StoreU32(header + mFormat.FreeMapAt, mTable.FreeMap.Dword());
    }

    void AppendStatistics(const RealIndex& index) {
        std::uint8_t* block = Append(mFormat.StatisticsLength);
        StoreU32(block, index.Entries);
        StoreU32(block + StatisticsDistinctAt, index.Distinct);
    }

    void AppendColumn(const Column& column) {
        std::uint8_t* block = Append(mFormat.ColumnLength);
        block[0] = static_cast<std::uint8_t>(column.Type);
        StoreU32(block + ColumnMarkAt, TableDefMark);
        StoreU16(block + mFormat.ColumnNumberAt, column.Number);
        StoreU16(block + mFormat.ColumnVariableAt, column.VariableIndex);
        StoreU16(block + mFormat.ColumnOrdinalAt, column.Ordinal);
        StoreU16(block + mFormat.ColumnSortOrderAt, column.SortOrder);
        block[ColumnSortVersionAt] = column.SortVersion;
        block[mFormat.ColumnFlagsAt] = column.Flags;
        block[ColumnExtendedFlagsAt] = column.Compressed ? CompressedFlag : std::uint8_t{0};
        StoreU16(block + mFormat.ColumnFixedAt, column.FixedOffset);
        StoreU16(block + mFormat.ColumnSizeAt, column.Size);
    }

    void AppendRealIndex(const RealIndex& index) {
        std::uint8_t* block = Append(mFormat.RealIndexLength);
        StoreU32(block, IndexMark);
        std::uint8_t* slot = block + mFormat.RealIndexKeysAt;
        for (unsigned i = 0; i < MaxIndexColumns; ++i, slot += KeySlotLength) {
            const bool used = i < index.Columns.size();
            StoreU16(slot, used ? index.Columns[i].ColumnNumber : UnusedSlot);
            slot[2] = used && index.Columns[i].Ascending ? 1 : 0;
        }
        StoreIndexPlace(block, index);
        block[mFormat.RealIndexFlagsAt] = index.Flags;
    }

    void AppendLogicalIndex(const LogicalIndex& index) {
        std::uint8_t* block = Append(mFormat.LogicalIndexLength);
        StoreU32(block, TableDefMark);
        block += mFormat.LogicalIndexNumberAt;
        StoreU32(block, index.Number);
        StoreU32(block + LogicalRealAt, index.RealIndexNumber);
        block[LogicalSideAt] = index.RelationSide;
        StoreU32(block + LogicalOtherIndexAt, index.OtherIndex);
        StoreU32(block + LogicalOtherTableAt, index.OtherTable);
        block[LogicalUpdatesAt] = index.CascadeUpdates;
        block[LogicalDeletesAt] = index.CascadeDeletes;
        block[LogicalTypeAt] = static_cast<std::uint8_t>(index.Type);
    }

    void AppendLongValue(const LongValueMaps& maps) {
        std::uint8_t* entry = Append(TrailerEntryLength);
        StoreU16(entry, maps.ColumnNumber);
        StoreLongValuePlace(entry, maps);
    }

    const TableDef& mTable;
    const Layout& mFormat = Jet4Layout;
    Bytes mBytes;
};

/// Brings the parts into the orders that the file wants: columns by place and name, logical indexes by name,
/// long values as their columns.
void SortParts(TableDef& table) {
    std::ranges::stable_sort(table.Columns, ColumnBefore);
    std::ranges::stable_sort(table.LogicalIndexes, [](const LogicalIndex& a, const LogicalIndex& b) {
        return NameBefore(a.Name, b.Name);
    });
    std::ranges::stable_sort(table.LongValues, {}, [&table](const LongValueMaps& maps) {
        return table.FindColumnNumber(maps.ColumnNumber).value_or(table.Columns.size());
    });
}

/// Makes the chain exactly as long as a string of that length needs. In an Exclusive file the pages behind
/// the first one are new ones, so that the first switches to them.
std::vector<std::uint32_t> FitChain(PageFile& file, std::uint32_t first, std::size_t length) {
    std::vector<std::uint32_t> pages = ChainPages(file, first);
    while (!file.IsShared() && pages.size() > 1 && !file.IsNew(pages.back())) {
        file.Free(pages.back());
        pages.pop_back();
    }
    const std::size_t perPage = file.PageSize() - ContinuationAt;
    const std::size_t needed = (length - ContinuationAt + perPage - 1) / perPage;
    while (pages.size() < needed) {
        pages.push_back(file.Allocate());
        file.MakeNew(pages.back(), PageType::TableDef);
    }
    for (; pages.size() > needed; pages.pop_back()) file.Free(pages.back());
    return pages;
}

void WriteString(PageFile& file, std::uint32_t first, std::span<const std::uint8_t> bytes) {
    const std::vector<std::uint32_t> pages = FitChain(file, first, bytes.size());

    // The string carries room for the first page's header; further pages get theirs in front of their part.
    std::size_t at = ContinuationAt;
    for (std::size_t i = 0; i < pages.size(); ++i) {
        PageHandle handle = file.MakeNew(pages[i], PageType::TableDef);
        const std::size_t part = std::min(bytes.size() - at, file.PageSize() - ContinuationAt);
        const std::size_t end = ContinuationAt + part;
        std::uint8_t* page = handle.Change();
        std::ranges::copy(bytes.subspan(at, part), page + ContinuationAt);
        // The free bytes are counted as if a header followed; a full page has none.
        const std::size_t free = file.PageSize() - end;
        StoreU16(page + PageFreeAt, static_cast<std::uint16_t>(free - std::min(free, ContinuationAt)));
        StoreU32(page + NextPageAt, i + 1 < pages.size() ? pages[i + 1] : 0);
        at += part;
    }
}

}  // namespace

std::size_t FixedSize(ColumnType type) {
    switch (type) {
        case ColumnType::Boolean:
        case ColumnType::Byte:
            return 1;
        case ColumnType::Integer:
            return 2;
        case ColumnType::Long:
        case ColumnType::Single:
            return 4;
        case ColumnType::Currency:
        case ColumnType::Double:
        case ColumnType::Date:
            return 8;
        case ColumnType::Guid:
            return 16;
        case ColumnType::Numeric:
            return 17;
        default:
            return 0;
    }
}

std::optional<std::size_t> TableDef::FindColumn(std::u16string_view name) const {
    const auto found = std::ranges::find_if(
        Columns, [name](const Column& column) { return platform::EqualFolded(column.Name, name); });
    if (found == Columns.end()) return std::nullopt;
    return static_cast<std::size_t>(found - Columns.begin());
}

std::optional<std::size_t> TableDef::FindColumnNumber(std::uint16_t number) const {
    const auto found = std::ranges::find(Columns, number, &Column::Number);
    if (found == Columns.end()) return std::nullopt;
    return static_cast<std::size_t>(found - Columns.begin());
}

const LogicalIndex* TableDef::FindIndex(std::u16string_view name) const {
    const auto found = std::ranges::find_if(LogicalIndexes, [name](const LogicalIndex& index) {
        return platform::EqualFolded(index.Name, name);
    });
    return found == LogicalIndexes.end() ? nullptr : &*found;
}

TableDef ReadTableDef(PageFile& file, std::uint32_t page) {
    return DefinitionReader(file, page).Read();
}

void WriteTableDef(PageFile& file, TableDef& definition) {
    SortParts(definition);
    WriteString(file, definition.Page, DefinitionWriter(definition).Write());
}

void WriteTablePlaces(PageFile& file, const TableDef& definition) {
    const Layout& format = file.Format();
    DefinitionReader reader(file, definition.Page);
    const TableDef stored = reader.Read();
    const PlaceOffsets& offsets = reader.Offsets();
    if (stored.RealIndexes.size() != definition.RealIndexes.size() ||
        stored.LongValues.size() != definition.LongValues.size()) {
        throw file.Damaged();
    }
    Bytes bytes = ReadString(file, definition.Page);
    StoreCounts(bytes.data(), format, definition);
    StoreU32(&bytes[format.OwnedMapAt], definition.OwnedMap.Dword());
    StoreU32(&bytes[format.FreeMapAt], definition.FreeMap.Dword());
    for (std::size_t i = 0; i < offsets.RealIndexes.size(); ++i)
        StoreIndexPlace(&bytes[offsets.RealIndexes[i]], definition.RealIndexes[i]);
    for (std::size_t i = 0; i < offsets.LongValues.size(); ++i)
        StoreLongValuePlace(&bytes[offsets.LongValues[i]], definition.LongValues[i]);
    WriteString(file, definition.Page, bytes);
}

void ReadTableCounts(PageFile& file, TableDef& definition) {
    const Layout& format = file.Format();
    const PageHandle handle = file.Read(definition.Page, PageType::TableDef);
    definition.RowCount = LoadU32(handle.Data() + format.TableRowsAt);
    definition.LastAutoNumber = LoadU32(handle.Data() + format.AutoNumberAt);
    const std::uint8_t* block = handle.Data() + format.TableHeaderLength;
    for (RealIndex& index : definition.RealIndexes) {
        index.Distinct = LoadU32(block + StatisticsDistinctAt);
        block += format.StatisticsLength;
    }
}

void WriteTableCounts(PageFile& file, const TableDef& definition) {
    PageHandle handle = file.Read(definition.Page, PageType::TableDef);
    StoreCounts(handle.Change(), file.Format(), definition);
}

}  // namespace jet
