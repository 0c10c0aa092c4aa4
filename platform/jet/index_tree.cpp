#include "platform/jet/index_tree.h"

#include <algorithm>
#include <span>
#include <utility>
#include <vector>

#include "platform/jet/errors.h"

namespace jet {

void IndexTree::MakeEmptyRoot(PageFile& file, std::uint32_t page, std::uint32_t tablePage) {
    IndexPage::Make(file, page, PageType::IndexLeaf, tablePage);
}

IndexTree::Place IndexTree::Locate(std::string_view entry) const {
    Path way;
    bool allTails = true;
    std::uint32_t number = mRootPage;
    for (;;) {
        if (way.Count == MaxDepth) throw mFile.Damaged();
        way.Pages[way.Count++] = number;
        IndexPage page = Read(number);
        std::size_t offset = page.Find(entry);
        if (page.IsLeaf()) return {way, std::move(page), offset, allTails};

        if (offset == page.End() && page.Tail() != 0) {
            number = page.Tail();
            continue;
        }
        if (page.IsEmpty()) throw mFile.Damaged();
        if (offset == page.End()) offset = page.LastEntry();
        number = page.Child(offset);
        allTails = false;
    }
}

bool IndexTree::Contains(std::string_view key) const {
    if (mLastLeaf != 0) {
        const IndexPage last = Read(mLastLeaf);
        if (last.IsAboveAll(key)) return false;
    }
    const Place place = Locate(key);
    if (!mFile.IsShared() && place.AllTails && place.Leaf.Next() == 0) mLastLeaf = place.Leaf.Number();
    if (place.Offset < place.Leaf.End()) return place.Leaf.HoldsKey(place.Offset, key);
    // The separator above ends in a row, so a key that is last on its leaf sends the search to the next one.
    const Cursor cursor = LowerBound(key);
    return !cursor.AtEnd() && cursor.Key() == key;
}

void IndexTree::Insert(std::string_view key, RowPointer row) {
    if (key.size() > MaxKeyLength(mFile.Format())) throw DataError(RecordTooLarge);
    mEntry = key;
    AppendPointer(mEntry, row.Dword());
    mSizes.reset();
    mLastLeaf = 0;
    Place place = Locate(mEntry);
    if (!place.AllTails && place.Offset == place.Leaf.End()) {
        // Above everything, in a tree whose last child still has an entry: that entry rises first.
        CorrectSeparators(place.Way, place.Way.Count - 1, mEntry);
        place = Locate(mEntry);
    }
    if (place.Leaf.HoldsEntry(place.Offset, mEntry)) throw mFile.Damaged();
    if (!place.Leaf.Insert(place.Offset, mEntry)) SplitLeaf(std::move(place), mEntry);
}

void IndexTree::SplitLeaf(Place place, std::string_view entry) {
    IndexPage& left = place.Leaf;
    const bool atRightEdge = left.Next() == 0 && place.Offset == left.End();
    std::vector<std::string> entries = left.Entries();
    entries.emplace(std::lower_bound(entries.begin(), entries.end(), entry), entry);
    const std::vector<std::string_view> views = Views(entries);
    const std::size_t split = atRightEdge ? entries.size() - 1 : left.EvenSplit(views);

    if (place.Way.Count == 1) left = PushRootDown(place.Way);
    IndexPage right = MakeRightOf(left);
    const std::span<const std::string_view> all(views);
    if (!left.Assign(all.first(split)) || !right.Assign(all.subspan(split))) throw mFile.Damaged();
    AddSibling(place.Way, place.Way.Count - 1, entries[split - 1], right.Number());
}

/// A new page for this index.
IndexPage IndexTree::MakePage(PageType type) {
    const std::uint32_t number = mFile.Allocate();
    mPages.Add(number);
    return IndexPage::Make(mFile, number, type, mTablePage);
}

/// An empty page of the same kind, chained in behind page.
IndexPage IndexTree::MakeRightOf(IndexPage& page) {
    IndexPage right = MakePage(page.IsLeaf() ? PageType::IndexLeaf : PageType::IndexNode);
    right.SetPrevious(page.Number());
    right.SetNext(page.Next());
    if (page.Next() != 0) Read(page.Next()).SetPrevious(right.Number());
    page.SetNext(right.Number());
    return right;
}

/// Moves what the root holds to a new page, the only child of the root from now on, and lets way lead there.
IndexPage IndexTree::PushRootDown(Path& way) {
    if (way.Count == MaxDepth) throw mFile.Damaged();
    IndexPage root = Read(mRootPage);
    IndexPage child = MakePage(root.IsLeaf() ? PageType::IndexLeaf : PageType::IndexNode);
    const std::vector<std::string> entries = root.Entries();
    child.Assign(Views(entries));
    child.SetTail(root.Tail());
    root.Clear(PageType::IndexNode);
    root.SetTail(child.Number());
    const auto first = way.Pages.begin() + 1;
    const auto last = way.Pages.begin() + static_cast<std::ptrdiff_t>(way.Count);
    std::copy_backward(first, last, last + 1);
    way.Pages[1] = child.Number();
    ++way.Count;
    return child;
}

/// Chains a page out and gives it back.
void IndexTree::FreePage(IndexPage page) {
    const std::uint32_t number = page.Number();
    if (page.Previous() != 0) Read(page.Previous()).SetNext(page.Next());
    if (page.Next() != 0) Read(page.Next()).SetPrevious(page.Previous());
    page.Release();
    mPages.Remove(number);
    mFile.Free(number);
}

void IndexTree::Remove(std::string_view key, RowPointer row) {
    mLastLeaf = 0;
    mEntry = key;
    AppendPointer(mEntry, row.Dword());
    Place place = Locate(mEntry);
    IndexPage& leaf = place.Leaf;
    mSizes.reset();
    if (!leaf.HoldsEntry(place.Offset, mEntry)) throw mFile.Damaged();

    leaf.Erase(place.Offset);
    const std::size_t level = place.Way.Count - 1;
    if (!leaf.IsEmpty()) {
        if (place.Offset == leaf.End()) CorrectSeparators(place.Way, level, leaf.Entry(leaf.LastEntry()));
    } else if (level != 0) {
        FreePage(std::move(leaf));
        RemoveChild(place.Way, level);
    }
}

}  // namespace jet
