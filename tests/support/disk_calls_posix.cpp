#include <cerrno>
#include <sys/syscall.h>
#include <unistd.h>

#include "tests/support/disk_calls.h"

namespace {

/// Whether the call may be made; errno is set when it may not.
bool MayGoOn(int failure) {
    errno = failure;
    return failure == 0;
}

}  // namespace

extern "C" {

ssize_t pread(int file, void* bytes, size_t count, off_t at) {
    return MayGoOn(test::FailureOfRead()) ? syscall(SYS_pread64, file, bytes, count, at) : -1;
}

ssize_t pwrite(int file, const void* bytes, size_t count, off_t at) {
    return MayGoOn(test::FailureOfChange()) ? syscall(SYS_pwrite64, file, bytes, count, at) : -1;
}

int ftruncate(int file, off_t length) noexcept {
    return MayGoOn(test::FailureOfChange()) ? static_cast<int>(syscall(SYS_ftruncate, file, length)) : -1;
}

int fsync(int file) {
    return MayGoOn(test::FailureOfChange()) ? static_cast<int>(syscall(SYS_fsync, file)) : -1;
}

}  // extern "C"
