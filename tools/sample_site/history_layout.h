// Where things lie in an invoice history record and in the detail record that an export builds for each of
// its lines. Positions are 1-based.
//
// The lines of an invoice fill one or more history records, chained by record number: the key file points at
// the one with the highest sequence number, each links to the next lower one, and sequence 1 ends the chain.
// Lines are counted from sequence 1 upwards. A line of 44 bytes becomes bytes 9 to 52 of its detail record. A
// record may count one line more than it holds; its detail record keeps the bytes of the line before.
#pragma once

namespace sample::history {

inline constexpr int RecordLength = 512;
inline constexpr int FirstLine = 161;
inline constexpr int LineLength = 44;
inline constexpr int LinesPerRecord = (RecordLength - FirstLine + 1) / LineLength;

inline constexpr int Description = 86;
inline constexpr int InvoiceNumber = 106;
inline constexpr int NextRecord = 110;
inline constexpr int Sequence = 115;
inline constexpr int TransactionType = 123;
inline constexpr int LineCount = 146;

inline constexpr int DetailLength = 76;
inline constexpr int DetailLine = 9;          // the 44 bytes of the line
inline constexpr int DetailLineBody = 11;     // the line behind its type: the text of a remark
inline constexpr int DetailDescription = 53;  // where the text of a remark ends up
inline constexpr int RemarkTextLength = 24;

/// A description that turns its invoice into a reconciliation, whatever its transaction type.
inline constexpr const char* ReconciliationDescription = " WARRANTY RECONCILIATION";

/// Transaction types that are multiples of this are exported with quantities rewritten.
inline constexpr int RewrittenTypes = 5;

}  // namespace sample::history
