// A database file as numbered pages: opening and creating it, a bounded cache of its pages, allocation of
// pages, the advisory lock and the order in which changed pages reach the disk.
//
// Pages are handed out as PageHandles that pin them in the cache. In a Shared file (one that another program
// may have open) nothing outlives its last handle: a page is read when it is asked for, and the changes of
// one SharedChange are written when it commits.
//
// An Exclusive file (our own new target) goes from one checkpoint to the next, and what the disk holds is at
// any moment the state of the last one, even when the process is killed. Pages allocated since then are new:
// nothing on the disk leads to them, so they may be written at any time. All others are old and are written
// by Checkpoint only, when the new ones are there: the global map first, then what leads to the new pages,
// table definitions last. A page that was old when it was freed is taken again after the next checkpoint
// only. Who changes an Exclusive file therefore puts what he changes on new pages and switches to them in one
// page, the first of a table's definition.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/file.h"
#include "platform/jet/errors.h"
#include "platform/jet/format.h"

namespace jet {

class PageAllocator;
class PageFile;

/// One page, held in memory as long as the handle lives. Handles of the same page share its bytes.
class PageHandle {
  public:
    PageHandle() = default;
    ~PageHandle() { Release(); }
    PageHandle(PageHandle&& other) noexcept;
    PageHandle& operator=(PageHandle&& other) noexcept;

    explicit operator bool() const { return mFrame != nullptr; }
    std::uint32_t Number() const { return mFrame->Number; }
    PageType Type() const { return static_cast<PageType>(mFrame->Bytes[0]); }
    const std::uint8_t* Data() const { return mFrame->Bytes.get(); }

    /// The page's bytes for changing; the page counts as changed from now on.
    std::uint8_t* Change();

    /// Gives the page back before the handle ends.
    void Release();

  private:
    friend class PageFile;

    struct Frame {
        std::uint32_t Number = 0;
        std::uint32_t Pins = 0;
        bool Changed = false;
        bool Recent = false;
        std::unique_ptr<std::uint8_t[]> Bytes;
    };

    PageHandle(PageFile& file, Frame& frame);

    PageFile* mFile = nullptr;
    Frame* mFrame = nullptr;
};

/// Whether other programs may have the file open too.
enum class Sharing { Exclusive, Shared };

struct PageFileLimits {
    std::size_t CacheBytes = std::size_t{24} << 20;
    std::uint32_t MaxPages = MaxPageCount;
};

/// An open file as pages, numbered from 0.
class PageFile {
  public:
    /// A new Jet 4 file that holds header and global map only, locked for this process. Raises 3204 (exists),
    /// 3044 (no such folder), 3436.
    static std::unique_ptr<PageFile> Create(std::string_view path, PageFileLimits limits = {});

    /// Raises 3024 (no such file), 3044 (no such folder), 3051 (may not be opened, or locked by another
    /// process), 3045 (asked for exclusively and open elsewhere), 3343 (not a database of Jet 3 or Jet 4, or
    /// an encrypted one).
    static std::unique_ptr<PageFile> Open(std::string_view path, Sharing sharing, PageFileLimits limits = {});

    ~PageFile();
    PageFile(const PageFile&) = delete;
    PageFile& operator=(const PageFile&) = delete;

    /// Long work on the file calls pause every now and then, so that its caller can show signs of life.
    /// pause must not touch the file or what lies in it, and must not raise errors.
    void SetPause(std::function<void()> pause) { mPause = std::move(pause); }
    void Pause() const {
        if (mPause) mPause();
    }

    const std::string& Path() const { return mFile->Path(); }
    bool IsWritable() const { return mFile->IsWritable(); }
    bool IsShared() const { return mSharing == Sharing::Shared; }
    const Layout& Format() const { return *mLayout; }
    Version FileVersion() const { return mLayout->FileVersion; }
    std::uint32_t PageSize() const { return mLayout->PageSize; }
    std::uint32_t PageCount() const { return mPageCount; }

    /// The page of that number. Raises 3428 when the file has no such page, 3040 when it cannot be read.
    PageHandle Read(std::uint32_t page);

    /// The same, with the type checked. Raises 3428 for a page of another type.
    PageHandle Read(std::uint32_t page, PageType type);

    /// An allocated page, zeroed but for type and mark and counted as changed, without reading what the file
    /// holds there.
    PageHandle MakeNew(std::uint32_t page, PageType type);

