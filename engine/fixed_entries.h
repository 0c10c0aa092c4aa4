// Files that are a run of entries of one length, such as LINKSFILE and directory files.
#pragma once

#include <cstddef>
#include <functional>
#include <string_view>

#include "platform/file.h"

namespace engine {

/// Hands the entries of a file, length bytes each, to take, one after another, until take returns false. The
/// last one is shorter when the file ends inside it. Reads in large runs and holds one of them. Raises 57.
void ForEachEntry(const platform::File& file, std::size_t length,
                  const std::function<bool(std::string_view)>& take);

}  // namespace engine
