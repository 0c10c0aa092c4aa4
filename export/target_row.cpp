#include "export/target_row.h"

#include "platform/code_page.h"
#include "platform/error.h"

namespace exporting {

namespace {

dao::RecordsetField* ColumnNamed(dao::Recordset& target, const std::u16string& name) {
    try {
        return &target.Fields(name);
    } catch (const platform::Error&) {
        return nullptr;
    }
}

void SetNumber(dao::RecordsetField& field, const ColumnValue& value) {
    if (const auto* real = std::get_if<double>(&value)) field.SetValue(*real);
    if (const auto* number = std::get_if<std::int32_t>(&value)) field.SetValue(*number);
    if (const auto* date = std::get_if<platform::OleDate>(&value)) field.SetValue(*date);
}

}  // namespace

TargetRow::TargetRow(const std::vector<catalogue::cInterface>& fieldList, dao::Recordset& target) {
    for (const catalogue::cInterface& descriptor : fieldList) {
        dao::RecordsetField* const field = ColumnNamed(target, descriptor.Name);
        if (field != nullptr) mColumns.push_back({FieldDecoder(descriptor), field});
    }
}

void TargetRow::Fill(const ByteString& record) {
    mTexts.Begin(record);
    for (const Column& column : mColumns) {
        try {
            if (column.Decoder.IsText()) {
                platform::WideFromBytesInto(column.Decoder.Text(mTexts), std::get<std::u16string>(mText));
                column.Field->SetValue(mText);
            } else {
                SetNumber(*column.Field, column.Decoder.Decode(record));
            }
        } catch (const platform::Error&) {
            // The rules ignore what goes wrong with one field; the other columns are still filled.
        }
    }
}

}  // namespace exporting
