// A window for tests: records what the routines below it ask for and answers at once.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "platform/window_services.h"

namespace test {

class RecordingWindow : public platform::WindowServices {
  public:
    void ShowMessage(const platform::Message& message) override { Messages.push_back(message); }
    void SetStatus(const std::string& text) override { Statuses.push_back(text); }
    void SetProgress(std::int32_t count, std::int32_t total) override {
        Statuses.push_back(platform::ProgressText(count, total));
    }
    void ShowHexDisplay(const std::string& text) override { HexDisplays.push_back(text); }
    void Yield() override { ++Yields; }
    void EnableAction(int button, bool enabled) override { ActionEnabled[button] = enabled; }
    void ShowHourglass(bool shown) override { Hourglass.push_back(shown); }

    std::vector<platform::Message> Messages;
    std::vector<std::string> Statuses;  // progress included, as its text
    std::vector<std::string> HexDisplays;
    std::map<int, bool> ActionEnabled;
    std::vector<bool> Hourglass;
    int Yields = 0;
};

}  // namespace test
