// The terminal map: which terminal number a workstation has. One entry a line: a computer name or a dotted
// IPv4 address, one blank, a list whose first element is the terminal number.
#pragma once

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/byte_string.h"

namespace engine {

using platform::ByteString;

/// The terminal number of the first line that names the workstation, by one of its names (letter case
/// ignored) or by its address (exactly): what stands before the first comma of the line's second part, which
/// may be nothing. Parts end at every single blank, so a second blank makes an empty part. Lines of fewer
/// than two parts are skipped.
std::optional<ByteString> FindTerminal(const std::vector<std::string>& lines,
                                       std::initializer_list<std::string_view> names,
                                       std::string_view address);

}  // namespace engine
