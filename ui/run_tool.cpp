#include "ui/run_tool.h"

#include <QApplication>
#include <cstdio>
#include <exception>

#include "catalogue/field_mapping.h"
#include "engine/recorded_error.h"
#include "ui/interface_window.h"
#include "ui/run_time_error.h"

namespace ui {

namespace {

constexpr int Success = 0;
constexpr int Failure = 1;

int ReportFailure(const platform::Error& error, fInterface& window) {
    window.Services().ShowHourglass(false);
    ReportRunTimeError(error, window.State(), window.Services().DialogParent());
    return Failure;
}

/// A site that gives no engine ends the tool without a word to the operator; who looks closer finds out why.
void TellRecordedError() {
    if (const auto& error = engine::LastRecordedError()) std::fprintf(stderr, "%s\n", error->what());
}

int RunWindow(fInterface& window) {
    if (!window.Form_Load()) {
        TellRecordedError();
        return Success;
    }
    window.show();
    const int status = QApplication::exec();
    window.Trap().RethrowIfTripped();
    return status;
}

}  // namespace

int RunTool() {
    // The window says itself when the tool ends: a message box before it would be the last window closed.
    QApplication::setQuitOnLastWindowClosed(false);
    fInterface window;
    try {
        return RunWindow(window);
    } catch (const catalogue::StopRequested&) {
        return Success;
    } catch (const std::exception&) {
        return ReportFailure(platform::ErrorInHand(), window);
    }
}

}  // namespace ui
