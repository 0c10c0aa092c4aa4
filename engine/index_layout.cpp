#include "engine/index_layout.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <string>

#include "platform/checked.h"
#include "platform/code_page.h"
#include "platform/error.h"
#include "platform/numbers.h"

namespace engine {

using platform::Error;

namespace {

constexpr std::string_view ExtendedMark = "09";

constexpr std::int32_t WordLength = 2;
constexpr std::int32_t EntryLengthPosition = 1;
constexpr std::int32_t EntriesPerBlockPosition = 3;
constexpr std::int32_t LastBlockPosition = 5;
constexpr std::int32_t BlocksInUsePosition = 7;
constexpr std::int32_t RootPosition = 9;
constexpr std::int32_t FillPosition = 11;
constexpr std::int32_t DuplicateKeysPosition = 13;
constexpr std::int32_t ExtendedMarkPosition = 15;
constexpr std::int32_t HighBytesPosition = 17;

constexpr std::int32_t BlockCountPosition = 1;
constexpr std::int32_t LeafLinkPosition = 3;
constexpr std::int32_t LeafLinkHighBytePosition = 7;

constexpr std::int32_t HighByte = 0x10000;

/// Which of the header's words, from 0 on, stands at a position.
constexpr std::size_t WordAt(std::int32_t position) {
    return static_cast<std::size_t>((position - 1) / WordLength);
}

/// Where a byte of the current block stands in the work buffer.
constexpr std::int32_t InBuffer(std::int32_t blockPosition) {
    return BufferPrefix + blockPosition;
}

}  // namespace

bool IsExtendedHeader(std::string_view header) {
    return platform::Mid(header, ExtendedMarkPosition, 2) == ExtendedMark;
}

IndexHeader ParseHeader(std::string_view header) {
    std::array<std::int32_t, WordAt(ExtendedMarkPosition) + 1> words{};
    for (std::int32_t position = 1; position <= ExtendedMarkPosition; position += WordLength)
        words[WordAt(position)] = iUnpack('C', header, position);
    if (IsExtendedHeader(header)) {
        std::int32_t high = HighBytesPosition;
        for (const std::int32_t position : {LastBlockPosition, BlocksInUsePosition, RootPosition})
            words[WordAt(position)] += iUnpack('B', header, high++) * HighByte;
    }
    return {words[WordAt(EntryLengthPosition)], words[WordAt(RootPosition)],
            words[WordAt(DuplicateKeysPosition)] != 0};
}

ByteString EmptyIndexHeader(std::int32_t keyLength, std::int32_t lastBlock, bool duplicateKeys,
                            std::int32_t blockingFactor) {
    constexpr double RoomForEntries = 508;
    constexpr std::int32_t BlocksInUse = 2;
    constexpr std::int32_t FirstRoot = 1;
    constexpr std::int32_t Yes = -1;
    const std::int32_t entryLength = platform::CheckedAdd(keyLength, PointerLength);
    if (entryLength == 0) throw Error(platform::DivisionByZero);
    const double entriesPerBlock = std::floor(RoomForEntries / entryLength);

    ByteString block(BlockSize, '\0');
    iPack('C', block, entryLength, EntryLengthPosition);
    iPack('C', block, platform::RoundToLong(entriesPerBlock), EntriesPerBlockPosition);
    iPack('C', block, lastBlock, LastBlockPosition);
    iPack('C', block, BlocksInUse, BlocksInUsePosition);
    iPack('C', block, FirstRoot, RootPosition);
    iPack('C', block, platform::RoundToLong(entriesPerBlock * std::floor(blockingFactor / 100.0)),
          FillPosition);
    iPack('C', block, duplicateKeys ? Yes : 0, DuplicateKeysPosition);
    return block;
}

ByteString EmptyIndexLeaf() {
    ByteString block(BlockSize, '\xFF');
    iPack('C', block, 1, BlockCountPosition);
    return block;
}

Cursor ParseBlock(std::string_view buff, bool extended) {
    Cursor cursor;
    cursor.Entry = iUnpack('B', buff, BufferEntryPosition);
    cursor.Level = iUnpack('B', buff, BufferLevelPosition);
    cursor.Count = iUnpack('C', buff, InBuffer(BlockCountPosition));
    cursor.LeafLink = iUnpack('C', buff, InBuffer(LeafLinkPosition));
    if (extended) cursor.LeafLink += iUnpack('B', buff, InBuffer(LeafLinkHighBytePosition)) * HighByte;
    return cursor;
}

std::int32_t EntryShape::PositionOf(std::int32_t number) const {
    return platform::CheckedAdd(platform::CheckedMultiply(number - 1, Length), InBuffer(Offset));
}

EntryShape ShapeOf(std::string_view buff, bool extended) {
    const IndexHeader header = ParseHeader(buff);
    return {header.EntryLength, header.KeyLength(extended), EntriesOffset(extended)};
}

IndexEntry FetchEntry(std::string_view buff, std::int32_t number, const EntryShape& shape) {
    const std::string_view key = platform::Mid(buff, shape.PositionOf(number), shape.KeyLength);
    const std::int32_t pointer = PointerOf(buff, number, shape);
    return {key, pointer == NoPointer ? 0 : pointer};
}

std::int32_t PointerOf(std::string_view buff, std::int32_t number, const EntryShape& shape) {
    // The pointer ends where the next entry would start.
    return iUnpack('L', buff, shape.PositionOf(number + 1) - PointerLength);
}

int CompareKeys(std::string_view a, std::string_view b) {
    const std::size_t common = std::min(a.size(), b.size());
    const int difference = common == 0 ? 0 : std::memcmp(a.data(), b.data(), common);
    if (difference != 0) return difference;
    return static_cast<int>(a.size()) - static_cast<int>(b.size());
}

void ReadBlock(const std::shared_ptr<cOpenFile>& container, std::int32_t offset, std::int32_t length,
               ByteString& buff) {
    if (length < 0 || buff.size() < static_cast<std::size_t>(BufferBlockPosition))
        throw Error(platform::InvalidArgument);
    const std::span<char> room = std::span(buff).subspan(static_cast<std::size_t>(BufferPrefix));
    iReadFileInto(container, offset, room.first(std::min(room.size(), static_cast<std::size_t>(length))));
}

void CircleGuard::Visit(std::int32_t block) {
    constexpr int IllegalRecord = 81;
    if (block == mRemembered) {
        throw Error(IllegalRecord, mSource,
                    "Index blocks run in a circle.  File: " + platform::Utf8FromBytes(mFile.FileName) +
                        " Block: " + platform::PlainDecimal(block));
    }
    // The remembered block moves on after 1, 2, 4, 8 ... steps: a circle of any length is found, in constant
    // room, after at most a few rounds.
    if (++mSteps == mRememberAgainAt) {
        mRemembered = block;
        mRememberAgainAt *= 2;
    }
}

}  // namespace engine
