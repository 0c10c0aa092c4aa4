// Part numbers: 18 characters and a mask of three that says where dashes go. They ascend with the ordinal of
// the part, are all different, and begin with letters, so none of them reads as a number.
#pragma once

#include <cstdint>

#include "tools/sample_site/field_value.h"

namespace sample {

/// The number of part ordinal (from 1) of parts.
PartNumber PartNumberAt(std::int64_t ordinal, std::int64_t parts);

/// Blanks: a line that names no part.
PartNumber NoPartNumber();

}  // namespace sample
