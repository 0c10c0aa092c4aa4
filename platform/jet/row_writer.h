// Adds rows to the data pages of a Jet 4 table, long values first. Encode builds the row and makes the checks
// that concern the row alone; Write puts it into the file.
#pragma once

#include <cstdint>
#include <map>
#include <span>

#include "platform/jet/long_value.h"
#include "platform/jet/row_codec.h"
#include "platform/jet/row_space.h"

namespace jet {

class RowWriter {
  public:
    RowWriter(PageFile& file, const TableDef& table);

    /// Raises what RowEncoder::Encode raises.
    void Encode(std::span<const Value> values) { mEncoder.Encode(values); }

    /// New pages that Write may need at most for the row in hand.
    std::uint32_t MostNewPages() const;

    RowPointer Write();

  private:
    PageFile& mFile;
    RowEncoder mEncoder;
    RowSpace mSpace;
    std::map<std::uint16_t, LongValueWriter> mLongValues;  // by column number
};

}  // namespace jet
