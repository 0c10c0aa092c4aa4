// A small site in a scratch folder: shares, LINKSFILE, one directory file with its container, ttymap and the
// configuration file, all of them literal bytes. The engine that Start makes ends with the builder.
#pragma once

#include <cstdint>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>

#include "engine/business_basic.h"
#include "engine/links.h"
#include "engine/site_configuration.h"
#include "tests/engine/bytes.h"
#include "tests/support/recording_window.h"
#include "tests/support/site_folder.h"

namespace test {

class SiteBuilder {
  public:
    SiteBuilder() {
        mFolder.WriteSettings();
        std::filesystem::create_directories(mFolder / "tmp");
    }
    ~SiteBuilder() {
        engine::gEngine.reset();
        engine::gSystem.reset();
        engine::gEpcInfo.reset();
    }
    SiteBuilder(const SiteBuilder&) = delete;
    SiteBuilder& operator=(const SiteBuilder&) = delete;

    std::optional<std::string> Ini = "[iQ-Stock]\nServer=SRV1\nDirectory=D01\n";
    std::optional<std::string> TerminalMap = "";
    std::optional<std::string> Links = "";
    std::string Directory;
    std::string Container = Nul(512);  // block 0 belongs to nobody
    std::string ContainerName = "DDB";

    /// Adds a file of the site directory with these bytes, record zero or index header first; its first
    /// block.
    std::int32_t AddFile(const std::string& name, char type, std::int32_t recordLength,
                         std::int32_t lastRecord, const std::string& bytes) {
        const auto firstBlock = static_cast<std::int32_t>(Container.size() / 512);
        Container += Padded(bytes, (bytes.size() + 511) / 512 * 512, '\0');
        Directory += DirectoryEntryBytes(name, firstBlock, recordLength, type, lastRecord);
        *Links += LinkEntry(":D01:" + name, "KSW:D01");
        return firstBlock;
    }

    const SiteFolder& Folder() const { return mFolder; }
    std::filesystem::path InTemp(const std::string& name) const { return mFolder / "tmp" / name; }
    std::filesystem::path InShare(const std::string& name) const {
        return mFolder / "share/SRV1/KSTLLNK" / name;
    }
    std::string ContainerBytes() const { return ReadBytes(InShare("KSW/" + ContainerName)); }

    void Write() const {
        if (Ini) WriteBytes(InTemp("kSWCatalog.ini"), *Ini);
        std::filesystem::create_directories(InShare("KSW"));
        if (TerminalMap) WriteBytes(InShare("ttymap"), *TerminalMap);
        if (Links) WriteBytes(InShare("LINKSFILE"), *Links);
        WriteBytes(InShare("KSW/D01"), Directory);
        WriteBytes(InShare("KSW/" + ContainerName), Container);
    }

    /// Writes the site and starts an engine on it.
    engine::cBusinessBasic& Start() {
        Write();
        engine::LoadSiteConfiguration(false, Window);
        if (!engine::gEngine) throw std::runtime_error("the engine of the test site does not start");
        return *engine::gEngine;
    }

    RecordingWindow Window;

  private:
    SiteFolder mFolder;
};

}  // namespace test
