#include "engine/keyed_index.h"

#include "engine/index_layout.h"
#include "engine/records.h"
#include "platform/checked.h"
#include "platform/code_page.h"
#include "platform/error.h"
#include "platform/numbers.h"

namespace engine {

using platform::Error;

namespace {

void Normalise(ByteString& key, std::int32_t keyLength) {
    if (keyLength < 0) throw Error(platform::InvalidArgument);
    key.resize(static_cast<std::size_t>(keyLength), '\0');
}

void ShowOutOfRange(const cLogicalFile& file, platform::WindowServices& window) {
    platform::Message message;
    message.Text =
        "Index is returning information out of Range.  File: " + platform::Utf8FromBytes(file.FileName) +
        " LastRec: " + platform::LeadingBlankDecimal(file.LastRecord);
    message.Critical = true;
    window.ShowMessage(message);
}

/// The descent from the root to a leaf entry.
class Search {
  public:
    Search(const cLogicalFile& file, ByteString& buff, const ByteString& key, std::int32_t& rec)
        : mFile(file),
          mBuff(buff),
          mKey(key),
          mRec(rec),
          mShape(ShapeOf(buff, file.IsamPlus)),
          mGuard("KFind", file) {}

    enum class Outcome { Found, NotFound, OutOfRange };

    /// Rec is the root block on entry, the record number of the entry found on return.
    Outcome Run() {
        while (mCursor.LeafLink == 0) {
            if (mRec > mFile.LastRecord) return Outcome::OutOfRange;
            Descend();
            if (!ScanAcrossLeaves()) return Outcome::NotFound;
        }
        return Outcome::Found;
    }

    /// Notes the entry found and its level in the buffer.
    void NotePlace() {
        iPack('B', mBuff, mEntry, BufferEntryPosition);
        iPack('B', mBuff, mLevel, BufferLevelPosition);
    }

    /// The key of the entry found.
    std::string_view FoundKey() const { return mFoundKey; }

  private:
    void Load(std::int32_t block) {
        mGuard.Visit(block);
        ReadBlock(mFile.OpenFile, RecordOffset(mFile, block), mFile.RecordLength, mBuff);
    }

    void NotePath(std::int32_t level, std::int32_t block) {
        if (!mFile.IsamPlus) iPack('C', mBuff, block, PathPosition(level));
    }

    void Descend() {
        const std::int32_t block = mRec;
        Load(block);
        ++mLevel;
        mCursor = ParseBlock(mBuff, mFile.IsamPlus);
        NotePath(mLevel, block);
    }

    /// Moves to the block that the leaf link names. The level is the one in the buffer, which still holds
    /// what the header copy or an earlier move left there.
    void MoveRight() {
        const std::int32_t level = iUnpack('B', mBuff, BufferLevelPosition);
        const std::int32_t block = mCursor.LeafLink;
        Load(block);
        NotePath(level, block);
        mCursor = ParseBlock(mBuff, mFile.IsamPlus);
    }

    /// The first entry of the current block that is not below the key.
    bool ScanBlock() {
        for (mEntry = 1; mEntry <= mCursor.Count; ++mEntry) {
            const IndexEntry entry = FetchEntry(mBuff, mEntry, mShape);
            mRec = entry.Pointer;
            mFoundKey = entry.Key;
            if (CompareKeys(mKey, entry.Key) <= 0) return true;
        }
        return false;
    }

    bool ScanAcrossLeaves() {
        const std::int32_t lastLeaf = mFile.IsamPlus ? ExtendedLastLeaf : LastLeaf;
        while (!ScanBlock()) {
            if (mCursor.LeafLink == lastLeaf) return false;
            MoveRight();
        }
        return true;
    }

    const cLogicalFile& mFile;
    ByteString& mBuff;
    const ByteString& mKey;
    std::int32_t& mRec;
    EntryShape mShape;
    CircleGuard mGuard;
    Cursor mCursor;
    std::int32_t mLevel = 0;
    std::int32_t mEntry = 0;
    std::string_view mFoundKey;  // in mBuff
};

}  // namespace

void KFind(const std::shared_ptr<cLogicalFile>& LogicalFile, ByteString& Buff, ByteString& Key,
           std::int32_t& Rec, platform::WindowServices& Window) {
    if (!LogicalFile) throw Error(platform::ObjectNotSet);
    const cLogicalFile& file = *LogicalFile;
    const ByteString headerBlock = iReadFile(file.OpenFile, file.RecordLength, RecordOffset(file, 0));
    const IndexHeader header = ParseHeader(headerBlock);
    Normalise(Key, header.KeyLength(file.IsamPlus));

    const auto bufferLength = static_cast<std::size_t>(file.RecordLength) + BufferPrefix;
    if (Buff.size() < bufferLength) Buff.resize(bufferLength, '\0');
    Rec = header.Root;
    platform::Put(Buff, 1, headerBlock);

    Search search(file, Buff, Key, Rec);
    const Search::Outcome outcome = search.Run();
    if (outcome != Search::Outcome::Found) {
        if (outcome == Search::Outcome::OutOfRange) ShowOutOfRange(file, Window);
        Rec = 0;
        return;
    }
    if (CompareKeys(Key, search.FoundKey()) < 0) {
        Rec = platform::CheckedNegate(Rec);
        Key = search.FoundKey();
    }
    search.NotePlace();
}

std::int32_t KLength(const std::shared_ptr<cLogicalFile>& LogicalFile) {
    if (!LogicalFile) throw Error(platform::ObjectNotSet);
    const ByteString block = iReadFile(LogicalFile->OpenFile, BlockSize, LogicalFile->Position);
    return ParseHeader(block).EntryLength - PointerLength;
}

}  // namespace engine
