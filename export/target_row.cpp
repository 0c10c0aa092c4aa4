#include "export/target_row.h"

#include <type_traits>

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

dao::Value AccessValue(const ColumnValue& value) {
    return std::visit(
        [](const auto& held) -> dao::Value {
            if constexpr (std::is_same_v<std::decay_t<decltype(held)>, ByteString>) {
                return platform::WideFromBytes(held);
            } else {
                return held;
            }
        },
        value);
}

}  // namespace

TargetRow::TargetRow(const std::vector<catalogue::cInterface>& fieldList, dao::Recordset& target) {
    for (const catalogue::cInterface& descriptor : fieldList) {
        dao::RecordsetField* const field = ColumnNamed(target, descriptor.Name);
        if (field != nullptr) mColumns.push_back({FieldDecoder(descriptor), field});
    }
}

void TargetRow::Fill(const ByteString& record) {
    for (Column& column : mColumns) {
        try {
            const ColumnValue value = column.Decoder.Decode(record);
            if (!std::holds_alternative<std::monostate>(value)) column.Field->SetValue(AccessValue(value));
        } catch (const platform::Error&) {
            // The rules ignore what goes wrong with one field; the other columns are still filled.
        }
    }
}

}  // namespace exporting
