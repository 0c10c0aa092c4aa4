// Invoice lines live inside the invoice history records, which are chained. Each record of a chain carries
// its sequence number; the chain starts at the highest one and ends at 1. Every line becomes a detail record
// of 76 bytes, laid out as the catalogue describes the table INVOICE_HISTORY_DETAIL:
//
//   1-2     1
//   3-6     bytes 106-109 of the history record
//   7-8     running line number across the chain, from 1
//   9-52    the line; of a remark line ("REM" in its first two bytes) only the type
//   53-76   the text of a remark line, else compressed blanks
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>
#include <vector>

#include "engine/logical_file.h"
#include "platform/byte_string.h"

namespace exporting {

inline constexpr std::u16string_view InvoiceDetailTable = u"INVOICE_HISTORY_DETAIL";

/// The detail records of one chain, 1 to 1600.
class DetailLines {
  public:
    static constexpr std::int32_t MostLines = 1600;

    void Clear() { mCount = 0; }

    /// Raises 9 when there are MostLines already.
    void Add(const platform::ByteString& detailRecord);

    std::int32_t Count() const { return mCount; }

    /// The detail record at 1-based index. Raises 9 outside 1 to Count.
    const platform::ByteString& Line(std::int32_t index) const;

  private:
    std::int32_t mCount = 0;
    std::vector<platform::ByteString> mLines;  // at least mCount: those behind are memory to use again
};

/// Whether the operator wants the run to stop.
using StopRequest = std::function<bool()>;

/// Replaces detailLines by the detail records of the chain that starts at record Rec of historyFile; Rec is
/// left at the link of the chain's last record. A chain that never reaches sequence number 1 is followed
/// without end; once it is longer than a sound one, stopRequested is asked at every record, and true gives no
/// lines. Raises 81 for a link that is no record, 9 for a sequence number above 200 or too many lines, 31 for
/// a record that is too short.
void ExpandInvoiceDetail(const std::shared_ptr<engine::cLogicalFile>& historyFile, std::int32_t& Rec,
                         DetailLines& detailLines, const StopRequest& stopRequested);

}  // namespace exporting
