// A library that is loaded in front of the C library (LD_PRELOAD) and lets chosen calls on chosen files fail,
// as a full disk, a broken one or a share that is gone does. What fails stands in the environment:
//
//   FAULT_CALLS       open, read, write, truncate, sync, close, remove, status or list
//   FAULT_PATH        a pattern (* and ?) for the whole path of the files meant
//   FAULT_FIRST       the first of these calls that fails, from 1; 0 for none
//   FAULT_TIMES       how many fail from there on; -1 for all
//   FAULT_WITH        the errno of the failure; "short": a transfer moves one byte less than asked for;
//                     "hang": the call never comes back
//   FAULT_REPORT      a file that gets the line "met" at the first failure, and "calls N" at the end
//   FAULT_FILESYSTEM  a pattern for files that claim to lie on a share of the network
#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <fnmatch.h>
#include <string>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

constexpr long CifsMark = 0xFF534D42;

std::string Text(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? "" : value;
}

class Fault {
  public:
    ~Fault() { Report("calls " + std::to_string(mCalls) + "\n"); }

    bool IsMeant(std::string_view call, const std::string& path) const {
        return call == mKind && fnmatch(mPattern.c_str(), path.c_str(), 0) == 0;
    }

    /// Counts a call that is meant; whether it may be made. errno is set when it may not.
    bool Passes() {
        if (!IsNext()) return true;
        if (mWith == "short") return true;
        while (mWith == "hang") pause();
        errno = std::atoi(mWith.c_str());
        return false;
    }

    /// Counts a transfer that is meant; how many of the bytes it may move, -1 when it fails.
    ssize_t Transfer(std::size_t bytes) {
        if (mWith != "short") return Passes() ? static_cast<ssize_t>(bytes) : -1;
        return static_cast<ssize_t>(IsNext() && bytes > 1 ? bytes - 1 : bytes);
    }

  private:
    bool IsNext() {
        const long call = ++mCalls;
        if (mFirst == 0 || call < mFirst || (mTimes >= 0 && call >= mFirst + mTimes)) return false;
        if (call == mFirst) Report("met\n");
        return true;
    }

    void Report(const std::string& line) const {
        const auto file = syscall(SYS_openat, AT_FDCWD, mReport.c_str(), O_WRONLY | O_APPEND | O_CREAT, 0666);
        if (file < 0) return;
        syscall(SYS_write, file, line.data(), line.size());
        syscall(SYS_close, file);
    }

    const std::string mKind = Text("FAULT_CALLS");
    const std::string mPattern = Text("FAULT_PATH");
    const std::string mWith = Text("FAULT_WITH");
    const std::string mReport = Text("FAULT_REPORT");
    const long mFirst = std::atol(Text("FAULT_FIRST").c_str());
    const long mTimes = std::atol(Text("FAULT_TIMES").c_str());
    std::atomic<long> mCalls = 0;
};

Fault& TheFault() {
    static Fault fault;
    return fault;
}

/// The path by which a file was opened.
std::string PathOf(int file) {
    char path[PATH_MAX];
    const std::string link = "/proc/self/fd/" + std::to_string(file);
    const auto length = syscall(SYS_readlink, link.c_str(), path, sizeof path);
    return length < 0 ? std::string() : std::string(path, static_cast<std::size_t>(length));
}

bool MayGoOn(std::string_view call, const std::string& path) {
    return !TheFault().IsMeant(call, path) || TheFault().Passes();
}

ssize_t Allowed(std::string_view call, int file, std::size_t bytes) {
    const bool isMeant = TheFault().IsMeant(call, PathOf(file));
    return isMeant ? TheFault().Transfer(bytes) : static_cast<ssize_t>(bytes);
}

template <typename... Arguments>
int Call(long number, Arguments... arguments) {
    return static_cast<int>(syscall(number, arguments...));
}

