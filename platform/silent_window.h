// A window that shows nothing and answers at once, for programs that have none.
#pragma once

#include "platform/window_services.h"

namespace platform {

class SilentWindow : public WindowServices {
  public:
    void ShowMessage(const Message&) override {}
    void SetStatus(const std::string&) override {}
    void SetProgress(std::int32_t, std::int32_t) override {}
    void ShowHexDisplay(const std::string&) override {}
    void Yield() override {}
    void EnableAction(int, bool) override {}
    void ShowHourglass(bool) override {}
};

}  // namespace platform
