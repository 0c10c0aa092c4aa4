// Logical files: a name of the business application turned into a place in a data container. iLogicalOpen
// qualifies the name with the site directory, follows its link to a directory file, finds the file's entry
// there and opens the container. Handles are kept in gLogicalFiles, so a name is resolved once an engine.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "engine/collection.h"
#include "engine/open_file.h"
#include "platform/byte_string.h"

namespace engine {

/// File types that the engine knows; other letters are kept as they are.
inline constexpr std::string_view PlainFileType = "L";
inline constexpr std::string_view KeyedFileType = "I";

class cLogicalFile {
  public:
    ByteString FileName;                  // as given to LogicalOpen
    ByteString FileType;                  // one character: "L" plain records, "I" keyed
    std::shared_ptr<cOpenFile> OpenFile;  // the data container; empty when it is missing
    std::int32_t Position = 0;            // first block of the file in the container
    std::int32_t Flags = 0;
    std::int32_t RecordLength = 0;  // bytes; the block size of a keyed file
    std::int32_t LastRecord = 0;    // highest valid record or index block number
    bool IsamPlus = false;          // keyed file in the extended 2048-byte format

    /// Active records, from record zero; 0 for any other type than "L" and without a container.
    std::int32_t ActiveCount(bool Orb = false) const;

    /// Highest record number ever handed out, from record zero; 0 as for ActiveCount.
    std::int32_t HighUsedRecord(bool Orb = false) const;
};

/// The logical files opened so far, by the name given to LogicalOpen without regard to letter case.
class cLogicalFiles : public cCollection<cLogicalFile> {
  public:
    /// Adds a member with these values, under sKey when it is not empty, and returns it. Raises 457 for a key
    /// in use.
    Handle Add(const ByteString& FileName, const ByteString& FileType,
               const std::shared_ptr<cOpenFile>& OpenFile, std::int32_t Position, std::int32_t Flags,
               std::int32_t RecordLength, std::int32_t LastRecord, bool IsamPlus, std::string_view sKey = {});
};

extern std::unique_ptr<cLogicalFiles> gLogicalFiles;

/// The logical file of this name: a name that starts with ":" is taken as it stands, any other one lies in
/// the site directory. Empty when there is no link or no directory entry for it.
std::shared_ptr<cLogicalFile> iLogicalOpen(const ByteString& FileName);

}  // namespace engine
