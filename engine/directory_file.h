// Directory files on the link share: which logical files a data container holds and where.
//
// A directory file is a run of 32-byte entries, numbers big-endian:
//   bytes  1-10  name, before its trailing NULs, tabs, line ends and blanks
//   bytes  7-8   flags (C): they lie inside the name on purpose, so an entry whose flag bytes hold anything
//                but those characters matches no name of six letters or less
//   bytes 11-13  first block in the container (D)
//   bytes 14-15  record length (C)
//   byte  16     file type letter
//   bytes 17-20  last record (L)
//   bytes 21-32  not read
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/byte_string.h"

namespace engine {

using platform::ByteString;

struct DirectoryEntry {
    ByteString FileType;
    std::int32_t Flags = 0;
    std::int32_t LastRecord = 0;
    std::int32_t Position = 0;
    std::int32_t RecordLength = 0;
};

/// The first entry of bareName (letter case matters) in the directory file at path, which is created empty
/// when it is missing. Nothing when there is none; a file that cannot be opened or read holds no entry, but
/// the error is recorded, and a cut entry at its end is none.
std::optional<DirectoryEntry> FindDirectoryEntry(const ByteString& path, std::string_view bareName);

}  // namespace engine
