#include "platform/jet/row_space.h"

namespace jet {

RowSpace::RowSpace(PageFile& file, RowPointer ownedMap, RowPointer freeMap, std::uint32_t owner)
    : mFile(file),
      mOwned(file, ownedMap),
      mFree(file, freeMap),
      mOwner(owner),
      mHighest(file.IsShared() ? 0 : mOwned.Last().value_or(0)),
      mFreeMapUsedUp(!file.IsShared()) {}

bool RowSpace::IsUsable(const DataPage& page, std::size_t length) const {
    return page.Owner() == mOwner && page.HasRoom(length);
}

DataPage RowSpace::PageFor(std::size_t length) {
    // Another program may have changed the maps and pages of a shared file since the last row.
    if (mFile.IsShared()) {
        mLastPage = 0;
        mFreeMapUsedUp = false;
    } else if (!mFile.IsNew(mLastPage)) {
        mLastPage = 0;
    }
    if (mLastPage != 0) {
        DataPage page(mFile, mLastPage);
        if (IsUsable(page, length)) return page;
        mFree.Remove(mLastPage);
        mLastPage = 0;
    }
    if (!mFreeMapUsedUp) {
        for (auto candidate = mFree.Next(0); candidate; candidate = mFree.Next(*candidate + 1)) {
            DataPage page(mFile, *candidate);
            if (IsUsable(page, length)) {
                mLastPage = *candidate;
                return page;
            }
            mFree.Remove(*candidate);
        }
        mFreeMapUsedUp = true;
    }
    DataPage page = AddFullPage();
    mFree.Add(page.Number());
    mLastPage = page.Number();
    return page;
}

DataPage RowSpace::AddFullPage() {
    DataPage page = DataPage::Make(mFile, mFile.Allocate(mFile.IsShared() ? 0 : mHighest + 1), mOwner);
    mHighest = page.Number();
    mOwned.Add(page.Number());
    return page;
}

}  // namespace jet
