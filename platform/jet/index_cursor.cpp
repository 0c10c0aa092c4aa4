#include <utility>

#include "platform/jet/index_tree.h"

namespace jet {

IndexTree::Cursor IndexTree::First() const {
    return LowerBound({});
}

IndexTree::Cursor IndexTree::LowerBound(std::string_view key) const {
    Cursor cursor(*this);
    cursor.Seek(key);
    return cursor;
}

RowPointer IndexTree::Cursor::Row() const {
    return RowPointer::FromDword(PointerOf(mEntry));
}

std::string_view IndexTree::Cursor::Key() const {
    return KeyOf(mEntry);
}

void IndexTree::Cursor::Seek(std::string_view entry) {
    Place place = mTree->Locate(entry);
    Settle(std::move(place.Leaf), place.Offset);
}

/// Takes the entry at offset, or the first one of the leaves behind.
void IndexTree::Cursor::Settle(IndexPage leaf, std::size_t offset) {
    for (std::uint32_t steps = 0; offset == leaf.End(); ++steps) {
        const std::uint32_t next = leaf.Next();
        if (next == 0) {
            mLeaf = 0;
            return;
        }
        leaf = mTree->Read(next);
        if (!leaf.IsLeaf() || steps > mTree->mFile.PageCount()) throw mTree->mFile.Damaged();
        offset = 0;
    }
    mLeaf = leaf.Number();
    mOffset = offset;
    mMerges = mTree->mMerges;
    leaf.ReadEntry(offset, mEntry);
}

void IndexTree::Cursor::Next() {
    if (AtEnd()) return;
    const std::string before = mEntry;
    if (!Resume()) {
        // The smallest text above the entry.
        Seek(before + '\0');
    }
    if (!AtEnd() && mEntry <= before) throw mTree->mFile.Damaged();
}

/// Goes on in the leaf where the cursor stands; false when the entry is not there any more.
bool IndexTree::Cursor::Resume() {
    if (mMerges != mTree->mMerges) return false;
    if (!IndexPage::IsLeafOf(mTree->mFile, mLeaf, mTree->mTablePage)) return false;
    IndexPage leaf = mTree->Read(mLeaf);
    if (!leaf.HoldsEntry(mOffset, mEntry)) return false;
    const std::size_t next = leaf.EntryEnd(mOffset);
    Settle(std::move(leaf), next);
    return true;
}

}  // namespace jet
