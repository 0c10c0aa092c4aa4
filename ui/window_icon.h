// The program's icon.
#pragma once

#include <QIcon>

namespace ui {

/// A ledger sheet whose rows go into a database, drawn for every size from 16 to 256 pixels.
QIcon WindowIcon();

}  // namespace ui
