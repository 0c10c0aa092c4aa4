// One line of an invoice: its 44 bytes as the history record holds them, and the row that an export makes of
// it.
#pragma once

#include <vector>

#include "platform/byte_string.h"
#include "tools/sample_site/row_context.h"
#include "tools/sample_site/table_spec.h"

namespace sample {

struct HistoryLine {
    platform::ByteString Bytes;   // none for a line that the record counts and does not hold
    std::vector<FieldValue> Row;  // in the order of the detail table's fields
};

class HistoryLineMaker {
  public:
    explicit HistoryLineMaker(const TableSpec& detail);

    /// The next line of the invoice in row, numbered from 1 on. The lines of a rewritten invoice keep their
    /// type as one plain character and their quantity, with its sign, where others keep their cost.
    HistoryLine Make(RowContext& row, std::int64_t lineNumber, bool rewritten) const;

    /// The line that the record counts behind its last one, before, without holding it.
    HistoryLine Repeated(const HistoryLine& before, std::int64_t lineNumber, bool rewritten) const;

  private:
    platform::ByteString Packed(const std::vector<FieldValue>& values) const;
    HistoryLine Remark(RowContext& row, std::vector<FieldValue> values) const;
    HistoryLine Rewritten(RowContext& row, std::vector<FieldValue> values) const;

    const TableSpec& mDetail;
    std::size_t mLineNumber;
    std::size_t mLineType;
    std::size_t mPartNumber;
    std::size_t mReference;
    std::size_t mUnitPrice;
    std::size_t mQuantityFactor;
    std::size_t mQuantity;
    std::size_t mExtendedCost;
    std::size_t mLocation;
    std::size_t mPriceCode;
    std::size_t mCostCentre;
    std::size_t mDescription;
};

}  // namespace sample
