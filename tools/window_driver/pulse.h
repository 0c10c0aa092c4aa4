// Asks the window sixty times a second for a move, another size or a repaint, as a hand that drags it does,
// and takes the time until it has happened. The requests come from a thread of their own: they keep their
// beat however busy the window's thread is.
#pragma once

#include <QObject>
#include <chrono>
#include <optional>
#include <thread>
#include <vector>

class QWidget;

namespace driver {

class Pulse : public QObject {
  public:
    enum class Request { Move, Resize, Repaint };

    /// Beats until it is destroyed. form is the part of window that is repainted; both must outlive this
    /// object.
    Pulse(QWidget& window, QWidget& form, Request request);
    ~Pulse() override;

    /// Milliseconds from each request until the window's thread took it up, and until the window was moved,
    /// had its size or was painted. Requests that were overtaken by the next one count once, from the first.
    const std::vector<double>& TakenUp() const { return mTakenUp; }
    const std::vector<double>& Done() const { return mDone; }

    bool event(QEvent* event) override;
    bool eventFilter(QObject* receiver, QEvent* event) override;

  private:
    using Clock = std::chrono::steady_clock;

    void Beat(const std::stop_token& stop);
    void Ask();
    bool IsAnswer(const QObject* receiver, const QEvent& event) const;

    QWidget& mWindow;
    QWidget& mForm;
    const Request mRequest;
    int mBeats = 0;
    std::optional<Clock::time_point> mUnanswered;
    std::vector<double> mTakenUp;
    std::vector<double> mDone;
    std::jthread mThread;  // last: it starts when all else stands
};

}  // namespace driver
