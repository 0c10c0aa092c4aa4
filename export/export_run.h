// The export run: copies one ticked table into the target database.
#pragma once

#include <cstdint>

#include "catalogue/interface_state.h"
#include "catalogue/table_list.h"
#include "platform/window_services.h"

namespace exporting {

/// Copies the table in box Index, in key order over its key range or by record number over its status range.
/// Returns early, with the last progress text in place, when `CancelRequested` is set before or while it
/// runs. Works on its own copy of the table's files and of its catalogue row, so ticking another box in the
/// middle of a run cannot change them.
void AddData(catalogue::InterfaceState& state, const catalogue::TableList& list,
             platform::WindowServices& window, std::int16_t Index);

}  // namespace exporting
