#include "platform/jet/index_page.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

#include "platform/jet/bytes.h"
#include "platform/jet/entry_mask.h"

namespace jet {

namespace {

constexpr std::uint8_t LeafLevel = 0;
constexpr std::uint8_t NodeLevel = 1;

std::string_view AsText(const std::uint8_t* bytes, std::size_t length) {
    return {reinterpret_cast<const char*>(bytes), length};
}

}  // namespace

std::uint32_t PointerOf(std::string_view entry) {
    std::uint32_t pointer = 0;
    for (const char byte : entry.substr(entry.size() - IndexPage::PointerLength))
        pointer = pointer << 8 | static_cast<std::uint8_t>(byte);
    return pointer;
}

std::string_view KeyOf(std::string_view entry) {
    return entry.substr(0, entry.size() - std::min(entry.size(), IndexPage::PointerLength));
}

void StorePointer(char* place, std::uint32_t pointer) {
    for (const unsigned shift : {24U, 16U, 8U, 0U})
        *place++ = static_cast<char>(static_cast<std::uint8_t>(pointer >> shift));
}

void AppendPointer(std::string& entry, std::uint32_t pointer) {
    entry.resize(entry.size() + IndexPage::PointerLength);
    StorePointer(&entry[entry.size() - IndexPage::PointerLength], pointer);
}

std::vector<std::string_view> Views(std::span<const std::string> entries) {
    return {entries.begin(), entries.end()};
}

std::size_t CommonLength(std::string_view a, std::string_view b) {
    return static_cast<std::size_t>(std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first - a.begin());
}

IndexPage::IndexPage(PageFile& file, PageHandle page)
    : mFile(&file), mPage(std::move(page)), mFormat(&file.Format()), mRoom(Room(*mFormat)) {
    mTrailer = IsLeaf() ? 0 : PointerLength;
}

IndexPage IndexPage::Read(PageFile& file, std::uint32_t page, std::uint32_t tablePage) {
    IndexPage result(file, file.Read(page));
    const Layout& format = *result.mFormat;
    const std::uint8_t* data = result.mPage.Data();
    const PageType type = result.mPage.Type();
    if (type != PageType::IndexLeaf && type != PageType::IndexNode) throw file.Damaged();
    if (LoadU32(data + PageOwner) != tablePage) throw file.Damaged();

    const std::size_t free = LoadU16(data + PageFreeBytes);
    if (free > result.mRoom) throw file.Damaged();
    result.mEnd = result.mRoom - free;
    result.mPrefix =
        format.IndexPrefixSize == 1 ? data[format.IndexPrefixAt] : LoadU16(data + format.IndexPrefixAt);
    if (result.IsEmpty()) {
        result.mPrefix = 0;
        return result;
    }
    if (!entry_mask::Test(data + format.IndexMaskAt, result.mEnd)) throw file.Damaged();
    if (result.mPrefix > result.EntryEnd(0)) throw file.Damaged();
    return result;
}

bool IndexPage::IsLeafOf(PageFile& file, std::uint32_t page, std::uint32_t tablePage) {
    const PageHandle handle = file.Read(page);
    return handle.Type() == PageType::IndexLeaf && LoadU32(handle.Data() + PageOwner) == tablePage;
}

IndexPage IndexPage::Make(PageFile& file, std::uint32_t page, PageType type, std::uint32_t tablePage) {
    IndexPage result(file, file.MakeNew(page, type));
    StoreU32(result.mPage.Change() + PageOwner, tablePage);
    result.Clear(type);
    return result;
}

std::uint32_t IndexPage::LoadLink(std::size_t at) const {
    return LoadU32(mPage.Data() + at);
}

void IndexPage::StoreLink(std::size_t at, std::uint32_t page) {
    StoreU32(mPage.Change() + at, page);
}

std::uint32_t IndexPage::Previous() const {
    return LoadLink(mFormat->IndexPreviousAt);
}
std::uint32_t IndexPage::Next() const {
    return LoadLink(mFormat->IndexNextAt);
}
std::uint32_t IndexPage::Tail() const {
    return LoadLink(mFormat->IndexTailAt);
}
void IndexPage::SetPrevious(std::uint32_t page) {
    StoreLink(mFormat->IndexPreviousAt, page);
}
void IndexPage::SetNext(std::uint32_t page) {
    StoreLink(mFormat->IndexNextAt, page);
}
void IndexPage::SetTail(std::uint32_t page) {
    StoreLink(mFormat->IndexTailAt, page);
}

void IndexPage::SetEnd(std::size_t end) {
    mEnd = end;
    StoreU16(mPage.Change() + PageFreeBytes, static_cast<std::uint16_t>(mRoom - end));
}

void IndexPage::SetPrefix(std::size_t prefix) {
    mPrefix = prefix;
    std::uint8_t* const at = mPage.Change() + mFormat->IndexPrefixAt;
    if (mFormat->IndexPrefixSize == 1) {
        *at = static_cast<std::uint8_t>(prefix);
    } else {
        StoreU16(at, static_cast<std::uint16_t>(prefix));
    }
}

void IndexPage::Clear(PageType type) {
    std::uint8_t* const data = mPage.Change();
    data[0] = static_cast<std::uint8_t>(type);
    data[mFormat->IndexLevelAt] = type == PageType::IndexLeaf ? LeafLevel : NodeLevel;
    std::fill_n(data + mFormat->IndexMaskAt, MaskLength() + mRoom, std::uint8_t{0});
    mTrailer = IsLeaf() ? 0 : PointerLength;
    SetTail(0);
    SetPrefix(0);
    SetEnd(0);
}

std::string_view IndexPage::Stored(std::size_t start, std::size_t end) const {
    const std::size_t length = end - start + (start == 0 ? 0 : mPrefix);
    if (length <= PointerLength + mTrailer) throw mFile->Damaged();
    return AsText(Area() + start, end - start);
}

std::string_view IndexPage::WithoutPrefix(std::size_t start, std::size_t end) const {
    std::string_view rest = Stored(start, end);
    if (start == 0) rest.remove_prefix(mPrefix);
    // A prefix that reaches into the child page leaves nothing to compare.
    rest.remove_suffix(std::min(mTrailer, rest.size()));
    return rest;
}

std::size_t IndexPage::EntryStart(std::size_t inside) const {
    return entry_mask::Previous(mPage.Data() + mFormat->IndexMaskAt, inside);
}

std::size_t IndexPage::EntryEnd(std::size_t offset) const {
    return entry_mask::Next(mPage.Data() + mFormat->IndexMaskAt, offset + 1, mEnd);
}

std::size_t IndexPage::Find(std::string_view sought) const {
    const int order = sought.substr(0, mPrefix).compare(AsText(Area(), mPrefix));
    if (order < 0) return 0;
    if (order > 0) return mEnd;
    const std::string_view rest = sought.substr(mPrefix);
    std::size_t low = 0;
    std::size_t high = mEnd;
    while (low < high) {
        const std::size_t start = EntryStart((low + high) / 2);
        const std::size_t end = EntryEnd(start);
        if (WithoutPrefix(start, end) < rest) {
            low = end;
        } else {
            high = start;
        }
    }
    return low;
}

bool IndexPage::IsAboveAll(std::string_view sought) const {
    if (IsEmpty()) return true;
    const int order = sought.substr(0, mPrefix).compare(AsText(Area(), mPrefix));
    return order != 0 ? order > 0 : WithoutPrefix(LastEntry(), mEnd) < sought.substr(mPrefix);
}

void IndexPage::ReadEntry(std::size_t offset, std::string& entry) const {
    const std::string_view stored = Stored(offset, EntryEnd(offset));
    entry.clear();
    if (offset != 0) entry += AsText(Area(), mPrefix);
    entry += stored;
}

std::string IndexPage::Entry(std::size_t offset) const {
    std::string entry;
    ReadEntry(offset, entry);
    return entry;
}

/// Whether the entry at offset begins so and has so many bytes more.
bool IndexPage::Holds(std::size_t offset, std::string_view start, std::size_t further) const {
    if (offset >= mEnd || EntryStart(offset) != offset) return false;
    const std::string_view stored = Stored(offset, EntryEnd(offset));
    const std::size_t omitted = offset == 0 ? 0 : mPrefix;
    if (start.size() + further != omitted + stored.size()) return false;
    const std::size_t shared = std::min(omitted, start.size());
    return start.substr(0, shared) == AsText(Area(), shared) && stored.starts_with(start.substr(shared));
}

std::uint32_t IndexPage::Child(std::size_t offset) const {
    const std::string_view stored = Stored(offset, EntryEnd(offset));
    // Entries differ in front of their pointers, so none leaves a part of its own out.
    if (stored.size() < PointerLength) throw mFile->Damaged();
    return PointerOf(stored);
}

std::vector<std::string> IndexPage::Entries() const {
    std::vector<std::string> entries;
    for (std::size_t offset = 0; offset < mEnd; offset = EntryEnd(offset)) entries.push_back(Entry(offset));
    return entries;
}

bool IndexPage::Insert(std::size_t offset, std::string_view entry) {
    if (IsEmpty()) {
        return Assign({&entry, 1});
    }
    const bool sharesPrefix = entry.substr(0, mPrefix) == AsText(Area(), mPrefix);
    if (!sharesPrefix || entry.size() - mPrefix > mRoom - mEnd) return InsertRepacked(offset, entry);

    // In front of the first entry the new one is stored whole, and the former first loses its prefix.
    const std::size_t at = offset == 0 ? mPrefix : offset;
    const std::size_t count = entry.size() - mPrefix;
    std::uint8_t* const data = mPage.Change();
    std::uint8_t* const area = data + mFormat->IndexEntriesAt;
    std::uint8_t* const mask = data + mFormat->IndexMaskAt;
    if (at < mEnd) {
        std::memmove(area + at + count, area + at, mEnd - at);
        entry_mask::MoveUp(mask, at, mEnd, count);
    }
    const std::string_view stored = offset == 0 ? entry : entry.substr(mPrefix);
    std::memcpy(area + offset, stored.data(), stored.size());
    entry_mask::Set(mask, at + count);
    SetEnd(mEnd + count);
    return true;
}

bool IndexPage::InsertRepacked(std::size_t offset, std::string_view entry) {
    std::vector<std::string> entries;
    for (std::size_t at = 0; at < mEnd; at = EntryEnd(at)) {
        if (at == offset) entries.emplace_back(entry);
        entries.push_back(Entry(at));
    }
    if (offset == mEnd) entries.emplace_back(entry);
    return Assign(Views(entries));
}

void IndexPage::Erase(std::size_t offset) {
    const std::size_t end = EntryEnd(offset);
    if (offset == 0 && end == mEnd) return Clear(mPage.Type());
    // Behind an erased first entry the next one becomes whole: it inherits the prefix bytes.
    const std::size_t at = offset == 0 ? mPrefix : offset;
    const std::size_t count = end - at;
    std::uint8_t* const data = mPage.Change();
    std::uint8_t* const area = data + mFormat->IndexEntriesAt;
    std::memmove(area + at, area + end, mEnd - end);
    std::fill_n(area + mEnd - count, count, std::uint8_t{0});
    entry_mask::MoveDown(data + mFormat->IndexMaskAt, end, mEnd, count);
    SetEnd(mEnd - count);
}

/// Entries ascend, so what the first and the last have in common all have in common.
std::size_t IndexPage::PrefixOf(const Layout& format, std::string_view first, std::string_view last) {
    const std::size_t longest = format.IndexPrefixSize == 1 ? std::numeric_limits<std::uint8_t>::max()
                                                            : std::numeric_limits<std::uint16_t>::max();
    return std::min(longest, CommonLength(first, last));
}

std::size_t IndexPage::CommonPrefix(std::span<const std::string_view> entries) const {
    if (!IsLeaf() || entries.size() < 2) return 0;
    return PrefixOf(*mFormat, entries.front(), entries.back());
}

std::size_t IndexPage::PackedSize(std::span<const std::string_view> entries) const {
    const std::size_t prefix = CommonPrefix(entries);
    std::size_t size = prefix;
    for (const std::string_view entry : entries) size += entry.size() - prefix;
    return size;
}

std::size_t IndexPage::EvenSplit(std::span<const std::string_view> entries) const {
    const auto left = [&](std::size_t count) { return PackedSize(entries.first(count)); };
    const auto right = [&](std::size_t count) { return PackedSize(entries.subspan(count)); };
    std::size_t low = 1;
    std::size_t high = entries.size() - 1;
    while (low < high) {
        const std::size_t count = (low + high) / 2;
        if (left(count) < right(count)) {
            low = count + 1;
        } else {
            high = count;
        }
    }
    return low > 1 && right(low - 1) < left(low) ? low - 1 : low;
}

bool IndexPage::Assign(std::span<const std::string_view> entries) {
    if (PackedSize(entries) > mRoom) return false;
    std::size_t whole = 0;
    for (const std::string_view entry : entries) whole += entry.size();
    const std::size_t prefix = whole <= mRoom ? 0 : CommonPrefix(entries);

    const std::uint32_t tail = Tail();
    Clear(mPage.Type());
    SetTail(tail);
    std::uint8_t* const data = mPage.Change();
    std::size_t end = 0;
    for (const std::string_view entry : entries) {
        const std::string_view stored = entry.substr(end == 0 ? 0 : prefix);
        std::memcpy(data + mFormat->IndexEntriesAt + end, stored.data(), stored.size());
        end += stored.size();
        entry_mask::Set(data + mFormat->IndexMaskAt, end);
    }
    SetPrefix(prefix);
    SetEnd(end);
    return true;
}

void IndexPage::CopyEntries(const IndexPage& other) {
    std::memcpy(mPage.Change() + mFormat->IndexMaskAt, other.mPage.Data() + mFormat->IndexMaskAt,
                mFormat->PageSize - mFormat->IndexMaskAt);
    SetPrefix(other.mPrefix);
    SetEnd(other.mEnd);
}

}  // namespace jet