    /// Takes the lowest free page that is not below the given one, or appends one; the global map knows at
    /// once. Raises 3036 at the limit.
    std::uint32_t Allocate(std::uint32_t from = 0);

    /// Gives a page back to the global map; an old page of an Exclusive file at the next checkpoint.
    void Free(std::uint32_t page);

    /// Whether the page was allocated since the last checkpoint of an Exclusive file. All pages of a Shared
    /// file are old.
    bool IsNew(std::uint32_t page) const { return page < mIsNew.size() && mIsNew[page]; }

    /// Raises 3036 unless that many further pages can be allocated. Called before a change that must be done
    /// whole or not at all.
    void Reserve(std::uint32_t pages) const;

    /// Pages that waiting changes will allocate, more or fewer than before. Reserve keeps them free.
    void Promise(std::int64_t pages) { mPromised += pages; }

    /// Called between two changes: writes the changed new pages of an Exclusive file once they take up half
    /// of the cache.
    void Settle();

    /// Writes every changed page; from now on no page is new. Raises 3026 (disk full), 3027 (opened for
    /// reading only), 3043. An Exclusive file that could not be read or written once stays as it is: every
    /// further call raises the same.
    void Checkpoint();

    /// Checkpoint, gives the freed pages back, cuts off those at the file's end and hands everything to the
    /// disk. No page may be in use.
    void Sync();

    /// The error of a structure that cannot be right, 3428, with the file's path.
    platform::Error Damaged() const;

  private:
    friend class PageHandle;
    friend class PageAllocator;
    friend class SharedChange;
    using Frame = PageHandle::Frame;

    PageFile(std::unique_ptr<platform::File> file, Sharing sharing, const Layout& layout,
             PageFileLimits limits);

    void CheckPage(std::uint32_t page);
    void RefreshPageCount();
    std::uint32_t AppendPage();
    Frame& TakeFrame();
    Frame* CleanFrame();
    void Load(Frame& frame, std::uint32_t page);
    void Assign(Frame& frame, std::uint32_t page);
    void Forget(Frame& frame) noexcept;
    void Unpin(Frame& frame) noexcept;
    void MarkChanged(Frame& frame);
    void MarkWritten(Frame& frame) noexcept;
    void MarkNew(std::uint32_t page);
    void DiscardChanges() noexcept;
    enum class Pages { New, All };
    void WriteChanged(Pages which);
    int WriteRank(const Frame& frame) const;
    void WriteRun(std::span<Frame* const> run);
    [[noreturn]] void FailWriting(const platform::Error& error);
    [[noreturn]] void Fail(const platform::Error& error);
    void FreeRetired();
    void CutFreeEnd();

    std::unique_ptr<platform::File> mFile;
    Sharing mSharing;
    const Layout* mLayout;
    PageFileLimits mLimits;
    std::uint32_t mPageCount = 0;
    std::vector<std::unique_ptr<Frame>> mFrames;
    std::vector<Frame*> mFrameOfPage;  // null = not in memory
    std::vector<Frame*> mFreeFrames;
    std::size_t mFrameLimit;
    std::size_t mClockHand = 0;
    std::size_t mChangedCount = 0;
    std::size_t mChangedNewCount = 0;
    std::vector<bool> mIsNew;             // by page
    std::vector<std::uint32_t> mRetired;  // freed, but what the disk holds still uses them
    std::uint32_t mFreePages = 0;         // given back to the global map and not taken again
    std::int64_t mPromised = 0;
    std::vector<std::uint8_t> mWriteBuffer;
    bool mWritten = false;
    std::function<void()> mPause;
    std::optional<platform::Error> mFailure;  // of the first read or write of an Exclusive file that failed
    std::unique_ptr<PageAllocator> mAllocator;
};

/// One change of a Shared file: what was changed is written by Commit, and forgotten when the object ends
/// without it. In an Exclusive file it does nothing.
class SharedChange {
  public:
    explicit SharedChange(PageFile& file) : mFile(file) {}
    ~SharedChange();
    SharedChange(const SharedChange&) = delete;
    SharedChange& operator=(const SharedChange&) = delete;

    /// Raises what PageFile::Flush raises.
    void Commit();

  private:
    PageFile& mFile;
    bool mCommitted = false;
};

}  // namespace jet
