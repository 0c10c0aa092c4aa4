#include "platform/error.h"

#include <array>
#include <new>
#include <utility>

namespace platform {

namespace {

struct NumberedText {
    int Number;
    const char* Text;
};

constexpr std::array RunTimeTexts{
    NumberedText{InvalidArgument, "Invalid procedure call or argument"},
    NumberedText{Overflow, "Overflow"},
    NumberedText{OutOfMemory, "Out of memory"},
    NumberedText{SubscriptOutOfRange, "Subscript out of range"},
    NumberedText{DivisionByZero, "Division by zero"},
    NumberedText{TypeMismatch, "Type mismatch"},
    NumberedText{BadFileNumber, "Bad file name or number"},
    NumberedText{FileNotFound, "File not found"},
    NumberedText{DeviceIoError, "Device I/O error"},
    NumberedText{DiskFull, "Disk full"},
    NumberedText{PermissionDenied, "Permission denied"},
    NumberedText{PathFileAccess, "Path/File access error"},
    NumberedText{PathNotFound, "Path not found"},
    NumberedText{ObjectNotSet, "Object variable or With block variable not set"},
    NumberedText{InvalidUseOfNull, "Invalid use of Null"},
};

}  // namespace

std::string RunTimeErrorText(int number) {
    for (const NumberedText& entry : RunTimeTexts) {
        if (entry.Number == number) return entry.Text;
    }
    return "Application-defined or object-defined error";
}

Error::Error(int number, std::string source, std::string description)
    : Number(number), Source(std::move(source)), Description(std::move(description)) {
    ComposeReport();
}

Error::Error(int number) : Error(number, "", RunTimeErrorText(number)) {}

Error Error::WithPath(std::string_view path) const {
    Error copy(*this);
    copy.Path = path;
    copy.ComposeReport();
    return copy;
}

void Error::ComposeReport() {
    mReport = "error " + std::to_string(Number);
    if (!Source.empty()) mReport += " in " + Source;
    mReport += ": " + Description;
    if (!Path.empty()) mReport += " (" + Path + ")";
}

std::string RunTimeErrorReport(const Error& error) {
    return "Run-time error '" + std::to_string(error.Number) + "':\n\n" + error.Description;
}

std::string RunTimeErrorReportWithPath(const Error& error) {
    return RunTimeErrorReport(error) + (error.Path.empty() ? "" : " (" + error.Path + ")");
}

bool IsFileFailure(const Error& error) {
    return error.Number == DeviceIoError || error.Number == DiskFull || error.Number == PermissionDenied ||
           error.Number == PathFileAccess;
}

Error ErrorInHand() {
    try {
        throw;
    } catch (const Error& error) {
        return error;
    } catch (const std::bad_alloc&) {
        return Error(OutOfMemory);
    } catch (const std::exception& failure) {
        return {InternalError, "", std::string("Internal error: ") + failure.what()};
    }
}

}  // namespace platform
