#include "engine/directory_file.h"

#include <array>
#include <span>

#include "engine/built_ins.h"
#include "engine/field_codec.h"
#include "platform/error.h"
#include "platform/file.h"

namespace engine {

namespace {

constexpr std::size_t EntryLength = 32;
constexpr std::int32_t NamePosition = 1;
constexpr std::int32_t NameLength = 10;
constexpr std::int32_t FlagsPosition = 7;
constexpr std::int32_t FirstBlockPosition = 11;
constexpr std::int32_t RecordLengthPosition = 14;
constexpr std::int32_t FileTypePosition = 16;
constexpr std::int32_t LastRecordPosition = 17;

DirectoryEntry Decoded(std::string_view entry) {
    return {ByteString(platform::Mid(entry, FileTypePosition, 1)), iUnpack('C', entry, FlagsPosition),
            iUnpack('L', entry, LastRecordPosition), iUnpack('D', entry, FirstBlockPosition),
            iUnpack('C', entry, RecordLengthPosition)};
}

std::optional<DirectoryEntry> Search(const platform::File& directory, std::string_view bareName) {
    constexpr std::size_t EntriesPerRead = 128;
    std::array<char, EntryLength * EntriesPerRead> buffer{};
    for (std::uint64_t offset = 0;; offset += buffer.size()) {
        const std::size_t got = directory.ReadAt(offset, std::as_writable_bytes(std::span(buffer)));
        for (std::size_t start = 0; start + EntryLength <= got; start += EntryLength) {
            const std::string_view entry(buffer.data() + start, EntryLength);
            if (WithoutTail(platform::Mid(entry, NamePosition, NameLength)) == bareName)
                return Decoded(entry);
        }
        if (got < buffer.size()) return std::nullopt;
    }
}

}  // namespace

std::optional<DirectoryEntry> FindDirectoryEntry(const ByteString& path, std::string_view bareName) {
    try {
        const auto directory = platform::File::Open(path, platform::File::Mode::ReadWriteOrCreate);
        return Search(*directory, bareName);
    } catch (const platform::Error&) {
        return std::nullopt;
    }
}

}  // namespace engine
