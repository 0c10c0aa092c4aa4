#include <algorithm>
#include <limits>
#include <windows.h>

#include "platform/error.h"
#include "platform/file.h"
#include "platform/text_windows.h"

namespace platform {

namespace {

// The lock of the whole file is one byte that no file reaches: a lock of this system keeps others from the
// bytes themselves, and ours is to keep nobody from reading.
constexpr std::uint64_t LockPosition = std::uint64_t{1} << 40U;

constexpr DWORD QuotaExceeded = 1295;  // ERROR_DISK_QUOTA_EXCEEDED, which not all headers have

HANDLE Handle(std::intptr_t handle) {
    return reinterpret_cast<HANDLE>(handle);
}

OVERLAPPED At(std::uint64_t offset) {
    OVERLAPPED place{};
    place.Offset = static_cast<DWORD>(offset);
    place.OffsetHigh = static_cast<DWORD>(offset >> 32U);
    return place;
}

/// The platform's number for a failed open or deletion.
int NumberOf(DWORD failure) {
    switch (failure) {
        case ERROR_FILE_NOT_FOUND:
        case ERROR_INVALID_NAME:
            return FileNotFound;
        case ERROR_PATH_NOT_FOUND:
        case ERROR_INVALID_DRIVE:
        case ERROR_BAD_PATHNAME:
        case ERROR_DIRECTORY:
        case ERROR_BAD_NET_NAME:
            return PathNotFound;
        case ERROR_SHARING_VIOLATION:
        case ERROR_LOCK_VIOLATION:
        case ERROR_DELETE_PENDING:
        case ERROR_USER_MAPPED_FILE:
            return PermissionDenied;
        case ERROR_CRC:
        case ERROR_SEEK:
        case ERROR_SECTOR_NOT_FOUND:
        case ERROR_NOT_READY:
        case ERROR_GEN_FAILURE:
        case ERROR_IO_DEVICE:
        case ERROR_DEV_NOT_EXIST:
        case ERROR_UNEXP_NET_ERR:
        case ERROR_NETNAME_DELETED:
        case ERROR_SEM_TIMEOUT:
        case ERROR_BAD_NETPATH:  // the server does not answer: nobody knows what it holds
        case ERROR_NO_NET_OR_BAD_PATH:
        case ERROR_NETWORK_UNREACHABLE:
        case ERROR_HOST_UNREACHABLE:
            return DeviceIoError;
        case ERROR_DISK_FULL:
        case ERROR_HANDLE_DISK_FULL:
        case QuotaExceeded:
            return DiskFull;
        default:
            return PathFileAccess;
    }
}

bool RefusesWriting(DWORD failure) {
    return failure == ERROR_ACCESS_DENIED || failure == ERROR_NETWORK_ACCESS_DENIED ||
           failure == ERROR_WRITE_PROTECT;
}

Error TransferError(const std::string& path) {
    const DWORD failure = GetLastError();
    const bool isFull = NumberOf(failure) == DiskFull || failure == ERROR_FILE_TOO_LARGE;
    return Error(isFull ? DiskFull : DeviceIoError).WithPath(path);
}

DWORD Disposition(File::Mode mode) {
    switch (mode) {
        case File::Mode::ReadWriteOrCreate:
            return OPEN_ALWAYS;
        case File::Mode::CreateNew:
            return CREATE_NEW;
        case File::Mode::ReadOnly:
        case File::Mode::ReadWrite:
            break;
    }
    return OPEN_EXISTING;
}

std::wstring FoundPath(std::string_view path) {
    auto resolved = SystemPath(path);
    if (!resolved) throw Error(PathNotFound).WithPath(path);
    return *std::move(resolved);
}

/// Opens without keeping others from reading, writing, renaming or deleting the file meanwhile.
HANDLE OpenShared(const std::wstring& systemPath, DWORD access, DWORD disposition) {
    return CreateFileW(systemPath.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                       nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
}

/// Reads again for two seconds where another program has locked the bytes: it holds such locks for moments.
bool ReadPiece(HANDLE file, std::uint64_t offset, std::span<std::byte> piece, DWORD& got) {
    constexpr int Attempts = 20;
    constexpr DWORD Delay = 100;  // milliseconds
    for (int attempt = 1;; ++attempt) {
        OVERLAPPED place = At(offset);
        if (ReadFile(file, piece.data(), static_cast<DWORD>(piece.size()), &got, &place) != 0) return true;
        if (GetLastError() != ERROR_LOCK_VIOLATION || attempt == Attempts) return false;
        Sleep(Delay);
    }
}

/// Whether path still leads to the file that was opened by it.
bool IsStillAt(HANDLE opened, const std::string& path) {
    const HANDLE named = OpenShared(FoundPath(path), FILE_READ_ATTRIBUTES, OPEN_EXISTING);
    if (named == INVALID_HANDLE_VALUE) return false;
    BY_HANDLE_FILE_INFORMATION a{};
    BY_HANDLE_FILE_INFORMATION b{};
    const bool areKnown =
        GetFileInformationByHandle(opened, &a) != 0 && GetFileInformationByHandle(named, &b) != 0;
    CloseHandle(named);
    return areKnown && a.dwVolumeSerialNumber == b.dwVolumeSerialNumber &&
           a.nFileIndexHigh == b.nFileIndexHigh && a.nFileIndexLow == b.nFileIndexLow;
}

/// As much as one call transfers.
std::size_t PieceLength(std::size_t left) {
    constexpr std::size_t LongestPiece = std::size_t{1} << 30U;
    return std::min(left, LongestPiece);
}

}  // namespace

bool FileExists(std::string_view path) {
    const auto resolved = SystemPath(path);
    if (!resolved) return false;
    const DWORD attributes = GetFileAttributesW(resolved->c_str());
    constexpr DWORD NoOrdinaryFile = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_DEVICE;
    if (attributes == INVALID_FILE_ATTRIBUTES && NumberOf(GetLastError()) == DeviceIoError)
        throw Error(DeviceIoError).WithPath(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & NoOrdinaryFile) == 0;
}

/// The lock is held until the name is gone: of two programs that want to delete a file, or to delete it and
/// to use it, one alone gets its way.
void RemoveFile(std::string_view path) {
    const auto file = File::Open(path, File::Mode::ReadWrite);
    if (!file->TryLock(File::Lock::Exclusive)) throw Error(PermissionDenied).WithPath(path);
    if (DeleteFileW(FoundPath(path).c_str()) != 0) return;
    const DWORD failure = GetLastError();
    throw Error(RefusesWriting(failure) ? PermissionDenied : NumberOf(failure)).WithPath(path);
}

File::File(std::string path, std::intptr_t handle, bool writable)
    : mPath(std::move(path)), mHandle(handle), mWritable(writable) {}

std::unique_ptr<File> File::Open(std::string_view path, Mode mode) {
    const std::wstring systemPath = FoundPath(path);
    bool writable = mode != Mode::ReadOnly;
    HANDLE handle =
        OpenShared(systemPath, writable ? GENERIC_READ | GENERIC_WRITE : GENERIC_READ, Disposition(mode));
    if (handle == INVALID_HANDLE_VALUE && RefusesWriting(GetLastError()) && writable &&
        mode != Mode::CreateNew) {
        writable = false;
        handle = OpenShared(systemPath, GENERIC_READ, OPEN_EXISTING);
    }
    if (handle == INVALID_HANDLE_VALUE) throw Error(NumberOf(GetLastError())).WithPath(path);

    std::unique_ptr<File> file(
        new File(std::string(path), reinterpret_cast<std::intptr_t>(handle), writable));
    if (GetFileType(handle) != FILE_TYPE_DISK) throw Error(PathFileAccess).WithPath(path);
    return file;
}

File::~File() {
    CloseHandle(Handle(mHandle));
}

std::uint64_t File::Length() const {
    LARGE_INTEGER length{};
    if (GetFileSizeEx(Handle(mHandle), &length) == 0) throw Error(DeviceIoError).WithPath(mPath);
    return static_cast<std::uint64_t>(length.QuadPart);
}

std::size_t File::ReadAt(std::uint64_t offset, std::span<std::byte> buffer) const {
    std::size_t done = 0;
    while (done < buffer.size()) {
        DWORD got = 0;
        if (!ReadPiece(Handle(mHandle), offset + done,
                       buffer.subspan(done, PieceLength(buffer.size() - done)), got)) {
            if (GetLastError() == ERROR_HANDLE_EOF) break;
            throw Error(DeviceIoError).WithPath(mPath);
        }
        if (got == 0) break;
        done += got;
    }
    return done;
}

void File::WriteAt(std::uint64_t offset, std::span<const std::byte> bytes) {
    if (!mWritable) throw Error(PathFileAccess).WithPath(mPath);
    std::size_t done = 0;
    while (done < bytes.size()) {
        OVERLAPPED place = At(offset + done);
        DWORD put = 0;
        if (WriteFile(Handle(mHandle), bytes.data() + done,
                      static_cast<DWORD>(PieceLength(bytes.size() - done)), &put, &place) == 0)
            throw TransferError(mPath);
        done += put;
    }
}

void File::SetLength(std::uint64_t length) {
    if (!mWritable) throw Error(PathFileAccess).WithPath(mPath);
    LARGE_INTEGER end{};
    end.QuadPart = static_cast<LONGLONG>(length);
    if (SetFilePointerEx(Handle(mHandle), end, nullptr, FILE_BEGIN) == 0 ||
        SetEndOfFile(Handle(mHandle)) == 0)
        throw TransferError(mPath);
}

void File::Sync() {
    if (mWritable && FlushFileBuffers(Handle(mHandle)) == 0) throw TransferError(mPath);
}

/// A lock on a file whose name has gone would keep nobody out. Other programs lock ranges of bytes in place of
/// the whole file, as Access does beyond the end of its .ldb: they must be free at this moment.
bool File::TryLock(Lock kind) {
    const bool isShared = kind == Lock::Shared;
    const DWORD flags = LOCKFILE_FAIL_IMMEDIATELY | (isShared ? 0 : LOCKFILE_EXCLUSIVE_LOCK);
    constexpr auto RangeLow = static_cast<DWORD>(LockPosition);
    constexpr auto RangeHigh = static_cast<DWORD>(LockPosition >> 32U);
    OVERLAPPED bytes = At(0);
    if (LockFileEx(Handle(mHandle), flags, 0, RangeLow, RangeHigh, &bytes) == 0) return false;
    UnlockFileEx(Handle(mHandle), 0, RangeLow, RangeHigh, &bytes);

    OVERLAPPED place = At(LockPosition);
    if (LockFileEx(Handle(mHandle), flags, 0, 1, 0, &place) == 0) return false;
    return isShared || IsStillAt(Handle(mHandle), mPath);
}

}  // namespace platform
