#include "platform/jet/page_file.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "platform/code_page.h"
#include "platform/jet/bytes.h"
#include "platform/jet/header_page.h"
#include "platform/jet/page_allocator.h"

namespace jet {

namespace {

constexpr std::uint32_t NoPage = 0xFFFFFFFF;
constexpr std::size_t LeastFrames = 64;
constexpr std::size_t LongestRun = 64;  // pages that go to the file in one call

platform::Error OpenError(int number, std::string_view path) {
    return DataError(number, platform::WideFromUtf8(path)).WithPath(path);
}

/// What a failed open of the file means in terms of data access.
platform::Error TranslateOpen(const platform::Error& error, std::string_view path) {
    switch (error.Number) {
        case platform::FileNotFound:
            return OpenError(FileNotThere, path);
        case platform::PathNotFound:
            return OpenError(InvalidPath, path);
        case platform::DeviceIoError:
            return OpenError(DiskOrNetwork, path);
        default:
            return OpenError(OpenedExclusively, path);
    }
}

platform::Error TranslateWrite(const platform::Error& error, std::string_view path) {
    switch (error.Number) {
        case platform::DiskFull:
            return OpenError(DiskSpace, path);
        case platform::PathFileAccess:
            return OpenError(ReadOnlyDatabase, path);
        default:
            return OpenError(DiskOrNetwork, path);
    }
}

}  // namespace

// PageHandle

PageHandle::PageHandle(PageFile& file, Frame& frame) : mFile(&file), mFrame(&frame) {
    ++frame.Pins;
    frame.Recent = true;
}

PageHandle::PageHandle(PageHandle&& other) noexcept
    : mFile(std::exchange(other.mFile, nullptr)), mFrame(std::exchange(other.mFrame, nullptr)) {}

PageHandle& PageHandle::operator=(PageHandle&& other) noexcept {
    Release();
    mFile = std::exchange(other.mFile, nullptr);
    mFrame = std::exchange(other.mFrame, nullptr);
    return *this;
}

std::uint8_t* PageHandle::Change() {
    mFile->MarkChanged(*mFrame);
    return mFrame->Bytes.get();
}

void PageHandle::Release() {
    if (mFrame != nullptr) mFile->Unpin(*std::exchange(mFrame, nullptr));
}

// PageFile: opening

PageFile::PageFile(std::unique_ptr<platform::File> file, Sharing sharing, const Layout& layout,
                   PageFileLimits limits)
    : mFile(std::move(file)),
      mSharing(sharing),
      mLayout(&layout),
      mLimits(limits),
      mFrameLimit(std::max(limits.CacheBytes / layout.PageSize, LeastFrames)),
      mAllocator(std::make_unique<PageAllocator>(*this)) {
    mLimits.MaxPages = std::min(limits.MaxPages, MaxPageCount);
}

PageFile::~PageFile() = default;

std::unique_ptr<PageFile> PageFile::Create(std::string_view path, PageFileLimits limits) {
    std::unique_ptr<platform::File> file;
    try {
        file = platform::File::Open(path, platform::File::Mode::CreateNew);
    } catch (const platform::Error& error) {
        if (platform::FileExists(path)) throw OpenError(DatabaseExists, path);
        throw OpenError(error.Number == platform::PathNotFound ? InvalidPath : CreationFailed, path);
    }
    if (!file->TryLock(platform::File::Lock::Exclusive)) throw OpenError(FileInUse, path);

    std::unique_ptr<PageFile> pages(new PageFile(std::move(file), Sharing::Exclusive, Jet4Layout, limits));
    pages->mPageCount = GlobalMapPage + 1;
    pages->mFrameOfPage.resize(pages->mPageCount);
    pages->MarkNew(HeaderPage);
    pages->MarkNew(GlobalMapPage);
    PageHandle header = pages->MakeNew(HeaderPage, PageType::Header);
    BuildHeader({header.Change(), pages->PageSize()});
    header.Release();
    PageAllocator::MakeGlobalMap(*pages);
    return pages;
}

std::unique_ptr<PageFile> PageFile::Open(std::string_view path, Sharing sharing, PageFileLimits limits) {
    std::unique_ptr<platform::File> file;
    std::array<std::uint8_t, HeaderHeadLength> head{};
    std::size_t length = 0;
    try {
        file = platform::File::Open(path, platform::File::Mode::ReadWrite);
        length = file->ReadAt(0, std::as_writable_bytes(std::span(head)));
    } catch (const platform::Error& error) {
        throw TranslateOpen(error, path);
    }
    const Layout* layout = length == head.size() ? RecogniseHeader(head) : nullptr;
    if (layout == nullptr) throw OpenError(UnrecognizedFormat, path);

    const auto lock =
        sharing == Sharing::Shared ? platform::File::Lock::Shared : platform::File::Lock::Exclusive;
    if (!file->TryLock(lock)) {
        throw OpenError(sharing == Sharing::Shared ? OpenedExclusively : FileInUse, path);
    }
    std::unique_ptr<PageFile> pages(new PageFile(std::move(file), sharing, *layout, limits));
    pages->RefreshPageCount();
    return pages;
}

void PageFile::RefreshPageCount() {
    std::uint64_t pages = 0;
    try {
        pages = mFile->Length() / PageSize();
    } catch (const platform::Error&) {
        throw OpenError(DiskRead, Path());
    }
    if (pages > MaxPageCount) throw OpenError(UnrecognizedFormat, Path());
    mPageCount = static_cast<std::uint32_t>(pages);
    mFrameOfPage.resize(std::max<std::size_t>(mPageCount, mFrameOfPage.size()));
}

platform::Error PageFile::Damaged() const {
    return OpenError(DamagedDatabase, Path());
}

// PageFile: pages

void PageFile::CheckPage(std::uint32_t page) {
    // Another program may have made a shared file longer since its length was last asked for.
    if (page >= mPageCount && IsShared() && mChangedCount == 0) RefreshPageCount();
    if (page >= mPageCount) throw Damaged();
}

PageHandle PageFile::Read(std::uint32_t page) {
    CheckPage(page);
    if (Frame* cached = mFrameOfPage[page]) return {*this, *cached};
    Frame& frame = TakeFrame();
    try {
        Load(frame, page);
    } catch (...) {
        mFreeFrames.push_back(&frame);
        throw;
    }
    Assign(frame, page);
    return {*this, frame};
}

PageHandle PageFile::Read(std::uint32_t page, PageType type) {
    PageHandle handle = Read(page);
    if (handle.Type() != type) throw Damaged();
    return handle;
}

PageHandle PageFile::MakeNew(std::uint32_t page, PageType type) {
    CheckPage(page);
    if (mFrameOfPage[page] == nullptr) Assign(TakeFrame(), page);
    PageHandle handle(*this, *mFrameOfPage[page]);
    std::uint8_t* bytes = handle.Change();
    std::memset(bytes, 0, PageSize());
    bytes[0] = static_cast<std::uint8_t>(type);
    bytes[1] = PageMark;
    return handle;
}

void PageFile::Load(Frame& frame, std::uint32_t page) {
    std::size_t length = 0;
    try {
        length = mFile->ReadAt(std::uint64_t{page} * PageSize(),
                               std::as_writable_bytes(std::span(frame.Bytes.get(), PageSize())));
    } catch (const platform::Error&) {
        Fail(OpenError(DiskRead, Path()));
    }
    if (length != PageSize()) throw Damaged();
}

void PageFile::Assign(Frame& frame, std::uint32_t page) {
    frame.Number = page;
    mFrameOfPage[page] = &frame;
}

void PageFile::Forget(Frame& frame) noexcept {
    if (frame.Changed) MarkWritten(frame);
    mFrameOfPage[frame.Number] = nullptr;
    frame.Number = NoPage;
}

PageFile::Frame& PageFile::TakeFrame() {
    if (!mFreeFrames.empty()) {
        Frame* frame = mFreeFrames.back();
        mFreeFrames.pop_back();
        return *frame;
    }
    if (mFrames.size() >= mFrameLimit) {
        Frame* victim = CleanFrame();
        if (victim == nullptr && mChangedNewCount > 0) {
            WriteChanged(Pages::New);
            victim = CleanFrame();
        }
        if (victim != nullptr) {
            Forget(*victim);
            return *victim;
        }
    }
    auto frame = std::make_unique<Frame>();
    frame->Number = NoPage;
    frame->Bytes = std::make_unique<std::uint8_t[]>(PageSize());
    mFreeFrames.reserve(mFrames.size() + 1);  // so that giving a frame back cannot fail
    mFrames.push_back(std::move(frame));
    return *mFrames.back();
}

/// A frame whose page may be dropped, seeking round the clock for one that was not used lately. No frame is
/// free when this is called.
PageFile::Frame* PageFile::CleanFrame() {
    for (std::size_t steps = 2 * mFrames.size(); steps > 0; --steps) {
        Frame& frame = *mFrames[mClockHand];
        mClockHand = (mClockHand + 1) % mFrames.size();
        if (frame.Pins > 0 || frame.Changed) continue;
        if (!std::exchange(frame.Recent, false)) return &frame;
    }
    return nullptr;
}

void PageFile::Unpin(Frame& frame) noexcept {
    if (--frame.Pins > 0) return;
    if (frame.Number != NoPage) {
        if (!IsShared() || frame.Changed) return;
        Forget(frame);
    }
    mFreeFrames.push_back(&frame);
}

void PageFile::MarkChanged(Frame& frame) {
    if (frame.Changed) return;
    if (!IsWritable()) throw OpenError(ReadOnlyDatabase, Path());
    frame.Changed = true;
    ++mChangedCount;
    if (IsNew(frame.Number)) ++mChangedNewCount;
}

void PageFile::MarkWritten(Frame& frame) noexcept {
    frame.Changed = false;
    --mChangedCount;
    if (IsNew(frame.Number)) --mChangedNewCount;
}

// PageFile: allocation

std::uint32_t PageFile::Allocate(std::uint32_t from) {
    const std::uint32_t end = mPageCount;
    const std::uint32_t page = mAllocator->Allocate(from);
    if (page < end && mFreePages > 0) --mFreePages;
    MarkNew(page);
    return page;
}

void PageFile::MarkNew(std::uint32_t page) {
    if (IsShared() || IsNew(page)) return;
    mIsNew.resize(std::max<std::size_t>(mIsNew.size(), page + std::size_t{1}));
    mIsNew[page] = true;
    const Frame* frame = mFrameOfPage[page];
    if (frame != nullptr && frame->Changed) ++mChangedNewCount;
}

void PageFile::Free(std::uint32_t page) {
    if (!IsShared() && !IsNew(page)) {
        mRetired.push_back(page);
        return;
    }
    mAllocator->Free(page);
    ++mFreePages;
}

void PageFile::FreeRetired() {
    for (const std::uint32_t page : mRetired) mAllocator->Free(page);
    mFreePages += static_cast<std::uint32_t>(mRetired.size());
    mRetired.clear();
}

std::uint32_t PageFile::AppendPage() {
    if (IsShared() && mChangedCount == 0) RefreshPageCount();
    if (mPageCount >= mLimits.MaxPages) throw OpenError(MaximumSize, Path());
    mFrameOfPage.resize(std::max<std::size_t>(mFrameOfPage.size(), mPageCount + std::size_t{1}));
    return mPageCount++;
}

void PageFile::Reserve(std::uint32_t pages) const {
    const std::uint32_t appendable = mLimits.MaxPages - std::min(mPageCount, mLimits.MaxPages);
    if (pages + mPromised > std::int64_t{appendable} + mFreePages) {
        throw OpenError(MaximumSize, Path());
    }
}

// PageFile: writing

void PageFile::Settle() {
    if (mChangedNewCount * 2 > mFrameLimit) WriteChanged(Pages::New);
}

void PageFile::Checkpoint() {
    WriteChanged(Pages::All);
    if (IsShared()) return;
    try {
        const std::uint64_t length = std::uint64_t{mPageCount} * PageSize();
        if (mFile->Length() < length) mFile->SetLength(length);
    } catch (const platform::Error& error) {
        FailWriting(error);
    }
    mIsNew.clear();
    mChangedNewCount = 0;
    FreeRetired();
}

void PageFile::Sync() {
    Checkpoint();
    WriteChanged(Pages::All);  // the global map knows now of the pages that Checkpoint gave back
    try {
        if (!IsShared() && mWritten) CutFreeEnd();
        if (IsWritable()) mFile->Sync();
    } catch (const platform::Error& error) {
        FailWriting(error);
    }
}

void PageFile::CutFreeEnd() {
    std::uint32_t end = mPageCount;
    while (end > 0 && mAllocator->IsFree(end - 1)) --end;
    if (end == mPageCount) return;
    for (std::uint32_t page = end; page < mPageCount; ++page) {
        if (Frame* frame = std::exchange(mFrameOfPage[page], nullptr)) {
            frame->Number = NoPage;
            mFreeFrames.push_back(frame);
        }
    }
    mPageCount = end;
    mFile->SetLength(std::uint64_t{end} * PageSize());
}

void PageFile::FailWriting(const platform::Error& error) {
    Fail(TranslateWrite(error, Path()));
}

/// A change that an error has cut short must not reach the disk.
void PageFile::Fail(const platform::Error& error) {
    if (!IsShared()) mFailure = error;
    throw error;
}

/// The place of a changed page in the order of writing: what is led to comes before what leads to it.
int PageFile::WriteRank(const Frame& frame) const {
    if (IsNew(frame.Number)) return 0;
    if (frame.Number == GlobalMapPage) return 2;
    const std::uint8_t* page = frame.Bytes.get();
    switch (static_cast<PageType>(page[0])) {
        case PageType::Bitmap:
            return 1;  // of the global map: those of other maps are new
        case PageType::Data:
            if (LoadU32(page + PageOwner) == LongValueOwner) return 3;
            return LoadU32(page + PageOwner) == MapOwner ? 7 : 4;
        case PageType::IndexLeaf:
            return 5;
        case PageType::IndexNode:
            return 6;
        case PageType::TableDef:
            return 8;
        default:
            return 9;
    }
}

void PageFile::WriteChanged(Pages which) {
    if (mFailure) throw platform::Error(*mFailure);
    if (mChangedCount == 0) return;
    struct Entry {
        int Rank;
        std::uint32_t Number;
        Frame* Page;
    };
    std::vector<Entry> order;
    order.reserve(mChangedCount);
    for (const auto& frame : mFrames) {
        if (!frame->Changed || (which == Pages::New && !IsNew(frame->Number))) continue;
        order.push_back({WriteRank(*frame), frame->Number, frame.get()});
    }
    std::ranges::sort(order, [](const Entry& a, const Entry& b) {
        return a.Rank != b.Rank ? a.Rank < b.Rank : a.Number < b.Number;
    });

    std::vector<Frame*> run;
    for (std::size_t i = 0; i < order.size(); ++i) {
        run.push_back(order[i].Page);
        const bool continues = i + 1 < order.size() && run.size() < LongestRun &&
                               order[i + 1].Rank == order[i].Rank &&
                               order[i + 1].Number == order[i].Number + 1;
        if (continues) continue;
        WriteRun(run);
        run.clear();
    }
}

void PageFile::WriteRun(std::span<Frame* const> run) {
    mWritten = true;
    mWriteBuffer.resize(run.size() * PageSize());
    for (std::size_t i = 0; i < run.size(); ++i) {
        std::memcpy(&mWriteBuffer[i * PageSize()], run[i]->Bytes.get(), PageSize());
    }
    try {
        mFile->WriteAt(std::uint64_t{run.front()->Number} * PageSize(),
                       std::as_bytes(std::span(mWriteBuffer)));
    } catch (const platform::Error& error) {
        FailWriting(error);
    }
    Pause();
    for (Frame* frame : run) {
        // Whoever holds a page of an Exclusive file may still be changing it: it stays changed. In a Shared
        // file what is written is a whole change; written again, it would undo what others have done since.
        const bool isHeld = frame->Pins > 0;
        if (isHeld && !IsShared()) continue;
        MarkWritten(*frame);
        if (isHeld || !IsShared()) continue;
        Forget(*frame);
        mFreeFrames.push_back(frame);
    }
}

void PageFile::DiscardChanges() noexcept {
    for (const auto& frame : mFrames) {
        if (!frame->Changed) continue;
        Forget(*frame);
        if (frame->Pins == 0) mFreeFrames.push_back(frame.get());
    }
    try {
        RefreshPageCount();
    } catch (const platform::Error&) {
        // The next operation on the file meets the same trouble and reports it.
    }
}

// SharedChange

SharedChange::~SharedChange() {
    if (!mCommitted && mFile.IsShared()) mFile.DiscardChanges();
}

void SharedChange::Commit() {
    if (mFile.IsShared()) mFile.Checkpoint();
    mCommitted = true;
}

}  // namespace jet
