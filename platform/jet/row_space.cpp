#include "platform/jet/row_space.h"

namespace jet {

DataPage RowSpace::PageFor(std::size_t length) {
    // Another program may have changed the maps and pages of a shared file since the last row.
    if (mFile.IsShared()) {
        mLastPage = 0;
        mFreeMapUsedUp = false;
    }
    if (mLastPage != 0) {
        DataPage page(mFile, mLastPage);
        if (page.Owner() == mOwner && page.HasRoom(length)) return page;
        mFree.Remove(mLastPage);
        mLastPage = 0;
    }
    if (!mFreeMapUsedUp) {
        for (auto candidate = mFree.Next(0); candidate; candidate = mFree.Next(*candidate + 1)) {
            DataPage page(mFile, *candidate);
            if (page.Owner() == mOwner && page.HasRoom(length)) {
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
    DataPage page = DataPage::Make(mFile, mFile.Allocate(), mOwner);
    mOwned.Add(page.Number());
    return page;
}

}  // namespace jet
