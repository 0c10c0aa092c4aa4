// engine_bench: how fast the engine walks and counts indexes, reads records and decodes fields. It makes its
// own sites in the folder for temporary files, about 300 MB, and removes them. An item is an index entry with
// its record, an index entry, a search, or a field. "allocations_per_item" counts requests for memory, once
// the caller's buffers have their length.
#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "bench/allocations.h"
#include "engine/business_basic.h"
#include "engine/field_codec.h"
#include "engine/site_configuration.h"
#include "export/record_decoding.h"
#include "platform/code_page.h"
#include "platform/silent_window.h"
#include "platform/site.h"
#include "tools/sample_site/field_packing.h"
#include "tools/sample_site/index_writer.h"
#include "tools/sample_site/sample_site.h"
#include "tools/sample_site/site_files.h"
#include "tools/sample_site/site_plan.h"
#include "tools/sample_site/tables.h"

namespace {

using engine::gEngine;
using platform::ByteString;

constexpr std::int32_t Records = 1'000'000;
constexpr std::int32_t RecordLength = 256;
constexpr int KeyLength = 8;
constexpr const char* DataFile = "DATA";
constexpr const char* SmallBlocks = "I512";
constexpr const char* LargeBlocks = "I2048";

/// A scratch folder that the environment points at as a site; the engine started on it ends with it.
class ScratchSite {
  public:
    ScratchSite() {
        std::string pattern = (std::filesystem::temp_directory_path() / "engine_bench-XXXXXX").string();
        Folder = mkdtemp(pattern.data());
        setenv("TMPDIR", (Folder / "tmp").c_str(), 1);
        setenv("XDG_CONFIG_HOME", (Folder / "config").c_str(), 1);
    }
    ~ScratchSite() {
        gEngine.reset();
        setenv("TMPDIR", Folder.parent_path().c_str(), 1);
        std::error_code ignored;
        std::filesystem::remove_all(Folder, ignored);
    }
    ScratchSite(const ScratchSite&) = delete;
    ScratchSite& operator=(const ScratchSite&) = delete;

    void Start() {
        engine::LoadSiteConfiguration(true, mWindow);
        if (!gEngine) throw std::runtime_error("the engine does not start");
    }

    std::filesystem::path Folder;

  private:
    platform::SilentWindow mWindow;
};

/// Fields of a sample table and records to decode them from.
struct DecodingTable {
    std::vector<exporting::FieldDecoder> Fields;
    std::vector<ByteString> Records;
};

DecodingTable ReadTable(const sample::TableSpec& spec) {
    constexpr std::int32_t RecordsOfATable = 200;
    DecodingTable table;
    for (const sample::FieldSpec& field : spec.Fields) {
        table.Fields.emplace_back(catalogue::cInterface{u"",
                                                        std::u16string(1, static_cast<char16_t>(field.Code)),
                                                        field.Length, field.Start, field.Specifier});
    }
    for (std::int32_t number = 1; number <= RecordsOfATable; ++number) {
        ByteString record;
        for (const sample::DataFileSpec& file : spec.DataFiles) {
            const auto opened = gEngine->LogicalOpen(file.Name);
            if (number > opened->HighUsedRecord()) return table;
            record += gEngine->LreadFile(opened, number);
        }
        table.Records.push_back(std::move(record));
    }
    return table;
}

std::vector<DecodingTable> SampleTables() {
    ScratchSite site;
    constexpr std::int64_t SampleRecords = 20'000;
    sample::WriteSampleSite(site.Folder, {SampleRecords, 1, false});
    site.Start();
    const sample::SitePlan plan = sample::PlanOf(SampleRecords);
    std::vector<DecodingTable> tables;
    for (const sample::TableSpec& spec :
         {sample::Customers(plan), sample::Stores(plan), sample::Vendors(plan), sample::Employees(),
          sample::Parts(plan), sample::PriceHistory(plan), sample::LabourOperations(plan),
          sample::Invoices(plan), sample::WarrantyClaims(plan), sample::Notes(plan)}) {
        if (!spec.DataFiles.empty()) tables.push_back(ReadTable(spec));
    }
    return tables;
}

void WriteIndex(sample::ShareWriter& share, const char* name, sample::IndexFormat format) {
    sample::IndexShape shape;
    shape.Format = format;
    shape.KeyLength = KeyLength;
    sample::Random random(1, name);
    sample::IndexWriter index(
        shape, share.Reserve("BENCH", name, 'I', shape.BlockSize(), shape.BlocksFor(Records)), random);
    for (std::int32_t record = 1; record <= Records; ++record) {
        ByteString key(KeyLength, '\0');
        engine::iPack('L', key, record, KeyLength - 3);
        index.Add(key, record);
    }
    index.Finish();
}

void WriteLargeSite(const std::filesystem::path& folder) {
    constexpr std::int32_t RecordsPerWrite = 4096;
    sample::WriteSiteFiles(folder, platform::ComputerName());
    sample::ShareWriter share(folder / "share" / sample::SiteServer / "KSTLLNK");
    const auto data = share.Reserve("BENCH", DataFile, 'L', RecordLength, Records);
    const ByteString run(std::size_t{RecordsPerWrite} * RecordLength, 'r');
    for (std::int32_t record = 0; record <= Records; record += RecordsPerWrite) {
        const auto count = static_cast<std::size_t>(std::min(RecordsPerWrite, Records + 1 - record));
        data.Write(record, std::string_view(run).substr(0, count * RecordLength));
    }
    WriteIndex(share, SmallBlocks, sample::IndexFormat::Block512);
    WriteIndex(share, LargeBlocks, sample::IndexFormat::Extended2048);
    share.Finish();
}

/// Tells the items and the requests for memory of the benchmark that is running, from here to Report.
class Account {
  public:
    explicit Account(benchmark::State& state) : mState(state) {}

