#include "platform/share_mounts.h"

#include <algorithm>

#include "platform/code_page.h"

namespace platform {

namespace {

std::vector<std::string> SplitAt(std::string_view text, char separator) {
    std::vector<std::string> parts;
    while (!text.empty()) {
        const auto end = std::min(text.find(separator), text.size());
        if (end > 0) parts.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return parts;
}

/// Blanks, tabs, newlines and backslashes stand in the mount table as a backslash and three octal digits.
std::string WithoutOctalEscapes(std::string_view text) {
    constexpr std::size_t Digits = 3;
    const auto isOctal = [](char c) { return c >= '0' && c <= '7'; };
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::string_view digits = text.substr(i + 1, Digits);
        if (text[i] == '\\' && digits.size() == Digits &&
            std::all_of(digits.begin(), digits.end(), isOctal)) {
            plain += static_cast<char>((digits[0] - '0') * 64 + (digits[1] - '0') * 8 + (digits[2] - '0'));
            i += Digits;
        } else {
            plain += text[i];
        }
    }
    return plain;
}

bool EqualNames(std::string_view a, std::string_view b) {
    return EqualFolded(WideFromUtf8(a), WideFromUtf8(b));
}

std::string PrefixPath(std::string_view superOptions) {
    constexpr std::string_view Option = "prefixpath=";
    for (const std::string& option : SplitAt(superOptions, ',')) {
        if (option.starts_with(Option)) return option.substr(Option.size());
    }
    return {};
}

}  // namespace

std::optional<ShareMount> FindShareMount(std::string_view mountInfo, std::span<const std::string> names) {
    constexpr std::size_t MountPointField = 4;
    std::optional<ShareMount> best;
    for (const std::string& line : SplitAt(mountInfo, '\n')) {
        const std::vector<std::string> fields = SplitAt(line, ' ');
        // Optional fields end at a lone hyphen; file system type, source and options follow.
        const auto hyphen = std::find(fields.begin(), fields.end(), "-");
        if (fields.size() <= MountPointField || fields.end() - hyphen < 3) continue;
        if (hyphen[1] != "cifs" && hyphen[1] != "smb3") continue;

        std::vector<std::string> mounted = SplitAt(WithoutOctalEscapes(hyphen[2]), '/');
        const std::string prefix =
            fields.end() - hyphen > 3 ? PrefixPath(WithoutOctalEscapes(hyphen[3])) : "";
        for (std::string& folder : SplitAt(prefix, '/')) mounted.push_back(std::move(folder));

        const bool covers = mounted.size() >= 2 && mounted.size() <= names.size() &&
                            std::equal(mounted.begin(), mounted.end(), names.begin(), EqualNames);
        if (covers && (!best || mounted.size() >= best->Components)) {
            best = ShareMount{WithoutOctalEscapes(fields[MountPointField]), mounted.size()};
        }
    }
    return best;
}

std::optional<std::string> FindVirtualShare(std::span<const std::string> folderNames, std::string_view server,
                                            std::string_view share) {
    constexpr std::string_view Scheme = "smb-share:";
    for (const std::string& name : folderNames) {
        if (!name.starts_with(Scheme)) continue;
        bool sameServer = false;
        bool sameShare = false;
        for (const std::string& part : SplitAt(std::string_view(name).substr(Scheme.size()), ',')) {
            const auto equals = part.find('=');
            if (equals == std::string::npos) continue;
            const std::string value = part.substr(equals + 1);
            if (part.starts_with("server=")) sameServer = EqualNames(value, server);
            if (part.starts_with("share=")) sameShare = EqualNames(value, share);
        }
        if (sameServer && sameShare) return name;
    }
    return std::nullopt;
}

}  // namespace platform
