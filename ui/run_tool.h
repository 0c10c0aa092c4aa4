// The tool from start to end.
#pragma once

namespace ui {

/// Opens the main window and runs it until it is closed. Returns the exit status: 0, or 1 after an error that
/// nothing handled and that has been reported. A QApplication must exist.
int RunTool();

}  // namespace ui
