#include "tools/sample_site/site_files.h"

#include "tools/sample_site/sample_site.h"
#include "tools/sample_site/share_writer.h"

namespace sample {

namespace {

constexpr const char* ThisTerminal = "47";
constexpr const char* CatalogueHome = "C:\\Program Files\\Kestrel Software, Inc\\Vantora";

std::string TerminalMap(const std::string& workstation) {
    return "COUNTER1 12,3\r\nCOUNTER2 13,3\r\nBACKOFFICE 20\r\n10.4.7.21 31,1,2\r\n" + workstation + " " +
           ThisTerminal + ",5\r\nSERVICE1 52\r\n";
}

std::string SiteConfiguration() {
    return std::string("; Written by Kestrel Workstation\r\n[iQ-Stock]\r\nServer=") + SiteServer +
           "\r\nDataShare=KSTLLNK\r\nCatalogShare=CATCON\r\nDirectory=" + SiteDirectory +
           "\r\nTerminalID=" + ThisTerminal + "\r\nCustomerNumber=00123\r\n";
}

std::string Settings(const std::filesystem::path& folder) {
    return "[Shares]\nRoot=" + (folder / "share").string() +
           "\n[Drives]\nC=" + (folder / "drive_c").string() + "\n[Directory]\nHome=" + CatalogueHome + "\n";
}

/// The text in single quotes for a shell.
std::string Quoted(const std::string& text) {
    std::string quoted = "'";
    for (const char c : text) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

std::string Environment(const std::filesystem::path& folder) {
    return "export TMPDIR=" + Quoted((folder / "tmp").string()) +
           "\nexport XDG_CONFIG_HOME=" + Quoted((folder / "config").string()) + "\n";
}

}  // namespace

void WriteSiteFiles(const std::filesystem::path& folder, const std::string& workstation) {
    WriteNewFile(folder / "share" / SiteServer / "KSTLLNK" / "ttymap", TerminalMap(workstation));
    WriteNewFile(folder / "tmp" / "kSWCatalog.ini", SiteConfiguration());
    WriteNewFile(folder / "config" / "Vantora.conf", Settings(folder));
    WriteNewFile(folder / "env.sh", Environment(folder));
}

}  // namespace sample
