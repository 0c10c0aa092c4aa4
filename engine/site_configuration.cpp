#include "engine/site_configuration.h"

#include <exception>
#include <memory>

#include "engine/business_basic.h"
#include "engine/recorded_error.h"
#include "engine/system.h"
#include "platform/error.h"
#include "platform/file.h"
#include "platform/numbers.h"
#include "platform/site.h"

namespace engine {

namespace {

constexpr const char* Section = "iQ-Stock";

/// Values end after 99 characters.
ByteString ProfileValue(const std::string& file, const char* key) {
    constexpr std::size_t Capacity = 100;
    return platform::ProfileText(file, Section, key, Capacity);
}

std::string ConfigurationPath() {
    std::string path = ExpandLongPath(platform::TempDirectory());
    path.pop_back();  // the "." that the closing separator left
    return path + "kSWCatalog.ini";
}

void ShowMissing(const std::string& path, platform::WindowServices& window) {
    platform::Message message;
    message.Text = "You are missing file: " + path + "    Are you running Kestrel Workstation?";
    message.Title = "EpcError";
    message.SystemModal = true;
    window.ShowMessage(message);
}

void ReadConfiguration(const std::string& path, cEpcInfo& info) {
    info.Server = ProfileValue(path, "Server");
    info.DataShare = ProfileValue(path, "DataShare");
    info.CatalogShare = "\\\\" + info.Server + "\\" + ProfileValue(path, "CatalogShare") + "\\";
    info.Directory = ProfileValue(path, "Directory");
    info.TerminalID = ProfileValue(path, "TerminalID");
    const ByteString customerNumber = ProfileValue(path, "CustomerNumber");
    if (!customerNumber.empty()) info.CustomerNumber = platform::LongFromText(customerNumber);
}

}  // namespace

void LoadSiteConfiguration(bool Silent, platform::WindowServices& Window) {
    // An engine of before takes the site it ran on with it, so it must go first.
    gEngine.reset();
    gEpcInfo = std::make_unique<cEpcInfo>();
    gSystem = std::make_unique<cSystem>();

    const std::string path = ConfigurationPath();
    if (!platform::FileExists(path)) {
        if (!Silent) ShowMissing(path, Window);
        return;
    }
    ReadConfiguration(path, *gEpcInfo);
    gSystem->mUNCDrive = gEpcInfo->Server;
    gSystem->mDirectory = gEpcInfo->Directory;
    try {
        gEngine = std::make_unique<cBusinessBasic>(Window);
    } catch (const platform::Error& error) {
        // That there is no engine is 91; anything else is why.
        if (error.Number != platform::ObjectNotSet) RecordError(error);
    } catch (const std::exception&) {
        // No engine, and no number that says why.
    }
}

std::string ExpandLongPath(std::string_view Path) {
    const bool hasDrive = Path.size() >= 2 && Path[1] == ':';
    std::string expanded(Path.substr(0, hasDrive ? 2 : 0));
    std::size_t start = hasDrive ? 2 : 0;
    while (true) {
        // The separator that opens the component itself is not searched.
        const std::size_t end = Path.find(platform::PathSeparator, start + 1);
        expanded += platform::PathSeparator + platform::ListedName(Path.substr(0, end));
        if (end == std::string_view::npos) return expanded;
        start = end;
    }
}

}  // namespace engine
