// A complete, invented site of the business application, written into one folder: the link share with its
// LINKSFILE, terminal map, directory files and containers, the workstation's configuration, the catalogue,
// and a manifest that says what a full export of every table must hold. Tests build it small, benchmarks
// large; with the folder's env.sh in the environment the program finds everything.
//
// Below the folder:
//   share/SRV1/KSTLLNK/           LINKSFILE, ttymap, one folder an application area with D01 and DDB
//   tmp/kSWCatalog.ini            the site configuration
//   config/Vantora.conf           the settings store
//   drive_c/...                   the installation directory with MasterFileInformation.mdb
//   manifest.json, env.sh
//   expected/TABLE.tsv            on request: every row of a full export, in the order of the export
#pragma once

#include <cstdint>
#include <filesystem>

namespace sample {

inline constexpr const char* SiteServer = "SRV1";
inline constexpr const char* SiteDirectory = "KSW0123";
inline constexpr const char* CatalogueFolder = "drive_c/Program Files/Kestrel Software, Inc/Vantora";
inline constexpr const char* CatalogueName = "MasterFileInformation.mdb";

struct SampleOptions {
    std::int64_t Records = 50'000;  // of all tables together, roughly; every table holds a few at least
    std::uint64_t Seed = 1;         // the same seed and number give the same site
    bool WriteExpected = false;     // write expected/TABLE.tsv too
};

/// Writes the site into folder, which is made if it is missing. Raises the platform's file errors (75 for a
/// folder that holds a site already), 5 for less than one record, and 6 when so many records do not fit the
/// file formats.
void WriteSampleSite(const std::filesystem::path& folder, const SampleOptions& options);

}  // namespace sample
