#include "engine/links.h"

#include <utility>

#include "engine/built_ins.h"
#include "engine/fixed_entries.h"
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

}  // namespace

cLinks::cLinks() {
    const auto file = platform::File::Open(CurrentSystem().LinkShare() + "LINKSFILE",
                                           platform::File::Mode::ReadWriteOrCreate);
    ForEachEntry(*file, LinkEntryLength, [this](std::string_view entry) {
        const ByteString linkFile = LinkText(entry, LinkFilePosition);
        if (!linkFile.empty() && !Find(linkFile))
            Add(linkFile, LinkText(entry, ResolutionFilePosition), linkFile);
        return true;
    });
}

cLinks::Handle cLinks::Add(const ByteString& LinkFile, const ByteString& ResolutionFile,
                           std::string_view sKey) {
    auto link = std::make_shared<cLink>(cLink{LinkFile, ResolutionFile});
    Insert(link, sKey);
    return link;
}

}  // namespace engine
