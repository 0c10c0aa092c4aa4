// The site configuration: kSWCatalog.ini in the folder for temporary files says which server holds the
// business's files and which directory on it is this site's.
#pragma once

#include <string>
#include <string_view>

#include "platform/window_services.h"

namespace engine {

/// Loads the configuration into gEpcInfo and gSystem and starts the engine, gEngine. A missing file is told
/// in a message box unless Silent. gEngine stays empty then, and when the engine cannot start. Raises 13 or 6
/// when CustomerNumber is no 32-bit number. Window must outlive the engine.
void LoadSiteConfiguration(bool Silent, platform::WindowServices& Window);

/// The path with every component as the folder that holds it lists it; "." stands for the empty component
/// after a closing separator.
std::string ExpandLongPath(std::string_view Path);

}  // namespace engine
