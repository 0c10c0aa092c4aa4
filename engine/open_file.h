// Physical files: cOpenFile (one open file), cOpenFiles (all of them, by full path) and the routines that
// open, read, write and close. Everything above reaches the disk only through these.
//
// Offsets are 0-based bytes. A container is addressed in blocks of 512 bytes: block n starts at n * 512.
// A file stays open, shared with the business application, until it is closed or the engine ends. A handle
// that outlives its file is stale: using it raises 52 "Bad file name or number".
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

#include "engine/collection.h"
#include "platform/byte_string.h"
#include "platform/file.h"

namespace engine {

using platform::ByteString;

inline constexpr std::int32_t BlockSize = 512;

class cOpenFile {
  public:
    cOpenFile(std::int32_t fileNumber, ByteString path, std::int32_t position,
              std::unique_ptr<platform::File> file);

    std::int32_t vbFileNumber;
    ByteString Path;
    std::int32_t Position;  // byte offset kept for sequential writes

    /// The open file behind the handle. Raises 52 once it is closed.
    platform::File& File() const;

    /// Closes the file; the handle is stale from then on.
    void Close();

  private:
    std::unique_ptr<platform::File> mFile;
};

/// The files that are open, by full path.
class cOpenFiles : public cCollection<cOpenFile> {
  public:
    cOpenFiles() = default;
    cOpenFiles(const cOpenFiles&) = delete;
    cOpenFiles& operator=(const cOpenFiles&) = delete;

    /// Closes the file of every member.
    ~cOpenFiles();

    /// Adds a member with these values, under sKey when it is not empty, and returns it. The member owns
    /// file; without one it is stale from the start. Raises 457 for a key in use.
    Handle Add(std::int32_t vbFileNumber, const ByteString& Path, std::int32_t Position,
               std::string_view sKey = {}, std::unique_ptr<platform::File> file = nullptr);

    /// The lowest file number from 1 on that no member has.
    std::int32_t FreeFileNumber() const;
};

extern std::unique_ptr<cOpenFiles> gOpenFiles;

/// Opens the file FileName, or finds it among the open ones. A name without a backslash means the link share:
/// FileName is replaced by the full path. Returns empty when there is no such file, and when it cannot be
/// opened; the latter is recorded as the last error (number of the failed open, source "iOpenFile").
std::shared_ptr<cOpenFile> iOpenFile(ByteString& FileName);

/// BytesToRead bytes from offset Position on; what lies past the end of the file comes as blanks. Raises 5
/// for a negative count, 91 for an empty handle, 52 for a stale one, 63 for a negative offset, 6 for the
/// offset 2^31 - 1, 57 when reading fails.
ByteString iReadFile(const std::shared_ptr<cOpenFile>& OpenFile, std::int32_t BytesToRead,
                     std::int32_t Position);

/// The same, straight into the caller's bytes.
void iReadFileInto(const std::shared_ptr<cOpenFile>& OpenFile, std::int32_t Position, std::span<char> into);

/// Writes Data at offset Position, which the handle remembers; at the handle's own Position when Position is
/// negative. Raises -10 "iwriteFile" for an empty handle, 52 for a stale one, 75 where the share grants
/// reading only.
void iWriteFile(const std::shared_ptr<cOpenFile>& OpenFile, std::string_view Data, std::int32_t Position);

/// The 512 bytes of a block. Raises 6 for an offset beyond 32 bits, and what iReadFile raises.
ByteString iBlockReadFile(const std::shared_ptr<cOpenFile>& OpenFile, std::int32_t BlockNumber);

/// Writes Record, at its own length, from the start of a block on. Raises as iBlockReadFile and iWriteFile.
void iBlockWriteFile(const std::shared_ptr<cOpenFile>& OpenFile, std::int32_t BlockNumber,
                     std::string_view Record);

/// Closes the open file of this full path; nothing when there is none.
void iCloseFile(std::string_view Path);

}  // namespace engine
