// The calls by which this program changes files, seen by a test as they are made. A test program that links
// disk_calls_posix.cpp or disk_calls_windows.cpp has its own pwrite, ftruncate and fsync, or WriteFile,
// SetEndOfFile and FlushFileBuffers, in front of the system's.
#pragma once

#include <functional>

namespace test {

class DiskCalls {
  public:
    /// From now on and as long as this object lives, before is asked before each call; the call fails with
    /// the errno that it gives, and is made when it gives 0. One object at a time.
    explicit DiskCalls(std::function<int()> before);
    ~DiskCalls();
    DiskCalls(const DiskCalls&) = delete;
    DiskCalls& operator=(const DiskCalls&) = delete;
};

}  // namespace test
