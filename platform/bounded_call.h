// Calls to the system that may never come back, because they ask a share of the network that is gone. Such a
// call is made on another thread, and given up when it takes too long; nobody waits for that thread any more,
// not even the end of the process.
#pragma once

#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <string_view>
#include <type_traits>
#include <utility>

#include "platform/error.h"

namespace platform {

/// A call that was given up: 57 "Device I/O error", with the path it concerns.
class CallGivenUp : public Error {
  public:
    explicit CallGivenUp(std::string_view path) : Error(platform::Error(DeviceIoError).WithPath(path)) {}
};

/// How long a call may take from now on: a minute, unless a test has less time.
void SetCallPatience(std::chrono::milliseconds patience);

/// Runs task on the thread for such calls; on that thread itself, straight away. False when it has not ended
/// in patience times the usual time. One thread at a time may call this.
bool RunsInTime(std::function<void()> task, int patience);

/// What call returns or raises. Raises CallGivenUp when it does not end in time; call may go on then, so it
/// must own everything that it touches.
template <typename Call>
auto BoundedCall(std::string_view path, Call call, int patience = 1) {
    using Result = std::invoke_result_t<Call>;
    const auto task = std::make_shared<std::packaged_task<Result()>>(std::move(call));
    if (!RunsInTime([task] { (*task)(); }, patience)) throw CallGivenUp(path);
    return task->get_future().get();
}

}  // namespace platform
