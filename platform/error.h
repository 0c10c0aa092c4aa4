// The one exception type of the whole system. Engine errors, run-time errors of the platform and data-access
// errors are all a triple of number, source and description; tests and callers compare all three. Texts are
// UTF-8.
#pragma once

#include <exception>
#include <string>
#include <string_view>

namespace platform {

// Numbers of run-time errors that the platform itself raises.
inline constexpr int InvalidArgument = 5;
inline constexpr int Overflow = 6;
inline constexpr int OutOfMemory = 7;
inline constexpr int SubscriptOutOfRange = 9;
inline constexpr int DivisionByZero = 11;
inline constexpr int TypeMismatch = 13;
inline constexpr int InternalError = 51;
inline constexpr int BadFileNumber = 52;
inline constexpr int FileNotFound = 53;
inline constexpr int DeviceIoError = 57;
inline constexpr int DiskFull = 61;
inline constexpr int PermissionDenied = 70;
inline constexpr int PathFileAccess = 75;
inline constexpr int PathNotFound = 76;
inline constexpr int ObjectNotSet = 91;
inline constexpr int InvalidUseOfNull = 94;

class Error : public std::exception {
  public:
    Error(int number, std::string source, std::string description);

    /// A run-time error of the platform: no source, and the standard text that belongs to the number.
    explicit Error(int number);

    /// The same error with the path it concerns. The path goes into the report on standard error only;
    /// number, source and description stay what they are.
    Error WithPath(std::string_view path) const;

    const char* what() const noexcept override { return mReport.c_str(); }

    int Number;
    std::string Source;
    std::string Description;
    std::string Path;

  private:
    void ComposeReport();

    std::string mReport;
};

/// The report of an error that ends a program: "Run-time error 'N':", an empty line, and the description.
std::string RunTimeErrorReport(const Error& error);

/// The same for standard error, which also learns the path.
std::string RunTimeErrorReportWithPath(const Error& error);

/// Whether an error tells that a file, or the disk or share it lies on, fails or refuses: 57, 61, 70 and 75.
/// That there is no such file is another matter.
bool IsFileFailure(const Error& error);

/// The exception in hand, for use in a catch block: an Error as it is, lack of memory as 7 "Out of memory",
/// and any other std::exception as 51 "Internal error: " and what it says.
Error ErrorInHand();

/// The standard text of a run-time error number, such as "Overflow" for 6; "Application-defined or
/// object-defined error" for a number that has none.
std::string RunTimeErrorText(int number);

}  // namespace platform
