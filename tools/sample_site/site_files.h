// The small files around the data: terminal map, site configuration, settings store, environment.
#pragma once

#include <filesystem>
#include <string>

namespace sample {

/// Writes them below folder, which is absolute. workstation is the name that the terminal map knows this
/// computer by.
void WriteSiteFiles(const std::filesystem::path& folder, const std::string& workstation);

}  // namespace sample
