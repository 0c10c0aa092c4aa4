// The program's icon.
#pragma once

#include <QIcon>

namespace ui {

/// A ledger sheet whose rows go into a database, in sizes from 16 to 256 pixels; packaging/icons has the
/// drawing.
QIcon WindowIcon();

}  // namespace ui
