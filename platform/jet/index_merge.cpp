// Merging of waiting entries into an index tree: the tree is made anew from its old leaves and the waiting
// entries.
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/jet/errors.h"
#include "platform/jet/index_builder.h"
#include "platform/jet/index_tree.h"
#include "platform/jet/pending_entries.h"

namespace jet {

namespace {

/// Brings the entries of the old leaves and the waiting ones into one ascending sequence.
class Sequence {
  public:
    Sequence(PageFile& file, IndexBuilder& builder, std::span<const std::string_view> waiting)
        : mFile(file), mBuilder(builder), mWaiting(waiting) {}

    /// Adds the next leaf, with the waiting entries below its last one.
    void AddLeaf(const IndexPage& leaf) {
        if (leaf.IsEmpty() || Copy(leaf)) return;
        for (std::size_t offset = 0; offset < leaf.End(); offset = leaf.EntryEnd(offset)) {
            leaf.ReadEntry(offset, mCurrent);
            while (!mWaiting.empty() && mWaiting.front() < mCurrent) AddWaiting(KeyOf(mCurrent));
            if (!mWaiting.empty() && mWaiting.front() == mCurrent) throw mFile.Damaged();
            mBuilder.Add(mCurrent);
            std::swap(mBefore, mCurrent);
        }
    }

    void AddRest() {
        while (!mWaiting.empty()) AddWaiting({});
    }

    /// How many keys the old leaves did not have.
    std::uint32_t NewKeys() const { return mNewKeys; }

  private:
    /// A leaf into which no waiting entry falls stays as it is, where that leaves no gap in front of it; not
    /// the last one, which fills up.
    bool Copy(const IndexPage& leaf) {
        if (leaf.Next() == 0) return false;
        leaf.ReadEntry(leaf.LastEntry(), mCurrent);
        const bool untouched = mWaiting.empty() || mCurrent < mWaiting.front();
        if (!untouched || !mBuilder.AddLeaf(leaf)) return false;
        std::swap(mBefore, mCurrent);
        return true;
    }

    void AddWaiting(std::string_view keyBehind) {
        const std::string_view entry = mWaiting.front();
        const std::string_view key = KeyOf(entry);
        if (key != mLastKey && key != KeyOf(mBefore) && key != keyBehind) ++mNewKeys;
        mLastKey = key;
        mBuilder.Add(entry);
        mWaiting = mWaiting.subspan(1);
    }

    PageFile& mFile;
    IndexBuilder& mBuilder;
    std::span<const std::string_view> mWaiting;
    std::string_view mLastKey;  // of the waiting entry added last
    std::string mBefore;        // the old entry added last
    std::string mCurrent;
    std::uint32_t mNewKeys = 0;
};

}  // namespace

/// Calls visit for the leaves from left to right.
template <typename Visit>
void IndexTree::ForEachLeaf(Visit visit) const {
    std::uint32_t number = Locate({}).Leaf.Number();
    for (std::uint32_t steps = 0; number != 0; ++steps) {
        const IndexPage leaf = Read(number);
        if (!leaf.IsLeaf() || steps > mFile.PageCount()) throw mFile.Damaged();
        number = leaf.Next();  // before visit, which may give the leaf another place
        visit(leaf);
        mFile.Pause();
    }
}

const EntrySizes& IndexTree::Sizes() const {
    if (!mSizes) {
        EntrySizes sizes;
        std::string entry;
        ForEachLeaf([&](const IndexPage& leaf) {
            for (std::size_t offset = 0; offset < leaf.End(); offset = leaf.EntryEnd(offset)) {
                leaf.ReadEntry(offset, entry);
                sizes.Add(entry.size());
            }
        });
        mSizes = sizes;
    }
    return *mSizes;
}

std::uint32_t IndexTree::PagesToMerge(const EntrySizes& waiting) const {
    EntrySizes sizes = Sizes();
    sizes.Add(waiting);
    const Layout& format = mFile.Format();
    const std::uint32_t pages = IndexBuilder::MostPages(format, sizes);
    return pages +
           2 * (pages / format.PagesPerBitmap() + 1);  // bitmap pages of the index's map and the global one
}

std::uint32_t IndexTree::Merge(PendingEntries& waiting) {
    EntrySizes sizes = Sizes();
    sizes.Add(waiting.Sizes());
    std::vector<std::uint32_t> oldPages;
    for (auto page = mPages.Next(0); page; page = mPages.Next(*page + 1)) oldPages.push_back(*page);

    IndexBuilder builder(mFile, mPages, mTablePage);
    Sequence sequence(mFile, builder, waiting.Sorted([this] { mFile.Pause(); }));
    ForEachLeaf([&](const IndexPage& leaf) { sequence.AddLeaf(leaf); });
    sequence.AddRest();

    if (!mFile.IsNew(mRootPage)) {
        mRootPage = mFile.Allocate();
        mPages.Add(mRootPage);
    }
    builder.Finish(mRootPage);
    for (const std::uint32_t page : oldPages) {
        if (page == mRootPage || builder.IsKept(page)) continue;
        mPages.Remove(page);
        mFile.Free(page);
    }
    waiting.Clear();
    mSizes = sizes;
    mLastLeaf = 0;
    ++mMerges;
    return sequence.NewKeys();
}

}  // namespace jet
