// Records, blocks, keys and work buffers are strings of single bytes addressed by 1-based positions. This is
// the only place where a position is turned into an index.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace platform {

using ByteString = std::string;

/// The bytes of data from 1-based position on, at most count of them; fewer, or none, where data ends
/// earlier. Raises 5 for a position below 1 or a negative count.
std::string_view Mid(std::string_view data, std::int32_t position, std::int32_t count);

/// The byte at 1-based position, 0 to 255. Raises 5 for a position below 1 or beyond the end.
std::uint8_t ByteAt(std::string_view data, std::int32_t position);

/// Writes bytes over data from 1-based position on. Never lengthens data: what does not fit is dropped.
/// Raises 5 for a position below 1 or beyond the end of data.
void Put(ByteString& data, std::int32_t position, std::string_view bytes);

}  // namespace platform
