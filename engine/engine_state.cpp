// The engine-wide variables, together in one place so that they end in the reverse of this order: the engine
// first, whose end still needs the others.

#include <memory>

#include "engine/business_basic.h"
#include "engine/links.h"
#include "engine/logical_file.h"
#include "engine/open_file.h"
#include "engine/system.h"
#include "platform/error.h"

namespace engine {

std::unique_ptr<cEpcInfo> gEpcInfo;
std::unique_ptr<cSystem> gSystem;
std::unique_ptr<cLinks> gLinks;
std::unique_ptr<cOpenFiles> gOpenFiles;
std::unique_ptr<cLogicalFiles> gLogicalFiles;
std::unique_ptr<cBusinessBasic> gEngine;

cSystem& CurrentSystem() {
    if (!gSystem) throw platform::Error(platform::ObjectNotSet);
    return *gSystem;
}

}  // namespace engine
