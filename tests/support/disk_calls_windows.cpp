#include <cerrno>
#include <utility>
#include <windows.h>

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

/// Whether the call may be made; the system's last error is set when it may not.
bool MayGoOn(std::function<int()> Watchers::*watcher) {
    if (!(Watching().*watcher)) return true;
    // What a watcher itself does with files is not watched.
    const Watchers watchers = std::exchange(Watching(), {});
    const int error = (watchers.*watcher)();
    Watching() = watchers;
    if (error != 0) SetLastError(error == ENOSPC ? ERROR_DISK_FULL : ERROR_IO_DEVICE);
    return error == 0;
}

template <typename Call>
Call SystemCall(const char* name) {
    return reinterpret_cast<Call>(
        reinterpret_cast<void (*)()>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), name)));
}

BOOL WINAPI WatchedRead(HANDLE file, LPVOID bytes, DWORD count, LPDWORD got, LPOVERLAPPED place) {
    static const auto read = SystemCall<decltype(&ReadFile)>("ReadFile");
    return MayGoOn(&Watchers::BeforeRead) ? read(file, bytes, count, got, place) : FALSE;
}

BOOL WINAPI WatchedWrite(HANDLE file, LPCVOID bytes, DWORD count, LPDWORD written, LPOVERLAPPED place) {
    static const auto write = SystemCall<decltype(&WriteFile)>("WriteFile");
    return MayGoOn(&Watchers::BeforeChange) ? write(file, bytes, count, written, place) : FALSE;
}

BOOL WINAPI WatchedEnd(HANDLE file) {
    static const auto setEnd = SystemCall<decltype(&SetEndOfFile)>("SetEndOfFile");
    return MayGoOn(&Watchers::BeforeChange) ? setEnd(file) : FALSE;
}

BOOL WINAPI WatchedFlush(HANDLE file) {
    static const auto flush = SystemCall<decltype(&FlushFileBuffers)>("FlushFileBuffers");
    return MayGoOn(&Watchers::BeforeChange) ? flush(file) : FALSE;
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

// The addresses through which a program calls a function of a system library.
extern "C" {
extern decltype(&ReadFile) const __imp_ReadFile;
decltype(&ReadFile) const __imp_ReadFile = WatchedRead;
extern decltype(&WriteFile) const __imp_WriteFile;
decltype(&WriteFile) const __imp_WriteFile = WatchedWrite;
extern decltype(&SetEndOfFile) const __imp_SetEndOfFile;
decltype(&SetEndOfFile) const __imp_SetEndOfFile = WatchedEnd;
extern decltype(&FlushFileBuffers) const __imp_FlushFileBuffers;
decltype(&FlushFileBuffers) const __imp_FlushFileBuffers = WatchedFlush;
}  // extern "C"
