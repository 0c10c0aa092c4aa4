// State and postal code out of the text of a multi-line address: lines of 30 characters, scanned from the
// end.
#pragma once

#include <string_view>

#include "platform/byte_string.h"

namespace exporting {

/// The last run of exactly two capital letters, else two blanks.
platform::ByteString StateCode(std::string_view address);

/// The last run of digits and dashes that is long enough for a postal code (5 or more characters), or one of
/// any length at the very start of the address; runs of 6 to 8 and of more than 10 are cut to 5. Without any:
/// five blanks, "-", four blanks.
platform::ByteString PostalCode(std::string_view address);

}  // namespace exporting
