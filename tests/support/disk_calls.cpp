#include "tests/support/disk_calls.h"

#include <utility>

namespace test {

namespace {

struct Watchers {
    std::function<int()> BeforeChange;
    std::function<int()> BeforeRead;
};

Watchers& Watching() {
    static Watchers watchers;
    return watchers;
}

int Ask(std::function<int()> Watchers::*watcher) {
    if (!(Watching().*watcher)) return 0;
    // What a watcher itself does with files is not watched.
    const Watchers watchers = std::exchange(Watching(), {});
    const int failure = (watchers.*watcher)();
    Watching() = watchers;
    return failure;
}

}  // namespace

DiskCalls::DiskCalls(std::function<int()> beforeChange, std::function<int()> beforeRead) {
    Watching() = {std::move(beforeChange), std::move(beforeRead)};
}

DiskCalls::~DiskCalls() {
    Watching() = {};
}

int FailureOfChange() {
    return Ask(&Watchers::BeforeChange);
}

int FailureOfRead() {
    return Ask(&Watchers::BeforeRead);
}

}  // namespace test
