#include "platform/bounded_call.h"

#include <condition_variable>
#include <mutex>
#include <thread>

namespace platform {

namespace {

std::chrono::milliseconds thePatience = std::chrono::minutes(1);
thread_local bool isCallThread = false;

/// What a thread for calls shares with the one that asks it: the thread keeps it alive for as long as it
/// lives.
class Desk {
  public:
    /// Whether task has ended before patience did.
    bool Hand(std::function<void()> task, std::chrono::milliseconds patience) {
        std::unique_lock lock(mMutex);
        mTask = std::move(task);
        mChanged.notify_all();
        return mChanged.wait_for(lock, patience, [this] { return !mTask; });
    }

    void Serve() {
        isCallThread = true;
        std::unique_lock lock(mMutex);
        while (true) {
            mChanged.wait(lock, [this] { return static_cast<bool>(mTask); });
            lock.unlock();
            mTask();
            lock.lock();
            mTask = nullptr;
            mChanged.notify_all();
        }
    }

  private:
    std::mutex mMutex;
    std::condition_variable mChanged;
    std::function<void()> mTask;  // whoever asks waits while there is one
};

std::shared_ptr<Desk> NewDesk() {
    auto desk = std::make_shared<Desk>();
    std::thread([desk] { desk->Serve(); }).detach();
    return desk;
}

}  // namespace

void SetCallPatience(std::chrono::milliseconds patience) {
    thePatience = patience;
}

bool RunsInTime(std::function<void()> task, int patience) {
    static std::shared_ptr<Desk> desk;
    if (isCallThread) {
        task();
        return true;
    }
    if (!desk) desk = NewDesk();
    if (desk->Hand(std::move(task), thePatience * patience)) return true;
    desk.reset();  // its thread hangs
    return false;
}

}  // namespace platform
