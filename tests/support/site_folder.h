// A folder in which a test lays a site out, and at which this process is pointed as the program itself would
// be. What lies in its share/SRV1/KSTLLNK is what \\SRV1\KSTLLNK gives.
//
// A Windows system takes shares as they stand, so there the folder is the one that the environment variable
// VANTORA_SITE_FOLDER names: who sets it has made its share/SRV1/KSTLLNK the share \\SRV1\KSTLLNK. One test
// at a time can use it.
#pragma once

#include <filesystem>

#include "tests/support/scratch.h"

namespace test {

class SiteFolder {
  public:
    /// Empty at first.
    SiteFolder();
    ~SiteFolder();
    SiteFolder(const SiteFolder&) = delete;
    SiteFolder& operator=(const SiteFolder&) = delete;

    const std::filesystem::path& Path() const { return mPath; }
    std::filesystem::path operator/(const std::string& name) const { return mPath / name; }

    /// Makes the shares known; WriteSampleSite does so itself.
    void WriteSettings() const;

    /// Enters the folder of the catalogue in the settings store.
    void SetHome(const std::filesystem::path& home) const;

  private:
    ScratchFolder mScratch;
    std::filesystem::path mPath;
    ScopedVariable mTemp;
#ifndef _WIN32
    ScopedVariable mConfig;
#endif
};

}  // namespace test
