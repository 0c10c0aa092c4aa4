// Rows as bytes. Jet 4:
//
//   u16 column count c | fixed area | variable values | u16 end of these (EOD) | u16 offsets of the variable
//   values, last first | u16 variable count v | null mask of (c + 7) / 8 bytes
//
// Jet 3 has one-byte counts and offsets, and between offsets and v one "jump" byte for each started 256 bytes
// of row beyond the first. A table that never had a variable column has neither EOD, offsets nor v. Column
// number n is bit n of the null mask: set = not Null; a Boolean is its bit and nothing else. A row may be
// older than its table's newest columns; those are Null in it.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "platform/jet/table_def.h"
#include "platform/jet/value.h"

namespace jet {

/// A row of either version, read in place.
class RowReader {
  public:
    /// Raises 3428 for bytes that cannot be a row of that table. row must outlive the reader.
    RowReader(const PageFile& file, const TableDef& table, std::span<const std::uint8_t> row);

    /// The stored bytes of a column; nothing for Null, and for every Boolean. Raises 3428.
    std::optional<std::span<const std::uint8_t>> Field(const Column& column) const;

    /// The bit of the null mask: not Null, or a Boolean's value.
    bool Bit(const Column& column) const;

    /// The value of any column but the long ones, Null included.
    Value Read(const Column& column) const;

    /// Whether the row was written when the table had the column already.
    bool Holds(const Column& column) const { return column.Number < mColumnCount; }

    // Places in the row, for changing it.
    std::size_t MaskAt() const { return mMaskAt; }
    std::size_t FixedAt() const { return mFixedAt; }

  private:
    void ReadJet4Offsets();
    void ReadJet3Offsets();

    const PageFile& mFile;
    std::span<const std::uint8_t> mRow;
    bool mJet4;
    std::size_t mColumnCount = 0;
    std::size_t mFixedAt = 0;
    std::size_t mMaskAt = 0;
    std::vector<std::size_t> mOffsets;  // of the variable values, and behind the last one
};

/// A Boolean column's value; Null means False. Raises 3421 for a value of another kind.
bool BooleanOf(const Value& value);

/// Writes the bytes of a fixed value; target has room for column.Size bytes. Raises 3421 for a value of
/// another kind or out of the column's range.
void EncodeFixed(const Column& column, const Value& value, std::uint8_t* target);

/// Builds Jet 4 rows of one table in a buffer that is used again.
class RowEncoder {
  public:
    /// A long value that does not fit into the row: its place in the row's bytes waits for a reference.
    struct LongPart {
        std::uint16_t ColumnNumber;
        std::size_t ReferenceAt;
        std::size_t Start;  // in the encoder's buffer of long values
        std::size_t Length;
    };

    explicit RowEncoder(const TableDef& table);

    /// Builds the row of these values, one a column in the order of the definition. Raises 3421 (wrong kind
    /// or out of range), 3163 (text or bytes longer than the column), 3047 (row too long).
    void Encode(std::span<const Value> values);

    std::span<std::uint8_t> Row() { return {mRow.data(), mLength}; }
    const std::vector<LongPart>& LongParts() const { return mLongParts; }
    /// The bytes of a long value that wait to be stored.
    std::span<const std::uint8_t> LongBytes(const LongPart& part) const {
        return std::span(mLongBytes).subspan(part.Start, part.Length);
    }

  private:
    struct Place {
        Column Definition;
        std::size_t Position;  // in the values
    };

    void AppendVariable(const Place& place, const Value& value);
    void AppendText(const Column& column, const std::u16string& text);
    void AppendLongValue(const Column& column, const Value& value);
    void AppendBytes(std::span<const std::uint8_t> bytes);
    void AppendTrailer(std::span<const Value> values);

    std::vector<Place> mFixed;
    std::vector<Place> mVariable;  // by variable index
    std::size_t mVariableCount;    // deleted columns included
    std::size_t mColumnCount;      // deleted columns included
    std::size_t mFixedEnd;
    std::vector<std::uint8_t> mRow;
    std::size_t mLength = 0;
    std::vector<std::size_t> mOffsets;
    std::vector<LongPart> mLongParts;
    std::vector<std::uint8_t> mLongBytes;
};

}  // namespace jet
