// The window as the routines below it see it: message boxes, the status text, the hex display, the pointer,
// and the moments in which pending events are handled. The real window implements it; tests and benchmarks
// bring their own.
#pragma once

#include <cstdint>
#include <string>

namespace platform {

inline constexpr const char* DefaultTitle = "Vantora Database Explorer";

struct Message {
    std::string Text;                  // UTF-8
    std::string Title = DefaultTitle;  // UTF-8
    bool Critical = false;             // the stop icon
    bool SystemModal = false;          // above every other window of the system
};

/// What the routines below the window may ask of it.
class WindowServices {
  public:
    virtual ~WindowServices() = default;

    /// Shows a message box with an OK button and waits until it is closed.
    virtual void ShowMessage(const Message& message) = 0;

    /// Sets the status text (UTF-8) and repaints it at once.
    virtual void SetStatus(const std::string& text) = 0;

    /// The same for the text of a running export; kept as two numbers and turned into text (ProgressText)
    /// some thirty times a second, before events are dispatched, and when the run ends.
    virtual void SetProgress(std::int32_t count, std::int32_t total) = 0;

    /// Shows a text in the hex display and waits until it is closed.
    virtual void ShowHexDisplay(const std::string& text) = 0;

    /// Lets pending window events be handled. Called once a record.
    virtual void Yield() = 0;

    /// Enables or disables one of the three action buttons (0 Select DB, 1 Update, 2 Cancel Update).
    virtual void EnableAction(int button, bool enabled) = 0;

    /// The hourglass pointer, or the ordinary one.
    virtual void ShowHourglass(bool shown) = 0;
};

/// "Processing: " count " of " total, each number with its leading blank.
std::string ProgressText(std::int32_t count, std::int32_t total);

}  // namespace platform
