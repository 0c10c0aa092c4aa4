// A cursor over the rows of a table or of a query's result. A recordset opened on a table can walk a named
// index.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "platform/dao/table_def.h"
#include "platform/dao/value.h"

namespace dao {

/// One column of a recordset: its description, and its value in the current row or in the row being edited.
class RecordsetField {
  public:
    virtual ~RecordsetField() = default;

    virtual const std::u16string& Name() const = 0;
    virtual FieldType Type() const = 0;
    virtual int Size() const = 0;  // characters for Text, bytes for the fixed types, 0 for Memo

    /// The value in the row being added or edited, otherwise in the current row. Raises 3021 without a
    /// current row.
    virtual Value GetValue() const = 0;

    /// Converts to the column's type and puts the value into the row being added or edited, which keeps its
    /// former value when this fails. Raises 3020 outside AddNew and Edit, 3421 (not convertible or out of
    /// range), 3163 (text longer than the column), 3315 (zero-length text).
    virtual void SetValue(const Value& value) = 0;
};

class Recordset {
  public:
    virtual ~Recordset() = default;

    /// Walks the named index from now on. Raises 3800 for an index that the table lacks, 3251 on a query's
    /// result.
    virtual void SetIndex(std::u16string_view name) = 0;

    /// Raises 3021 when there is no row.
    virtual void MoveFirst() = 0;

    /// Moves to the next row of the current order; behind the last one AtEnd turns true. Raises 3021 at the
    /// end.
    virtual void MoveNext() = 0;

    /// The system's EOF: no current row behind the last one, or no row at all.
    virtual bool AtEnd() const = 0;

    /// Looks for the first row whose index key equals keys (one a column of the index). comparison is "=".
    /// Raises 3019 without an index, 3251 on a query's result, 3001 for another comparison.
    virtual void Seek(std::string_view comparison, std::span<const Value> keys) = 0;
    /// The same for an index of one column.
    void Seek(std::string_view comparison, const Value& key) {
        Seek(comparison, std::span<const Value>(&key, 1));
    }

    /// Whether the last Seek found nothing; there is no current row then.
    virtual bool NoMatch() const = 0;

    /// Begins to change the current row. Raises 3021 without one, 3027 in a file open for reading only.
    virtual void Edit() = 0;

    /// Begins a new row, all Null. A row begun before and not updated is lost.
    virtual void AddNew() = 0;

    /// Writes the row begun by AddNew or Edit with all its index entries. Raises 3020 without one, 3022
    /// (duplicate in a unique index), 3058 (Null in a primary key), 3047 (row too large), 3036 (file at its
    /// limit). Nothing is written then.
    virtual void Update() = 0;

    /// Raises 3265 for a name or 0-based position that the table lacks. The reference lives as long as the
    /// recordset.
    virtual RecordsetField& Fields(std::u16string_view name) = 0;
    virtual RecordsetField& Fields(int position) = 0;
    virtual int FieldCount() const = 0;

    /// Rows in the table, or in the query's result.
    virtual std::int32_t RecordCount() const = 0;

    virtual void Close() = 0;
};

}  // namespace dao
