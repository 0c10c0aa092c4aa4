// How \\SERVER\SHARE\rest and X:\rest become paths of a POSIX system. A share is looked for, first match,
// under the settings' [Shares] Root, among the mounted shares, and among the desktop's virtual folders; a
// drive letter stands in the settings' [Drives]. Below that base every component is matched without regard to
// letter case.

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "platform/bounded_call.h"
#include "platform/code_page.h"
#include "platform/path_names.h"
#include "platform/posix_calls.h"
#include "platform/share_mounts.h"
#include "platform/site.h"

namespace platform {

namespace fs = std::filesystem;

const char PathSeparator = '/';

namespace {

constexpr const char* MountTable = "/proc/self/mountinfo";

/// A name that a failing share does not tell of must not count as missing.
void RequireAnswer(const std::error_code& failure, const fs::path& path) {
    if (failure && IsDeviceFailure(failure.value())) throw Error(DeviceIoError).WithPath(path.string());
}

std::vector<std::string> EntriesOf(const fs::path& folder) {
    std::vector<std::string> names;
    std::error_code failure;
    for (fs::directory_iterator entry(folder, failure), end; !failure && entry != end;
         entry.increment(failure)) {
        names.push_back(entry->path().filename().string());
    }
    RequireAnswer(failure, folder);
    return names;
}

bool Exists(const fs::path& path) {
    std::error_code failure;
    const bool exists = fs::exists(path, failure);
    RequireAnswer(failure, path);
    return exists;
}

/// The entry of folder that name means: the exact one, else the first in byte order that differs in letter
/// case only, else name itself, which does not exist then.
fs::path Descend(const fs::path& folder, const std::string& name) {
    if (Exists(folder / name)) return folder / name;
    const std::u16string wanted = WideFromUtf8(name);
    std::string best;
    for (const std::string& entry : EntriesOf(folder)) {
        if (EqualFolded(WideFromUtf8(entry), wanted) && (best.empty() || entry < best)) best = entry;
    }
    return folder / (best.empty() ? name : best);
}

fs::path DescendAll(fs::path folder, std::span<const std::string> names) {
    for (const std::string& name : names) folder = Descend(folder, name);
    return folder;
}

std::string MountInfo() {
    std::ifstream table(MountTable);
    return {std::istreambuf_iterator<char>(table), {}};
}

std::optional<fs::path> SharePath(std::span<const std::string> names) {
    constexpr std::size_t ServerAndShare = 2;
    if (names.size() < ServerAndShare) return std::nullopt;

    if (const std::string root = Setting("Shares", "Root", ""); !root.empty()) {
        const fs::path share = DescendAll(root, names.first(ServerAndShare));
        if (Exists(share)) return DescendAll(share, names.subspan(ServerAndShare));
    }
    if (const auto mount = FindShareMount(MountInfo(), names)) {
        return DescendAll(mount->Folder, names.subspan(mount->Components));
    }
    if (const char* const runtime = std::getenv("XDG_RUNTIME_DIR"); runtime != nullptr) {
        const fs::path virtualFolders = fs::path(runtime) / "gvfs";
        if (const auto name = FindVirtualShare(EntriesOf(virtualFolders), names[0], names[1])) {
            return DescendAll(virtualFolders / *name, names.subspan(ServerAndShare));
        }
    }
    return std::nullopt;
}

std::optional<fs::path> DrivePath(char letter, std::span<const std::string> names) {
    const std::string root = Setting("Drives", std::string(1, letter), "");
    if (root.empty()) return std::nullopt;
    return DescendAll(root, names);
}

std::optional<std::string> ResolvedPath(std::string_view path) {
    // The system would take such a name to end at its NUL, and open another file.
    if (path.find('\0') != std::string_view::npos) return std::nullopt;
    const bool isShare = path.starts_with("\\\\");
    const bool isDrive = !isShare && StartsWithDrive(path);
    const bool isMixed = path.starts_with('/') && path.find('\\') != std::string_view::npos;
    if (!isShare && !isDrive && !isMixed) return std::string(path);

    const std::vector<std::string> names = PathNames(isDrive ? path.substr(2) : path);
    std::optional<fs::path> resolved;
    if (isMixed) {
        resolved = DescendAll("/", names);
    } else if (!LeavesItsRoot(names)) {
        resolved = isShare ? SharePath(names) : DrivePath(path.front(), names);
    }
    if (!resolved) return std::nullopt;
    return resolved->string();
}

bool IsListed(const std::string& root) {
    const auto folder = ResolvedPath(root);
    if (!folder) return false;
    std::error_code failure;
    const fs::directory_iterator listing(*folder, failure);
    return !failure;
}

std::string NameInFolder(std::string_view path) {
    const auto resolved = ResolvedPath(path);
    if (!resolved || !Exists(*resolved)) return {};
    if (path.ends_with(PathSeparator) || path.ends_with('\\')) return ".";
    return fs::path(*resolved).filename().string();
}

}  // namespace

std::optional<std::string> ResolvePath(std::string_view path) {
    return BoundedCall(path, [path = std::string(path)] { return ResolvedPath(path); });
}

bool ShareAnswers(std::string_view root) {
    try {
        return BoundedCall(root, [root = std::string(root)] { return IsListed(root); });
    } catch (const Error&) {
        return false;
    }
}

std::string ListedName(std::string_view path) {
    return BoundedCall(path, [path = std::string(path)] { return NameInFolder(path); });
}

}  // namespace platform
