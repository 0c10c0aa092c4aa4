// A small site on disk: record files and one-leaf indexes in a single data container, with their directory
// and links, and an engine running on it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "platform/byte_string.h"
#include "platform/window_services.h"

namespace test {

using platform::ByteString;

/// Bytes out of a literal that may hold NULs.
template <std::size_t Length>
ByteString Bytes(const char (&literal)[Length]) {
    return ByteString(literal, Length - 1);
}

/// value in width bytes, most significant first.
ByteString BigEndian(std::int32_t value, std::size_t width);

struct IndexEntry {
    ByteString Key;
    std::int32_t Record;
};

class SiteFiles {
  public:
    /// Adds records 1 to n of a file; they must be of one length, at least 16.
    void AddRecords(const std::string& name, const std::vector<ByteString>& records);

    /// Adds a keyed file of one leaf: entries in key order, all keys of one length.
    void AddIndex(const std::string& name, const std::vector<IndexEntry>& entries);

    /// Writes the site of directory D01 on server SRV1 below shareRoot.
    void Write(const std::filesystem::path& shareRoot) const;

  private:
    void AddFile(const std::string& name, char type, std::size_t recordLength, std::int32_t lastRecord,
                 const ByteString& content);

    ByteString mLinks;
    ByteString mDirectory;
    ByteString mContainer = ByteString(512, '\0');
};

/// The engine on the site that SiteFiles wrote, for the life of this object.
class RunningEngine {
  public:
    explicit RunningEngine(platform::WindowServices& window);
    ~RunningEngine();
    RunningEngine(const RunningEngine&) = delete;
    RunningEngine& operator=(const RunningEngine&) = delete;
};

}  // namespace test
