// The texts that a site and a workstation are described by, of any bytes. An input is the configuration file,
// settings, ttymap, a table of mounts and a path, each up to the next "|||".
#include <algorithm>
#include <array>
#include <filesystem>

#include "engine/business_basic.h"
#include "engine/links.h"
#include "engine/site_configuration.h"
#include "platform/file.h"
#include "platform/share_mounts.h"
#include "platform/silent_window.h"
#include "platform/site.h"
#include "tests/fuzz/fuzzing.h"
#include "tests/fuzz/scratch_home.h"

namespace {

namespace fs = std::filesystem;

constexpr std::string_view Divider = "|||";

std::string SoundTexts(unsigned seed) {
    constexpr std::array Paths{R"(\\SRV1\KSTLLNK\KSW\D01)", R"(C:\Data\x)", R"(\\srv1\kstllnk\..\..\etc)",
                               R"(\\SRV1\KSTLLNK\c:\x)"};
    return "[iQ-Stock]\r\nServer=SRV1\r\nDataShare=D\r\nDirectory='D01'\r\nCustomerNumber=12\r\n"
           "TerminalID=\"7\"\r\n|||[Drives]\nC=/nowhere\n[Directory]\nHome=C:\\x\n|||"
           "localhost 17,x\r\n127.0.0.1 18\n|||"
           "36 25 0:32 / /mnt/link rw,relatime shared:1 - cifs //SRV1/KSTLLNK rw,prefixpath=KSW\n"
           "37 25 0:33 / /mnt/a\\040b rw - smb3 //srv1/data rw\n|||" +
           std::string(Paths[seed / 16 % Paths.size()]);
}

/// Whether path lies below folder.
bool IsWithin(const fs::path& path, const fs::path& folder) {
    const fs::path plain = path.lexically_normal();
    return std::mismatch(folder.begin(), folder.end(), plain.begin(), plain.end()).first == folder.end();
}

/// A path below a share or a drive must not come out above it.
void Resolve(const test::ScratchHome& home, std::string_view path) {
    const auto resolved = platform::ResolvePath(path);
    if (!resolved || !path.starts_with("\\\\")) return;
    if (!IsWithin(*resolved, (home / "root").lexically_normal())) std::abort();
    platform::FileExists(path);
    platform::ShareAnswers(path);
}

}  // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t room,
                                               unsigned seed) {
    return test::MutateOrMake(data, size, room, seed, Divider.size(), SoundTexts);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const test::ScratchHome home;
    std::string_view input(reinterpret_cast<const char*>(data), size);
    home.Write("tmp/kSWCatalog.ini", test::TakePart(input, Divider));
    // The first section of a name counts, so these settings cannot name another root.
    home.WriteSettings(test::TakePart(input, Divider));
    home.Write("root/SRV1/KSTLLNK/ttymap", test::TakePart(input, Divider));
    const std::string_view mounts = test::TakePart(input, Divider);

    platform::SilentWindow window;
    test::Try([&] { engine::LoadSiteConfiguration(false, window); });
    engine::gEngine.reset();
    test::Try([] { platform::Setting("Directory", "Home", ""); });

    const std::array<std::string, 3> names{"SRV1", "KSTLLNK", "KSW"};
    if (const auto mount = platform::FindShareMount(mounts, names); mount && mount->Components > names.size())
        std::abort();
    platform::FindVirtualShare(std::array{std::string(mounts)}, names[0], names[1]);
    test::Try([&] { Resolve(home, input); });
    return 0;
}
