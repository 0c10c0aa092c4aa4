// The supersession table lives in its key file alone. A key of 26 bytes holds the superseded part number (14
// bytes compressed, mask included), the kind of supersession, a sequence number, and ten bytes more:
//
//   kind "S"  the first 15 characters of the part number that replaces it
//   kind "Z"  a third of a remark: three keys with the sequence numbers 1 to 3 belong together and become one
//             row; of its thirty bytes the first four are lost
#pragma once

#include "tools/sample_site/table_writer.h"

namespace sample {

TableReport WriteSupersessions(const SiteContext& site, const TableSpec& spec);

}  // namespace sample