template <typename Entry>
Entry* NextEntry(DIR* folder, const char* name) {
    if (!MayGoOn("list", PathOf(dirfd(folder)))) return nullptr;
    return reinterpret_cast<Entry* (*)(DIR*)>(dlsym(RTLD_NEXT, name))(folder);
}

template <typename Information>
int AskFileSystem(int file, Information* information) {
    const int result = Call(SYS_fstatfs, file, information);
    if (fnmatch(Text("FAULT_FILESYSTEM").c_str(), PathOf(file).c_str(), 0) == 0)
        information->f_type = CifsMark;
    return result;
}

}  // namespace

extern "C" {

int open(const char* path, int flags, ...) {
    va_list further;
    va_start(further, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(further, mode_t) : 0;
    va_end(further);
    return MayGoOn("open", path) ? Call(SYS_openat, AT_FDCWD, path, flags, mode) : -1;
}
int open64(const char* path, int flags, ...) __attribute__((alias("open")));

ssize_t pread(int file, void* bytes, size_t count, off_t at) {
    const ssize_t allowed = Allowed("read", file, count);
    return allowed < 0 ? -1 : syscall(SYS_pread64, file, bytes, allowed, at);
}
ssize_t pread64(int file, void* bytes, size_t count, off_t at) __attribute__((alias("pread")));
ssize_t read(int file, void* bytes, size_t count) {
    const ssize_t allowed = Allowed("read", file, count);
    return allowed < 0 ? -1 : syscall(SYS_read, file, bytes, allowed);
}

ssize_t pwrite(int file, const void* bytes, size_t count, off_t at) {
    const ssize_t allowed = Allowed("write", file, count);
    return allowed < 0 ? -1 : syscall(SYS_pwrite64, file, bytes, allowed, at);
}
ssize_t pwrite64(int file, const void* bytes, size_t count, off_t at) __attribute__((alias("pwrite")));

int ftruncate(int file, off_t length) noexcept {
    return MayGoOn("truncate", PathOf(file)) ? Call(SYS_ftruncate, file, length) : -1;
}
int ftruncate64(int file, off_t length) noexcept __attribute__((alias("ftruncate")));

int fsync(int file) {
    return MayGoOn("sync", PathOf(file)) ? Call(SYS_fsync, file) : -1;
}
int fdatasync(int file) {
    return MayGoOn("sync", PathOf(file)) ? Call(SYS_fdatasync, file) : -1;
}

/// A file is closed even when its close fails.
int close(int file) {
    const bool mayGoOn = MayGoOn("close", PathOf(file));
    const int error = errno;
    const int result = Call(SYS_close, file);
    if (mayGoOn) return result;
    errno = error;
    return -1;
}

int unlink(const char* path) noexcept {
    return MayGoOn("remove", path) ? Call(SYS_unlink, path) : -1;
}

int stat(const char* path, struct stat* status) noexcept {
    return MayGoOn("status", path) ? Call(SYS_newfstatat, AT_FDCWD, path, status, 0) : -1;
}
int stat64(const char* path, struct stat64* status) noexcept {
    return stat(path, reinterpret_cast<struct stat*>(status));
}
int fstat(int file, struct stat* status) noexcept {
    return MayGoOn("status", PathOf(file)) ? Call(SYS_newfstatat, file, "", status, AT_EMPTY_PATH) : -1;
}
int fstat64(int file, struct stat64* status) noexcept {
    return fstat(file, reinterpret_cast<struct stat*>(status));
}

dirent* readdir(DIR* folder) {
    return NextEntry<dirent>(folder, "readdir");
}
dirent64* readdir64(DIR* folder) {
    return NextEntry<dirent64>(folder, "readdir64");
}

int fstatfs(int file, struct statfs* information) noexcept {
    return AskFileSystem(file, information);
}
int fstatfs64(int file, struct statfs64* information) noexcept {
    return AskFileSystem(file, information);
}

}  // extern "C"
