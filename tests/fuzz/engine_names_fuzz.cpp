// Names, links and directory entries of any bytes. An input is a logical name, LINKSFILE and a directory
// file, each up to the next "|||", and a container.
#include <filesystem>
#include <string_view>

#include "engine/links.h"
#include "engine/records.h"
#include "engine/system.h"
#include "tests/engine/bytes.h"
#include "tests/fuzz/fuzzing.h"
#include "tests/fuzz/scratch_home.h"

namespace {

namespace fs = std::filesystem;

constexpr std::string_view Divider = "|||";

/// A folder that stands for all shares, and the names of this site.
struct Shares : test::ScratchHome {
    Shares() {
        engine::gSystem = std::make_unique<engine::cSystem>();
        engine::gSystem->mUNCDrive = "SRV1";
        engine::gSystem->mDirectory = "D01";
    }
};

void Use(const std::string& name) {
    test::Try([&] {
        const auto file = engine::iLogicalOpen(name);
        if (!file || file->ActiveCount() == file->HighUsedRecord()) return;
        engine::iLreadFile(file, 1);
    });
}

std::string SoundSite(unsigned) {
    const std::string divider(Divider);
    return "A" + divider + test::LinkEntry(":D01:A", "KSW:D01") + divider +
           test::DirectoryEntryBytes("A", 1, 16, 'L', 9) + divider + std::string(700, 'r');
}

}  // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t room,
                                               unsigned seed) {
    return test::MutateOrMake(data, size, room, seed, Divider.size(), SoundSite);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Shares shares;
    fs::remove_all(shares / "root");
    std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::string name(test::TakePart(input, Divider));
    shares.Write("root/SRV1/KSTLLNK/LINKSFILE", test::TakePart(input, Divider));
    shares.Write("root/SRV1/KSTLLNK/KSW/D01", test::TakePart(input, Divider));
    shares.Write("root/SRV1/KSTLLNK/KSW/DDB", input);
    engine::gOpenFiles = std::make_unique<engine::cOpenFiles>();
    engine::gLogicalFiles = std::make_unique<engine::cLogicalFiles>();
    engine::gLinks = std::make_unique<engine::cLinks>();
    Use(name);
    for (std::int32_t i = 1; i <= std::min(engine::gLinks->Count(), 4); ++i)
        Use(engine::gLinks->Item(i)->LinkFile);
    return 0;
}
