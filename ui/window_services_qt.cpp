#include "ui/window_services_qt.h"

#include <QApplication>
#include <QPushButton>

#include "ui/exec_modal.h"
#include "ui/hex_display.h"
#include "ui/message_box.h"
#include "ui/status_text_box.h"
#include "ui/window_texts.h"

namespace ui {

namespace {

constexpr std::chrono::milliseconds DispatchInterval(8);

/// As often as an eye can follow the numbers; painting them takes longer than all else that is dispatched.
constexpr std::chrono::milliseconds ProgressInterval(32);

double ShareDone(std::int32_t count, std::int32_t total) {
    return total > 0 ? static_cast<double>(count) / total : 0;
}

}  // namespace

QtWindowServices::QtWindowServices(QWidget& window, const InterfaceControls& controls, ErrorTrap& trap)
    : mWindow(window), mControls(controls), mTrap(trap) {}

QWidget* QtWindowServices::DialogParent() const {
    if (QWidget* const dialog = QApplication::activeModalWidget()) return dialog;
    return mWindow.isVisible() ? &mWindow : nullptr;
}

void QtWindowServices::ShowMessage(const platform::Message& message) {
    ShowMessageBox(message, DialogParent());
    RethrowFailure();
}

void QtWindowServices::SetStatus(const std::string& text) {
    mProgress.IsPending = false;
    mControls.txtStatus->ShowText(FromUtf8(text));
    mControls.txtStatus->repaint();
}

void QtWindowServices::SetProgress(std::int32_t count, std::int32_t total) {
    mProgress = {.Count = count, .Total = total, .IsPending = true};
}

void QtWindowServices::RenderProgress() {
    if (!mProgress.IsPending) return;
    mProgress.IsPending = false;
    mControls.txtStatus->ShowProgress(FromUtf8(platform::ProgressText(mProgress.Count, mProgress.Total)),
                                      ShareDone(mProgress.Count, mProgress.Total));
}

void QtWindowServices::ShowHexDisplay(const std::string& text) {
    frmHexDisplay display(FromUtf8(text), DialogParent());
    ExecModal(display);
    RethrowFailure();
}

void QtWindowServices::Yield() {
    const Clock::time_point now = Clock::now();
    if (now < mNextDispatch) return;
    if (now >= mNextProgress) {
        RenderProgress();
        mNextProgress = now + ProgressInterval;
    }
    QCoreApplication::processEvents();
    mNextDispatch = Clock::now() + DispatchInterval;
    RethrowFailure();
}

void QtWindowServices::Breathe() {
    if (mIsBreathing || Clock::now() < mNextDispatch) return;
    mIsBreathing = true;
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    mIsBreathing = false;
    mNextDispatch = Clock::now() + DispatchInterval;
}

void QtWindowServices::EnableAction(int button, bool enabled) {
    mControls.btnAction.at(static_cast<std::size_t>(button))->setEnabled(enabled);
}

void QtWindowServices::ShowHourglass(bool shown) {
    if (shown == mHasHourglass) return;
    mHasHourglass = shown;
    if (shown) {
        QApplication::setOverrideCursor(Qt::WaitCursor);
    } else {
        QApplication::restoreOverrideCursor();
    }
}

}  // namespace ui
