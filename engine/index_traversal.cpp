#include "engine/index_traversal.h"

#include <optional>

#include "engine/index_layout.h"
#include "engine/keyed_index.h"
#include "engine/records.h"
#include "platform/checked.h"
#include "platform/error.h"

namespace engine {

using platform::Error;

namespace {

const cLogicalFile& Required(const std::shared_ptr<cLogicalFile>& logicalFile) {
    if (!logicalFile) throw Error(platform::ObjectNotSet);
    return *logicalFile;
}

void Deliver(ByteString& buff, std::int32_t number, bool extended, ByteString& key, std::int32_t& rec) {
    const IndexEntry entry = FetchEntry(buff, number, ShapeOf(buff, extended));
    key.assign(entry.Key);
    rec = entry.Pointer;
    iPack('B', buff, number, BufferEntryPosition);
}

/// Byte offset of a block in the 512-byte format.
std::int32_t SmallBlockOffset(const cLogicalFile& file, std::int32_t block) {
    return platform::CheckedMultiply(platform::CheckedAdd(block, file.Position), BlockSize);
}

void ReadSmallBlock(const cLogicalFile& file, std::int32_t block, ByteString& buff) {
    ReadBlock(file.OpenFile, SmallBlockOffset(file, block), BlockSize, buff);
}

/// A step back through the tree: up as long as the place is the first entry of its block, then down the right
/// edge of the subtree to its left.
class StepBack {
  public:
    StepBack(const cLogicalFile& file, ByteString& buff, ByteString& key)
        : mFile(file),
          mBuff(buff),
          mKey(key),
          mShape(ShapeOf(buff, false)),
          mCursor(ParseBlock(buff, false)),
          mEntry(mCursor.Entry),
          mLeafLevel(mCursor.Level),
          mLevel(mCursor.Level) {}

    /// The number of the preceding entry, whose block is in the buffer then; nothing at the front of the
    /// index.
    std::optional<std::int32_t> Run() {
        while (mEntry == 1) {
            if (!Climb()) return std::nullopt;
        }
        while (mLevel < mLeafLevel) Descend();
        return mEntry - 1;
    }

  private:
    bool Climb() {
        --mLevel;
        if (mLevel < 1) return false;
        // The parent's entry for this block: the block's highest key with the block's own number.
        mKey = WholeEntry(mCursor.Count);
        iPack('L', mKey, iUnpack('C', mBuff, PathPosition(mLevel + 1)), mShape.Length - PointerLength + 1);

        ReadSmallBlock(mFile, iUnpack('C', mBuff, PathPosition(mLevel)), mBuff);
        mCursor = ParseBlock(mBuff, false);
        // Without a lower bound: a block that its parent does not know ends in error 5 in front of the
        // buffer.
        mEntry = mCursor.Count;
        while (WholeEntry(mEntry) != mKey) --mEntry;
        return true;
    }

    std::string_view WholeEntry(std::int32_t number) const {
        return platform::Mid(mBuff, mShape.PositionOf(number), mShape.Length);
    }

    void Descend() {
        const std::int32_t child = PointerOf(mBuff, mEntry - 1, mShape);
        ReadSmallBlock(mFile, child, mBuff);
        ++mLevel;
        iPack('C', mBuff, child, PathPosition(mLevel));
        mCursor = ParseBlock(mBuff, false);
        mEntry = mCursor.Count + 1;
    }

