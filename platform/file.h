// Byte access to one open file by position, shared with other processes. Paths are the texts that the rest of
// the system uses (\\SERVER\SHARE\..., X:\... or the system's own form); a path is resolved once, when the
// file is opened.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

class File;

/// Whether an ordinary file (no folder) stands at path. Raises 57 when the share does not say.
bool FileExists(std::string_view path);

/// Deletes a file that nobody else holds a lock on. Raises 53 when there is none, 70 when somebody does or
/// the system refuses, 75 otherwise.
void RemoveFile(std::string_view path);

/// All bytes of an open file. Raises 57.
std::string Contents(const File& file);

/// The lines of a text file without their ends (CR LF or LF); nothing when the file cannot be opened. Raises
/// 57.
std::optional<std::vector<std::string>> ReadLines(std::string_view path);

class File {
  public:
    /// How a file is opened.
    enum class Mode {
        ReadOnly,
        ReadWrite,          // must exist; falls back to reading only where the share grants no more
        ReadWriteOrCreate,  // created empty when missing; same fallback for an existing file
        CreateNew           // must not exist
    };

    /// Raises 53 (no such file), 75 (exists already, or may not be opened), 76 (no such folder) or 70 (in
    /// use), each with the path.
    static std::unique_ptr<File> Open(std::string_view path, Mode mode);

    ~File();
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    const std::string& Path() const { return mPath; }

    /// False after the fallback to reading only.
    bool IsWritable() const { return mWritable; }

    /// Length in bytes. Raises 57.
    std::uint64_t Length() const;

    /// Reads from 0-based offset into buffer; returns how many bytes there were, fewer than asked for at the
    /// end of the file only. Raises 57.
    std::size_t ReadAt(std::uint64_t offset, std::span<std::byte> buffer) const;

    /// Writes all bytes at 0-based offset; the file grows as needed. Raises 75 when open for reading only, 61
    /// on a full disk, 57 otherwise.
    void WriteAt(std::uint64_t offset, std::span<const std::byte> bytes);

    /// Cuts or extends to length bytes. Raises 57 or 61.
    void SetLength(std::uint64_t length);

    /// Hands everything written to the disk. Raises 57 or 61.
    void Sync();

    /// Takes the advisory lock of the whole file without waiting; false when another process holds a lock in
    /// the way; an exclusive one also when the file's name is gone or another file's by now.
    enum class Lock { Shared, Exclusive };
    bool TryLock(Lock kind);

  private:
    File(std::string path, std::intptr_t handle, bool writable);

    template <typename Call>
    auto Bounded(Call call, int patience = 1) const;

    std::string mPath;
    std::intptr_t mHandle;
    bool mWritable;
    bool mIsRemote = false;           // on a share of the network
    mutable bool mIsGivenUp = false;  // the share has left a call unanswered
};

}  // namespace platform
