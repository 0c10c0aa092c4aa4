#include <cerrno>
#include <windows.h>

#include "tests/support/disk_calls.h"

namespace {

/// Whether the call may be made; the system's last error is set when it may not.
bool MayGoOn(int failure) {
    if (failure != 0) SetLastError(failure == ENOSPC ? ERROR_DISK_FULL : ERROR_IO_DEVICE);
    return failure == 0;
}

template <typename Call>
Call SystemCall(const char* name) {
    return reinterpret_cast<Call>(
        reinterpret_cast<void (*)()>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), name)));
}

BOOL WINAPI WatchedRead(HANDLE file, LPVOID bytes, DWORD count, LPDWORD got, LPOVERLAPPED place) {
    static const auto read = SystemCall<decltype(&ReadFile)>("ReadFile");
    return MayGoOn(test::FailureOfRead()) ? read(file, bytes, count, got, place) : FALSE;
}

BOOL WINAPI WatchedWrite(HANDLE file, LPCVOID bytes, DWORD count, LPDWORD written, LPOVERLAPPED place) {
    static const auto write = SystemCall<decltype(&WriteFile)>("WriteFile");
    return MayGoOn(test::FailureOfChange()) ? write(file, bytes, count, written, place) : FALSE;
}

BOOL WINAPI WatchedEnd(HANDLE file) {
    static const auto setEnd = SystemCall<decltype(&SetEndOfFile)>("SetEndOfFile");
    return MayGoOn(test::FailureOfChange()) ? setEnd(file) : FALSE;
}

BOOL WINAPI WatchedFlush(HANDLE file) {
    static const auto flush = SystemCall<decltype(&FlushFileBuffers)>("FlushFileBuffers");
    return MayGoOn(test::FailureOfChange()) ? flush(file) : FALSE;
}

}  // namespace

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
