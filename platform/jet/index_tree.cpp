#include "platform/jet/index_tree.h"

#include <algorithm>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "platform/jet/errors.h"

namespace jet {

/// A node's entries and children, taken out of the page to be changed.
struct IndexTree::Node {
    std::vector<std::string> Entries;  // each ends in its child's page
    std::uint32_t Tail = 0;

    /// The child's place among the entries, their number for the tail; nothing for a child of another node.
    std::optional<std::size_t> PlaceOf(std::uint32_t child) const {
        if (child == Tail) return Entries.size();
        const auto found = std::find_if(Entries.begin(), Entries.end(), [child](const std::string& entry) {
            return PointerOf(entry) == child;
        });
        if (found == Entries.end()) return std::nullopt;
        return static_cast<std::size_t>(found - Entries.begin());
    }

    bool IsLastChild(std::size_t place) const { return place + (Tail == 0 ? 1 : 0) == Entries.size(); }

    void SetChild(std::size_t place, std::uint32_t page) {
        if (place == Entries.size()) {
            Tail = page;
        } else {
            Entries[place] = Separator(place);
            AppendPointer(Entries[place], page);
        }
    }

    /// An entry without its child.
    std::string Separator(std::size_t place) const {
        const std::string& entry = Entries[place];
        return entry.substr(0, entry.size() - IndexPage::PointerLength);
    }

    /// The last child loses its entry, which a rightmost child does not need.
    void MakeTail() {
        if (Tail != 0 || Entries.empty()) return;
        Tail = PointerOf(Entries.back());
        Entries.pop_back();
    }
};

namespace {

/// How many of the entries go to the left of two pages so that the fuller one is as empty as can be. Both get
/// one at least.
std::size_t EvenSplit(const IndexPage& page, std::span<const std::string> entries) {
    const auto left = [&](std::size_t count) { return page.PackedSize(entries.first(count)); };
    const auto right = [&](std::size_t count) { return page.PackedSize(entries.subspan(count)); };
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

}  // namespace

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
        if (!last.IsEmpty() && last.IsAboveAll(key)) return false;
    }
    const Place place = Locate(key);
    if (place.Offset < place.Leaf.End()) return place.Leaf.HoldsKey(place.Offset, key);
    // The separator above ends in a row, so a key that is last on its leaf sends the search to the next one.
    const Cursor cursor = LowerBound(key);
    return !cursor.AtEnd() && cursor.Key() == key;
}

void IndexTree::Insert(std::string_view key, RowPointer row) {
    if (key.size() > MaxKeyLength(mFile.Format())) throw DataError(RecordTooLarge);
    mEntry = key;
    AppendPointer(mEntry, row.Dword());
    if (Append(mEntry)) return;

    Place place = Locate(mEntry);
    if (!place.AllTails && place.Offset == place.Leaf.End()) {
        // Above everything, in a tree whose last child still has an entry: that entry rises first.
        CorrectSeparators(place.Way, place.Way.Count - 1, mEntry);
        place = Locate(mEntry);
    }
    if (place.Leaf.HoldsEntry(place.Offset, mEntry)) throw mFile.Damaged();
    if (!mFile.IsShared() && place.AllTails && place.Leaf.Next() == 0) mLastLeaf = place.Leaf.Number();
    if (!place.Leaf.Insert(place.Offset, mEntry)) SplitLeaf(std::move(place), mEntry);
}

/// The way of rows that come in the index's order; false when it is not open.
bool IndexTree::Append(std::string_view entry) {
    if (mLastLeaf == 0) return false;
    IndexPage leaf = Read(mLastLeaf);
    return !leaf.IsEmpty() && leaf.IsAboveAll(entry) && leaf.Insert(leaf.End(), entry);
}

