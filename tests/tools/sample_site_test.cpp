// Whole sites, read back through the engine and compared with their manifests and expected tables.
#include "tools/sample_site/sample_site.h"

#include <algorithm>
#include <cctype>
#include <gtest/gtest.h>
#include <map>
#include <set>

#include "engine/field_codec.h"
#include "platform/error.h"
#include "platform/ole_date.h"
#include "tests/support/expect_error.h"
#include "tests/tools/site_fixture.h"
#include "tools/sample_site/canonical_cell.h"

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

std::vector<std::string> Split(const std::string& line) {
    std::vector<std::string> cells(1);
    for (const char c : line) {
        if (c == '\t') {
            cells.emplace_back();
        } else {
            cells.back() += c;
        }
    }
    return cells;
}

/// The rows of an expected table, each by column name.
std::vector<std::map<std::string, std::string>> ReadExpected(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    std::string line;
    std::getline(stream, line);
    const std::vector<std::string> names = Split(line);
    std::vector<std::map<std::string, std::string>> rows;
    while (std::getline(stream, line)) {
        const std::vector<std::string> cells = Split(line);
        rows.emplace_back();
        for (std::size_t i = 0; i < names.size(); ++i) rows.back()[names[i]] = cells.at(i);
    }
    return rows;
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

    std::vector<std::map<std::string, std::string>> Expected(const std::string& table) const {
        return ReadExpected(Folder / "expected" / (table + ".tsv"));
    }

    /// The records of the files under one number, one after the other.
    static std::string Record(std::initializer_list<const char*> files, std::int32_t number) {
        std::string record;
        for (const char* const file : files) record += engine::gEngine->LreadFile(std::string(file), number);
        return record;
    }

    static std::string Uncompressed(const std::string& record, std::int32_t position, std::int32_t length) {
        std::string bytes(platform::Mid(record, position, length));
        return engine::Ucm(bytes);
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

TEST_P(WrittenSite, EveryEntryPointsAtAnActiveRecordOfItsOwn) {
    for (const auto& [name, table] : Tables) {
        if (table.KeyFile.empty() || table.DataFiles.empty()) continue;
        std::set<std::int32_t> records;
        for (const auto& entry : Walk(table.KeyFile)) records.insert(entry.Record);
        EXPECT_EQ(std::ssize(records), table.Figures.at("entries")) << name;
        for (const auto& [file, length] : table.DataFiles) {
            for (const std::int32_t record : records)
                ASSERT_GT(engine::iUnpack('J', Record({file.c_str()}, record), 1), 0)
                    << file << " " << record;
        }
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

TEST_P(WrittenSite, FilesOfAContainerDoNotOverlap) {
    std::map<std::string, std::map<std::int32_t, std::int64_t>> extents;  // first block to block behind
    for (const auto& [name, table] : Tables) {
        std::vector<std::string> files;
        if (!table.KeyFile.empty()) files.push_back(table.KeyFile);
        for (const auto& [file, length] : table.DataFiles) files.push_back(file);
        for (const std::string& fileName : files) {
            const auto file = Opened(fileName);
            const std::int64_t bytes = (std::int64_t{file->LastRecord} + 1) * file->RecordLength;
            extents[file->OpenFile->Path][file->Position] = file->Position + (bytes + 511) / 512;
        }
    }
    EXPECT_GE(extents.size(), 4U);
    for (const auto& [container, files] : extents) {
        std::int64_t free = 1;
        for (const auto& [first, behind] : files) {
            EXPECT_GE(first, free) << container;
            free = behind;
        }
    }
}

TEST_P(WrittenSite, CustomersComeBackFieldByFieldInTheOrderOfTheirKeys) {
    const auto expected = Expected("CUSTOMERS");
    const auto entries = Walk("CUSKEY");
    ASSERT_EQ(entries.size(), expected.size());
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const std::string record = Record({"CUSMST", "CUSADR"}, entries[i].Record);
        auto row = expected[i];
        const std::int32_t number = engine::iUnpack('D', record, 3);
        ASSERT_EQ(entries[i].Key, record.substr(2, 3));
        EXPECT_EQ(sample::LongCell(number), row["CustomerNumber"]);
        EXPECT_EQ(Uncompressed(record, 6, 28), row["CustomerName"]);
        EXPECT_EQ(sample::TextCell(platform::Mid(record, 34, 24)), row["ContactName"]);
        const std::int64_t thousands = engine::iUnpack('L', record, 66);
        EXPECT_EQ(thousands == 5'000'000 ? "" : sample::LongCell(thousands * 1'000), row["CreditLimit"]);
        EXPECT_EQ(sample::CurrencyCell(std::int64_t{engine::iUnpack('L', record, 76)} * 100), row["Balance"]);
        EXPECT_EQ(sample::DateCell(engine::gEngine->UnPackDate("J", record, 87).Calendar()), row["Opened"]);
        EXPECT_EQ(sample::DateCell(engine::gEngine->UnPackDate("D", record, 89).Calendar()),
                  row["LastPayment"]);
        EXPECT_EQ(sample::DateCell(engine::gEngine->UnPackDate("R", record, 92).Calendar()),
                  row["LastStatement"]);
        EXPECT_EQ(Uncompressed(record, 203, 80), row["MailingAddress"]);
    }
}

TEST_P(WrittenSite, HistoryChainsRunFromTheHighestSequenceNumberToOneAndBack) {
    std::int64_t records = 0;
    std::int64_t lines = 0;
    for (const auto& entry : Walk("HISKEY")) {
        std::int32_t next = entry.Record;
        std::int32_t sequence = 0;
        do {
            const std::string record = Record({"HISTRY"}, next);
            const std::int32_t found = engine::iUnpack('B', record, 115);
            if (sequence != 0) {
                ASSERT_EQ(found, sequence - 1);
            }
            ASSERT_EQ(record.substr(105, 4), entry.Key);
            sequence = found;
            next = std::abs(engine::iUnpack('K', record, 110));
            lines += engine::iUnpack('B', record, 146);
            ++records;
        } while (sequence > 1);
        ASSERT_EQ(next, entry.Record);
    }
    EXPECT_EQ(records, Tables["INVOICE_HISTORY"].Figures["recordsStored"]);
    EXPECT_EQ(lines, Tables["INVOICE_HISTORY_DETAIL"].Figures["expectedRows"]);
}

TEST_P(WrittenSite, SupersessionRemarksAreGroupsOfThreeKeys) {
    const auto entries = Walk("SUPKEY");
    std::int64_t rows = 0;
    for (std::size_t i = 0; i < entries.size(); ++rows) {
        const std::string& key = entries[i].Key;
        ASSERT_EQ(key.size(), 26U);
        const std::size_t group = key[14] == 'Z' ? 3 : 1;
        for (std::size_t j = 1; j < group; ++j) {
            ASSERT_EQ(entries.at(i + j).Key.substr(0, 15), key.substr(0, 15));
            ASSERT_EQ(entries[i + j].Key[15], static_cast<char>(j + 1));
        }
        i += group;
    }
    EXPECT_EQ(rows, Tables["SUPERCEDES"].Figures["expectedRows"]);
}

TEST_P(WrittenSite, ExpectedTablesHaveTheManifestsRowsAndSomeOfEveryKind) {
    for (auto& [name, table] : Tables)
        EXPECT_EQ(std::ssize(Expected(name)), table.Figures["expectedRows"]) << name;
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
    EXPECT_EQ(platform::Setting("Directory", "Home", ""),
              "C:\\Program Files\\Kestrel Software, Inc\\Vantora");
    const auto home = platform::ResolvePath("C:\\Program Files\\Kestrel Software, Inc\\Vantora");
    ASSERT_TRUE(home);
    EXPECT_TRUE(fs::exists(fs::path(*home) / sample::CatalogueName));
}

INSTANTIATE_TEST_SUITE_P(Sizes, WrittenSite,
                         testing::Values(SiteCase{1, 1}, SiteCase{300, 7}, SiteCase{6'000, 1},
                                         SiteCase{6'000, 20'240'607}),
                         [](const auto& tested) {
                             return "Records" + std::to_string(tested.param.Records) + "Seed" +
                                    std::to_string(tested.param.Seed);
                         });

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
