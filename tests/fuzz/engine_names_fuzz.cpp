// Names, links and directory entries of any bytes. An input is a logical name, LINKSFILE and a directory
// file, each up to the next "|||", and a container.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string_view>

#include "engine/links.h"
#include "engine/records.h"
#include "engine/system.h"
#include "tests/engine/bytes.h"
#include "tests/fuzz/fresh_input.h"

namespace {

namespace fs = std::filesystem;

constexpr std::string_view Divider = "|||";

void Write(const fs::path& path, std::string_view bytes) {
    std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

/// A folder that the settings name as the root of all shares; removed at the end.
struct Shares {
    Shares() {
        std::string pattern = (fs::temp_directory_path() / "names_fuzz-XXXXXX").string();
        Folder = mkdtemp(pattern.data());
        setenv("XDG_CONFIG_HOME", Folder.c_str(), 1);
        Write(Folder / "Vantora.conf", "[Shares]\nRoot=" + (Folder / "root").string() + "\n");
        engine::gSystem = std::make_unique<engine::cSystem>();
        engine::gSystem->mUNCDrive = "SRV1";
        engine::gSystem->mDirectory = "D01";
    }
    ~Shares() {
        std::error_code ignored;
        fs::remove_all(Folder, ignored);
    }

    fs::path Folder;
};

std::string_view TakePart(std::string_view& input) {
    const std::string_view part = input.substr(0, input.find(Divider));
    input.remove_prefix(std::min(part.size() + Divider.size(), input.size()));
    return part;
}

void Use(const std::string& name) {
    try {
        const auto file = engine::iLogicalOpen(name);
        if (!file || file->ActiveCount() == file->HighUsedRecord()) return;
        engine::iLreadFile(file, 1);
    } catch (const platform::Error&) {  // what a damaged site may end in
    }
}

std::string SoundSite(unsigned) {
    using test::Padded;
    const std::string divider(Divider);
    return "A" + divider + "?" + Padded(":D01:A", 79) + "?" + Padded("KSW:D01", 79) + divider +
           Padded("A", 10, '\0') + test::Big(1, 3) + test::Big(16, 2) + "L" + test::Big(9, 4) +
           test::Nul(12) + divider + std::string(700, 'r');
}

}  // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t room,
                                               unsigned seed) {
    return test::MutateOrMake(data, size, room, seed, Divider.size(), SoundSite);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Shares shares;
    const fs::path share = shares.Folder / "root/SRV1/KSTLLNK";
    fs::remove_all(share);
    fs::create_directories(share / "KSW");
    std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::string name(TakePart(input));
    Write(share / "LINKSFILE", TakePart(input));
    Write(share / "KSW/D01", TakePart(input));
    Write(share / "KSW/DDB", input);
    engine::gOpenFiles = std::make_unique<engine::cOpenFiles>();
    engine::gLogicalFiles = std::make_unique<engine::cLogicalFiles>();
    engine::gLinks = std::make_unique<engine::cLinks>();
    Use(name);
    for (std::int32_t i = 1; i <= std::min(engine::gLinks->Count(), 4); ++i)
        Use(engine::gLinks->Item(i)->LinkFile);
    return 0;
}
