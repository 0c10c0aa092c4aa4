#include "tools/site_dump/site_dump.h"

#include <algorithm>
#include <filesystem>
#include <iomanip>
#include <set>
#include <stdexcept>

#include "engine/business_basic.h"
#include "engine/field_codec.h"
#include "engine/links.h"
#include "engine/recorded_error.h"
#include "engine/records.h"
#include "engine/site_configuration.h"
#include "platform/code_page.h"
#include "platform/file.h"
#include "platform/numbers.h"
#include "platform/silent_window.h"
#include "platform/site.h"
#include "tools/site_dump/index_dump.h"

namespace site_dump {

namespace {

using engine::cLogicalFile;
using engine::gEngine;
using engine::gSystem;
using platform::ByteString;
using platform::Utf8FromBytes;

using FileHandle = std::shared_ptr<cLogicalFile>;

/// Where the engine's messages and hex dumps go.
class ConsoleWindow : public platform::SilentWindow {
  public:
    ConsoleWindow(std::ostream& out, std::ostream& errors) : mOut(out), mErrors(errors) {}
    void ShowMessage(const platform::Message& message) override { mErrors << message.Text << '\n'; }
    void ShowHexDisplay(const std::string& text) override {
        for (const char c : text) {
            if (c != '\r') mOut << c;
        }
    }

  private:
    std::ostream& mOut;
    std::ostream& mErrors;
};

void Start(const std::filesystem::path& folder, platform::WindowServices& window) {
    const std::filesystem::path configuration = folder / "tmp/kSWCatalog.ini";
    platform::UseSiteIn(folder.string());
    if (!platform::FileExists(configuration.string()))
        throw std::runtime_error(configuration.string() + " is missing");
    constexpr std::size_t LongestServer = 100;
    const std::string links =
        "\\\\" + platform::ProfileText(configuration.string(), "iQ-Stock", "Server", LongestServer) +
        "\\KSTLLNK\\LINKSFILE";
    if (!platform::FileExists(links)) throw std::runtime_error(links + " is missing");
    engine::LoadSiteConfiguration(false, window);
    if (gEngine) return;
    const auto& reason = engine::LastRecordedError();
    throw std::runtime_error(reason ? reason->what() : "the engine does not start");
}

/// The logical file, unless opening it would create its directory file.
FileHandle Opened(const ByteString& name) {
    const ByteString key = name.starts_with(':') ? name : ":" + gSystem->mDirectory + ":" + name;
    const auto link = engine::gLinks->Find(key);
    if (!link) throw std::runtime_error("no link " + Utf8FromBytes(key));
    ByteString directory = gSystem->LinkShare() + link->ResolutionFile;
    std::replace(directory.begin(), directory.end(), ':', '\\');
    if (!platform::FileExists(directory))
        throw std::runtime_error("no directory file " + Utf8FromBytes(directory));
    auto file = gEngine->LogicalOpen(name);
    if (!file) throw std::runtime_error("no entry in " + Utf8FromBytes(directory));
    return file;
}

void DumpEntry(const cLogicalFile& file, std::ostream& out) {
    out << "type " << Utf8FromBytes(file.FileType) << ", block " << file.Position << ", records of "
        << file.RecordLength << " bytes, last " << file.LastRecord << ", flags " << file.Flags << ", in "
        << (file.OpenFile ? Utf8FromBytes(file.OpenFile->Path) : "a container that is missing") << '\n';
}

void DumpSite(std::ostream& out) {
    out << "server " << Utf8FromBytes(gSystem->mUNCDrive) << ", directory "
        << Utf8FromBytes(gSystem->mDirectory) << ", terminal " << Utf8FromBytes(gSystem->TerminalID) << " of "
        << Utf8FromBytes(gSystem->ComputerName) << " (" << gSystem->IP << ")\n"
        << engine::gLinks->Count() << " links\n";
    for (const auto& link : engine::gLinks->NewEnum()) {
        out << Utf8FromBytes(link->LinkFile) << " -> " << Utf8FromBytes(link->ResolutionFile) << ": ";
        try {
            DumpEntry(*Opened(link->LinkFile), out);
        } catch (const std::exception& error) {
            out << error.what() << '\n';
        }
    }
}

void DumpDeletedChain(const FileHandle& file, std::int32_t head, std::ostream& out) {
    std::set<std::int32_t> seen;
    while (head >= 1 && head <= file->LastRecord && seen.insert(head).second)
        head = engine::iUnpack('L', gEngine->LreadFile(file, head), engine::NextDeletedPosition);
    out << "  deleted records in the chain: " << seen.size();
    if (head >= 1) out << ", which ends wrongly at " << head;
    out << '\n';
}

void DumpPlainFile(const FileHandle& file, std::ostream& out) {
    const ByteString zero = engine::ReadRecordZero(*file);
    const std::int32_t head = engine::iUnpack('L', zero, engine::ChainHeadPosition);
    out << "  record zero: state " << engine::iUnpack('J', zero, engine::HeaderStatePosition)
        << ", first deleted " << head << ", highest used " << file->HighUsedRecord() << ", active "
        << file->ActiveCount() << '\n';
    DumpDeletedChain(file, head, out);
}

void DumpFile(const FileHandle& file, std::ostream& out) {
    DumpEntry(*file, out);
    if (file->FileType == engine::KeyedFileType) {
        DumpIndex(file, out);
        out << "  entries counted: " << gEngine->KCount(file) << '\n';
    } else {
        DumpPlainFile(file, out);
    }
}

void DumpRecord(const FileHandle& file, std::int32_t number, std::ostream& out) {
    out << (file->FileType == engine::KeyedFileType ? "block " : "record ") << number << '\n';
    gEngine->H(gEngine->ReadFile(file->OpenFile, file->RecordLength, engine::RecordOffset(*file, number)));
}

}  // namespace

int Run(std::span<const std::string> words, std::ostream& out, std::ostream& errors) {
    constexpr int UsageStatus = 2;
    constexpr std::size_t FirstNumber = 2;
    if (words.empty()) {
        errors << "usage: site_dump SITE [NAME [NUMBER...]]\n";
        return UsageStatus;
    }
    ConsoleWindow window(out, errors);
    int status = 0;
    try {
        Start(std::filesystem::absolute(words[0]), window);
        if (words.size() == 1) {
            DumpSite(out);
        } else {
            const FileHandle file = Opened(words[1]);
            if (words.size() == FirstNumber) DumpFile(file, out);
            for (const std::string& number : words.subspan(FirstNumber))
                DumpRecord(file, platform::LongFromText(number), out);
        }
    } catch (const std::exception& error) {
        errors << "site_dump: " << error.what() << '\n';
        status = 1;
    }
    gEngine.reset();
    return status;
}

}  // namespace site_dump
