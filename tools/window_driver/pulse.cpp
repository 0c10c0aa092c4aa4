#include "tools/window_driver/pulse.h"

#include <QCoreApplication>
#include <QEvent>
#include <QPaintEvent>
#include <QWidget>
#include <QWindow>

namespace driver {

namespace {

constexpr std::chrono::microseconds BeatLength(1'000'000 / 60);

using Clock = std::chrono::steady_clock;

class BeatEvent : public QEvent {
  public:
    explicit BeatEvent(Clock::time_point time) : QEvent(QEvent::User), Time(time) {}

    const Clock::time_point Time;
};

double MillisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

}  // namespace

Pulse::Pulse(QWidget& window, QWidget& form, Request request)
    : mWindow(window),
      mForm(form),
      mRequest(request),
      mThread([this](const std::stop_token& stop) { Beat(stop); }) {
    mWindow.installEventFilter(this);
    mForm.installEventFilter(this);
}

Pulse::~Pulse() {
    mThread.request_stop();
    mThread.join();
}

void Pulse::Beat(const std::stop_token& stop) {
    for (auto next = Clock::now(); !stop.stop_requested(); next += BeatLength) {
        std::this_thread::sleep_until(next);
        QCoreApplication::postEvent(this, new BeatEvent(Clock::now()));
    }
}

bool Pulse::event(QEvent* event) {
    if (event->type() != QEvent::User) return QObject::event(event);
    const auto time = static_cast<BeatEvent*>(event)->Time;
    mTakenUp.push_back(MillisecondsSince(time));
    if (!mUnanswered) mUnanswered = time;
    Ask();
    return true;
}

/// To and fro over a few pixels, each time another place or size.
void Pulse::Ask() {
    constexpr int Pixels = 40;
    const int step = ++mBeats % (2 * Pixels) < Pixels ? 1 : -1;
    QWindow& handle = *mWindow.windowHandle();
    switch (mRequest) {
        case Request::Move:
            return handle.setPosition(handle.position() + QPoint(step, step));
        case Request::Resize:
            return handle.resize(handle.size() + QSize(step, step));
        case Request::Repaint:
            return mForm.update();
    }
}

bool Pulse::IsAnswer(const QObject* receiver, const QEvent& event) const {
    switch (mRequest) {
        case Request::Move:
            return receiver == &mWindow && event.type() == QEvent::Move;
        case Request::Resize:
            return receiver == &mWindow && event.type() == QEvent::Resize;
        case Request::Repaint:  // of all of it: the status line's new text paints the ground behind it too
            return receiver == &mForm && event.type() == QEvent::Paint &&
                   static_cast<const QPaintEvent&>(event).rect() == mForm.rect();
    }
    return false;
}

bool Pulse::eventFilter(QObject* receiver, QEvent* event) {
    if (mUnanswered && IsAnswer(receiver, *event)) {
        mDone.push_back(MillisecondsSince(*mUnanswered));
        mUnanswered.reset();
    }
    return false;
}

}  // namespace driver
