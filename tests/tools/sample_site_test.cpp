// Whole sites, read back through the engine and compared with their manifests and expected tables.
#include "tools/sample_site/sample_site.h"

#include <algorithm>
#include <cctype>
#include <gtest/gtest.h>
#include <map>
#include <set>

#include "engine/field_codec.h"
#include "platform/error.h"
#include "tests/support/expect_error.h"
#include "tests/tools/site_fixture.h"

namespace {

namespace fs = std::filesystem;

/// What the manifest says of one table: its figures, and the names of its files with their record lengths.
struct ManifestTable {
    std::map<std::string, std::int64_t> Figures;  // the first of each name
    std::string KeyFile;
    std::vector<std::pair<std::string, std::int64_t>> DataFiles;
};

/// Reads the manifest line by line, as it is laid out: one member a line.
std::map<std::string, ManifestTable> ReadManifest(const fs::path& path) {
    constexpr std::size_t TableIndent = 6;
    constexpr std::size_t FileIndent = 8;
    std::map<std::string, ManifestTable> tables;
    std::ifstream stream(path);
    ManifestTable* table = nullptr;
    for (std::string line; std::getline(stream, line);) {
        const std::size_t indent = line.find_first_not_of(' ');
        const std::size_t colon = line.find("\": ");
        if (colon == std::string::npos) continue;
        const std::string name = line.substr(indent + 1, colon - indent - 1);
        std::string value = line.substr(colon + 3);
        if (value.ends_with(',')) value.pop_back();
        const bool isText = value.starts_with('"');
        if (isText) value = value.substr(1, value.size() - 2);
        if (indent == TableIndent && name == "name") table = &tables[value];
        if (table == nullptr) continue;
        if (indent == FileIndent && name == "name") table->KeyFile = value;
        if (indent == FileIndent + 2 && name == "name" && !table->Figures.contains("recordsStored"))
            table->DataFiles.emplace_back(value, 0);
        if (name == "recordLength") table->DataFiles.back().second = std::stoll(value);
        if (!isText && std::isdigit(static_cast<unsigned char>(value.front())) != 0 && indent <= FileIndent)
            table->Figures.emplace(name, std::stoll(value));
    }
    return tables;
}

struct SiteCase {
    std::int64_t Records;
    std::uint64_t Seed;
};

class WrittenSite : public test::SiteFixture, public testing::WithParamInterface<SiteCase> {
  protected:
    void SetUp() override {
        sample::WriteSampleSite(Folder, {GetParam().Records, GetParam().Seed, true});
        StartEngine();
        Tables = ReadManifest(Folder / "manifest.json");
        ASSERT_EQ(Tables.size(), 15U);
    }

    std::int64_t ExpectedRows(const std::string& table) const {
        const std::string lines = test::ReadBytes(Folder / "expected" / (table + ".tsv"));
        return std::count(lines.begin(), lines.end(), '\n') - 1;
    }

    /// The records of the files under one number, one after the other.
    static std::string Record(std::initializer_list<const char*> files, std::int32_t number) {
        std::string record;
        for (const char* const file : files) record += engine::gEngine->LreadFile(std::string(file), number);
        return record;
    }

