#include <cstdlib>
#include <stdexcept>
#include <windows.h>

#include "tests/support/site_folder.h"

namespace test {

namespace {

std::filesystem::path FolderOfShares() {
    const char* const folder = std::getenv("VANTORA_SITE_FOLDER");
    if (folder == nullptr) throw std::runtime_error("VANTORA_SITE_FOLDER is not set");
    return folder;
}

void Empty(const std::filesystem::path& folder) {
    std::error_code ignored;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        std::filesystem::remove_all(entry.path(), ignored);
}

/// A store of this process's own takes the place of the user's.
void ReplaceSettings() {
    constexpr const wchar_t* Store = L"Software\\VantoraTests";
    RegDeleteTreeW(HKEY_CURRENT_USER, Store);
    HKEY store = nullptr;
    RegCreateKeyExW(HKEY_CURRENT_USER, Store, 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS, nullptr,
                    &store, nullptr);
    RegOverridePredefKey(HKEY_CURRENT_USER, store);
    RegCloseKey(store);
}

}  // namespace

SiteFolder::SiteFolder() : mPath(FolderOfShares()), mTemp("TMP", (mPath / "tmp").string()) {
    Empty(mPath);
    ReplaceSettings();
}

SiteFolder::~SiteFolder() {
    RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
    Empty(mPath);
}

void SiteFolder::WriteSettings() const {}

void SiteFolder::SetHome(const std::filesystem::path& home) const {
    const std::wstring value = home.wstring();
    RegSetKeyValueW(HKEY_CURRENT_USER, L"Software\\VB and VBA Program Settings\\Vantora\\Directory", L"Home",
                    REG_SZ, value.c_str(), static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
}

}  // namespace test
