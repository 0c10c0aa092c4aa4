// The report of an error that ends the tool.
#pragma once

#include "catalogue/interface_state.h"
#include "platform/error.h"

class QWidget;

namespace ui {

/// Writes the report, with the path the error concerns, to standard error, brings the rows written so far to
/// the target database's file, and shows the report in a message box above parent, which may be nullptr.
void ReportRunTimeError(const platform::Error& error, const catalogue::InterfaceState& state,
                        QWidget* parent);

}  // namespace ui
