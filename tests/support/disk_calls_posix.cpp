#include <cerrno>
#include <sys/syscall.h>
#include <unistd.h>
#include <utility>

#include "tests/support/disk_calls.h"

namespace {

std::function<int()>& Watcher() {
    static std::function<int()> watcher;
    return watcher;
}

/// Whether the call may be made; errno is set when it may not.
bool MayGoOn() {
    if (!Watcher()) return true;
    // What the watcher itself does with files is not watched.
    const std::function<int()> watcher = std::exchange(Watcher(), nullptr);
    const int error = watcher();
    Watcher() = watcher;
    errno = error;
    return error == 0;
}

}  // namespace

namespace test {

DiskCalls::DiskCalls(std::function<int()> before) {
    Watcher() = std::move(before);
}

DiskCalls::~DiskCalls() {
    Watcher() = nullptr;
}

}  // namespace test

extern "C" {

ssize_t pwrite(int file, const void* bytes, size_t count, off_t at) {
    return MayGoOn() ? syscall(SYS_pwrite64, file, bytes, count, at) : -1;
}

int ftruncate(int file, off_t length) noexcept {
    return MayGoOn() ? static_cast<int>(syscall(SYS_ftruncate, file, length)) : -1;
}

int fsync(int file) {
    return MayGoOn() ? static_cast<int>(syscall(SYS_fsync, file)) : -1;
}

}  // extern "C"
