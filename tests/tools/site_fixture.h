// A folder for a site, the environment that points the program at it, and the engine started on it.
#pragma once

#include <filesystem>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "engine/built_ins.h"
#include "engine/business_basic.h"
#include "engine/site_configuration.h"
#include "platform/site.h"
#include "tests/support/recording_window.h"
#include "tests/support/site_folder.h"
#include "tools/sample_site/field_packing.h"
#include "tools/sample_site/sample_site.h"

namespace test {

/// An index entry as a walk meets it.
struct WalkedKey {
    std::string Key;
    std::int32_t Record;
};

class SiteFixture : public testing::Test {
  protected:
    ~SiteFixture() override { engine::gEngine.reset(); }

    void StartEngine() {
        engine::LoadSiteConfiguration(false, Window);
        ASSERT_NE(engine::gEngine, nullptr);
        ASSERT_TRUE(Window.Messages.empty());
        mAlphabet.emplace();
    }

    static std::shared_ptr<engine::cLogicalFile> Opened(const std::string& name) {
        auto file = engine::gEngine->LogicalOpen(name);
        if (!file) ADD_FAILURE() << name << " cannot be opened";
        return file;
    }

    /// Every entry from the key (empty: the lowest) to the end.
    static std::vector<WalkedKey> Walk(const std::string& name, std::string key = {}) {
        std::vector<WalkedKey> entries;
        std::string buffer;
        std::int32_t record = 0;
        const engine::LogicalFileArgument file = Opened(name);
        engine::gEngine->KFind(file, buffer, key, record);
        for (record = std::abs(record); record != 0; engine::gEngine->KNext(file, buffer, key, record))
            entries.push_back({key, record});
        return entries;
    }

    ScratchFolder Scratch;
    const SiteFolder Site;
    const std::filesystem::path& Folder = Site.Path();
    RecordingWindow Window;

  private:
    std::optional<sample::CompressionAlphabet> mAlphabet;  // of a running program
};

}  // namespace test
