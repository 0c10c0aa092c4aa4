#include <arpa/inet.h>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include "platform/site.h"

namespace platform {

namespace {

std::string EnvironmentText(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? std::string() : std::string(value);
}

/// The documents folder that the desktop's user-dirs file names, such as XDG_DOCUMENTS_DIR="$HOME/Documents".
std::string DesktopDocumentsFolder(const std::string& home) {
    constexpr std::string_view Key = "XDG_DOCUMENTS_DIR=\"";
    constexpr std::string_view HomeVariable = "$HOME";
    std::string configHome = EnvironmentText("XDG_CONFIG_HOME");
    if (configHome.empty()) configHome = home + "/.config";
    std::ifstream stream(configHome + "/user-dirs.dirs");
    for (std::string line; std::getline(stream, line);) {
        if (!line.starts_with(Key) || !line.ends_with('"') || line.size() <= Key.size()) continue;
        std::string folder = line.substr(Key.size(), line.size() - Key.size() - 1);
        if (folder.starts_with(HomeVariable)) folder.replace(0, HomeVariable.size(), home);
        return folder;
    }
    return home + "/Documents";
}

}  // namespace

std::string TempDirectory() {
    std::string folder = EnvironmentText("TMPDIR");
    if (folder.empty()) folder = "/tmp";
    if (!folder.ends_with(PathSeparator)) folder += PathSeparator;
    return folder;
}

std::string HostName() {
    std::array<char, 256> name{};
    if (gethostname(name.data(), name.size() - 1) != 0) return {};
    return name.data();
}

std::string ComputerName() {
    const std::string name = HostName();
    return name.substr(0, name.find('.'));
}

std::optional<std::uint32_t> HostAddress(const std::string& name) {
    in_addr literal{};
    if (inet_pton(AF_INET, name.c_str(), &literal) == 1) return ntohl(literal.s_addr);

    addrinfo wanted{};
    wanted.ai_family = AF_INET;
    addrinfo* found = nullptr;
    if (getaddrinfo(name.c_str(), nullptr, &wanted, &found) != 0) return std::nullopt;
    const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> owner(found, &freeaddrinfo);
    if (found->ai_addrlen < sizeof(sockaddr_in)) return std::nullopt;
    return ntohl(reinterpret_cast<const sockaddr_in*>(found->ai_addr)->sin_addr.s_addr);
}

std::string DocumentsFolder() {
    const std::string home = EnvironmentText("HOME");
    const std::string documents = DesktopDocumentsFolder(home);
    std::error_code failure;
    return std::filesystem::is_directory(documents, failure) ? documents : home;
}

void UseSiteIn(const std::string& folder) {
    setenv("TMPDIR", (folder + "/tmp").c_str(), 1);
    setenv("XDG_CONFIG_HOME", (folder + "/config").c_str(), 1);
}

}  // namespace platform