    void Report(std::int64_t items) {
        mState.SetItemsProcessed(items);
        mState.counters["allocations_per_item"] =
            static_cast<double>(bench::Allocations() - mBefore) / static_cast<double>(items);
    }

  private:
    benchmark::State& mState;
    const std::int64_t mBefore = bench::Allocations();
};

void Walk(benchmark::State& state, const char* name) {
    const engine::LogicalFileArgument index = gEngine->LogicalOpen(name);
    const engine::LogicalFileArgument data = gEngine->LogicalOpen(DataFile);
    std::int64_t walked = 0;
    Account account(state);
    for (auto _ : state) {
        ByteString buff;
        ByteString key;
        std::int32_t rec = 0;
        gEngine->KFind(index, buff, key, rec);
        for (rec = std::abs(rec); rec != 0; gEngine->KNext(index, buff, key, rec), ++walked)
            benchmark::DoNotOptimize(gEngine->LreadFile(data, rec));
    }
    if (walked % Records != 0) state.SkipWithError("the walk missed entries");
    account.Report(walked);
}

void Count(benchmark::State& state, const char* name) {
    const engine::LogicalFileArgument index = gEngine->LogicalOpen(name);
    std::int64_t counted = 0;
    Account account(state);
    for (auto _ : state) counted += gEngine->KCount(index);
    if (counted % Records != 0) state.SkipWithError("the count is wrong");
    account.Report(counted);
}

void Find(benchmark::State& state, const char* name) {
    const engine::LogicalFileArgument index = gEngine->LogicalOpen(name);
    sample::Random random(1);
    ByteString buff;
    Account account(state);
    for (auto _ : state) {
        ByteString key(KeyLength, '\0');
        std::int32_t rec = 0;
        engine::iPack('L', key, static_cast<std::int32_t>(random.Between(1, Records)), KeyLength - 3);
        gEngine->KFind(index, buff, key, rec);
        benchmark::DoNotOptimize(rec);
    }
    account.Report(state.iterations());
}

void Decode(benchmark::State& state, const std::vector<DecodingTable>& tables) {
    const sample::CompressionAlphabet alphabet;
    exporting::RecordTexts texts;
    std::int64_t fields = 0;
    Account account(state);
    for (auto _ : state) {
        for (const DecodingTable& table : tables) {
            for (const ByteString& record : table.Records) {
                texts.Begin(record);
                for (const auto& field : table.Fields) {
                    if (field.IsText()) {
                        benchmark::DoNotOptimize(field.Text(texts));
                    } else {
                        benchmark::DoNotOptimize(field.Decode(record));
                    }
                }
            }
            fields += static_cast<std::int64_t>(table.Fields.size() * table.Records.size());
        }
    }
    account.Report(fields);
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
    try {
        const std::vector<DecodingTable> tables = SampleTables();
        benchmark::RegisterBenchmark("Decode", Decode, tables);
        ScratchSite site;
        WriteLargeSite(site.Folder);
        site.Start();
        for (const char* const name : {SmallBlocks, LargeBlocks}) {
            benchmark::RegisterBenchmark(("Walk/" + std::string(name)).c_str(), Walk, name)
                ->Unit(benchmark::kMillisecond);
            benchmark::RegisterBenchmark(("Count/" + std::string(name)).c_str(), Count, name)
                ->Unit(benchmark::kMillisecond);
            benchmark::RegisterBenchmark(("Find/" + std::string(name)).c_str(), Find, name);
        }
        benchmark::RunSpecifiedBenchmarks();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "engine_bench: %s\n", error.what());
        return 1;
    }
    return 0;
}
