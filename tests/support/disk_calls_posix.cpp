#include <cerrno>
#include <sys/syscall.h>
#include <unistd.h>
#include <utility>

#include "tests/support/disk_calls.h"

namespace {

struct Watchers {
    std::function<int()> BeforeChange;
    std::function<int()> BeforeRead;
};

Watchers& Watching() {
    static Watchers watchers;
    return watchers;
}

/// Whether the call may be made; errno is set when it may not.
bool MayGoOn(std::function<int()> Watchers::*watcher) {
    if (!(Watching().*watcher)) return true;
    // What a watcher itself does with files is not watched.
    const Watchers watchers = std::exchange(Watching(), {});
    const int error = (watchers.*watcher)();
    Watching() = watchers;
    errno = error;
    return error == 0;
}

}  // namespace

namespace test {

DiskCalls::DiskCalls(std::function<int()> beforeChange, std::function<int()> beforeRead) {
    Watching() = {std::move(beforeChange), std::move(beforeRead)};
}

DiskCalls::~DiskCalls() {
    Watching() = {};
}

}  // namespace test

extern "C" {

ssize_t pread(int file, void* bytes, size_t count, off_t at) {
    return MayGoOn(&Watchers::BeforeRead) ? syscall(SYS_pread64, file, bytes, count, at) : -1;
}

ssize_t pwrite(int file, const void* bytes, size_t count, off_t at) {
    return MayGoOn(&Watchers::BeforeChange) ? syscall(SYS_pwrite64, file, bytes, count, at) : -1;
}

int ftruncate(int file, off_t length) noexcept {
    return MayGoOn(&Watchers::BeforeChange) ? static_cast<int>(syscall(SYS_ftruncate, file, length)) : -1;
}

int fsync(int file) {
    return MayGoOn(&Watchers::BeforeChange) ? static_cast<int>(syscall(SYS_fsync, file)) : -1;
}

}  // extern "C"
