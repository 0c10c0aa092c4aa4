#include "engine/open_file.h"

#include <algorithm>
#include <utility>

#include "engine/recorded_error.h"
#include "engine/system.h"
#include "platform/checked.h"
#include "platform/code_page.h"
#include "platform/error.h"

namespace engine {

using platform::Error;

namespace {

constexpr int BadRecordNumber = 63;
constexpr int UndefinedHandle = -10;

cOpenFiles& OpenFiles() {
    if (!gOpenFiles) throw Error(platform::ObjectNotSet);
    return *gOpenFiles;
}

cOpenFile& Required(const std::shared_ptr<cOpenFile>& openFile) {
    if (!openFile) throw Error(platform::ObjectNotSet);
    return *openFile;
}

/// The place of a 0-based offset in the file, whose own positions count from 1 and are 32-bit numbers.
std::uint64_t Place(std::int32_t position) {
    const std::int32_t oneBased = platform::CheckedAdd(position, 1);
    if (oneBased < 1) throw Error(BadRecordNumber, "", "Bad record number");
    return static_cast<std::uint64_t>(position);
}

}  // namespace

cOpenFile::cOpenFile(std::int32_t fileNumber, ByteString path, std::int32_t position,
                     std::unique_ptr<platform::File> file)
    : vbFileNumber(fileNumber), Path(std::move(path)), Position(position), mFile(std::move(file)) {}

platform::File& cOpenFile::File() const {
    if (!mFile) throw Error(platform::BadFileNumber);
    return *mFile;
}

void cOpenFile::Close() {
    mFile.reset();
}

cOpenFiles::~cOpenFiles() {
    for (const Handle& member : NewEnum()) member->Close();
}

cOpenFiles::Handle cOpenFiles::Add(std::int32_t vbFileNumber, const ByteString& Path, std::int32_t Position,
                                   std::string_view sKey, std::unique_ptr<platform::File> file) {
    auto member = std::make_shared<cOpenFile>(vbFileNumber, Path, Position, std::move(file));
    Insert(member, sKey);
    return member;
}

std::int32_t cOpenFiles::FreeFileNumber() const {
    const std::vector<Handle> members = NewEnum();
    std::int32_t number = 1;
    const auto isTaken = [&](const Handle& member) { return member->vbFileNumber == number; };
    while (std::any_of(members.begin(), members.end(), isTaken)) ++number;
    return number;
}

std::shared_ptr<cOpenFile> iOpenFile(ByteString& FileName) {
    if (FileName.find('\\') == ByteString::npos) FileName = CurrentSystem().LinkShare() + FileName;
    cOpenFiles& openFiles = OpenFiles();
    if (auto open = openFiles.Find(FileName)) return open;
    try {
        if (!platform::FileExists(FileName)) return nullptr;
        auto file = platform::File::Open(FileName, platform::File::Mode::ReadWrite);
        return openFiles.Add(openFiles.FreeFileNumber(), FileName, 0, FileName, std::move(file));
    } catch (const Error& error) {
        const std::string description = "Could not open file: " + platform::Utf8FromBytes(FileName);
        RecordError(Error(error.Number, "iOpenFile", description));
        return nullptr;
    }
}

ByteString iReadFile(const std::shared_ptr<cOpenFile>& OpenFile, std::int32_t BytesToRead,
                     std::int32_t Position) {
    if (BytesToRead < 0) throw Error(platform::InvalidArgument);
    ByteString bytes(static_cast<std::size_t>(BytesToRead), ' ');
    iReadFileInto(OpenFile, Position, bytes);
    return bytes;
}

void iReadFileInto(const std::shared_ptr<cOpenFile>& OpenFile, std::int32_t Position, std::span<char> into) {
    const platform::File& file = Required(OpenFile).File();
    const std::size_t got = file.ReadAt(Place(Position), std::as_writable_bytes(into));
    std::ranges::fill(into.subspan(got), ' ');
}

void iWriteFile(const std::shared_ptr<cOpenFile>& OpenFile, std::string_view Data, std::int32_t Position) {
    if (!OpenFile) throw Error(UndefinedHandle, "iwriteFile", "OpenFile parameter is undefined");
    if (Position > -1) OpenFile->Position = Position;
    OpenFile->File().WriteAt(Place(OpenFile->Position), std::as_bytes(std::span(Data)));
}

ByteString iBlockReadFile(const std::shared_ptr<cOpenFile>& OpenFile, std::int32_t BlockNumber) {
    return iReadFile(OpenFile, BlockSize, platform::CheckedMultiply(BlockNumber, BlockSize));
}

void iBlockWriteFile(const std::shared_ptr<cOpenFile>& OpenFile, std::int32_t BlockNumber,
                     std::string_view Record) {
    iWriteFile(OpenFile, Record, platform::CheckedMultiply(BlockNumber, BlockSize));
}

void iCloseFile(std::string_view Path) {
    cOpenFiles& openFiles = OpenFiles();
    const auto open = openFiles.Find(Path);
    if (!open) return;
    open->Close();
    openFiles.Remove(Path);
}

}  // namespace engine
