// Texts and paths on their way to and from the system's calls, which take UTF-16.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// A text of the system as UTF-8.
std::string Utf8FromSystem(std::wstring_view text);

/// A path as the system's file calls take it: resolved, with backslashes, and in the form without a limit of
/// length where it is long. Nothing where ResolvePath gives nothing.
std::optional<std::wstring> SystemPath(std::string_view path);

}  // namespace platform
