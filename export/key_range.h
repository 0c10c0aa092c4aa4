// Key ranges: what ticking a table does, the rules of the range dialog, and the start key that a chosen range
// gives.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "catalogue/interface_state.h"
#include "catalogue/table_list.h"
#include "platform/window_services.h"

namespace exporting {

/// The boxes of the range dialog.
enum class RangeBox { Start, End };

/// What the range dialog shows; texts in UTF-8.
struct RangeTexts {
    std::string FileDescription;   // the ticked table's name
    std::string FieldDescription;  // `KeyFieldDescription`
    std::string Start;
    std::string End;
};

/// What leaving a box of the dialog leads to: a message and the box that gets the focus, or nothing.
struct RangeObjection {
    std::string Message;
    RangeBox Focus;
};

/// The catalogue's values for the boxes of the positioned `LogicalIndexDefinition` row.
RangeTexts CatalogueRange(dao::Recordset& row, const std::u16string& tableName);

/// Tests the boxes' texts after box was left. When nothing objects, the row's override for that box is
/// stored. Raises 13 for an empty text or one that is no number, 6 for one beyond 32 bits.
std::optional<RangeObjection> LeaveRangeBox(dao::Recordset& row, RangeBox box, const std::string& start,
                                            const std::string& end);

/// The modal dialog `fRange`, as the tick handler sees it.
class RangeDialog {
  public:
    virtual ~RangeDialog() = default;

    /// Shows the texts and waits until the operator closes the dialog. row stands on the table's key
    /// description.
    virtual void ShowModal(dao::Recordset& row, const RangeTexts& texts) = 0;
};

/// The click of a check box: opens the table's files, counts its records, lets the operator narrow a keyed
/// table's range and sets the tool tip; clears the tool tip when the box was cleared.
void x_SelectedTable_Click(catalogue::InterfaceState& state, catalogue::TableList& list,
                           platform::WindowServices& window, RangeDialog& dialog, std::int16_t Index);

/// The key (`Size` bytes) at which the export of the positioned `LogicalIndexDefinition` row starts: the
/// operator's or the catalogue's start of a `U` or `I` key, zero bytes for any other type or none. Raises 5
/// for a negative size, and of a `U` or `I` key 5 or 100 "Pack" for a size of 0 or above 4 and 94, 13 or 6
/// for a start that is no 32-bit integer.
platform::ByteString PackKey(dao::Recordset& Item);

}  // namespace exporting