void IndexTree::SplitLeaf(Place place, std::string_view entry) {
    IndexPage& left = place.Leaf;
    const bool atRightEdge = left.Next() == 0 && place.Offset == left.End();
    const bool wasLastLeaf = mLastLeaf == left.Number();
    std::vector<std::string> entries = left.Entries();
    entries.emplace(std::lower_bound(entries.begin(), entries.end(), entry), entry);
    const std::size_t split = atRightEdge ? entries.size() - 1 : EvenSplit(left, entries);

    if (place.Way.Count == 1) left = PushRootDown(place.Way);
    IndexPage right = MakeRightOf(left);
    const std::span<const std::string> all(entries);
    if (!left.Assign(all.first(split)) || !right.Assign(all.subspan(split))) throw mFile.Damaged();
    if (wasLastLeaf) mLastLeaf = right.Number();
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
    child.Assign(root.Entries());
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

IndexTree::Node IndexTree::ReadNode(std::uint32_t page) const {
    const IndexPage node = Read(page);
    if (node.IsLeaf()) throw mFile.Damaged();
    return {node.Entries(), node.Tail()};
}

void IndexTree::StoreNode(const Path& way, std::size_t level, Node node) {
    IndexPage page = Read(way.Pages[level]);
    if (!page.Assign(node.Entries)) {
        node.MakeTail();
        if (!page.Assign(node.Entries)) return SplitNode(way, level, std::move(node));
    }
    page.SetTail(node.Tail);
}

/// Puts a node that is too large for its page on two pages. The entry between the halves rises to the parent,
/// and its child becomes the tail of the left half.
void IndexTree::SplitNode(Path way, std::size_t level, Node node) {
    if (level == 0) {
        PushRootDown(way);
        level = 1;
    }
    IndexPage left = Read(way.Pages[level]);
    const std::span<const std::string> all(node.Entries);
    const std::size_t middle = std::clamp<std::size_t>(EvenSplit(left, all), 1, all.size() - 2);
    IndexPage right = MakeRightOf(left);
    if (!left.Assign(all.first(middle)) || !right.Assign(all.subspan(middle + 1))) throw mFile.Damaged();
    left.SetTail(PointerOf(all[middle]));
    right.SetTail(node.Tail);
    CutLink(PointerOf(all[middle]), PointerOf(all[middle + 1]));
    AddSibling(way, level, node.Separator(middle), right.Number());
}

/// Nodes are chained among the children of one parent only.
void IndexTree::CutLink(std::uint32_t left, std::uint32_t right) {
    IndexPage leftPage = Read(left);
    if (leftPage.IsLeaf()) return;
    leftPage.SetNext(0);
    Read(right).SetPrevious(0);
}

/// Tells the parent that the page at level kept the entries up to lastOfLeft and gave the others to right.
void IndexTree::AddSibling(const Path& way, std::size_t level, std::string lastOfLeft, std::uint32_t right) {
    const std::uint32_t left = way.Pages[level];
    Node parent = ReadNode(way.Pages[level - 1]);
    parent.MakeTail();
    const auto place = parent.PlaceOf(left);
    if (!place) throw mFile.Damaged();
    parent.SetChild(*place, right);
    AppendPointer(lastOfLeft, left);
    parent.Entries.insert(parent.Entries.begin() + static_cast<std::ptrdiff_t>(*place),
                          std::move(lastOfLeft));
    StoreNode(way, level - 1, std::move(parent));
}

/// Makes the nodes above the page at level agree with its last entry.
void IndexTree::CorrectSeparators(const Path& way, std::size_t level, const std::string& last) {
    for (; level > 0; --level) {
        Node parent = ReadNode(way.Pages[level - 1]);
        const auto place = parent.PlaceOf(way.Pages[level]);
        if (!place) throw mFile.Damaged();
        if (*place == parent.Entries.size()) continue;
        const bool isLastChild = parent.IsLastChild(*place);
        parent.Entries[*place] = last;
        AppendPointer(parent.Entries[*place], way.Pages[level]);
        StoreNode(way, level - 1, std::move(parent));
        if (!isLastChild) return;
    }
}

void IndexTree::Remove(std::string_view key, RowPointer row) {
    mLastLeaf = 0;
    mEntry = key;
    AppendPointer(mEntry, row.Dword());
    Place place = Locate(mEntry);
    IndexPage& leaf = place.Leaf;
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

/// Takes the page at level, which is freed already, out of its parent. A parent left without children goes
/// too; one left with a tail only gets an entry for it.
void IndexTree::RemoveChild(const Path& way, std::size_t level) {
    const std::uint32_t page = way.Pages[level - 1];
    Node parent = ReadNode(page);
    const auto place = parent.PlaceOf(way.Pages[level]);
    if (!place) throw mFile.Damaged();
    const bool wasLastChild = parent.IsLastChild(*place);
    if (*place == parent.Entries.size()) {
        parent.Tail = 0;
        parent.MakeTail();
    } else {
        parent.Entries.erase(parent.Entries.begin() + static_cast<std::ptrdiff_t>(*place));
    }
    if (parent.Entries.empty() && parent.Tail == 0) {
        IndexPage emptied = Read(page);
        if (level == 1) return emptied.Clear(PageType::IndexLeaf);
        FreePage(std::move(emptied));
        return RemoveChild(way, level - 1);
    }
    if (parent.Entries.empty()) {
        parent.Entries.push_back(LastEntryBelow(parent.Tail));
        AppendPointer(parent.Entries.back(), std::exchange(parent.Tail, 0));
    }
    StoreNode(way, level - 1, std::move(parent));
    if (wasLastChild) CorrectSeparators(way, level - 1, LastEntryBelow(page));
}

std::string IndexTree::LastEntryBelow(std::uint32_t page) const {
    for (std::size_t depth = 0; depth < MaxDepth; ++depth) {
        const IndexPage place = Read(page);
        if (!place.IsLeaf() && place.Tail() != 0) {
            page = place.Tail();
            continue;
        }
        if (place.IsEmpty()) throw mFile.Damaged();
        std::string last = place.Entry(place.LastEntry());
        if (place.IsLeaf()) return last;
        page = PointerOf(last);
    }
    throw mFile.Damaged();
}

}  // namespace jet
