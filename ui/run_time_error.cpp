#include "ui/run_time_error.h"

#include <cstdio>

#include "ui/message_box.h"

namespace ui {

namespace {

constexpr int DatabaseIsClosed = 3420;  // then there is nothing to write

/// The error in hand matters more than one that writing the rest would raise.
void FlushTarget(const catalogue::InterfaceState& state) {
    if (!state.TargetDatabase) return;
    try {
        state.TargetDatabase->Flush();
    } catch (const platform::Error& failure) {
        if (failure.Number != DatabaseIsClosed) std::fprintf(stderr, "%s\n", failure.what());
    }
}

}  // namespace

std::string RunTimeErrorReport(const platform::Error& error) {
    return "Run-time error '" + std::to_string(error.Number) + "':\n\n" + error.Description;
}

// The message box may stand for hours: everything else comes first.
void ReportRunTimeError(const platform::Error& error, const catalogue::InterfaceState& state,
                        QWidget* parent) {
    const std::string report = RunTimeErrorReport(error);
    const std::string path = error.Path.empty() ? "" : " (" + error.Path + ")";
    std::fprintf(stderr, "%s%s\n", report.c_str(), path.c_str());
    FlushTarget(state);
    platform::Message message;
    message.Text = report;
    message.Critical = true;
    ShowMessageBox(message, parent);
}

}  // namespace ui
