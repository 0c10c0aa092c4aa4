#include "engine/logical_file.h"

#include <algorithm>
#include <utility>

#include "engine/directory_file.h"
#include "engine/field_codec.h"
#include "engine/index_layout.h"
#include "engine/links.h"
#include "engine/recorded_error.h"
#include "engine/records.h"
#include "engine/system.h"
#include "platform/checked.h"
#include "platform/error.h"

namespace engine {

using platform::Error;

namespace {

constexpr char ComponentSeparator = ':';

ByteString LinkKey(const ByteString& fileName) {
    if (fileName.empty() || fileName.front() == ComponentSeparator) return fileName;
    return ComponentSeparator + CurrentSystem().mDirectory + ComponentSeparator + fileName;
}

ByteString BareName(const ByteString& fileName) {
    return fileName.substr(fileName.find_last_of(ComponentSeparator) + 1);
}

ByteString DirectoryPath(ByteString resolutionFile) {
    std::ranges::replace(resolutionFile, ComponentSeparator, '\\');
    return CurrentSystem().LinkShare() + resolutionFile;
}

/// The container stands beside its directory file, under a name with other last two characters.
ByteString ContainerPath(ByteString directoryPath) {
    constexpr std::string_view Suffix = "DB";
    return directoryPath.replace(directoryPath.size() - Suffix.size(), Suffix.size(), Suffix);
}

/// Whether the index header block carries the mark of the extended format; false when it cannot be read.
bool HasExtendedMark(const std::shared_ptr<cOpenFile>& container, std::int32_t firstBlock) {
    try {
        return IsExtendedHeader(iBlockReadFile(container, firstBlock));
    } catch (const Error& error) {
        RecordError(error);
        return false;
    }
}

std::int32_t HeaderField(const cLogicalFile& file, std::int32_t position) {
    if (file.FileType != PlainFileType || !file.OpenFile) return 0;
    return iUnpack('L', ReadRecordZero(file), position);
}

}  // namespace

std::int32_t cLogicalFile::ActiveCount(bool) const {
    return HeaderField(*this, ActiveCountPosition);
}

std::int32_t cLogicalFile::HighUsedRecord(bool) const {
    return HeaderField(*this, HighWaterPosition);
}

cLogicalFiles::Handle cLogicalFiles::Add(const ByteString& FileName, const ByteString& FileType,
                                         const std::shared_ptr<cOpenFile>& OpenFile, std::int32_t Position,
                                         std::int32_t Flags, std::int32_t RecordLength,
                                         std::int32_t LastRecord, bool IsamPlus, std::string_view sKey) {
    auto member = std::make_shared<cLogicalFile>(
        cLogicalFile{FileName, FileType, OpenFile, Position, Flags, RecordLength, LastRecord, IsamPlus});
    Insert(member, sKey);
    return member;
}

std::shared_ptr<cLogicalFile> iLogicalOpen(const ByteString& FileName) {
    if (!gLogicalFiles) throw Error(platform::ObjectNotSet);
    if (auto known = gLogicalFiles->Find(FileName)) return known;
    const auto link = gLinks->Find(LinkKey(FileName));
    if (!link) return nullptr;

    const ByteString directoryPath = DirectoryPath(link->ResolutionFile);
    const auto entry = FindDirectoryEntry(directoryPath, BareName(FileName));
    // The container is opened, and stays open, whether or not it holds the file.
    ByteString containerPath = ContainerPath(directoryPath);
    const auto container = iOpenFile(containerPath);
    if (!entry) return nullptr;

    const bool isamPlus =
        container && entry->FileType == KeyedFileType && HasExtendedMark(container, entry->Position);
    return gLogicalFiles->Add(FileName, entry->FileType, container, entry->Position, entry->Flags,
                              entry->RecordLength, entry->LastRecord, isamPlus, FileName);
}

}  // namespace engine
