#include "platform/text_windows.h"

#include <algorithm>
#include <windows.h>

#include "platform/code_page.h"
#include "platform/path_names.h"
#include "platform/site.h"

namespace platform {

static_assert(sizeof(wchar_t) == sizeof(char16_t));

namespace {

// Folders are limited to 248 characters in the ordinary form, files to 260.
constexpr std::size_t LongestOrdinaryPath = 247;

/// The full path in the form that the system passes on without a look at its length.
std::wstring Unlimited(const std::wstring& path) {
    std::wstring full(GetFullPathNameW(path.c_str(), 0, nullptr, nullptr), L'\0');
    full.resize(GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr));
    if (full.empty()) return path;
    return full.starts_with(L"\\\\") ? L"\\\\?\\UNC" + full.substr(1) : L"\\\\?\\" + full;
}

}  // namespace

std::string Utf8FromSystem(std::wstring_view text) {
    return Utf8FromWide(std::u16string(text.begin(), text.end()));
}

std::optional<std::wstring> SystemPath(std::string_view path) {
    const auto resolved = ResolvePath(path);
    if (!resolved) return std::nullopt;
    const std::u16string name = WideFromName(*resolved);
    std::wstring wide(name.begin(), name.end());
    std::ranges::replace(wide, L'/', L'\\');
    return wide.size() > LongestOrdinaryPath ? Unlimited(wide) : wide;
}

}  // namespace platform
