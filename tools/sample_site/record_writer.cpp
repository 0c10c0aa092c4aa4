#include "tools/sample_site/record_writer.h"

#include <algorithm>
#include <numeric>

#include "engine/field_codec.h"
#include "engine/records.h"

namespace sample {

namespace {

constexpr std::int32_t PlainFileMark = -2;

}  // namespace

RecordWindow RecordNumbers::Next(std::int64_t rows, std::int64_t deleted, Order order) {
    RecordWindow window{mNext, static_cast<std::int32_t>(rows + deleted), {}, {}};
    std::vector<std::int32_t> numbers(static_cast<std::size_t>(window.Count));
    std::iota(numbers.begin(), numbers.end(), mNext);
    for (std::size_t left = numbers.size(); left > 1; --left) {
        const auto other = static_cast<std::size_t>(mRandom.Below(static_cast<std::int64_t>(left)));
        std::swap(numbers[left - 1], numbers[other]);
    }
    window.Rows.assign(numbers.begin(), numbers.begin() + rows);
    window.Deleted.assign(numbers.begin() + rows, numbers.end());
    if (order == Order::Ascending) std::sort(window.Rows.begin(), window.Rows.end());
    mNext += window.Count;
    return window;
}

std::int32_t RecordWriter::Position(std::int32_t record) const {
    return (record - mFirst) * mExtent.RecordLength() + 1;
}

void RecordWriter::Open(const RecordWindow& window) {
    mFirst = window.First;
    mHighest = window.First + window.Count - 1;
    mBuffer.assign(static_cast<std::size_t>(window.Count) * static_cast<std::size_t>(mExtent.RecordLength()),
                   '\0');
    for (const std::int32_t record : window.Deleted) {
        engine::iPack('L', mBuffer, mChainHead, Position(record) + engine::NextDeletedPosition - 1);
        mChainHead = record;
    }
    mActive += std::ssize(window.Rows);
    mDeleted += std::ssize(window.Deleted);
}

void RecordWriter::Put(std::int32_t record, std::string_view bytes) {
    platform::Put(mBuffer, Position(record), bytes);
}

void RecordWriter::Close() {
    mExtent.Write(mFirst, mBuffer);
}

void RecordWriter::Finish() {
    platform::ByteString header(engine::RecordHeaderLength, '\0');
    engine::iPack('J', header, PlainFileMark, engine::HeaderStatePosition);
    engine::iPack('L', header, mChainHead, engine::ChainHeadPosition);
    engine::iPack('L', header, mHighest, engine::HighWaterPosition);
    engine::iPack('L', header, static_cast<std::int32_t>(mActive), engine::ActiveCountPosition);
    mExtent.Write(0, header);
}

}  // namespace sample
