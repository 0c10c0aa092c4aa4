// Record decoding: turns one field of a record into a column value by its one-letter type code.
//
//   A text            C L compressed text    P part number       X one character of a compressed text
//   B bit as Y or N   D J R packed date      W integer           Y Z state and postal code of an address
//   I U integer with implied decimals, signed and unsigned       M m amount in hundredths, signed and
//   unsigned
//
// Any other code gives the empty value. Unpack decodes by a field descriptor; the export run prepares a
// FieldDecoder for each descriptor once and decodes every record with it, with the same outcome.
#pragma once

#include <cstdint>
#include <string_view>
#include <variant>

#include "catalogue/interface_state.h"
#include "platform/byte_string.h"
#include "platform/dao/recordset.h"
#include "platform/ole_date.h"

namespace exporting {

using platform::ByteString;

/// Empty, text, 32-bit integer, double or date.
using ColumnValue = std::variant<std::monostate, ByteString, std::int32_t, double, platform::OleDate>;

/// The texts of the record in hand. Fields often read the same compressed bytes (an address gives three
/// columns), so the expansion made last is kept. What the operations give lives until the next one.
class RecordTexts {
  public:
    /// Turns to record, which must outlive the work on its texts.
    void Begin(const ByteString& record);

    const ByteString& Record() const { return *mRecord; }

    /// The bytes from 1-based position on, and the text that they stand for when compressed. Raise 5 for a
    /// position or length that no text has.
    std::string_view Plain(std::int32_t position, std::int32_t length) const;
    std::string_view Expanded(std::int32_t position, std::int32_t length);

    /// A text made from them.
    std::string_view Keep(ByteString text);

  private:
    const ByteString* mRecord = nullptr;
    std::int32_t mExpandedPosition = 0;  // 0 while nothing is expanded
    std::int32_t mExpandedLength = 0;
    ByteString mExpanded;
    ByteString mKept;
};

class FieldDecoder {
  public:
    /// Raises nothing: a descriptor that cannot be decoded fails record by record.
    explicit FieldDecoder(const catalogue::cInterface& Item);

    /// The field's value in Rec. Raises 5 for a position or length that no text has, for an integer of
    /// less than one byte and for the signed reading beyond the record's end; 100 "UnPack" for an integer of
    /// more than four bytes; 31 "UnPack" for an integer that ends beyond the record; 6 for a bit number or
    /// decimals out of range and for a value that its decimals make too large, 11 for decimals too far below
    /// 0.
    ColumnValue Decode(const ByteString& Rec) const;

    /// Whether every value of the field is a text: what Text gives, which raises what Decode raises.
    bool IsText() const { return mIsText; }
    std::string_view Text(RecordTexts& record) const;

  private:
    std::int32_t Integer(const ByteString& Rec) const;
    double Scaled(std::int32_t value) const;
    std::string_view Flag(const ByteString& Rec) const;

    char16_t mCode;  // 0 where the descriptor's code is not one letter
    char mOpcode;    // of an integer of mLength bytes
    bool mIsText;
    std::int32_t mLength;
    std::int32_t mStart;
    std::int32_t mTypeSpec;
    double mPower;  // what TypeSpec makes of 10, or of 2 for a bit number
};

/// The value of the field that Item describes. Raises what FieldDecoder::Decode raises.
ColumnValue Unpack(const catalogue::cInterface& Item, const ByteString& Rec);

/// The descriptor by which a key of the positioned `LogicalIndexDefinition` row is decoded.
catalogue::cInterface KeyDescriptor(dao::Recordset& Item);

/// The value of the key Rec by the positioned `LogicalIndexDefinition` row, unscaled.
ColumnValue UnpackKey(dao::Recordset& Item, const ByteString& Rec);

}  // namespace exporting
