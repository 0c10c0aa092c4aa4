#include "engine/links.h"

#include <span>
#include <utility>

#include "engine/built_ins.h"
#include "engine/system.h"
#include "platform/file.h"

namespace engine {

namespace {

constexpr std::size_t LinkEntryLength = 160;
constexpr std::int32_t LinkFilePosition = 2;
constexpr std::int32_t ResolutionFilePosition = 82;
constexpr std::int32_t LinkTextLength = 79;

ByteString LinkText(std::string_view entry, std::int32_t position) {
    return ByteString(WithoutTail(platform::Mid(entry, position, LinkTextLength)));
}

ByteString WholeFile(const platform::File& file) {
    ByteString bytes(static_cast<std::size_t>(file.Length()), ' ');
    file.ReadAt(0, std::as_writable_bytes(std::span(bytes)));
    return bytes;
}

}  // namespace

cLinks::cLinks() {
    const auto file = platform::File::Open(CurrentSystem().LinkShare() + "LINKSFILE",
                                           platform::File::Mode::ReadWriteOrCreate);
    const ByteString bytes = WholeFile(*file);
    for (std::size_t start = 0; start < bytes.size(); start += LinkEntryLength) {
        const std::string_view entry = std::string_view(bytes).substr(start, LinkEntryLength);
        const ByteString linkFile = LinkText(entry, LinkFilePosition);
        if (linkFile.empty() || Find(linkFile)) continue;
        Add(linkFile, LinkText(entry, ResolutionFilePosition), linkFile);
    }
}

cLinks::Handle cLinks::Add(const ByteString& LinkFile, const ByteString& ResolutionFile,
                           std::string_view sKey) {
    auto link = std::make_shared<cLink>(cLink{LinkFile, ResolutionFile});
    Insert(link, sKey);
    return link;
}

}  // namespace engine
