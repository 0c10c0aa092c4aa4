// What a keyed index holds on disk and in the caller's work buffer, and how its parts are read.
//
// An index is a B+ tree of blocks of RecordLength bytes, 512, or 2048 in the extended format. Block n starts
// at byte offset Position * 512 + n * RecordLength; block 0 is the header. All numbers are big-endian and
// unsigned unless said otherwise, all positions 1-based.
//
// Header   1-2    entry length: key length + 4 (+ 2 in an extended index with duplicate keys)
//          3-4    entries per block                                          (not used)
//          5-6, 7-8  words 3 and 4                                           (not used)
//          9-10   root block
//          11-12  word 6                                                     (not used)
//          13-14  not 0 when duplicate keys are admitted
//          15-16  "09" marks the extended format; bytes 17-19 are then bits 16-23 of words 3 and 4 and the
//          root
//
// Block    1-2    entry count
//          3-4    leaf link: 0 marks an interior block, anything else a leaf and names the next one to the
//                 right; 65535 (extended: 16777215, high byte in byte 7) marks the last leaf
//          5-     entries (extended: from 9; bytes 5, 6 and 8 are not read)
//
// Entry    the key, two bytes to skip in an extended index with duplicate keys, and a pointer (L, signed):
//          child block, or record number in a leaf; -1 stands for 0. Keys ascend; an interior entry has the
//          highest key below it; the last entry of the last leaf is the terminator, all bytes 255.
//
// Buffer   1-16   copy of header bytes 1-16
//          17, 18 number of the current entry and of the current level (root 1), one byte each: they wrap
//          17 + 2 * level, levels 1 to 7: block visited at that level (C), 512-byte format only; deeper
//          levels
//                 run into the block, there is no bounds test
//          33-    the current block
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "engine/field_codec.h"
#include "engine/logical_file.h"
#include "platform/byte_string.h"

namespace engine {

inline constexpr std::int32_t ExtendedBlockSize = 2048;
inline constexpr std::int32_t PointerLength = 4;
inline constexpr std::int32_t NoPointer = -1;  // the terminator's; an entry reports it as 0
inline constexpr std::int32_t LastLeaf = 0xFFFF;
inline constexpr std::int32_t ExtendedLastLeaf = 0xFFFFFF;

inline constexpr std::int32_t BufferPrefix = 32;  // bytes before the current block
inline constexpr std::int32_t BufferBlockPosition = BufferPrefix + 1;
inline constexpr std::int32_t BufferEntryPosition = 17;
inline constexpr std::int32_t BufferLevelPosition = 18;

struct IndexHeader {
    std::int32_t EntryLength = 0;
    std::int32_t Root = 0;  // block number
    bool DuplicateKeys = false;

    /// The bytes of a key; in the extended format two bytes of an entry of duplicate keys are no part of it.
    std::int32_t KeyLength(bool extended) const {
        constexpr std::int32_t DuplicateMarkLength = 2;
        return EntryLength - PointerLength - (extended && DuplicateKeys ? DuplicateMarkLength : 0);
    }
};

/// Whether a header carries the mark of the extended format.
bool IsExtendedHeader(std::string_view header);

/// The header in a header block or at the front of a work buffer. All eight words are read, so one that ends
/// before any of them, used or not, raises 31, as does a marked one that ends before its high bytes.
IndexHeader ParseHeader(std::string_view header);

/// A fresh header block for an empty index: root 1, room for entries of keyLength + 4 bytes. Raises 11 for
/// the keyLength -4, 6 when a field leaves 32 bits.
ByteString EmptyIndexHeader(std::int32_t keyLength, std::int32_t lastBlock, bool duplicateKeys,
                            std::int32_t blockingFactor);

/// The one leaf of an empty index: the terminator entry, every other byte 255 too.
ByteString EmptyIndexLeaf();

/// Where a work buffer stands.
struct Cursor {
    std::int32_t Entry = 0;
    std::int32_t Level = 0;
    std::int32_t Count = 0;  // entries of the current block
    std::int32_t LeafLink = 0;
};

/// Raises 31 when buff is too short.
Cursor ParseBlock(std::string_view buff, bool extended);

/// How the entries of an index lie in its blocks.
struct EntryShape {
    std::int32_t Length = 0;     // bytes per entry
    std::int32_t KeyLength = 0;  // below 0 when the length leaves no room for a pointer
    std::int32_t Offset = 0;     // 1-based position of the first entry in a block

    /// Where entry number starts in the work buffer; below 1 for entries in front of it. Raises 6 beyond 32
    /// bits.
    std::int32_t PositionOf(std::int32_t number) const;
};

/// Where entries start in a block, 1-based.
constexpr std::int32_t EntriesOffset(bool extended) {
    return extended ? 9 : 5;
}

/// The shape that the header copy in a work buffer tells. Raises 31 when buff is too short.
EntryShape ShapeOf(std::string_view buff, bool extended);

/// One entry of a block.
struct IndexEntry {
    std::string_view Key;  // in the work buffer
    std::int32_t Pointer;  // 0 in place of -1
};

/// Entry number (1-based) of the current block. There is no test against the entry count: what lies beyond
/// the block's entries is read as it stands, as far as the buffer reaches. Raises 5 when the entry would
/// start before the buffer and for an entry length that leaves no room for a key, 31 when it ends beyond the
/// buffer.
IndexEntry FetchEntry(std::string_view buff, std::int32_t number, const EntryShape& shape);

/// The pointer (L) of entry number of the current block, not translated. Raises 5 and 31.
std::int32_t PointerOf(std::string_view buff, std::int32_t number, const EntryShape& shape);

/// Position in the work buffer of the path stack's entry for a level.
constexpr std::int32_t PathPosition(std::int32_t level) {
    return BufferEntryPosition + 2 * level;
}

/// Negative when a sorts before b, 0 when they are equal, positive after: unsigned bytes, then length.
int CompareKeys(std::string_view a, std::string_view b);

/// Reads length bytes at a byte offset of the container into the work buffer as the current block; what the
/// buffer has no room for is dropped. Raises 5 for a buffer that ends before the block, and what iReadFile
/// raises.
void ReadBlock(const std::shared_ptr<cOpenFile>& container, std::int32_t offset, std::int32_t length,
               ByteString& buff);

/// Finds out when a walk from block to block runs in a circle, which only a damaged index does. Visit raises
/// 81 with the given source then.
class CircleGuard {
  public:
    CircleGuard(const char* source, const cLogicalFile& file) : mSource(source), mFile(file) {}

    /// Notes that block is about to be read. Raises 81 when it has been on this way before.
    void Visit(std::int32_t block);

  private:
    const char* mSource;
    const cLogicalFile& mFile;
    std::int32_t mRemembered = -1;
    std::uint64_t mSteps = 0;
    std::uint64_t mRememberAgainAt = 1;
};

}  // namespace engine
