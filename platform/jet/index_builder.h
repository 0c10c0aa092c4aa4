// Makes an index tree from entries that come in ascending order, page after page: leaves are filled as far as
// they go, and a node is written when it is full. Nothing leads to the pages before the root is written.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "platform/jet/index_page.h"
#include "platform/jet/page_file.h"
#include "platform/jet/usage_map.h"

namespace jet {

class IndexBuilder {
  public:
    /// The tree's pages enter the map; tablePage owns them.
    IndexBuilder(PageFile& file, UsageMap pages, std::uint32_t tablePage);

    /// Pages, the root included, that a tree of such entries takes at most.
    static std::uint32_t MostPages(const Layout& format, const EntrySizes& sizes);

    /// Adds an entry above all others.
    void Add(std::string_view entry);

    /// Adds a leaf of the tree that this one follows; its entries are above all others. A new page becomes
    /// part of this tree, an old one is copied. False, and nothing done, while the leaf in hand has entries.
    bool AddLeaf(const IndexPage& leaf);

    /// Writes what is left, and the root on an allocated page that is in the map already. Called once, last.
    void Finish(std::uint32_t root);

    /// Whether a leaf of the former tree is part of this one.
    bool IsKept(std::uint32_t page) const { return mKept.contains(page); }

  private:
    /// The nodes of one height, of which one is in hand. Its last child waits outside the entries: it may
    /// turn out to be the tail.
    struct Level {
        std::vector<std::string> Entries;
        std::size_t Size = 0;  // of the entries in bytes
        std::uint32_t LastChild = 0;
        std::string LastEntry;  // the last leaf entry below LastChild
    };

    std::uint32_t TakePage();
    void FillLeaf(std::uint32_t page);
    void ChainLeaf(IndexPage& leaf);
    void CloseLeaf();
    void AddChild(std::size_t height, std::uint32_t page, std::string_view lastEntry);
    void CloseNode(std::size_t height);
    void WriteNode(const Level& level, std::uint32_t page);
    void LinkNodes(std::uint32_t left, std::uint32_t right);

    PageFile& mFile;
    UsageMap mPages;
    std::uint32_t mTablePage;
    std::size_t mRoom;

    // The leaf in hand, which may turn out to be the root while there is no other: its entries one behind the
    // other.
    std::string mBytes;
    std::vector<std::size_t> mEnds;
    std::uint32_t mLastLeaf = 0;  // that is written
    std::unordered_set<std::uint32_t> mKept;
    std::vector<Level> mLevels;  // from the leaves' parents up
};

}  // namespace jet
