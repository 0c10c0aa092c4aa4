// One page of an index tree: its header, and its entries as bytes that are searched and changed in place.
//
//   04 01 (leaf) or 03 01 (node) | u16 free bytes | u32 owner | ... | u32 previous | u32 next | u32 tail
//   | prefix length p | level | entry mask | entries
//
// Bit i of the mask is set when an entry ends i bytes behind the start of the entry area. The first entry is
// stored whole, every further one without its first p bytes, which equal those of the first. Entries ascend
// as unsigned bytes. A leaf entry is a key and a row pointer (u24 page, u8 row, both big-endian); a node
// entry is the last leaf entry below a child, then the child's page (u32, big-endian). A node's rightmost
// child, its tail, has no entry. Entries are addressed here by the offset at which they start, 0 to End().
#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/jet/page_file.h"

namespace jet {

/// How much room entries take up before any prefix is left out.
struct EntrySizes {
    std::size_t Bytes = 0;
    std::size_t Longest = 0;

    /// Counts an entry of length bytes, or others.
    void Add(std::size_t length) { Add({length, length}); }
    void Add(const EntrySizes& others) {
        Bytes += others.Bytes;
        Longest = std::max(Longest, others.Longest);
    }
};

class IndexPage {
  public:
    static constexpr std::size_t PointerLength = 4;  // of a row pointer, and of a child page

    /// Raises 3428 for a page that is no index page of that table, or whose entries cannot be right.
    static IndexPage Read(PageFile& file, std::uint32_t page, std::uint32_t tablePage);

    /// Whether page is a leaf of an index of that table. Raises 3428 only when the file has no such page.
    static bool IsLeafOf(PageFile& file, std::uint32_t page, std::uint32_t tablePage);

    /// An empty leaf or node on an allocated page.
    static IndexPage Make(PageFile& file, std::uint32_t page, PageType type, std::uint32_t tablePage);

    /// Bytes that all entries of a page may take up.
    static std::size_t Room(const Layout& format) { return format.PageSize - format.IndexEntriesAt; }

    /// How many bytes a leaf leaves out of entries of which these are the first and the last.
    static std::size_t PrefixOf(const Layout& format, std::string_view first, std::string_view last);

    /// Gives the page back before the object ends.
    void Release() { mPage.Release(); }

    std::uint32_t Number() const { return mPage.Number(); }
    bool IsLeaf() const { return mPage.Type() == PageType::IndexLeaf; }
    std::uint32_t Previous() const;
    std::uint32_t Next() const;
    std::uint32_t Tail() const;
    /// Page numbers; 0 means none.
    void SetPrevious(std::uint32_t page);
    void SetNext(std::uint32_t page);
    void SetTail(std::uint32_t page);

    /// Empties the page and makes it a leaf or a node; its links stay.
    void Clear(PageType type);

    /// The offset behind the last entry.
    std::size_t End() const { return mEnd; }
    bool IsEmpty() const { return mEnd == 0; }

    /// The offset of the first entry that is not below sought, End() when all are. The child page of a node
    /// entry does not count.
    std::size_t Find(std::string_view sought) const;

    /// Whether sought is above every entry. Cheaper than Find.
    bool IsAboveAll(std::string_view sought) const;

    /// Where the entry at offset ends.
    std::size_t EntryEnd(std::size_t offset) const;

    /// Where the last entry starts; the page is not empty.
    std::size_t LastEntry() const { return EntryBefore(mEnd); }

    /// The whole entry at offset, the common prefix included.
    std::string Entry(std::size_t offset) const;
    void ReadEntry(std::size_t offset, std::string& entry) const;

    /// Whether an entry starts at offset, which may be any, and is this one, or has this key.
    bool HoldsEntry(std::size_t offset, std::string_view entry) const { return Holds(offset, entry, 0); }
    bool HoldsKey(std::size_t offset, std::string_view key) const {
        return Holds(offset, key, PointerLength);
    }

    /// The child page of a node's entry.
    std::uint32_t Child(std::size_t offset) const;

    /// Where the entry before the one at offset starts; offset is not 0.
    std::size_t EntryBefore(std::size_t offset) const { return EntryStart(offset - 1); }

    /// Puts an entry at an offset that Find gave for it. False, and nothing changed, when the page has no
    /// room even with the longest common prefix.
    bool Insert(std::size_t offset, std::string_view entry);

    /// Removes the entry that starts at an offset.
    void Erase(std::size_t offset);

    std::vector<std::string> Entries() const;

    /// Bytes that ascending entries would take up on this page.
    std::size_t PackedSize(std::span<const std::string_view> entries) const;

    /// How many of the entries go to the left of two such pages so that the fuller one is as empty as can be.
    /// Both get one at least.
    std::size_t EvenSplit(std::span<const std::string_view> entries) const;

    /// Replaces all entries, a leaf's with the longest common prefix left out if they do not fit whole.
    /// False, and nothing changed, when they do not fit.
    bool Assign(std::span<const std::string_view> entries);

    /// Makes this page, a leaf, hold what another leaf of the same table holds; its links stay.
    void CopyEntries(const IndexPage& other);

  private:
    IndexPage(PageFile& file, PageHandle page);

    const std::uint8_t* Area() const { return mPage.Data() + mFormat->IndexEntriesAt; }
    std::string_view Stored(std::size_t start, std::size_t end) const;
    std::string_view WithoutPrefix(std::size_t start, std::size_t end) const;
    bool Holds(std::size_t offset, std::string_view start, std::size_t further) const;
    std::size_t MaskLength() const { return mFormat->IndexEntriesAt - mFormat->IndexMaskAt; }
    std::size_t EntryStart(std::size_t inside) const;
    std::size_t CommonPrefix(std::span<const std::string_view> entries) const;
    bool InsertRepacked(std::size_t offset, std::string_view entry);
    void SetEnd(std::size_t end);
    void SetPrefix(std::size_t prefix);
    std::uint32_t LoadLink(std::size_t at) const;
    void StoreLink(std::size_t at, std::uint32_t page);

    PageFile* mFile;
    PageHandle mPage;
    const Layout* mFormat;
    std::size_t mRoom;
    std::size_t mEnd = 0;
    std::size_t mPrefix = 0;
    std::size_t mTrailer = 0;  // bytes of a node entry that do not take part in comparisons
};

/// The last four bytes of an entry, highest first: a child page, or RowPointer::Dword.
std::uint32_t PointerOf(std::string_view entry);

/// An entry without its pointer: a leaf's key, a node's last leaf entry.
std::string_view KeyOf(std::string_view entry);
void AppendPointer(std::string& entry, std::uint32_t pointer);
void StorePointer(char* place, std::uint32_t pointer);

/// The texts as views, which live as long as they do.
std::vector<std::string_view> Views(std::span<const std::string> entries);

/// How many bytes two texts have in common at their start.
std::size_t CommonLength(std::string_view a, std::string_view b);

}  // namespace jet
