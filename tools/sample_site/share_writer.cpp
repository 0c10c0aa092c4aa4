#include "tools/sample_site/share_writer.h"

#include <limits>
#include <span>

#include "engine/field_codec.h"
#include "engine/open_file.h"
#include "platform/error.h"
#include "tools/sample_site/sample_site.h"

namespace sample {

namespace {

using platform::ByteString;
using platform::File;

using engine::BlockSize;

// A directory entry; the flags lie inside the name field, so names end before them.
constexpr std::size_t EntryLength = 32;
constexpr std::int32_t EntryName = 1;
constexpr std::int32_t EntryPosition = 11;
constexpr std::int32_t EntryRecordLength = 14;
constexpr std::int32_t EntryFileType = 16;
constexpr std::int32_t EntryLastRecord = 17;
constexpr std::size_t LongestName = 6;

// A link: the qualified name and the path of the directory file, each padded with blanks.
constexpr std::size_t LinkLength = 160;
constexpr std::int32_t LinkName = 2;
constexpr std::int32_t LinkPath = 82;

constexpr const char* DirectoryFileName = "D01";
constexpr const char* ContainerName = "DDB";

ByteString DirectoryEntry(const std::string& name, char type, std::int32_t firstBlock,
                          std::int32_t recordLength, std::int32_t lastRecord) {
    ByteString entry(EntryLength, '\0');
    platform::Put(entry, EntryName, name);
    engine::iPack('D', entry, firstBlock, EntryPosition);
    engine::iPack('C', entry, recordLength, EntryRecordLength);
    platform::Put(entry, EntryFileType, {&type, 1});
    engine::iPack('L', entry, lastRecord, EntryLastRecord);
    return entry;
}

ByteString Link(const std::string& area, const std::string& name) {
    ByteString link(LinkLength, ' ');
    platform::Put(link, LinkName, std::string(":") + SiteDirectory + ":" + name);
    platform::Put(link, LinkPath, area + ":" + DirectoryFileName);
    return link;
}

}  // namespace

LogicalExtent::LogicalExtent(File& container, std::int32_t firstBlock, std::int32_t recordLength,
                             std::int32_t lastRecord)
    : mContainer(container),
      mOffset(std::int64_t{firstBlock} * BlockSize),
      mRecordLength(recordLength),
      mLastRecord(lastRecord) {}

void LogicalExtent::Write(std::int32_t record, std::string_view bytes) const {
    const std::int64_t offset = mOffset + std::int64_t{record} * mRecordLength;
    mContainer.WriteAt(static_cast<std::uint64_t>(offset), std::as_bytes(std::span(bytes)));
}

ShareWriter::ShareWriter(std::filesystem::path root) : mRoot(std::move(root)) {
    std::filesystem::create_directories(mRoot);
}

ShareWriter::Area& ShareWriter::AreaNamed(const std::string& name) {
    Area& area = mAreas[name];
    if (!area.Container) {
        std::filesystem::create_directories(mRoot / name);
        area.Container = File::Open((mRoot / name / ContainerName).string(), File::Mode::CreateNew);
    }
    return area;
}

LogicalExtent ShareWriter::Reserve(const std::string& area, const std::string& name, char type,
                                   std::int32_t recordLength, std::int64_t lastRecord) {
    if (name.empty() || name.size() > LongestName) throw platform::Error(platform::InvalidArgument);
    Area& place = AreaNamed(area);
    const std::int64_t blocks = ((lastRecord + 1) * recordLength + BlockSize - 1) / BlockSize;
    if ((place.NextBlock + blocks) * BlockSize > std::numeric_limits<std::int32_t>::max())
        throw platform::Error(platform::Overflow).WithPath((mRoot / area / ContainerName).string());

    const auto firstBlock = static_cast<std::int32_t>(place.NextBlock);
    const auto last = static_cast<std::int32_t>(lastRecord);
    place.NextBlock += blocks;
    place.Container->SetLength(static_cast<std::uint64_t>(place.NextBlock * BlockSize));
    place.Directory += DirectoryEntry(name, type, firstBlock, recordLength, last);
    mLinks += Link(area, name);
    return {*place.Container, firstBlock, recordLength, last};
}

void ShareWriter::Finish() {
    for (const auto& [name, area] : mAreas) WriteNewFile(mRoot / name / DirectoryFileName, area.Directory);
    WriteNewFile(mRoot / "LINKSFILE", mLinks);
}

void WriteNewFile(const std::filesystem::path& path, std::string_view bytes) {
    std::filesystem::create_directories(path.parent_path());
    File::Open(path.string(), File::Mode::CreateNew)->WriteAt(0, std::as_bytes(std::span(bytes)));
}

}  // namespace sample
