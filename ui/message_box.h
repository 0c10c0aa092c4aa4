// A message box with an OK button.
#pragma once

#include "platform/window_services.h"

class QWidget;

namespace ui {

/// Shows message above parent, or alone when that is nullptr, and waits until it is closed.
void ShowMessageBox(const platform::Message& message, QWidget* parent);

}  // namespace ui
