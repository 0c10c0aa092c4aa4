// manifest.json: what every table of the site holds, and what a full export of it must hold. Counts come from
// the generator's values and the rules of the export, not from reading the site back.
#pragma once

#include <string>
#include <vector>

#include "tools/sample_site/sample_site.h"
#include "tools/sample_site/table_writer.h"

namespace sample {

std::string ManifestText(const SampleOptions& options, const std::vector<TableReport>& tables);

}  // namespace sample
