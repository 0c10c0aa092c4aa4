// The target database: created from nothing at the operator's path, with every table, column and index of the
// catalogue.
#pragma once

#include <string>

#include "catalogue/field_mapping.h"
#include "catalogue/interface_state.h"

namespace catalogue {

/// Creates the database at path (UTF-8) with its whole schema and leaves it open in `TargetDatabase`. Errors
/// propagate; what was appended before stays on disk. An unknown field type code throws StopRequested.
void BuildTargetDatabase(InterfaceState& state, const std::string& path);

}  // namespace catalogue
