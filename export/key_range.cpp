#include "export/key_range.h"

#include "catalogue/metadata_catalogue.h"
#include "catalogue/row_fields.h"
#include "engine/business_basic.h"
#include "engine/field_codec.h"
#include "export/end_value.h"
#include "platform/code_page.h"
#include "platform/error.h"
#include "platform/numbers.h"

namespace exporting {

using catalogue::LongOf;
using catalogue::TextOf;
using platform::ByteString;
using platform::LeadingBlankDecimal;

namespace {

constexpr std::size_t KeyFileSlot = 1;
constexpr std::size_t FirstDataSlot = 2;

// Columns of `LogicalIndexDefinition` that are read by position, 0-based.
constexpr int StartValueColumn = 3;
constexpr int OverrideStartColumn = 7;

std::string Utf8Of(dao::Recordset& row, std::u16string_view column) {
    return platform::Utf8FromWide(TextOf(row, column));
}

double RealOf(dao::Recordset& row, std::u16string_view column) {
    return dao::ToReal(row.Fields(column).GetValue());
}

/// A box's text as messages show it: read as a number first.
std::string ShownNumber(const std::string& boxText) {
    return LeadingBlankDecimal(platform::RealFromText(boxText));
}

std::string ShownNumber(dao::Recordset& row, std::u16string_view column) {
    return LeadingBlankDecimal(RealOf(row, column));
}

void StoreOverride(dao::Recordset& row, std::u16string_view column, std::int32_t value) {
    row.Edit();
    row.Fields(column).SetValue(value);
    row.Update();
}

std::optional<RangeObjection> LeaveStart(dao::Recordset& row, const std::string& start,
                                         const std::string& end) {
    const std::int32_t s = platform::LongFromText(start);
    if (s < RealOf(row, u"StartValue")) {
        return RangeObjection{"Starting Value must be > " + ShownNumber(row, u"StartValue"), RangeBox::Start};
    }
    if (s > RealOf(row, u"EndValue")) {
        return RangeObjection{"Starting Value must be < " + ShownNumber(row, u"EndValue"), RangeBox::Start};
    }
    if (s > platform::LongFromText(end)) {
        return RangeObjection{
            "Starting Value must be <= " + ShownNumber(end) + "(your selected ending value)",
            RangeBox::Start};
    }
    StoreOverride(row, u"overrideStart", s);
    return std::nullopt;
}

std::optional<RangeObjection> LeaveEnd(dao::Recordset& row, const std::string& start,
                                       const std::string& end) {
    const std::int32_t e = platform::LongFromText(end);
    if (e < RealOf(row, u"StartValue")) {
        return RangeObjection{"Endinging Value must be > " + ShownNumber(row, u"StartValue"), RangeBox::End};
    }
    if (e > RealOf(row, u"EndValue")) {
        return RangeObjection{"Ending Value must be < " + ShownNumber(row, u"EndValue"), RangeBox::End};
    }
    if (e < platform::LongFromText(start)) {
        return RangeObjection{
            "Ending Value must be => " + ShownNumber(start) + "(your selected Starting value)",
            RangeBox::Start};
    }
    StoreOverride(row, u"overrideEnd", e);
    return std::nullopt;
}

/// The keyed file's entries, or the last record of the first data file of a table without one.
std::int32_t CountRecords(const catalogue::TableFileSlots& files) {
    if (files[KeyFileSlot]) return engine::gEngine->KCount(files[KeyFileSlot], true);
    if (!files[FirstDataSlot]) throw platform::Error(platform::ObjectNotSet);
    return files[FirstDataSlot]->LastRecord;
}

bool SeekKeyDescription(dao::Recordset& rows, const ByteString& fileName) {
    catalogue::MoveToFirstByPrimaryKey(rows);
    rows.Seek("=", platform::WideFromBytes(fileName));
    return !rows.NoMatch();
}

/// The operator's bound, or the catalogue's where there is none.
std::int32_t Bound(dao::Recordset& row, std::u16string_view overrideColumn, std::u16string_view column) {
    const std::int32_t chosen = LongOf(row, overrideColumn);
    return chosen != 0 ? chosen : LongOf(row, column);
}

}  // namespace

RangeTexts CatalogueRange(dao::Recordset& row, const std::u16string& tableName) {
    return {.FileDescription = platform::Utf8FromWide(tableName),
            .FieldDescription = Utf8Of(row, u"KeyFieldDescription"),
            .Start = Utf8Of(row, u"StartValue"),
            .End = Utf8Of(row, u"EndValue")};
}

std::optional<RangeObjection> LeaveRangeBox(dao::Recordset& row, RangeBox box, const std::string& start,
                                            const std::string& end) {
    return box == RangeBox::Start ? LeaveStart(row, start, end) : LeaveEnd(row, start, end);
}

void x_SelectedTable_Click(catalogue::InterfaceState& state, catalogue::TableList& list,
                           platform::WindowServices& window, RangeDialog& dialog, std::int16_t Index) {
    if (!list.Ticked(Index)) {
        list.SetToolTip(Index, "");
        return;
    }
    catalogue::EmptyTableFiles(state);
    catalogue::OpenFiles(state, list, window, Index);
    state.TotalRecords = CountRecords(state.TableFiles);
    const std::string count = "Total Records to process: " + LeadingBlankDecimal(state.TotalRecords);
    if (!state.TableFiles[KeyFileSlot]) {
        list.SetToolTip(Index, count);
        return;
    }
    dao::Recordset& row = *state.IndexDefinitionRecordset;
    if (!SeekKeyDescription(row, state.TableFiles[KeyFileSlot]->FileName)) return;
    dialog.ShowModal(row, CatalogueRange(row, list.Caption(Index)));
    list.SetToolTip(Index, count + "   Selected Range: " +
                               LeadingBlankDecimal(Bound(row, u"overrideStart", u"StartValue")) + " to " +
                               LeadingBlankDecimal(Bound(row, u"overrideEnd", u"EndValue")));
}

ByteString PackKey(dao::Recordset& Item) {
    const std::int32_t size = LongOf(Item, u"Size");
    if (size < 0) throw platform::Error(platform::InvalidArgument);
    ByteString key(static_cast<std::size_t>(size), '\0');

    const bool isChosen = Exceeds(Item.Fields(u"overrideStart").GetValue(), 0);
    const int column = isChosen ? OverrideStartColumn : StartValueColumn;
    const dao::Value type = Item.Fields(u"DataType").GetValue();
    const bool isUnsigned = type == dao::Value(u"U");
    if (!isUnsigned && type != dao::Value(u"I")) return key;
    const std::string_view opcodes = isUnsigned ? catalogue::UnsignedOpcodes : catalogue::SignedOpcodes;
    ByteString opcode(platform::Mid(opcodes, size, 1));
    engine::Pack(opcode, key, dao::ToLong(Item.Fields(column).GetValue()), 1);
    return key;
}

}  // namespace exporting
