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

// The message box may stand for hours: everything else comes first.
void ReportRunTimeError(const platform::Error& error, const catalogue::InterfaceState& state,
                        QWidget* parent) {
    std::fprintf(stderr, "%s\n", platform::RunTimeErrorReportWithPath(error).c_str());
    FlushTarget(state);
    platform::Message message;
    message.Text = platform::RunTimeErrorReport(error);
    message.Critical = true;
    ShowMessageBox(message, parent);
}

}  // namespace ui
