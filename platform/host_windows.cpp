#include <algorithm>
#include <array>
#include <winsock2.h>

#include "platform/code_page.h"
#include "platform/site.h"

namespace platform {

namespace {

/// The socket library, started before the first look-up and ended with the process.
void StartSockets() {
    static const int started = [] {
        WSADATA ignored{};
        return WSAStartup(MAKEWORD(1, 1), &ignored);
    }();
    static_cast<void>(started);
}

}  // namespace

std::string HostName() {
    std::array<wchar_t, MAX_COMPUTERNAME_LENGTH + 1> name{};
    auto length = static_cast<DWORD>(name.size());
    if (GetComputerNameW(name.data(), &length) == 0) return {};
    return BytesFromWide(std::u16string(name.data(), name.data() + length));
}

std::string ComputerName() {
    const std::string name = HostName();
    return name.substr(0, name.find('.'));
}

std::optional<std::uint32_t> HostAddress(const std::string& name) {
    StartSockets();
    const std::uint32_t literal = inet_addr(name.c_str());
    if (literal != INADDR_NONE) return ntohl(literal);
    const hostent* const found = gethostbyname(name.c_str());
    if (found == nullptr || found->h_addrtype != AF_INET || found->h_addr_list[0] == nullptr)
        return std::nullopt;
    std::uint32_t address = 0;
    std::copy_n(found->h_addr_list[0], sizeof(address), reinterpret_cast<char*>(&address));
    return ntohl(address);
}

}  // namespace platform
