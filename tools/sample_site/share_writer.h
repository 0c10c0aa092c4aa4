// Lays logical files out on the link share: reserves their blocks in a container, enters them in the
// container's directory file and in LINKSFILE.
//
// An area is a folder with a directory file D01 and a container DDB. A logical file occupies whole blocks of
// 512 bytes of its area's container, in the order of reservation; block 0 of a container stays unused.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "platform/byte_string.h"
#include "platform/file.h"

namespace sample {

/// The place of one logical file in its container.
class LogicalExtent {
  public:
    LogicalExtent(platform::File& container, std::int32_t firstBlock, std::int32_t recordLength,
                  std::int32_t lastRecord);

    std::int32_t RecordLength() const { return mRecordLength; }
    std::int32_t LastRecord() const { return mLastRecord; }

    /// Writes bytes from the start of a record (or index block) on.
    void Write(std::int32_t record, std::string_view bytes) const;

  private:
    platform::File& mContainer;
    std::int64_t mOffset;
    std::int32_t mRecordLength;
    std::int32_t mLastRecord;
};

class ShareWriter {
  public:
    /// Writes below root, the folder of the link share.
    explicit ShareWriter(std::filesystem::path root);

    /// Reserves room for records 0 to lastRecord of a file of type "L" (plain) or "I" (keyed). Names have up
    /// to six characters. Raises 6 when the container would outgrow 32-bit offsets.
    LogicalExtent Reserve(const std::string& area, const std::string& name, char type,
                          std::int32_t recordLength, std::int64_t lastRecord);

    /// Writes the directory files and LINKSFILE.
    void Finish();

  private:
    struct Area {
        std::unique_ptr<platform::File> Container;
        std::int64_t NextBlock = 1;
        platform::ByteString Directory;
    };

    Area& AreaNamed(const std::string& name);

    std::filesystem::path mRoot;
    std::map<std::string, Area> mAreas;
    platform::ByteString mLinks;
};

/// Writes a new file of these bytes. Raises 75 when it exists, and the other file errors.
void WriteNewFile(const std::filesystem::path& path, std::string_view bytes);

}  // namespace sample
