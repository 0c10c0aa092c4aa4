// Checks a whole database file: every page, map, table, row, long value and index.
#pragma once

#include <string>

#include "tools/mdb_check/report.h"

namespace mdb_check {

/// Reports what does not agree in the file at path. A file that cannot be opened is one damage.
void CheckFile(const std::string& path, Report& report);

}  // namespace mdb_check
