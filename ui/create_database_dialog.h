// The save dialog for the target database.
#pragma once

#include <QString>
#include <string>

#include "ui/window_services_qt.h"

namespace ui {

/// Lets the operator choose a file and deletes the one that stands there; the dialog has asked before. Empty
/// when the operator cancels, and, after a message, when the file cannot be deleted.
QString CreateDatabaseDialog(QtWindowServices& services);

/// Deletes the file at path (UTF-8). False when that fails for another reason than that there is none, and
/// when another program has the database open.
bool DeleteFormerDatabase(const std::string& path);

}  // namespace ui
