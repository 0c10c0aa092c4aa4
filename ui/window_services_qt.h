// The window services as the real window gives them.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "platform/window_services.h"
#include "ui/error_trap.h"
#include "ui/window_layout.h"

class QWidget;

namespace ui {

class QtWindowServices : public platform::WindowServices {
  public:
    /// All three must outlive this object. window may still be hidden: message boxes stand alone then.
    QtWindowServices(QWidget& window, const InterfaceControls& controls, ErrorTrap& trap);

    void ShowMessage(const platform::Message& message) override;
    void SetStatus(const std::string& text) override;
    void SetProgress(std::int32_t count, std::int32_t total) override;
    void ShowHexDisplay(const std::string& text) override;

    /// Dispatches pending events when the last dispatch lies 8 ms back; between that it only reads a clock.
    /// Every fourth time or so it renders the progress first.
    /// Raises the error of a handler that failed meanwhile.
    void Yield() override;

    /// For long work that nothing must interrupt: lets the window move and repaint, as often as Yield does,
    /// and takes no input.
    void Breathe();

    /// Whether Breathe is under way.
    bool IsBreathing() const { return mIsBreathing; }

    void EnableAction(int button, bool enabled) override;
    void ShowHourglass(bool shown) override;

    /// Turns the last two numbers of SetProgress into text, if a SetStatus has not made them stale.
    void RenderProgress();

    /// Raises the error of a handler that failed; comes after a nested event loop.
    void RethrowFailure() const { mTrap.RethrowIfTripped(); }

    /// The window that a dialog stands above: the innermost dialog, else the main window; nullptr while that
    /// is hidden.
    QWidget* DialogParent() const;

  private:
    using Clock = std::chrono::steady_clock;

    struct Progress {
        std::int32_t Count = 0;
        std::int32_t Total = 0;
        bool IsPending = false;
    };

    QWidget& mWindow;
    const InterfaceControls& mControls;
    ErrorTrap& mTrap;
    Progress mProgress;
    Clock::time_point mNextDispatch;
    Clock::time_point mNextProgress;
    bool mHasHourglass = false;
    bool mIsBreathing = false;
};

}  // namespace ui
