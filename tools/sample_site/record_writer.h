// Writes plain record files window by window. A window is a run of record numbers: some hold rows, in an
// order that need not be that of the numbers, some are deleted and chained to the deleted ones before them.
//
// Record zero is the file's header: the head of the chain of deleted records, the highest record number in
// use, the number of active records. A deleted record is NUL but for the number of the next one in the chain.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/byte_string.h"
#include "tools/sample_site/random.h"
#include "tools/sample_site/share_writer.h"

namespace sample {

/// Record numbers of one window.
struct RecordWindow {
    std::int32_t First = 1;
    std::int32_t Count = 0;
    std::vector<std::int32_t> Rows;     // in the order of the rows
    std::vector<std::int32_t> Deleted;  // in the order of deletion
};

/// Hands out record numbers from 1 on.
class RecordNumbers {
  public:
    explicit RecordNumbers(Random& random) : mRandom(random) {}

    enum class Order { Ascending, Shuffled };

    RecordWindow Next(std::int64_t rows, std::int64_t deleted, Order order);

  private:
    Random& mRandom;
    std::int32_t mNext = 1;
};

class RecordWriter {
  public:
    explicit RecordWriter(LogicalExtent extent) : mExtent(extent) {}

    /// Begins a window whose records are all deleted until they are put.
    void Open(const RecordWindow& window);

    /// Sets a record of the window; bytes has the file's record length.
    void Put(std::int32_t record, std::string_view bytes);

    /// Writes the window.
    void Close();

    /// Writes record zero.
    void Finish();

    std::int64_t Active() const { return mActive; }
    std::int64_t Deleted() const { return mDeleted; }

  private:
    std::int32_t Position(std::int32_t record) const;

    LogicalExtent mExtent;
    platform::ByteString mBuffer;
    std::int32_t mFirst = 1;
    std::int32_t mHighest = 0;
    std::int32_t mChainHead = -1;
    std::int64_t mActive = 0;
    std::int64_t mDeleted = 0;
};

}  // namespace sample
