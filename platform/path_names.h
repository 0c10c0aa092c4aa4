// The names that a path of the business's texts is made of, taken apart alike on every system.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

/// A path or a part of one as UTF-16. Paths come as UTF-8 from settings and dialogs, as code page 1252 from
/// the business's files: what is no well-formed UTF-8 is code page 1252.
std::u16string WideFromName(std::string_view name);

/// The names between the separators of a path (backslashes or slashes) as UTF-8, empty ones left out.
std::vector<std::string> PathNames(std::string_view path);

/// Whether the path begins with a drive letter and a colon.
bool StartsWithDrive(std::string_view path);

/// Whether one of the names climbs, or names a drive in the middle of a path, and so would leave the share.
bool LeavesItsRoot(std::span<const std::string> names);

}  // namespace platform
