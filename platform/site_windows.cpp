#include <array>
#include <shlobj.h>
#include <vector>
#include <windows.h>

#include "platform/path_names.h"
#include "platform/site.h"
#include "platform/text_windows.h"

namespace platform {

const char PathSeparator = '\\';

namespace {

constexpr const wchar_t* SettingsKey = L"Software\\VB and VBA Program Settings\\Vantora\\";

std::wstring Wide(std::string_view text) {
    const std::u16string wide = WideFromName(text);
    return {wide.begin(), wide.end()};
}

bool EndsInSeparator(std::string_view path) {
    return path.ends_with('\\') || path.ends_with('/');
}

bool IsFolder(const std::wstring& systemPath) {
    const DWORD attributes = GetFileAttributesW(systemPath.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

/// The first entry that the system lists for a path; nothing when there is none.
std::optional<std::wstring> FirstEntry(const std::wstring& pattern) {
    WIN32_FIND_DATAW entry{};
    const HANDLE listing = FindFirstFileW(pattern.c_str(), &entry);
    if (listing == INVALID_HANDLE_VALUE) return std::nullopt;
    FindClose(listing);
    return entry.cFileName;
}

/// The text's bytes in the code page of the system.
std::string SystemBytes(std::wstring_view text) {
    const int length = static_cast<int>(text.size());
    std::string bytes(static_cast<std::size_t>(
                          WideCharToMultiByte(CP_ACP, 0, text.data(), length, nullptr, 0, nullptr, nullptr)),
                      '\0');
    WideCharToMultiByte(CP_ACP, 0, text.data(), length, bytes.data(), static_cast<int>(bytes.size()), nullptr,
                        nullptr);
    return bytes;
}

}  // namespace

std::string TempDirectory() {
    std::array<wchar_t, MAX_PATH + 1> folder{};
    const DWORD length = GetTempPathW(static_cast<DWORD>(folder.size()), folder.data());
    return length < folder.size() ? Utf8FromSystem({folder.data(), length}) : std::string();
}

std::string ListedName(std::string_view path) {
    const auto systemPath = SystemPath(path);
    if (!systemPath || GetFileAttributesW(systemPath->c_str()) == INVALID_FILE_ATTRIBUTES) return {};
    if (EndsInSeparator(path)) return ".";
    const auto name = FirstEntry(*systemPath);
    return name ? Utf8FromSystem(*name) : std::string();
}

std::optional<std::string> ResolvePath(std::string_view path) {
    // The system would take such a name to end at its NUL, and open another file.
    if (path.find('\0') != std::string_view::npos) return std::nullopt;
    if (path.starts_with("\\\\")) {
        const std::vector<std::string> names = PathNames(path);
        // Without a share it is no path; "." and "?" in place of a server open devices.
        if (names.size() < 2 || names[0] == "." || names[0] == "?" || LeavesItsRoot(names))
            return std::nullopt;
    }
    return std::string(path);
}

bool ShareAnswers(std::string_view root) {
    auto systemPath = SystemPath(root);
    if (!systemPath) return false;
    if (!systemPath->ends_with(L'\\')) *systemPath += L'\\';
    if (GetVolumeInformationW(systemPath->c_str(), nullptr, 0, nullptr, nullptr, nullptr, nullptr, 0) != 0)
        return true;
    // A share that is laid below the root of another volume has no volume of its own to ask for.
    return GetLastError() == ERROR_DIR_NOT_ROOT && FirstEntry(*systemPath + L'*').has_value();
}

std::string ProfileText(std::string_view path, std::string_view section, std::string_view key,
                        std::size_t capacity) {
    constexpr std::size_t LongestLine = 4096;
    const auto systemPath = SystemPath(path);
    if (!systemPath || capacity == 0) return {};
    std::vector<wchar_t> value(LongestLine);
    const DWORD length = GetPrivateProfileStringW(Wide(section).c_str(), Wide(key).c_str(), L"", value.data(),
                                                  static_cast<DWORD>(value.size()), systemPath->c_str());
    return SystemBytes({value.data(), length}).substr(0, capacity - 1);
}

std::string Setting(std::string_view section, std::string_view key, std::string_view fallback) {
    const std::wstring subkey = SettingsKey + Wide(section);
    const std::wstring name = Wide(key);
    std::vector<wchar_t> value;
    DWORD bytes = 0;
    const auto read = [&](void* buffer) {
        return RegGetValueW(HKEY_CURRENT_USER, subkey.c_str(), name.c_str(), RRF_RT_REG_SZ, nullptr, buffer,
                            &bytes);
    };
    LSTATUS status = read(nullptr);
    while (status == ERROR_MORE_DATA || (status == ERROR_SUCCESS && value.empty() && bytes > 0)) {
        value.resize(bytes / sizeof(wchar_t) + 1);
        bytes = static_cast<DWORD>(value.size() * sizeof(wchar_t));
        status = read(value.data());
    }
    if (status != ERROR_SUCCESS || value.empty() || value.front() == L'\0') return std::string(fallback);
    return Utf8FromSystem(value.data());
}

std::string DocumentsFolder() {
    constexpr const wchar_t* FormerFolder = L"C:\\My Documents";
    if (IsFolder(FormerFolder)) return Utf8FromSystem(FormerFolder);
    std::array<wchar_t, MAX_PATH> folder{};
    const HRESULT found =
        SHGetFolderPathW(nullptr, CSIDL_PERSONAL, nullptr, SHGFP_TYPE_CURRENT, folder.data());
    return SUCCEEDED(found) ? Utf8FromSystem(folder.data()) : std::string();
}

void UseSiteIn(const std::string& folder) {
    SetEnvironmentVariableW(L"TMP", Wide(folder + "\\tmp").c_str());
}

}  // namespace platform
