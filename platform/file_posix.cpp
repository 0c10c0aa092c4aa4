#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/error.h"
#include "platform/file.h"
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
        case EIO:
        case ESTALE:
            return DeviceIoError;
        case ENOSPC:
        case EDQUOT:
            return DiskFull;
        default:
            return PathFileAccess;
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

}  // namespace

bool FileExists(std::string_view path) {
    const auto resolved = ResolvePath(path);
    struct stat status {};
    return resolved && stat(resolved->c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

void RemoveFile(std::string_view path) {
    const std::string systemPath = SystemPath(path);
    if (unlink(systemPath.c_str()) != 0) {
        const int failure = errno;
        throw Error(RefusesWriting(failure) ? PermissionDenied : NumberOf(failure, systemPath))
            .WithPath(path);
    }
}

File::File(std::string path, std::intptr_t handle, bool writable)
    : mPath(std::move(path)), mHandle(handle), mWritable(writable) {}

std::unique_ptr<File> File::Open(std::string_view path, Mode mode) {
    constexpr int OrdinaryPermissions = 0666;
    const std::string systemPath = SystemPath(path);
    int flags = OpenFlags(mode) | O_CLOEXEC;
    int descriptor = Uninterrupted([&] { return open(systemPath.c_str(), flags, OrdinaryPermissions); });
    if (descriptor < 0 && RefusesWriting(errno) && mode != Mode::CreateNew && mode != Mode::ReadOnly) {
        flags = O_RDONLY | O_CLOEXEC;
        descriptor = Uninterrupted([&] { return open(systemPath.c_str(), flags); });
    }
    if (descriptor < 0) throw Error(NumberOf(errno, systemPath)).WithPath(path);

    const bool writable = (flags & O_ACCMODE) == O_RDWR;
    std::unique_ptr<File> file(new File(std::string(path), descriptor, writable));
    struct stat status {};
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode))
        throw Error(PathFileAccess).WithPath(path);
    return file;
}

File::~File() {
    close(Descriptor(mHandle));
}

std::uint64_t File::Length() const {
    struct stat status {};
    if (fstat(Descriptor(mHandle), &status) != 0) throw Error(DeviceIoError).WithPath(mPath);
    return static_cast<std::uint64_t>(status.st_size);
}

std::size_t File::ReadAt(std::uint64_t offset, std::span<std::byte> buffer) const {
    std::size_t done = 0;
    while (done < buffer.size()) {
        const auto got = Uninterrupted([&] {
            return pread(Descriptor(mHandle), buffer.data() + done, buffer.size() - done,
                         static_cast<off_t>(offset + done));
        });
        if (got < 0) throw Error(DeviceIoError).WithPath(mPath);
        if (got == 0) break;
        done += static_cast<std::size_t>(got);
    }
    return done;
}

void File::WriteAt(std::uint64_t offset, std::span<const std::byte> bytes) {
    if (!mWritable) throw Error(PathFileAccess).WithPath(mPath);
    std::size_t done = 0;
    while (done < bytes.size()) {
        const auto put = Uninterrupted([&] {
            return pwrite(Descriptor(mHandle), bytes.data() + done, bytes.size() - done,
                          static_cast<off_t>(offset + done));
        });
        if (put < 0) throw TransferError(mPath);
        done += static_cast<std::size_t>(put);
    }
}

void File::SetLength(std::uint64_t length) {
    if (!mWritable) throw Error(PathFileAccess).WithPath(mPath);
    if (Uninterrupted([&] { return ftruncate(Descriptor(mHandle), static_cast<off_t>(length)); }) != 0) {
        throw TransferError(mPath);
    }
}

void File::Sync() {
    if (Uninterrupted([&] { return fsync(Descriptor(mHandle)); }) != 0) throw TransferError(mPath);
}

bool File::TryLock(Lock kind) {
    const int operation = (kind == Lock::Shared ? LOCK_SH : LOCK_EX) | LOCK_NB;
    return Uninterrupted([&] { return flock(Descriptor(mHandle), operation); }) == 0;
}

}  // namespace platform
