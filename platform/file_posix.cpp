#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include "platform/bounded_call.h"
#include "platform/error.h"
#include "platform/file.h"
#include "platform/posix_calls.h"
#include "platform/site.h"

namespace platform {

namespace {

int Descriptor(std::intptr_t handle) {
    return static_cast<int>(handle);
}

template <typename Call>
auto Uninterrupted(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR) result = call();
    return result;
}

std::string ParentOf(const std::string& path) {
    const auto slash = path.find_last_of('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

bool IsFolder(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

/// The platform's number for a failed open or deletion.
int NumberOf(int failure, const std::string& systemPath) {
    switch (failure) {
        case ENOENT:
            return IsFolder(ParentOf(systemPath)) ? FileNotFound : PathNotFound;
        case ENOTDIR:
            return PathNotFound;
        case EBUSY:
        case ETXTBSY:
            return PermissionDenied;
        case ENOSPC:
        case EDQUOT:
            return DiskFull;
        default:
            return IsDeviceFailure(failure) ? DeviceIoError : PathFileAccess;
    }
}

bool RefusesWriting(int failure) {
    return failure == EACCES || failure == EROFS || failure == EPERM;
}

Error TransferError(const std::string& path) {
    return Error(errno == ENOSPC || errno == EDQUOT || errno == EFBIG ? DiskFull : DeviceIoError)
        .WithPath(path);
}

int OpenFlags(File::Mode mode) {
    switch (mode) {
        case File::Mode::ReadOnly:
            return O_RDONLY;
        case File::Mode::ReadWrite:
            return O_RDWR;
        case File::Mode::ReadWriteOrCreate:
            return O_RDWR | O_CREAT;
        case File::Mode::CreateNew:
            return O_RDWR | O_CREAT | O_EXCL;
    }
    return O_RDONLY;
}

std::string SystemPath(std::string_view path) {
    const auto resolved = ResolvePath(path);
    if (!resolved) throw Error(PathNotFound).WithPath(path);
    return *resolved;
}

std::size_t ReadFrom(int descriptor, const std::string& path, std::uint64_t offset,
                     std::span<std::byte> buffer) {
    std::size_t done = 0;
    while (done < buffer.size()) {
        const auto got = Uninterrupted([&] {
            return pread(descriptor, buffer.data() + done, buffer.size() - done,
                         static_cast<off_t>(offset + done));
        });
        if (got < 0) throw Error(DeviceIoError).WithPath(path);
        if (got == 0) break;
        done += static_cast<std::size_t>(got);
    }
    return done;
}

void WriteTo(int descriptor, const std::string& path, std::uint64_t offset,
             std::span<const std::byte> bytes) {
    std::size_t done = 0;
    while (done < bytes.size()) {
        const auto put = Uninterrupted([&] {
            return pwrite(descriptor, bytes.data() + done, bytes.size() - done,
                          static_cast<off_t>(offset + done));
        });
        if (put < 0) throw TransferError(path);
        done += static_cast<std::size_t>(put);
    }
}

/// Whether a file lies on a share of the network, or behind a program that may ask one (fuse).
bool IsRemoteFile(int descriptor) {
    constexpr std::array<std::uint32_t, 6> RemoteMarks{0x517B,       // smb
                                                       0xFF534D42,   // cifs
                                                       0xFE534D42,   // smb2, smb3
                                                       0x6969,       // nfs
                                                       0x01021997,   // 9p
                                                       0x65735546};  // fuse
    struct statfs system {};
    if (fstatfs(descriptor, &system) != 0) return false;
    return std::ranges::find(RemoteMarks, static_cast<std::uint32_t>(system.f_type)) != RemoteMarks.end();
}

struct Opened {
    int Descriptor;
    bool IsWritable;
    bool IsRemote;
};

Opened OpenedFile(const std::string& path, File::Mode mode) {
    constexpr int OrdinaryPermissions = 0666;
    const std::string systemPath = SystemPath(path);
    int flags = OpenFlags(mode) | O_CLOEXEC;
    int descriptor = Uninterrupted([&] { return open(systemPath.c_str(), flags, OrdinaryPermissions); });
    if (descriptor < 0 && RefusesWriting(errno) && mode != File::Mode::CreateNew &&
        mode != File::Mode::ReadOnly) {
        flags = O_RDONLY | O_CLOEXEC;
        descriptor = Uninterrupted([&] { return open(systemPath.c_str(), flags); });
    }
    if (descriptor < 0) throw Error(NumberOf(errno, systemPath)).WithPath(path);
    struct stat status {};
    const int failure = fstat(descriptor, &status) != 0 ? errno : 0;
    if (failure != 0 || !S_ISREG(status.st_mode)) {
        close(descriptor);
        if (mode == File::Mode::CreateNew) unlink(systemPath.c_str());  // created a moment ago
        throw Error(failure != 0 ? NumberOf(failure, systemPath) : PathFileAccess).WithPath(path);
    }
    return {descriptor, (flags & O_ACCMODE) == O_RDWR, IsRemoteFile(descriptor)};
}

/// Whether path still leads to the file that was opened by it.
bool IsStillAt(int descriptor, const std::string& path) {
    struct stat opened {};
    struct stat named {};
    const auto resolved = ResolvePath(path);
    return resolved && fstat(descriptor, &opened) == 0 && stat(resolved->c_str(), &named) == 0 &&
           opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

}  // namespace

bool IsDeviceFailure(int failure) {
    constexpr std::array Failures{EIO,       ESTALE,    EREMOTEIO,    ENOLINK,     ENODEV,       ENXIO,
                                  ETIMEDOUT, EHOSTDOWN, ENETDOWN,     ENETUNREACH, EHOSTUNREACH, ENETRESET,
                                  ENOTCONN,  EREMCHG,   ECONNABORTED, ECONNRESET,  EAGAIN};
    return std::ranges::find(Failures, failure) != Failures.end();
}

bool FileExists(std::string_view path) {
    return BoundedCall(path, [path = std::string(path)] {
        const auto resolved = ResolvePath(path);
        struct stat status {};
        if (!resolved) return false;
        if (stat(resolved->c_str(), &status) == 0) return S_ISREG(status.st_mode);
        if (IsDeviceFailure(errno)) throw Error(DeviceIoError).WithPath(path);
        return false;
    });
}

/// The lock is held until the name is gone: of two programs that want to delete a file, or to delete it and
/// to use it, one alone gets its way.
void RemoveFile(std::string_view path) {
    const auto file = File::Open(path, File::Mode::ReadWrite);
    if (!file->TryLock(File::Lock::Exclusive)) throw Error(PermissionDenied).WithPath(path);
    BoundedCall(path, [path = std::string(path)] {
        const std::string systemPath = SystemPath(path);
        if (unlink(systemPath.c_str()) == 0) return;
        const int failure = errno;
        throw Error(RefusesWriting(failure) ? PermissionDenied : NumberOf(failure, systemPath))
            .WithPath(path);
    });
}

std::optional<std::string> FileText(std::string_view path) {
    try {
        return Contents(*File::Open(path, File::Mode::ReadOnly));
    } catch (const Error& error) {
        if (error.Number != FileNotFound && error.Number != PathNotFound) throw;
        return std::nullopt;
    }
}

File::File(std::string path, std::intptr_t handle, bool writable)
    : mPath(std::move(path)), mHandle(handle), mWritable(writable) {}

std::unique_ptr<File> File::Open(std::string_view path, Mode mode) {
    const Opened opened =
        BoundedCall(path, [path = std::string(path), mode] { return OpenedFile(path, mode); });
    std::unique_ptr<File> file(new File(std::string(path), opened.Descriptor, opened.IsWritable));
    file->mIsRemote = opened.IsRemote;
    return file;
}

/// A file whose share hangs is left to the end of the process: closing it would hang too.
File::~File() {
    if (!mIsGivenUp) close(Descriptor(mHandle));
}

/// What a call on the file's descriptor gives; one on a share is bounded, and the last one once it was given
/// up.
template <typename Call>
auto File::Bounded(Call call, int patience) const {
    if (!mIsRemote) return call(Descriptor(mHandle), mPath);
    if (mIsGivenUp) throw CallGivenUp(mPath);
    try {
        return BoundedCall(
            mPath,
            [call = std::move(call), descriptor = Descriptor(mHandle), path = mPath] {
                return call(descriptor, path);
            },
            patience);
    } catch (const CallGivenUp&) {
        mIsGivenUp = true;
        throw;
    }
}

std::uint64_t File::Length() const {
    return Bounded([](int descriptor, const std::string& path) {
        struct stat status {};
        if (fstat(descriptor, &status) != 0) throw Error(DeviceIoError).WithPath(path);
        return static_cast<std::uint64_t>(status.st_size);
    });
}

std::size_t File::ReadAt(std::uint64_t offset, std::span<std::byte> buffer) const {
    if (!mIsRemote) return ReadFrom(Descriptor(mHandle), mPath, offset, buffer);
    // A call that is given up may still fill its buffer, long after this one is gone.
    const auto bytes = std::make_shared<std::vector<std::byte>>(buffer.size());
    const std::size_t got = Bounded([offset, bytes](int descriptor, const std::string& path) {
        return ReadFrom(descriptor, path, offset, *bytes);
    });
    std::copy_n(bytes->begin(), got, buffer.begin());
    return got;
}

void File::WriteAt(std::uint64_t offset, std::span<const std::byte> bytes) {
    if (!mWritable) throw Error(PathFileAccess).WithPath(mPath);
    if (!mIsRemote) return WriteTo(Descriptor(mHandle), mPath, offset, bytes);
    Bounded([offset, copy = std::vector(bytes.begin(), bytes.end())](
                int descriptor, const std::string& path) { WriteTo(descriptor, path, offset, copy); });
}

void File::SetLength(std::uint64_t length) {
    if (!mWritable) throw Error(PathFileAccess).WithPath(mPath);
    Bounded([length](int descriptor, const std::string& path) {
        const auto cut = [&] { return ftruncate(descriptor, static_cast<off_t>(length)); };
        if (Uninterrupted(cut) != 0) throw TransferError(path);
    });
}

/// A slow share has much to write.
void File::Sync() {
    constexpr int MuchPatience = 10;
    Bounded(
        [](int descriptor, const std::string& path) {
            if (Uninterrupted([&] { return fsync(descriptor); }) != 0) throw TransferError(path);
        },
        MuchPatience);
}

/// A lock on a file whose name has gone would keep nobody out. Other programs may lock ranges of bytes in
/// place of the whole file.
bool File::TryLock(Lock kind) {
    const bool isShared = kind == Lock::Shared;
    return Bounded([isShared](int descriptor, const std::string& path) {
        const int operation = (isShared ? LOCK_SH : LOCK_EX) | LOCK_NB;
        if (Uninterrupted([&] { return flock(descriptor, operation); }) != 0) return false;
        struct flock range {};
        range.l_type = isShared ? F_RDLCK : F_WRLCK;
        const bool isFree = fcntl(descriptor, F_GETLK, &range) != 0 || range.l_type == F_UNLCK;
        return isFree && (isShared || IsStillAt(descriptor, path));
    });
}

}  // namespace platform
