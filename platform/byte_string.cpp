#include "platform/byte_string.h"

#include <algorithm>

#include "platform/error.h"

namespace platform {

std::string_view Mid(std::string_view data, std::int32_t position, std::int32_t count) {
    if (position < 1 || count < 0) throw Error(InvalidArgument);
    const auto start = static_cast<std::size_t>(position) - 1;
    if (start >= data.size()) return {};
    return data.substr(start, static_cast<std::size_t>(count));
}

std::uint8_t ByteAt(std::string_view data, std::int32_t position) {
    if (position < 1 || static_cast<std::size_t>(position) > data.size()) throw Error(InvalidArgument);
    return static_cast<std::uint8_t>(data[static_cast<std::size_t>(position) - 1]);
}

void Put(ByteString& data, std::int32_t position, std::string_view bytes) {
    if (position < 1 || static_cast<std::size_t>(position) > data.size()) throw Error(InvalidArgument);
    const auto start = static_cast<std::size_t>(position) - 1;
    data.replace(start, std::min(bytes.size(), data.size() - start),
                 bytes.substr(0, std::min(bytes.size(), data.size() - start)));
}

}  // namespace platform