    const cLogicalFile& mFile;
    ByteString& mBuff;
    ByteString& mKey;
    EntryShape mShape;
    Cursor mCursor;
    std::int32_t mEntry;
    std::int32_t mLeafLevel;
    std::int32_t mLevel;
};

// How KCount reads an index, by its block size alone.
struct CountFormat {
    std::int32_t LastLeaf = 0;
    bool Extended = false;
    EntryShape Shape;
};

CountFormat FormatOf(std::int32_t blockSize, std::string_view buff) {
    if (blockSize == BlockSize) return {LastLeaf, false, ShapeOf(buff, false)};
    if (blockSize == ExtendedBlockSize) return {ExtendedLastLeaf, true, ShapeOf(buff, true)};
    EntryShape shape = ShapeOf(buff, false);
    shape.Offset = 0;
    return {0, false, shape};
}

std::int32_t CountLeafEntries(const cLogicalFile& file, ByteString& buff) {
    const CountFormat format = FormatOf(file.RecordLength, buff);
    Cursor leaf = ParseBlock(buff, format.Extended);
    std::int32_t total = leaf.Count;
    CircleGuard guard("KCount", file);
    while (leaf.LeafLink != format.LastLeaf) {
        guard.Visit(leaf.LeafLink);
        ReadBlock(file.OpenFile, RecordOffset(file, leaf.LeafLink), file.RecordLength, buff);
        leaf = ParseBlock(buff, format.Extended);
        // 65535 in both formats: in the extended one it may be any leaf's link, so the terminator decides.
        const bool isLast =
            leaf.LeafLink == LastLeaf && PointerOf(buff, leaf.Count, format.Shape) == NoPointer;
        total = platform::CheckedAdd(total, leaf.Count);
        if (isLast) break;
    }
    return total - 1;  // the terminator
}

}  // namespace

void KNext(const std::shared_ptr<cLogicalFile>& LogicalFile, ByteString& Buff, ByteString& Key,
           std::int32_t& Rec) {
    const cLogicalFile& file = Required(LogicalFile);
    const Cursor cursor = ParseBlock(Buff, file.IsamPlus);
    std::int32_t entry = cursor.Entry;
    if (entry == cursor.Count) {
        if (cursor.LeafLink == (file.IsamPlus ? ExtendedLastLeaf : LastLeaf)) {
            Rec = 0;
            return;
        }
        ReadBlock(file.OpenFile, RecordOffset(file, cursor.LeafLink), file.RecordLength, Buff);
        if (!file.IsamPlus) iPack('C', Buff, cursor.LeafLink, PathPosition(cursor.Level));
        entry = 0;
    }
    Deliver(Buff, entry + 1, file.IsamPlus, Key, Rec);
}

void KPrev(const std::shared_ptr<cLogicalFile>& LogicalFile, ByteString& Buff, ByteString& Key,
           std::int32_t& Rec) {
    const cLogicalFile& file = Required(LogicalFile);
    const ByteString kept = Buff;
    const auto entry = StepBack(file, Buff, Key).Run();
    if (!entry) {
        Rec = 0;
        Buff = kept;
        return;
    }
    Deliver(Buff, *entry, false, Key, Rec);
}

void KLast(const std::shared_ptr<cLogicalFile>& LogicalFile, ByteString& Buff, ByteString& Key,
           std::int32_t& Rec) {
    const cLogicalFile& file = Required(LogicalFile);
    constexpr std::size_t BufferLength = BlockSize + BufferPrefix;
    const ByteString headerBlock =
        iReadFile(file.OpenFile, BlockSize, platform::CheckedMultiply(file.Position, BlockSize));
    if (Buff.size() < BufferLength) Buff.resize(BufferLength, '\0');
    platform::Put(Buff, 1, headerBlock);
    const EntryShape shape = ShapeOf(Buff, false);

    // The header copy reaches into the block's place: the first link is header bytes 35-36, zeros.
    Cursor cursor = ParseBlock(Buff, false);
    CircleGuard guard("KLast", file);
    std::int32_t level = 0;
    Rec = ParseHeader(headerBlock).Root;
    while (cursor.LeafLink == 0) {
        guard.Visit(Rec);
        ReadSmallBlock(file, Rec, Buff);
        cursor = ParseBlock(Buff, false);
        ++level;
        iPack('C', Buff, Rec, PathPosition(level));
        Rec = PointerOf(Buff, cursor.Count, shape);
    }
    Deliver(Buff, cursor.Count - 1, false, Key, Rec);
    iPack('B', Buff, level, BufferLevelPosition);
}

std::int32_t KCount(const std::shared_ptr<cLogicalFile>& LogicalFile, platform::WindowServices& Window) {
    const cLogicalFile& file = Required(LogicalFile);
    Window.SetStatus("Scanning Index... please wait");
    ByteString buff;  // KFind makes it a block and its prefix long, of zero bytes
    ByteString key;
    std::int32_t rec = 0;
    KFind(LogicalFile, buff, key, rec, Window);
    const std::int32_t total = CountLeafEntries(file, buff);
    Window.SetStatus("");
    return total;
}

}  // namespace engine
