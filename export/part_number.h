// Part numbers: 18 characters, followed by a mask of three that says where dashes go.
#pragma once

#include <string_view>

#include "platform/byte_string.h"

namespace exporting {

/// The part number of a field's text with the dashes of its mask; a text shorter than number and mask comes
/// back unchanged.
platform::ByteString FormatPartNumber(std::string_view text);

}  // namespace exporting
