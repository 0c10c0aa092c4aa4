#include <SimpleIni.h>
#include <cstdlib>

#include "platform/posix_calls.h"
#include "platform/site.h"

namespace platform {

namespace {

std::string_view Unquoted(std::string_view value) {
    const bool quoted =
        value.size() >= 2 && value.front() == value.back() && (value.front() == '"' || value.front() == '\'');
    return quoted ? value.substr(1, value.size() - 2) : value;
}

/// The first value of a key, as the profile calls answer; empty when file, section or key is missing.
std::string FirstValue(std::string_view path, std::string_view section, std::string_view key) {
    const auto text = FileText(path);
    CSimpleIniA ini;
    ini.SetMultiKey(true);  // otherwise the last of several equal keys would win
    if (!text || ini.LoadData(*text) < 0) return {};
    const char* const value = ini.GetValue(std::string(section).c_str(), std::string(key).c_str());
    return value == nullptr ? std::string() : std::string(Unquoted(value));
}

std::string SettingsPath() {
    const char* const configHome = std::getenv("XDG_CONFIG_HOME");
    if (configHome != nullptr && *configHome != '\0') return std::string(configHome) + "/Vantora.conf";
    const char* const home = std::getenv("HOME");
    return std::string(home == nullptr ? "" : home) + "/.config/Vantora.conf";
}

}  // namespace

std::string ProfileText(std::string_view path, std::string_view section, std::string_view key,
                        std::size_t capacity) {
    return capacity == 0 ? std::string() : FirstValue(path, section, key).substr(0, capacity - 1);
}

std::string Setting(std::string_view section, std::string_view key, std::string_view fallback) {
    std::string value = FirstValue(SettingsPath(), section, key);
    return value.empty() ? std::string(fallback) : value;
}

}  // namespace platform
