#include "tools/site_dump/index_dump.h"

#include <set>
#include <vector>

#include "engine/index_layout.h"
#include "engine/records.h"

namespace site_dump {

namespace {

using engine::EntryShape;
using platform::ByteString;

class IndexDump {
  public:
    IndexDump(const engine::cLogicalFile& file, std::ostream& out)
        : mFile(file),
          mOut(out),
          mHeader(engine::iReadFile(file.OpenFile, file.RecordLength, engine::RecordOffset(file, 0))),
          mBuff(static_cast<std::size_t>(file.RecordLength + engine::BufferPrefix), '\0') {
        platform::Put(mBuff, 1, mHeader);
        mShape = engine::ShapeOf(mBuff, file.IsamPlus);
    }

    void Run() {
        DumpHeader();
        std::vector<std::int32_t> level{engine::ParseHeader(mHeader).Root};
        for (int number = 1; !level.empty(); ++number) {
            mOut << "  level " << number << ": " << level.size() << " blocks";
            level = DumpLevel(level);
        }
    }

  private:
    void DumpHeader() {
        constexpr std::int32_t Words = 8;
        const engine::IndexHeader header = engine::ParseHeader(mHeader);
        mOut << "  header words:";
        for (std::int32_t word = 0; word < Words; ++word)
            mOut << ' ' << engine::iUnpack('C', mHeader, 2 * word + 1);
        mOut << "\n  " << (mFile.IsamPlus ? "extended format" : "512-byte format") << ", entries of "
             << mShape.Length << " bytes, keys of " << mShape.KeyLength
             << (header.DuplicateKeys ? ", duplicates admitted" : "") << ", root block " << header.Root
             << '\n';
    }

    /// What was met on one level so far.
    struct Level {
        std::vector<std::int32_t> Children;
        std::int64_t Entries = 0;
        std::int64_t Leaves = 0;
        ByteString LastKey;
    };

    /// Adds a block to its level. Gives what is wrong with it, nothing when it is sound.
    std::string Add(std::int32_t block, Level& level) {
        if (block < 1 || block > mFile.LastRecord) return "not a block of this file";
        if (!mSeen.insert(block).second) return "met before";
        engine::ReadBlock(mFile.OpenFile, engine::RecordOffset(mFile, block), mFile.RecordLength, mBuff);
        const engine::Cursor cursor = engine::ParseBlock(mBuff, mFile.IsamPlus);
        const bool isLeaf = cursor.LeafLink != 0;
        if (mShape.PositionOf(cursor.Count + 1) - 1 > static_cast<std::int32_t>(mBuff.size()))
            return "more entries than it has room for";
        bool ascends = true;
        for (std::int32_t number = 1; number <= cursor.Count; ++number) {
            const engine::IndexEntry entry = engine::FetchEntry(mBuff, number, mShape);
            ascends = ascends && engine::CompareKeys(level.LastKey, entry.Key) <= 0;
            level.LastKey = entry.Key;
            if (!isLeaf) level.Children.push_back(entry.Pointer);
        }
        level.Entries += cursor.Count;
        level.Leaves += isLeaf ? 1 : 0;
        return ascends ? "" : "keys do not ascend";
    }

    /// Shows the blocks of a level in a line, and what is wrong in further ones; gives their children.
    std::vector<std::int32_t> DumpLevel(const std::vector<std::int32_t>& blocks) {
        Level level;
        std::string faults;
        for (const std::int32_t block : blocks) {
            if (const std::string fault = Add(block, level); !fault.empty())
                faults += "    block " + std::to_string(block) + ": " + fault + "\n";
        }
        mOut << ", " << level.Entries << " entries, " << level.Leaves << " leaves\n" << faults;
        return level.Children;
    }

    const engine::cLogicalFile& mFile;
    std::ostream& mOut;
    ByteString mHeader;
    ByteString mBuff;
    EntryShape mShape;
    std::set<std::int32_t> mSeen;
};

}  // namespace

void DumpIndex(const std::shared_ptr<engine::cLogicalFile>& file, std::ostream& out) {
    IndexDump(*file, out).Run();
}

}  // namespace site_dump
