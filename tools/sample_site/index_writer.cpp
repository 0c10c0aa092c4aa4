#include "tools/sample_site/index_writer.h"

#include <algorithm>
#include <stdexcept>

#include "engine/field_codec.h"
#include "engine/index_layout.h"
#include "engine/open_file.h"
#include "platform/error.h"

namespace sample {

namespace {

using engine::iPack;
using engine::PointerLength;
using platform::ByteString;

// Header block, 1-based. The extended format keeps bits 16 to 23 of three words in bytes 17 to 19.
constexpr std::int32_t HeaderEntryLength = 1;
constexpr std::int32_t HeaderEntriesPerBlock = 3;
constexpr std::int32_t HeaderLastRecord = 5;
constexpr std::int32_t HeaderNextBlock = 7;
constexpr std::int32_t HeaderRoot = 9;
constexpr std::int32_t HeaderFillEntries = 11;
constexpr std::int32_t HeaderDuplicates = 13;
constexpr std::int32_t HeaderFormatMark = 15;
constexpr std::int32_t HeaderHighLastRecord = 17;
constexpr std::int32_t HeaderHighNextBlock = 18;
constexpr std::int32_t HeaderHighRoot = 19;
constexpr std::string_view ExtendedMark = "09";

// Other blocks. The extended format knows the leaf before as well.
constexpr std::int32_t BlockCount = 1;
constexpr std::int32_t BlockLink = 3;
constexpr std::int32_t BlockBefore = 5;
constexpr std::int32_t BlockHighLink = 7;
constexpr std::int32_t BlockHighBefore = 8;
constexpr int EqualNumberLength = 2;
constexpr int HighByte = 16;  // bits below it

// Percentages of a block.
constexpr std::int64_t LeastFill = 60;
constexpr std::int64_t InteriorFill = 75;
constexpr std::int64_t Whole = 100;

bool IsExtended(const IndexShape& shape) {
    return shape.Format == IndexFormat::Extended2048;
}

std::int32_t LastLeafMark(const IndexShape& shape) {
    return IsExtended(shape) ? engine::ExtendedLastLeaf : engine::LastLeaf;
}

bool NumbersEqualKeys(const IndexShape& shape) {
    return IsExtended(shape) && shape.Duplicates;
}

std::int32_t Filled(const IndexShape& shape, std::int64_t percent) {
    constexpr std::int64_t Least = 2;
    return static_cast<std::int32_t>(std::max(shape.EntriesPerBlock() * percent / Whole, Least));
}

/// Pairs of leaves are exchanged: the first leaf lies in block 2, the second in block 1, and so on.
std::int32_t BlockOfLeaf(std::int32_t leaf) {
    return 1 + (leaf ^ 1);
}

}  // namespace

int IndexShape::BlockSize() const {
    return IsExtended(*this) ? engine::ExtendedBlockSize : engine::BlockSize;
}

int IndexShape::EntryLength() const {
    return KeyLength + PointerLength + (NumbersEqualKeys(*this) ? EqualNumberLength : 0);
}

int IndexShape::EntriesPerBlock() const {
    return (BlockSize() + 1 - engine::EntriesOffset(IsExtended(*this))) / EntryLength();
}

std::int64_t IndexShape::BlocksFor(std::int64_t keys) const {
    constexpr std::int64_t Spare = 3;  // for the terminator, the exchanged pair and rounding
    std::int64_t level = keys / Filled(*this, LeastFill) + Spare;
    std::int64_t blocks = level;
    while (level > 1) {
        level = (level + Filled(*this, InteriorFill) - 1) / Filled(*this, InteriorFill);
        blocks += level;
    }
    if (blocks >= LastLeafMark(*this)) throw platform::Error(platform::Overflow);
    return blocks;
}

IndexWriter::IndexWriter(const IndexShape& shape, LogicalExtent extent, Random& random)
    : mShape(shape), mExtent(extent), mRandom(random) {
    StartLeaf();
}

void IndexWriter::CheckOrder(const ByteString& key) {
    const auto compared = mEntries == 0 ? 1 : key.compare(mLastKey);
    if (key.size() != static_cast<std::size_t>(mShape.KeyLength) || compared < 0 ||
        (compared == 0 && !mShape.Duplicates)) {
        throw std::logic_error("index keys out of order");
    }
    mEqualKeys = compared == 0 ? mEqualKeys + 1 : 0;
    mLastKey = key;
}

ByteString IndexWriter::Entry(const ByteString& key, std::int32_t pointer) const {
    ByteString entry = key;
    entry.resize(static_cast<std::size_t>(mShape.EntryLength()));
    iPack('L', entry, pointer, mShape.EntryLength() - PointerLength + 1);
    return entry;
}

void IndexWriter::Add(const ByteString& key, std::int32_t record) {
    CheckOrder(key);
    ByteString entry = Entry(key, record);
    if (NumbersEqualKeys(mShape)) iPack('C', entry, mEqualKeys, mShape.KeyLength + 1);
    AppendEntry(entry);
    ++mEntries;
}

void IndexWriter::AppendEntry(const ByteString& entry) {
    if (mLeafCount == mLeafLimit) {
        WriteLeaf(false);
        StartLeaf();
    }
    mLeaf += entry;
    ++mLeafCount;
}

void IndexWriter::StartLeaf() {
    mLeaf.clear();
    mLeafCount = 0;
    mLeafLimit =
        static_cast<std::int32_t>(mRandom.Between(Filled(mShape, LeastFill), mShape.EntriesPerBlock()));
}

void IndexWriter::WriteLeaf(bool isLast) {
    const std::int32_t block = BlockOfLeaf(mLeaves);
    const std::int32_t before = mLeaves == 0 ? 0 : BlockOfLeaf(mLeaves - 1);
    WriteBlock(block, mLeafCount, isLast ? LastLeafMark(mShape) : BlockOfLeaf(mLeaves + 1), before, mLeaf);
    const std::size_t entryLength = static_cast<std::size_t>(mShape.EntryLength());
    mChildren.push_back({mLeaf.substr(mLeaf.size() - entryLength, entryLength - PointerLength), block});
    ++mLeaves;
}

void IndexWriter::WriteBlock(std::int32_t block, std::int32_t count, std::int32_t link, std::int32_t before,
                             const ByteString& entries) {
    if (block > mExtent.LastRecord()) throw platform::Error(platform::Overflow);
    ByteString bytes(static_cast<std::size_t>(mShape.BlockSize()), '\0');
    iPack('C', bytes, count, BlockCount);
    iPack('C', bytes, link, BlockLink);
    if (IsExtended(mShape)) {
        iPack('B', bytes, link >> HighByte, BlockHighLink);
        iPack('C', bytes, before, BlockBefore);
        iPack('B', bytes, before >> HighByte, BlockHighBefore);
    }
    platform::Put(bytes, engine::EntriesOffset(IsExtended(mShape)), entries);
    mExtent.Write(block, bytes);
}

/// The terminator never has a leaf to itself: a full leaf gives up its last key to go with it.
void IndexWriter::WriteTerminator() {
    const ByteString terminator(static_cast<std::size_t>(mShape.EntryLength()), '\xFF');
    if (mLeafCount == mShape.EntriesPerBlock()) {
        const std::size_t kept = mLeaf.size() - terminator.size();
        const ByteString moved = mLeaf.substr(kept);
        mLeaf.resize(kept);
        --mLeafCount;
        mLeafLimit = mLeafCount;
        AppendEntry(moved);
    }
    mLeaf += terminator;
    ++mLeafCount;
    WriteLeaf(true);
}

std::vector<IndexWriter::Child> IndexWriter::WriteLevel(const std::vector<Child>& children) {
    constexpr std::int32_t InteriorMark = 0;
    const auto perBlock = static_cast<std::size_t>(Filled(mShape, InteriorFill));
    std::vector<Child> parents;
    for (std::size_t first = 0; first < children.size(); first += perBlock) {
        const std::size_t end = std::min(first + perBlock, children.size());
        ByteString entries;
        for (std::size_t i = first; i < end; ++i) entries += Entry(children[i].Key, children[i].Block);
        WriteBlock(++mBlocks, static_cast<std::int32_t>(end - first), InteriorMark, 0, entries);
        parents.push_back({children[end - 1].Key, mBlocks});
    }
    return parents;
}

void IndexWriter::Finish() {
    WriteTerminator();
    mLevels = 1;
    mBlocks = (mLeaves + 1) / 2 * 2;  // an odd last leaf leaves the block of its pair unused
    std::vector<Child> level = std::move(mChildren);
    for (; level.size() > 1; ++mLevels) level = WriteLevel(level);
    WriteHeader(level.front().Block);
}

void IndexWriter::WriteHeader(std::int32_t root) {
    constexpr std::int32_t DuplicatesAllowed = -1;
    const std::int32_t nextBlock = mBlocks + 1;
    ByteString header(static_cast<std::size_t>(mShape.BlockSize()), '\0');
    iPack('C', header, mShape.EntryLength(), HeaderEntryLength);
    iPack('C', header, mShape.EntriesPerBlock(), HeaderEntriesPerBlock);
    iPack('C', header, mExtent.LastRecord(), HeaderLastRecord);
    iPack('C', header, nextBlock, HeaderNextBlock);
    iPack('C', header, root, HeaderRoot);
    iPack('C', header, Filled(mShape, InteriorFill), HeaderFillEntries);
    if (mShape.Duplicates) iPack('C', header, DuplicatesAllowed, HeaderDuplicates);
    if (IsExtended(mShape)) {
        platform::Put(header, HeaderFormatMark, ExtendedMark);
        iPack('B', header, mExtent.LastRecord() >> HighByte, HeaderHighLastRecord);
        iPack('B', header, nextBlock >> HighByte, HeaderHighNextBlock);
        iPack('B', header, root >> HighByte, HeaderHighRoot);
    }
    mExtent.Write(0, header);
}

}  // namespace sample