    std::map<std::string, ManifestTable> Tables;
};

TEST_P(WrittenSite, EveryKeyFileHoldsTheManifestsEntriesInAscendingOrder) {
    for (const auto& [name, table] : Tables) {
        if (table.KeyFile.empty()) continue;
        const auto entries = Walk(table.KeyFile);
        EXPECT_EQ(std::ssize(entries), table.Figures.at("entries")) << name;
        EXPECT_EQ(engine::gEngine->KCount(table.KeyFile), table.Figures.at("entries")) << name;
        EXPECT_TRUE(std::is_sorted(entries.begin(), entries.end(), [](const auto& a, const auto& b) {
            return a.Key < b.Key;
        })) << name;
    }
}

TEST_P(WrittenSite, DataFilesHaveTheManifestsCountsAndDeletedChains) {
    for (const auto& [name, table] : Tables) {
        for (const auto& [fileName, length] : table.DataFiles) {
            const auto file = Opened(fileName);
            EXPECT_EQ(file->RecordLength, length);
            EXPECT_EQ(file->FileType, "L");
            EXPECT_EQ(file->ActiveCount(), table.Figures.at("recordsStored")) << fileName;
            const std::int64_t deleted = table.Figures.at("recordsDeleted");
            EXPECT_EQ(file->HighUsedRecord(), file->ActiveCount() + deleted) << fileName;
            EXPECT_LE(file->HighUsedRecord(), file->LastRecord) << fileName;

            const std::string header = engine::gEngine->ReadFile(file->OpenFile, 16, file->Position * 512);
            std::int32_t next = engine::iUnpack('L', header, 3);
            std::int64_t walked = 0;
            for (; next > 0 && walked <= deleted; ++walked) {
                const std::string record = Record({fileName.c_str()}, next);
                ASSERT_EQ(engine::iUnpack('J', record, 1), 0) << fileName << " " << next;
                next = engine::iUnpack('L', record, 3);
            }
            EXPECT_EQ(walked, deleted) << fileName;
        }
    }
}

TEST_P(WrittenSite, ExpectedTablesHaveTheManifestsRowsAndSomeOfEveryKind) {
    for (auto& [name, table] : Tables) EXPECT_EQ(ExpectedRows(name), table.Figures["expectedRows"]) << name;
    auto& employees = Tables["EMPLOYEES"].Figures;
    EXPECT_EQ(employees["recordsStored"],
              employees["expectedRows"] + employees["outsideStatusRange"] + employees["refusedRepeatedKey"]);
    if (GetParam().Records < 4'000) return;
    EXPECT_GT(Tables["PRICE_HISTORY"].Figures["refusedRepeatedKey"], 0);
    EXPECT_GT(employees["outsideStatusRange"], 0);
    EXPECT_GE(Tables["INVOICE_HISTORY_DETAIL"].Figures["expectedRows"], 1'000);
}

TEST_P(WrittenSite, ConfigurationTerminalAndStartUpFileAreFound) {
    EXPECT_EQ(engine::gSystem->mDirectory, sample::SiteDirectory);
    EXPECT_EQ(engine::gSystem->TerminalID, "47");
    EXPECT_EQ(engine::gEpcInfo->CustomerNumber, 123);
    EXPECT_GT(Opened("SINVOI")->RecordLength, 512);
    if (platform::PathSeparator == '\\') return;  // where settings are no file, the site brings none
    EXPECT_EQ(platform::Setting("Directory", "Home", ""),
              "C:\\Program Files\\Kestrel Software, Inc\\Vantora");
    const auto home = platform::ResolvePath("C:\\Program Files\\Kestrel Software, Inc\\Vantora");
    ASSERT_TRUE(home);
    EXPECT_TRUE(fs::exists(fs::path(*home) / sample::CatalogueName));
}

INSTANTIATE_TEST_SUITE_P(Sizes, WrittenSite,
                         testing::Values(SiteCase{1, 1}, SiteCase{300, 7}, SiteCase{6'000, 1},
                                         SiteCase{6'000, 20'240'607}));

class TwoSites : public testing::Test {
  protected:
    /// Every file but the catalogue, which carries the time of its making, and those that name the folder.
    std::map<std::string, std::string> Bytes(const std::string& site) const {
        std::map<std::string, std::string> files;
        for (const auto& entry : fs::recursive_directory_iterator(mScratch / site)) {
            const std::string name = fs::relative(entry.path(), mScratch / site).string();
            const bool isApart = name.ends_with(".mdb") || name.ends_with(".conf") || name == "env.sh";
            if (entry.is_regular_file() && !isApart) files[name] = test::ReadBytes(entry.path());
        }
        return files;
    }

    test::ScratchFolder mScratch;
};

TEST_F(TwoSites, OfTheSameSeedAreTheSame) {
    for (const char* const site : {"a", "b"}) sample::WriteSampleSite(mScratch / site, {800, 5, true});
    sample::WriteSampleSite(mScratch / "c", {800, 6, true});
    const auto first = Bytes("a");
    EXPECT_GT(first.size(), 25U);
    EXPECT_EQ(first, Bytes("b"));
    EXPECT_NE(first, Bytes("c"));
}

TEST_F(TwoSites, DoNotGoIntoOneFolder) {
    sample::WriteSampleSite(mScratch / "a", {10, 1, false});
    EXPECT_EQ(test::NumberRaised([&] {
                  sample::WriteSampleSite(mScratch / "a", {10, 1, false});
              }),
              platform::PathFileAccess);
    EXPECT_FALSE(fs::exists(mScratch / "a/expected"));
}

}  // namespace
