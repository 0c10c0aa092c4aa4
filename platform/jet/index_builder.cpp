#include "platform/jet/index_builder.h"

#include <algorithm>
#include <utility>

namespace jet {

IndexBuilder::IndexBuilder(PageFile& file, UsageMap pages, std::uint32_t tablePage)
    : mFile(file), mPages(pages), mTablePage(tablePage), mRoom(IndexPage::Room(file.Format())) {}

std::uint32_t IndexBuilder::MostPages(const Layout& format, const EntrySizes& sizes) {
    // A page is closed when the next entry does not fit, so it has less than one entry's room left.
    const std::size_t room = IndexPage::Room(format);
    const std::size_t children = std::max<std::size_t>(2, room / (sizes.Longest + IndexPage::PointerLength));
    std::size_t pagesOfHeight = sizes.Bytes / (room - sizes.Longest) + 1;
    std::size_t pages = pagesOfHeight;
    while (pagesOfHeight > 1) {
        pagesOfHeight = (pagesOfHeight + children - 1) / children;
        pages += pagesOfHeight;
    }
    return static_cast<std::uint32_t>(pages);
}

std::uint32_t IndexBuilder::TakePage() {
    const std::uint32_t page = mFile.Allocate();
    mPages.Add(page);
    return page;
}

// Leaves

void IndexBuilder::Add(std::string_view entry) {
    if (!mEnds.empty()) {
        const std::size_t prefix =
            IndexPage::PrefixOf(mFile.Format(), std::string_view(mBytes).substr(0, mEnds.front()), entry);
        if (mBytes.size() + entry.size() - mEnds.size() * prefix > mRoom) CloseLeaf();
    }
    mBytes += entry;
    mEnds.push_back(mBytes.size());
}

bool IndexBuilder::AddLeaf(const IndexPage& leaf) {
    if (!mEnds.empty()) return false;
    const bool keep = mFile.IsNew(leaf.Number());
    IndexPage own = keep ? IndexPage::Read(mFile, leaf.Number(), mTablePage)
                         : IndexPage::Make(mFile, TakePage(), PageType::IndexLeaf, mTablePage);
    if (keep) {
        mKept.insert(leaf.Number());
    } else {
        own.CopyEntries(leaf);
    }
    ChainLeaf(own);
    AddChild(0, own.Number(), own.Entry(own.LastEntry()));
    return true;
}

/// Puts a leaf at the chain's end.
void IndexBuilder::ChainLeaf(IndexPage& leaf) {
    if (mLastLeaf != 0) IndexPage::Read(mFile, mLastLeaf, mTablePage).SetNext(leaf.Number());
    leaf.SetPrevious(mLastLeaf);
    leaf.SetNext(0);
    mLastLeaf = leaf.Number();
}

/// Puts the entries in hand on a page.
void IndexBuilder::FillLeaf(std::uint32_t page) {
    std::vector<std::string_view> entries;
    entries.reserve(mEnds.size());
    std::size_t start = 0;
    for (const std::size_t end : mEnds)
        entries.push_back(std::string_view(mBytes).substr(std::exchange(start, end), end - start));
    IndexPage leaf = IndexPage::Make(mFile, page, PageType::IndexLeaf, mTablePage);
    if (!leaf.Assign(entries)) throw mFile.Damaged();
    ChainLeaf(leaf);
}

void IndexBuilder::CloseLeaf() {
    mFile.Pause();
    const std::uint32_t page = TakePage();
    FillLeaf(page);
    AddChild(0, page, std::string_view(mBytes).substr(mEnds.size() > 1 ? mEnds[mEnds.size() - 2] : 0));
    mBytes.clear();
    mEnds.clear();
}

// Nodes

/// Gives the node of that height in hand a child; height 0 are the parents of leaves.
void IndexBuilder::AddChild(std::size_t height, std::uint32_t page, std::string_view lastEntry) {
    if (height == mLevels.size()) mLevels.emplace_back();
    if (mLevels[height].LastChild != 0) {
        const std::size_t size = mLevels[height].LastEntry.size() + IndexPage::PointerLength;
        if (mLevels[height].Size + size > mRoom) {
            CloseNode(height);
        } else {
            Level& level = mLevels[height];
            if (height > 0) LinkNodes(level.LastChild, page);
            level.Size += size;
            level.Entries.push_back(std::move(level.LastEntry));
            AppendPointer(level.Entries.back(), level.LastChild);
        }
    }
    mLevels[height].LastChild = page;
    mLevels[height].LastEntry = lastEntry;
}

/// Writes the node in hand, which is full, and begins the next one.
void IndexBuilder::CloseNode(std::size_t height) {
    const Level level = std::exchange(mLevels[height], {});
    const std::uint32_t page = TakePage();
    WriteNode(level, page);
    AddChild(height + 1, page, level.LastEntry);
}

/// The last child becomes the tail; without another child it gets an entry.
void IndexBuilder::WriteNode(const Level& level, std::uint32_t page) {
    IndexPage node = IndexPage::Make(mFile, page, PageType::IndexNode, mTablePage);
    if (!level.Entries.empty()) {
        if (!node.Assign(Views(level.Entries))) throw mFile.Damaged();
        node.SetTail(level.LastChild);
        return;
    }
    std::string only = level.LastEntry;
    AppendPointer(only, level.LastChild);
    if (!node.Insert(0, only)) throw mFile.Damaged();
}

/// Nodes are chained among the children of one parent only.
void IndexBuilder::LinkNodes(std::uint32_t left, std::uint32_t right) {
    IndexPage::Read(mFile, left, mTablePage).SetNext(right);
    IndexPage::Read(mFile, right, mTablePage).SetPrevious(left);
}

void IndexBuilder::Finish(std::uint32_t root) {
    if (mLastLeaf == 0) return FillLeaf(root);
    if (!mEnds.empty()) CloseLeaf();
    for (std::size_t height = 0; height + 1 < mLevels.size(); ++height) CloseNode(height);
    WriteNode(mLevels.back(), root);
}

}  // namespace jet
