// A recording window in which a test acts where events would be handled.
#pragma once

#include <functional>

#include "tests/support/recording_window.h"

namespace test {

class ScriptedWindow : public RecordingWindow {
  public:
    std::function<void()> OnYield = [] {};

    void Yield() override {
        RecordingWindow::Yield();
        OnYield();
    }

    std::string LastStatus() const { return Statuses.empty() ? "" : Statuses.back(); }
};

}  // namespace test
