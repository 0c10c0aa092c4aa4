// The metadata catalogue: where it is, its cursors, and the three routines that turn its rows into working
// state.
#pragma once

#include "catalogue/interface_state.h"
#include "catalogue/table_list.h"
#include "platform/window_services.h"

namespace catalogue {

/// Opens the catalogue and its five cursors, resets the range overrides and fills the table list, in this
/// order. Data-access errors propagate; more than 76 tables raise 340.
void StartCatalogue(InterfaceState& state, TableList& list);

/// Writes 0 into `overrideStart` and `overrideEnd` of every `LogicalIndexDefinition` row.
void ResetRangeOverrides(InterfaceState& state);

/// Shows PreviousTable in box TableCount with the colour of level and advances TableCount.
void AddTable(TableList& list, std::int32_t& TableCount, const std::u16string& PreviousTable,
              const std::u16string& level);

/// The logical file of this name, empty when there is none. Raises the recorded error of a file that is there
/// and cannot be opened or read: without it every record of the table would look complete and be wrong.
std::shared_ptr<engine::cLogicalFile> OpenLogicalFile(const engine::ByteString& name);

/// Empties all six slots of `TableFiles`. Comes before every OpenFiles, which leaves a slot alone where the
/// table names no file: the slot would keep a file of the table before.
void EmptyTableFiles(InterfaceState& state);

/// Opens the logical files of the table in box Index into `TableFiles` and leaves `LogicalMapRecordset` on
/// the table's first map row. Shows "Problem finding files for " and the name when that row's name differs in
/// letter case.
void OpenFiles(InterfaceState& state, const TableList& list, platform::WindowServices& window,
               std::int16_t Index);

/// Replaces `FieldList` by the field descriptors of the table in box Index.
void BuildCollection(InterfaceState& state, const TableList& list, std::int16_t Index);

}  // namespace catalogue
