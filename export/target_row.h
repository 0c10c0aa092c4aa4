// The row of the target table that a record becomes: one decoder and one target column a field, found once a
// run.
#pragma once

#include <string>
#include <vector>

#include "catalogue/interface_state.h"
#include "export/record_decoding.h"
#include "platform/dao/recordset.h"

namespace exporting {

class TargetRow {
  public:
    /// The fields that target has a column for; target must outlive this object.
    TargetRow(const std::vector<catalogue::cInterface>& fieldList, dao::Recordset& target);

    /// Fills the columns of the row being added, in the order of the field list. A field that cannot be
    /// decoded, or whose value the column rejects, stays unset, as one with the empty value does.
    void Fill(const ByteString& record);

  private:
    struct Column {
        FieldDecoder Decoder;
        dao::RecordsetField* Field;
    };

    std::vector<Column> mColumns;
    RecordTexts mTexts;
    dao::Value mText = std::u16string();  // takes one text after the other, in the same memory
};

}  // namespace exporting
