#include <fstream>

#include "tests/support/site_folder.h"

namespace test {

namespace {

void AddSettings(const std::filesystem::path& folder, const std::string& lines) {
    std::filesystem::create_directories(folder / "config");
    std::ofstream(folder / "config/Vantora.conf", std::ios::app) << lines;
}

}  // namespace

SiteFolder::SiteFolder()
    : mPath(mScratch / "site"),
      mTemp("TMPDIR", (mPath / "tmp").string()),
      mConfig("XDG_CONFIG_HOME", (mPath / "config").string()) {}

SiteFolder::~SiteFolder() = default;

void SiteFolder::WriteSettings() const {
    AddSettings(mPath, "[Shares]\nRoot=" + (mPath / "share").string() + "\n");
}

void SiteFolder::SetHome(const std::filesystem::path& home) const {
    AddSettings(mPath, "[Directory]\nHome=" + home.string() + "\n");
}

}  // namespace test
