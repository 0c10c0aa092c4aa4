// What the POSIX side of this folder shares: which failures tell of a device, and text files as a whole.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// Whether an errno tells that a disk or a share fails, and not that a name is missing or refused.
bool IsDeviceFailure(int failure);

/// The bytes of the file at path; nothing when there is none. Raises 57, 70 and 75 as File does.
std::optional<std::string> FileText(std::string_view path);

}  // namespace platform
