#include "engine/directory_file.h"

#include "engine/built_ins.h"
#include "engine/field_codec.h"
#include "engine/fixed_entries.h"
#include "engine/recorded_error.h"
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

bool IsNamed(std::string_view entry, std::string_view bareName) {
    return entry.size() == EntryLength &&
           WithoutTail(platform::Mid(entry, NamePosition, NameLength)) == bareName;
}

}  // namespace

std::optional<DirectoryEntry> FindDirectoryEntry(const ByteString& path, std::string_view bareName) {
    try {
        const auto directory = platform::File::Open(path, platform::File::Mode::ReadWriteOrCreate);
        std::optional<DirectoryEntry> found;
        ForEachEntry(*directory, EntryLength, [&](std::string_view entry) {
            if (IsNamed(entry, bareName)) found = Decoded(entry);
            return !found;
        });
        return found;
    } catch (const platform::Error& error) {
        if (error.Number != platform::FileNotFound && error.Number != platform::PathNotFound)
            RecordError(error);
        return std::nullopt;
    }
}

}  // namespace engine
