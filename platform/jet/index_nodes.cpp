// The nodes of an index tree. They change rarely (once in hundreds of entries), so a node is taken apart,
// changed and put together again.
#include <algorithm>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "platform/jet/errors.h"
#include "platform/jet/index_tree.h"

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
    std::string Separator(std::size_t place) const { return std::string(KeyOf(Entries[place])); }

    /// The last child loses its entry, which a rightmost child does not need.
    void MakeTail() {
        if (Tail != 0 || Entries.empty()) return;
        Tail = PointerOf(Entries.back());
        Entries.pop_back();
    }
};

IndexTree::Node IndexTree::ReadNode(std::uint32_t page) const {
    const IndexPage node = Read(page);
    if (node.IsLeaf()) throw mFile.Damaged();
    return {node.Entries(), node.Tail()};
}

void IndexTree::StoreNode(const Path& way, std::size_t level, Node node) {
    IndexPage page = Read(way.Pages[level]);
    if (!page.Assign(Views(node.Entries))) {
        node.MakeTail();
        if (!page.Assign(Views(node.Entries))) return SplitNode(way, level, std::move(node));
    }
    page.SetTail(node.Tail);
}

/// Puts a node that is too large for its page on two pages. The entry between the halves rises to the parent,
/// and its child becomes the tail of the left half.
void IndexTree::SplitNode(Path way, std::size_t level, Node node) {
    if (node.Entries.size() < 3) throw mFile.Damaged();  // one of them is longer than any key makes it
    if (level == 0) {
        PushRootDown(way);
        level = 1;
    }
    IndexPage left = Read(way.Pages[level]);
    const std::vector<std::string_view> all = Views(node.Entries);
    const std::span<const std::string_view> halves(all);
    const std::size_t middle = std::clamp<std::size_t>(left.EvenSplit(halves), 1, all.size() - 2);
    IndexPage right = MakeRightOf(left);
    if (!left.Assign(halves.first(middle)) || !right.Assign(halves.subspan(middle + 1)))
        throw mFile.Damaged();
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
