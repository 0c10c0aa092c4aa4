#include "platform/path_names.h"

#include <algorithm>

#include "platform/code_page.h"

namespace platform {

std::u16string WideFromName(std::string_view name) {
    std::u16string wide = WideFromUtf8(name);
    const bool isUtf8 = wide.find(u'\xFFFD') == std::u16string::npos;
    return isUtf8 ? wide : WideFromBytes(name);
}

std::vector<std::string> PathNames(std::string_view path) {
    std::vector<std::string> names;
    while (!path.empty()) {
        const auto end = std::min(path.find_first_of("\\/"), path.size());
        if (end > 0) names.push_back(Utf8FromWide(WideFromName(path.substr(0, end))));
        path.remove_prefix(std::min(end + 1, path.size()));
    }
    return names;
}

bool StartsWithDrive(std::string_view path) {
    const auto isLetter = [](char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); };
    return path.size() >= 2 && isLetter(path[0]) && path[1] == ':';
}

bool LeavesItsRoot(std::span<const std::string> names) {
    return std::any_of(names.begin(), names.end(), [](const std::string& name) {
        return name == ".." || name.find(':') != std::string::npos;
    });
}

}  // namespace platform
