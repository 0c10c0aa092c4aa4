#include "platform/jet/schema.h"

#include <algorithm>
#include <utility>

#include "platform/code_page.h"
#include "platform/jet/data_page.h"
#include "platform/jet/index_key.h"
#include "platform/jet/index_tree.h"
#include "platform/jet/usage_map.h"

namespace jet {

namespace {

constexpr std::uint16_t MaxBinaryLength = 510;
constexpr std::uint16_t DefaultLength = 255;
constexpr std::u16string_view ForbiddenInNames = u".![]`";

bool IsForbiddenInNames(char16_t c) {
    return c < u' ' || ForbiddenInNames.find(c) != std::u16string_view::npos;
}

std::uint16_t SizeOf(const ColumnSpec& spec) {
    const std::uint16_t length = spec.Size == 0 ? DefaultLength : spec.Size;
    switch (spec.Type) {
        case ColumnType::Text:
            if (length > MaxTextLength) throw DataError(InvalidPropertyValue);
            return static_cast<std::uint16_t>(2 * length);
        case ColumnType::Binary:
            if (length > MaxBinaryLength) throw DataError(InvalidPropertyValue);
            return length;
        default:
            return static_cast<std::uint16_t>(FixedSize(spec.Type));
    }
}

/// Numeric columns would need a precision, and nothing in this program has one.
bool CanBeMade(ColumnType type) {
    const bool varies = type == ColumnType::Text || type == ColumnType::Binary || type == ColumnType::Memo ||
                        type == ColumnType::LongBinary;
    return varies || (FixedSize(type) != 0 && type != ColumnType::Numeric);
}

Column DefineColumn(const ColumnSpec& spec) {
    CheckName(spec.Name);
    if (!CanBeMade(spec.Type)) throw DataError(InvalidFieldType);
    Column column;
    column.Name = spec.Name;
    column.Type = spec.Type;
    column.Size = SizeOf(spec);
    column.Flags = Column::UpdatableFlag;
    if (FixedSize(spec.Type) != 0) column.Flags |= Column::FixedFlag;
    column.Compressed = spec.Type == ColumnType::Text || spec.Type == ColumnType::Memo;
    return column;
}

std::uint8_t FlagsOf(const IndexSpec& spec) {
    std::uint8_t flags = RealIndex::Jet4Flag;
    if (spec.Primary || spec.Unique) flags |= RealIndex::UniqueFlag;
    if (spec.Primary || spec.Required) flags |= RealIndex::RequiredFlag;
    if (spec.IgnoreNulls && !spec.Primary) flags |= RealIndex::IgnoreNullsFlag;
    return flags;
}

void CheckIndexName(const TableDef& table, std::u16string_view tableName, const IndexSpec& spec) {
    CheckName(spec.Name);
    if (table.FindIndex(spec.Name) != nullptr) throw DataError(IndexExists, tableName, spec.Name);
    if (table.LogicalIndexes.size() >= MaxIndexes) throw DataError(TooManyIndexes);
    const auto isPrimary = [](const LogicalIndex& index) { return index.Type == LogicalIndexType::Primary; };
    if (spec.Primary && std::ranges::any_of(table.LogicalIndexes, isPrimary))
        throw DataError(PrimaryKeyExists);
}

}  // namespace

void CheckName(std::u16string_view name) {
    if (name.empty() || name.size() > MaxNameLength || name.front() == u' ' ||
        std::ranges::any_of(name, IsForbiddenInNames)) {
        throw DataError(InvalidName, name);
    }
}

std::vector<Column> DefineColumns(std::u16string_view table, std::span<const ColumnSpec> specs) {
    if (specs.empty()) throw DataError(NoFieldDefined);
    if (specs.size() > MaxColumns) throw DataError(TooManyFields);
    std::vector<Column> columns;
    for (const ColumnSpec& spec : specs) {
        const auto sameName = [&spec](const Column& other) {
            return platform::EqualFolded(other.Name, spec.Name);
        };
        if (std::ranges::any_of(columns, sameName)) throw DataError(FieldExists, spec.Name, table);
        columns.push_back(DefineColumn(spec));
        columns.back().Ordinal = static_cast<std::uint16_t>(columns.size() - 1);
    }
    return columns;
}

RealIndex DefineIndex(const TableDef& table, std::u16string_view tableName, const IndexSpec& spec) {
    if (spec.Columns.empty()) throw DataError(NoFieldDefined);
    if (spec.Columns.size() > MaxIndexColumns) throw DataError(TooManyIndexFields);
    CheckIndexName(table, tableName, spec);
    RealIndex index;
    index.Flags = FlagsOf(spec);
    for (const IndexColumnSpec& part : spec.Columns) {
        const auto position = table.FindColumn(part.Name);
        if (!position || !IsIndexable(table.Columns[*position].Type, Version::Jet4)) {
            throw DataError(UnknownIndexField, part.Name);
        }
        index.Columns.push_back({table.Columns[*position].Number, part.Ascending});
    }
    return index;
}

RowPointer MapRows::Add(std::size_t length) {
    const std::vector<std::uint8_t> empty(length == 0 ? mFile.Format().MapRowLength : length, 0);
    if (mPage == 0 || !DataPage(mFile, mPage).HasRoom(empty.size())) {
        mPage = mFile.Allocate();
        DataPage::Make(mFile, mPage, MapOwner);
    }
    return {mPage, DataPage(mFile, mPage).Append(empty)};
}

TableDef LayOutTable(std::uint32_t page, TableType type, std::vector<Column> columns) {
    TableDef table;
    table.Page = page;
    table.Type = type;
    std::uint16_t fixedOffset = 0;
    for (Column& column : columns) {
        column.Number = table.MaxColumnNumber++;
        column.VariableIndex = table.VariableColumns;
        if (!column.IsFixed()) {
            ++table.VariableColumns;
        } else if (column.Type != ColumnType::Boolean) {
            column.FixedOffset =
                std::exchange(fixedOffset, static_cast<std::uint16_t>(fixedOffset + column.Size));
        }
    }
    table.Columns = std::move(columns);
    return table;
}

void PlaceTable(TableDef& table, MapRows& maps) {
    table.OwnedMap = maps.Add();
    table.FreeMap = maps.Add();
    for (const Column& column : table.Columns) {
        if (!column.IsLongValue()) continue;
        const RowPointer owned = maps.Add();
        table.LongValues.push_back({column.Number, owned, maps.Add()});
    }
}

void PlaceIndex(PageFile& file, std::uint32_t tablePage, RealIndex& index, MapRows& maps) {
    index.Map = maps.Add();
    index.RootPage = file.Allocate();
    IndexTree::MakeEmptyRoot(file, index.RootPage, tablePage);
    UsageMap(file, index.Map).Add(index.RootPage);
}

}  // namespace jet
