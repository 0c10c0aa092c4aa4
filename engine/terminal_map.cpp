#include "engine/terminal_map.h"

#include <algorithm>

#include "platform/code_page.h"

namespace engine {

std::optional<ByteString> FindTerminal(const std::vector<std::string>& lines,
                                       std::initializer_list<std::string_view> names,
                                       std::string_view address) {
    for (const std::string_view line : lines) {
        const std::size_t blank = line.find(' ');
        if (blank == std::string_view::npos) continue;
        const std::string_view workstation = line.substr(0, blank);
        const bool named = std::any_of(names.begin(), names.end(), [&](std::string_view name) {
            return platform::EqualFoldedBytes(workstation, name);
        });
        if (!named && workstation != address) continue;
        const std::string_view terminals = line.substr(blank + 1);
        return ByteString(terminals.substr(0, terminals.find_first_of(" ,")));
    }
    return std::nullopt;
}

}  // namespace engine
