// Writes a keyed index from keys that arrive in ascending order, in both block formats.
//
// Block 0 is the header; every other block holds a count, a link, and entries of equal length in ascending
// order: the key (followed by a two-byte number among equal keys in the extended format with duplicates) and
// a four-byte pointer. Leaves point at records and are linked left to right; the last leaf ends in a
// terminator of 255s. Interior blocks have link 0; an entry's key is the highest key of the child it points
// to.
//
// Leaves are filled to different degrees and written to their blocks in pairs the wrong way round, so that a
// reader has to follow the links. Interior entries are kept in memory: one a leaf, a few bytes each.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/byte_string.h"
#include "tools/sample_site/random.h"
#include "tools/sample_site/share_writer.h"
#include "tools/sample_site/table_spec.h"

namespace sample {

/// What an index is made of.
struct IndexShape {
    IndexFormat Format = IndexFormat::Block512;
    int KeyLength = 0;
    bool Duplicates = false;

    int BlockSize() const;
    int EntryLength() const;
    int EntriesPerBlock() const;

    /// Blocks beyond the header that are enough for so many keys. Raises 6 when the format's links cannot
    /// count that many.
    std::int64_t BlocksFor(std::int64_t keys) const;
};

class IndexWriter {
  public:
    IndexWriter(const IndexShape& shape, LogicalExtent extent, Random& random);

    /// Adds a key of the shape's length. Keys must ascend as unsigned bytes; equal ones need an index with
    /// duplicates.
    void Add(const platform::ByteString& key, std::int32_t record);

    /// Writes the last leaf, the interior blocks and the header. Nothing can be added afterwards.
    void Finish();

    std::int64_t Entries() const { return mEntries; }

    // Known after Finish.
    int Levels() const { return mLevels; }
    std::int32_t Blocks() const { return mBlocks; }

  private:
    struct Child {
        platform::ByteString Key;  // with the number among equal keys
        std::int32_t Block;
    };

    void CheckOrder(const platform::ByteString& key);
    platform::ByteString Entry(const platform::ByteString& key, std::int32_t pointer) const;
    void AppendEntry(const platform::ByteString& entry);
    void StartLeaf();
    void WriteLeaf(bool isLast);
    void WriteBlock(std::int32_t block, std::int32_t count, std::int32_t link, std::int32_t before,
                    const platform::ByteString& entries);
    std::vector<Child> WriteLevel(const std::vector<Child>& children);
    void WriteHeader(std::int32_t root);
    void WriteTerminator();

    IndexShape mShape;
    LogicalExtent mExtent;
    Random& mRandom;

    platform::ByteString mLastKey;
    std::int32_t mEqualKeys = 0;  // how many equal keys came before the one in hand

    platform::ByteString mLeaf;  // entries of the leaf in hand
    std::int32_t mLeafCount = 0;
    std::int32_t mLeafLimit = 0;  // entries at which it counts as filled
    std::int32_t mLeaves = 0;     // leaves written
    std::vector<Child> mChildren;

    std::int64_t mEntries = 0;
    std::int32_t mBlocks = 0;
    int mLevels = 0;
};

}  // namespace sample
