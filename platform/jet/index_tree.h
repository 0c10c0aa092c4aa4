// An index as a tree of pages. Leaves hold one entry a row (key and row pointer) and are chained from left to
// right; entries ascend strictly over the whole chain. Nodes hold, for each child but the rightmost, the last
// leaf entry below it. The root page never changes its number; the usage map names every page of the tree.
//
// A leaf that is full is packed first (see IndexPage) and split when that gives no room: a new greatest entry
// opens a new leaf and leaves the full one full, so rows that come in the index's order fill every page; any
// other entry splits its leaf in the middle.
//
// An Exclusive file takes entries by Merge, which makes the tree anew.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/jet/format.h"
#include "platform/jet/index_page.h"
#include "platform/jet/page_file.h"
#include "platform/jet/usage_map.h"

namespace jet {

class PendingEntries;

class IndexTree {
  public:
    class Cursor;

    /// Pages that one Insert or Remove takes at most: see PageFile::Reserve.
    static constexpr std::uint32_t MostNewPages = 48;

    IndexTree(PageFile& file, UsageMap pages, std::uint32_t tablePage, std::uint32_t rootPage)
        : mFile(file), mPages(pages), mTablePage(tablePage), mRootPage(rootPage) {}

    /// Fills an allocated page as the root of an index without entries.
    static void MakeEmptyRoot(PageFile& file, std::uint32_t page, std::uint32_t tablePage);

    /// The longest key that leaves every page room for two entries.
    static std::size_t MaxKeyLength(const Layout& format) {
        return IndexPage::Room(format) / 2 - 2 * IndexPage::PointerLength;
    }

    /// Adds an entry. Raises 3047 for a key longer than MaxKeyLength, 3428 for a damaged tree (an entry that
    /// is there already included), 3036 when the file is full.
    void Insert(std::string_view key, RowPointer row);

    /// Adds waiting entries, and clears them, by making the tree anew: on new pages, except for a root page
    /// that is new itself, which stays where it is. In an Exclusive file only. Returns how many keys the tree
    /// did not have. Raises 3428 for a damaged tree (an entry that is there already included), 3036 when the
    /// file is full (see PagesToMerge).
    std::uint32_t Merge(PendingEntries& waiting);

    /// Pages that Merge allocates at most for waiting entries of these sizes.
    std::uint32_t PagesToMerge(const EntrySizes& waiting) const;

    std::uint32_t RootPage() const { return mRootPage; }

    /// The tree's map has moved.
    void SetPages(UsageMap pages) { mPages = pages; }

    /// Takes an entry out. Raises 3428 when it is not there.
    void Remove(std::string_view key, RowPointer row);

    /// Whether any row has exactly this key.
    bool Contains(std::string_view key) const;

    /// A cursor at the first entry, or at the first whose key is not below key.
    Cursor First() const;
    Cursor LowerBound(std::string_view key) const;

  private:
    struct Node;

    static constexpr std::size_t MaxDepth = 32;

    /// The pages from the root down to a leaf.
    struct Path {
        std::array<std::uint32_t, MaxDepth> Pages;
        std::size_t Count = 0;
    };

    struct Place {
        Path Way;
        IndexPage Leaf;
        std::size_t Offset;  // in the leaf, of the first entry not below the one sought
        bool AllTails;       // every step went to a node's tail: the leaf is the last of the chain
    };

    IndexPage Read(std::uint32_t page) const { return IndexPage::Read(mFile, page, mTablePage); }
    Place Locate(std::string_view entry) const;
    template <typename Visit>
    void ForEachLeaf(Visit visit) const;
    const EntrySizes& Sizes() const;
    void SplitLeaf(Place place, std::string_view entry);
    IndexPage MakePage(PageType type);
    IndexPage MakeRightOf(IndexPage& page);
    void FreePage(IndexPage page);
    IndexPage PushRootDown(Path& way);

    // Level is the place of a page in its path, 0 for the root.
    Node ReadNode(std::uint32_t page) const;
    void StoreNode(const Path& way, std::size_t level, Node node);
    void SplitNode(Path way, std::size_t level, Node node);
    void CutLink(std::uint32_t left, std::uint32_t right);
    void AddSibling(const Path& way, std::size_t level, std::string lastOfLeft, std::uint32_t right);
    void CorrectSeparators(const Path& way, std::size_t level, const std::string& last);
    void RemoveChild(const Path& way, std::size_t level);
    std::string LastEntryBelow(std::uint32_t page) const;

    PageFile& mFile;
    UsageMap mPages;
    std::uint32_t mTablePage;
    std::uint32_t mRootPage;

    // The last leaf of the chain when nodes lead to it by their tails only; 0 = not known. A file that other
    // programs may change is searched anew every time.
    mutable std::uint32_t mLastLeaf = 0;

    mutable std::optional<EntrySizes> mSizes;  // of the entries, where they are known
    std::uint32_t mMerges = 0;

    std::string mEntry;  // the entry in hand; kept for its memory
};

/// A place in an index. It finds its way when entries are added or taken out behind its back: it then goes on
/// behind the entry at which it stands.
class IndexTree::Cursor {
  public:
    bool AtEnd() const { return mLeaf == 0; }

    /// To the next entry; at the end it stays there. Raises 3428 for a chain of leaves that does not ascend.
    void Next();

    /// The entry's row and key; not at the end.
    RowPointer Row() const;
    std::string_view Key() const;

  private:
    friend class IndexTree;

    explicit Cursor(const IndexTree& tree) : mTree(&tree) {}

    void Seek(std::string_view entry);
    void Settle(IndexPage leaf, std::size_t offset);
    bool Resume();

    const IndexTree* mTree;
    std::uint32_t mLeaf = 0;
    std::size_t mOffset = 0;
    std::uint32_t mMerges = 0;  // the tree's, when mLeaf was found
    std::string mEntry;
};

}  // namespace jet
