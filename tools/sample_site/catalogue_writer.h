// Writes the catalogue database: what the business application's installer would have put there.
#pragma once

#include <filesystem>
#include <vector>

#include "tools/sample_site/table_spec.h"

namespace sample {

/// Writes the catalogue of these tables to path, which must not exist. Raises data-access errors.
void WriteCatalogue(const std::filesystem::path& path, const std::vector<TableSpec>& tables);

}  // namespace sample
