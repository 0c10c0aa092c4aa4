// The calls by which this program reads and changes files, seen by a test as they are made. A test program
// that links disk_calls.cpp and disk_calls_posix.cpp or disk_calls_windows.cpp has its own pread, pwrite,
// ftruncate and fsync, or ReadFile, WriteFile, SetEndOfFile and FlushFileBuffers, in front of the system's.
#pragma once

#include <functional>

namespace test {

class DiskCalls {
  public:
    /// From now on and as long as this object lives, beforeChange and beforeRead are asked before each call;
    /// the call fails with the errno that they give, and is made when they give 0. One object at a time.
    explicit DiskCalls(
        std::function<int()> beforeChange, std::function<int()> beforeRead = [] { return 0; });
    ~DiskCalls();
    DiskCalls(const DiskCalls&) = delete;
    DiskCalls& operator=(const DiskCalls&) = delete;
};

/// The errno with which a call in hand fails, 0 when it may be made; for the stand-ins of the calls.
int FailureOfChange();
int FailureOfRead();

}  // namespace test
