// A workstation's own folder for a fuzz program: the environment names it for settings and temporary files,
// and the settings name its folder "root" as that of all shares. Removed at the end.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace test {

class ScratchHome {
  public:
    ScratchHome() {
        std::string pattern = (std::filesystem::temp_directory_path() / "vantora_fuzz-XXXXXX").string();
        mFolder = mkdtemp(pattern.data());
        std::filesystem::create_directories(mFolder / "tmp");
        setenv("XDG_CONFIG_HOME", mFolder.c_str(), 1);
        setenv("TMPDIR", (mFolder / "tmp").c_str(), 1);
        WriteSettings("");
    }
    ~ScratchHome() {
        std::error_code ignored;
        std::filesystem::remove_all(mFolder, ignored);
    }
    ScratchHome(const ScratchHome&) = delete;
    ScratchHome& operator=(const ScratchHome&) = delete;

    std::filesystem::path operator/(std::string_view name) const { return mFolder / name; }

    std::string ShareSettings() const { return "[Shares]\nRoot=" + (mFolder / "root").string() + "\n"; }

    void WriteSettings(std::string_view further) const {
        Write("Vantora.conf", ShareSettings() + std::string(further));
    }

    /// Writes a file that lies below the folder, in place of an older one.
    void Write(std::string_view name, std::string_view bytes) const {
        std::filesystem::create_directories((mFolder / name).parent_path());
        std::ofstream(mFolder / name, std::ios::binary)
            .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    }

  private:
    std::filesystem::path mFolder;
};

/// What of input comes before the next divider; input then begins behind that.
inline std::string_view TakePart(std::string_view& input, std::string_view divider) {
    const std::string_view part = input.substr(0, input.find(divider));
    input.remove_prefix(std::min(part.size() + divider.size(), input.size()));
    return part;
}

}  // namespace test
