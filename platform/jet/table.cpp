#include "platform/jet/table.h"

#include <algorithm>
#include <map>
#include <utility>

#include "platform/jet/bytes.h"
#include "platform/jet/long_value.h"
#include "platform/jet/row_writer.h"
#include "platform/jet/schema.h"
#include "platform/jet/text_codec.h"

namespace jet {

namespace {

constexpr unsigned MostMoves = 8;  // of one row, before its pointers count as a cycle
constexpr std::size_t MovedPointerLength = 4;
constexpr std::size_t MostWaitingBytes = std::size_t{16} << 20;  // while an index is built
constexpr std::uint32_t LeastMapsOnPage = 25;  // of the longest rows that a new map has in either version

bool IsNull(const Value& value) {
    return std::holds_alternative<std::monostate>(value);
}

}  // namespace

Table::Table(PageFile& file, std::uint32_t definitionPage)
    : mFile(file), mDefinition(ReadTableDef(file, definitionPage)), mOwnedPages(file, mDefinition.OwnedMap) {
    for (const RealIndex& index : mDefinition.RealIndexes) {
        mIndexes.push_back(std::make_unique<OpenIndex>(file, mDefinition, index));
    }
}

Table::~Table() = default;

// Reading

Table::Place Table::Locate(RowPointer row) const {
    for (unsigned moves = 0; moves < MostMoves; ++moves) {
        DataPage page(mFile, row.Page);
        if (page.Owner() != mDefinition.Page) throw mFile.Damaged();
        const RowSlot slot = page.Slot(row.Row);
        if (slot.IsDeleted()) throw DataError(RecordDeleted);
        if (!slot.IsMovedAway()) return {std::move(page), row.Row};
        if (slot.Length < MovedPointerLength) throw mFile.Damaged();
        row = RowPointer::FromDword(LoadU32(page.Row(row.Row).data()));
    }
    throw mFile.Damaged();
}

Value Table::ReadValue(const RowReader& reader, const Column& column) const {
    if (!column.IsLongValue()) return reader.Read(column);
    const auto field = reader.Field(column);
    if (!field) return {};
    const std::vector<std::uint8_t> bytes = ReadLongValue(mFile, *field);
    if (column.Type == ColumnType::Memo) return DecodeText(bytes, mFile.FileVersion());
    return Binary{std::string(bytes.begin(), bytes.end())};
}

void Table::Read(RowPointer row, std::vector<Value>& values) const {
    const Place place = Locate(row);
    const RowReader reader(mFile, mDefinition, place.Page.Row(place.Row));
    values.resize(mDefinition.Columns.size());
    std::ranges::transform(mDefinition.Columns, values.begin(),
                           [&](const Column& column) { return ReadValue(reader, column); });
}

Value Table::ReadColumn(RowPointer row, std::size_t column) const {
    const Place place = Locate(row);
    return ReadValue(RowReader(mFile, mDefinition, place.Page.Row(place.Row)), mDefinition.Columns[column]);
}

std::optional<RowPointer> Table::FirstRow() const {
    return RowFrom(0, 0);
}

std::optional<RowPointer> Table::NextRow(RowPointer row) const {
    return RowFrom(row.Page, row.Row + 1U);
}

/// The first row at or behind a slot. New places of moved rows are reached through their old ones only.
std::optional<RowPointer> Table::RowFrom(std::uint32_t from, unsigned row) const {
    for (auto number = mOwnedPages.Next(from); number; number = mOwnedPages.Next(*number + 1)) {
        const DataPage page(mFile, *number);
        if (page.Owner() != mDefinition.Page) throw mFile.Damaged();
        for (unsigned i = *number == from ? row : 0; i < page.RowCount() && i < MaxRowsPerPage; ++i) {
            const RowSlot slot = page.Slot(i);
            if (slot.IsOrdinary() || slot.IsMovedAway())
                return RowPointer{*number, static_cast<std::uint8_t>(i)};
        }
    }
    return std::nullopt;
}

// Adding

RowPointer Table::Insert(std::span<const Value> values) {
    if (mFile.FileVersion() == Version::Jet3) throw DataError(ReadOnlyDatabase);
    if (values.size() != mDefinition.Columns.size()) throw DataError(InvalidDataArgument);
    SharedChange change(mFile);
    BeginChange();
    if (!mWriter) mWriter = std::make_unique<RowWriter>(mFile, mDefinition);

    mWriter->Encode(values);
    CheckKeys(values);
    mFile.Reserve(mWriter->MostNewPages() + PagesForEntries());

    const RowPointer row = mWriter->Write();
    AddEntries(row);
    ++mDefinition.RowCount;
    mCountsChanged = true;
    if (mFile.IsShared()) Publish();
    change.Commit();
    mFile.Settle();
    return row;
}

/// Brings the table into a state that can be changed.
void Table::BeginChange() {
    if (mFile.IsShared()) {
        ReadTableCounts(mFile, mDefinition);
    } else if (!mFile.IsNew(mDefinition.OwnedMap.Page)) {
        MoveMaps();
    }
}

/// All the table's maps. They stand on one page or, when that is full, on several.
std::vector<RowPointer*> Table::Maps() {
    std::vector<RowPointer*> maps{&mDefinition.OwnedMap, &mDefinition.FreeMap};
    for (LongValueMaps& column : mDefinition.LongValues) {
        maps.push_back(&column.Owned);
        maps.push_back(&column.Free);
    }
    for (RealIndex& index : mDefinition.RealIndexes) maps.push_back(&index.Map);
    return maps;
}

/// Moves the maps to a new page. The old one is freed when no other table's maps stand on it.
void Table::MoveMaps() {
    const std::vector<RowPointer*> maps = Maps();
    std::size_t pages = maps.size() / LeastMapsOnPage + 1;
    for (const RowPointer* place : maps) pages += UsageMap(mFile, *place).BitmapPages().size();
    mFile.Reserve(static_cast<std::uint32_t>(pages));
    std::map<std::uint32_t, unsigned> left;  // how many maps leave a page
    MapRows rows(mFile);
    for (RowPointer* place : maps) {
        ++left[place->Page];
        UsageMap map(mFile, *place);
        map.MoveTo(rows.Add(DataPage(mFile, place->Page).Slot(place->Row).Length));
        *place = map.Row();
    }
    for (const auto& [page, count] : left) {
        if (DataPage(mFile, page).RowCount() == count) mFile.Free(page);
    }
    mOwnedPages = UsageMap(mFile, mDefinition.OwnedMap);
    for (std::size_t i = 0; i < mIndexes.size(); ++i)
        mIndexes[i]->Rules.Tree().SetPages(UsageMap(mFile, mDefinition.RealIndexes[i].Map));
    mWriter.reset();
    mPlacesChanged = true;
}

void Table::CheckKeys(std::span<const Value> values) {
    for (const auto& index : mIndexes) {
        index->Rules.MakeKey(values, index->Key);
        index->Rules.CheckNulls(index->Key);
    }
    for (const auto& index : mIndexes) {
        index->IsNew = index->Rules.Lists(index->Key) && index->Rules.CheckDuplicate(index->Key);
    }
}

std::uint32_t Table::PagesForEntries() {
    std::uint32_t pages = 0;
    for (const auto& index : mIndexes) {
        if (index->Rules.Lists(index->Key)) pages += index->Rules.PagesToAdd(index->Key);
    }
    return pages;
}

void Table::AddEntries(RowPointer row) {
    for (std::size_t i = 0; i < mIndexes.size(); ++i) {
        OpenIndex& index = *mIndexes[i];
        if (!index.Rules.Lists(index.Key)) continue;
        index.Rules.Add(index.Key, row);
        if (mFile.IsShared() && index.IsNew) ++mDefinition.RealIndexes[i].Distinct;
    }
}

// Changing

void Table::UpdateFixed(RowPointer row, std::span<const Change> changes) {
    SharedChange change(mFile);
    BeginChange();
    for (std::size_t i = 0; i < mIndexes.size(); ++i) MergeWaiting(i);

    Place place = Locate(row);
    const RowReader reader(mFile, mDefinition, place.Page.Row(place.Row));
    const auto old = place.Page.Row(place.Row);
    std::vector<std::uint8_t> bytes(old.begin(), old.end());
    for (const Change& one : changes) StoreFixed(bytes, reader, one);
    const std::vector<ChangedKey> changed = ChangedKeys(reader, changes);
    mFile.Reserve(static_cast<std::uint32_t>(changed.size()) * 2 * IndexTree::MostNewPages);

    std::ranges::copy(bytes, place.Page.ChangeRow(place.Row).begin());
    MoveEntries(row, changed);
    if (mFile.IsShared()) Publish();
    change.Commit();
    mFile.Settle();
}

/// The indexes that the changes concern, checked: nothing stands in their way.
std::vector<Table::ChangedKey> Table::ChangedKeys(const RowReader& reader, std::span<const Change> changes) {
    std::vector<ChangedKey> changed;
    std::vector<Value> values(mDefinition.Columns.size());
    for (std::size_t i = 0; i < mIndexes.size(); ++i) {
        OpenIndex& index = *mIndexes[i];
        const auto covered = [&](const Change& change) { return index.Rules.Covers(change.Column); };
        if (std::ranges::none_of(changes, covered)) continue;
        for (std::size_t k = 0; k < values.size(); ++k) {
            if (index.Rules.Covers(k)) values[k] = reader.Read(mDefinition.Columns[k]);
        }
        RowKey old;
        index.Rules.MakeKey(values, old);
        for (const Change& change : changes) values[change.Column] = change.To;
        index.Rules.MakeKey(values, index.Key);
        if (index.Key.Bytes != old.Bytes) changed.push_back({i, std::move(old)});
    }
    for (const ChangedKey& key : changed) mIndexes[key.Index]->Rules.CheckNulls(mIndexes[key.Index]->Key);
    for (const ChangedKey& key : changed) {
        OpenIndex& index = *mIndexes[key.Index];
        index.IsNew = index.Rules.Lists(index.Key) && index.Rules.CheckDuplicate(index.Key);
    }
    return changed;
}

void Table::MoveEntries(RowPointer row, std::span<const ChangedKey> changed) {
    for (const auto& [number, old] : changed) {
        OpenIndex& index = *mIndexes[number];
        if (index.Rules.Lists(old)) index.Rules.Tree().Remove(old.Bytes, row);
        if (index.Rules.Lists(index.Key)) index.Rules.Tree().Insert(index.Key.Bytes, row);
        if (!index.IsNew) continue;
        ++mDefinition.RealIndexes[number].Distinct;
        mCountsChanged = true;
    }
}

/// Puts a value into a row's bytes, of which reader tells the places.
void Table::StoreFixed(std::span<std::uint8_t> row, const RowReader& reader, const Change& change) const {
    const Column& column = mDefinition.Columns[change.Column];
    if (!column.IsFixed() || !reader.Holds(column)) throw DataError(NotSupported);
    const bool isBoolean = column.Type == ColumnType::Boolean;
    const bool set = isBoolean ? BooleanOf(change.To) : !IsNull(change.To);
    if (!isBoolean) {
        std::vector<std::uint8_t> bytes(column.Size);
        if (set) EncodeFixed(column, change.To, bytes.data());
        const std::size_t start = reader.FixedAt() + column.FixedOffset;
        if (start + bytes.size() > reader.MaskAt()) throw mFile.Damaged();
        std::ranges::copy(bytes, &row[start]);
    }
    std::uint8_t& mask = row[reader.MaskAt() + column.Number / 8U];
    const auto bit = static_cast<std::uint8_t>(1U << (column.Number % 8U));
    mask = static_cast<std::uint8_t>(set ? mask | bit : mask & ~bit);
}

// Indexes

const IndexTree& Table::Index(std::size_t realIndex) {
    MergeWaiting(realIndex);
    return mIndexes[realIndex]->Rules.Tree();
}

void Table::MergeWaiting(std::size_t realIndex) {
    RealIndex& index = mDefinition.RealIndexes[realIndex];
    TableIndex& rules = mIndexes[realIndex]->Rules;
    index.Distinct += rules.MergeWaiting();
    mPlacesChanged = mPlacesChanged || index.RootPage != rules.Tree().RootPage();
    index.RootPage = rules.Tree().RootPage();
}

void Table::AddIndex(RealIndex index, LogicalIndex name) {
    BeginChange();
    MapRows maps(mFile, mDefinition.RealIndexes.empty() ? mDefinition.FreeMap.Page
                                                        : mDefinition.RealIndexes.back().Map.Page);
    PlaceIndex(mFile, mDefinition.Page, index, maps);
    auto open = std::make_unique<OpenIndex>(mFile, mDefinition, index);
    try {
        BuildIndex(index, *open);
    } catch (...) {
        open->Rules.DropWaiting();
        FreeIndexPages(index);
        throw;
    }
    index.RootPage = open->Rules.Tree().RootPage();
    mDefinition.RealIndexes.push_back(std::move(index));
    mDefinition.LogicalIndexes.push_back(std::move(name));
    mIndexes.push_back(std::move(open));
    WriteTableDef(mFile, mDefinition);
    mCountsChanged = mPlacesChanged = false;
}

void Table::BuildIndex(RealIndex& index, OpenIndex& open) {
    std::vector<Value> values(mDefinition.Columns.size());
    for (auto row = FirstRow(); row; row = NextRow(*row)) {
        {
            const Place place = Locate(*row);
            const RowReader reader(mFile, mDefinition, place.Page.Row(place.Row));
            for (std::size_t i = 0; i < values.size(); ++i) {
                if (open.Rules.Covers(i)) values[i] = reader.Read(mDefinition.Columns[i]);
            }
        }
        open.Rules.MakeKey(values, open.Key);
        open.Rules.CheckNulls(open.Key);
        if (!open.Rules.Lists(open.Key)) continue;
        const bool isNew = open.Rules.CheckDuplicate(open.Key);
        mFile.Reserve(open.Rules.PagesToAdd(open.Key));
        open.Rules.Add(open.Key, *row);
        if (mFile.IsShared() && isNew) ++index.Distinct;
        ++index.Entries;
        if (open.Rules.WaitingBytes() > MostWaitingBytes) index.Distinct += open.Rules.MergeWaiting();
        mFile.Settle();
    }
    index.Distinct += open.Rules.MergeWaiting();
}

/// Undoes what was done for an index that is not to be: its map is still the last on its page.
void Table::FreeIndexPages(const RealIndex& index) {
    UsageMap pages(mFile, index.Map);
    for (auto page = pages.Next(0); page; page = pages.Next(*page + 1)) {
        pages.Remove(*page);
        mFile.Free(*page);
    }
    for (const std::uint32_t page : pages.BitmapPages()) mFile.Free(page);
    DataPage maps(mFile, index.Map.Page);
    maps.RemoveLast();
    if (maps.RowCount() == 0) mFile.Free(maps.Number());
}

void Table::Publish() {
    for (std::size_t i = 0; i < mIndexes.size(); ++i) MergeWaiting(i);
    if (mPlacesChanged) {
        WriteTablePlaces(mFile, mDefinition);
    } else if (mCountsChanged) {
        WriteTableCounts(mFile, mDefinition);
    }
    mCountsChanged = mPlacesChanged = false;
}

std::size_t Table::WaitingBytes() const {
    std::size_t bytes = 0;
    for (const auto& index : mIndexes) bytes += index->Rules.WaitingBytes();
    return bytes;
}

}  // namespace jet
