// Exports every table of a sample site without a window and prints what it took:
//
//   export_bench RECORDS [--site FOLDER] [--warm-up N] [--rounds N] [--discard]
//
// With --discard the decoded rows are thrown away: what is left is the walk through the site's files and the
// decoding. The site is made, with about RECORDS records over all its tables, where FOLDER holds none yet;
// without a folder it is made in the temporary directory and removed at the end. A process of its own makes
// it, so that the peak of memory is the exports'.

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "catalogue/metadata_catalogue.h"
#include "catalogue/target_builder.h"
#include "engine/business_basic.h"
#include "engine/site_configuration.h"
#include "export/export_run.h"
#include "platform/code_page.h"
#include "tools/sample_site/field_packing.h"
#include "tools/sample_site/sample_site.h"

namespace {

namespace fs = std::filesystem;

struct Arguments {
    std::int64_t Records = 0;
    std::optional<fs::path> Site;
    int WarmUp = 0;
    int Rounds = 1;
    bool Discard = false;
};

std::optional<Arguments> ReadArguments(int count, char** words) {
    Arguments arguments;
    if (count < 2) return std::nullopt;
    arguments.Records = std::atoll(words[1]);
    for (int i = 2; i < count; i += 2) {
        const std::string_view word = words[i];
        if (word == "--discard") {
            arguments.Discard = true;
            --i;
            continue;
        }
        if (i + 1 == count) return std::nullopt;
        if (word == "--site") {
            arguments.Site = words[i + 1];
        } else if (word == "--warm-up") {
            arguments.WarmUp = std::atoi(words[i + 1]);
        } else if (word == "--rounds") {
            arguments.Rounds = std::atoi(words[i + 1]);
        } else {
            return std::nullopt;
        }
    }
    if (arguments.Records < 1 || arguments.WarmUp < 0 || arguments.Rounds < 1) return std::nullopt;
    return arguments;
}

/// Nothing is shown and nobody cancels.
class NoWindow : public platform::WindowServices {
  public:
    void ShowMessage(const platform::Message& message) override { std::puts(message.Text.c_str()); }
    void SetStatus(const std::string&) override {}
    void SetProgress(std::int32_t, std::int32_t) override {}
    void ShowHexDisplay(const std::string&) override {}
    void Yield() override {}
    void EnableAction(int, bool) override {}
    void ShowHourglass(bool) override {}
};

/// The captions alone.
class Captions : public catalogue::TableList {
  public:
    std::u16string Caption(int box) const override { return mCaptions.at(static_cast<std::size_t>(box)); }
    void SetCaption(int box, const std::u16string& caption) override {
        mCaptions.at(static_cast<std::size_t>(box)) = caption;
    }
    void SetColour(int, catalogue::TableColour) override {}
    void SetVisible(int, bool) override {}
    void SetEnabled(int, bool) override {}
    bool Ticked(int) const override { return true; }
    void SetTicked(int, bool) override {}
    void SetToolTip(int, const std::string&) override {}

  private:
    std::array<std::u16string, BoxCount> mCaptions;
};

/// Columns of every name, into which values go and are lost.
class LostField : public dao::RecordsetField {
  public:
    const std::u16string& Name() const override { return mName; }
    dao::FieldType Type() const override { return dao::FieldType::Memo; }
    int Size() const override { return 0; }
    dao::Value GetValue() const override { return {}; }
    void SetValue(const dao::Value&) override {}

  private:
    std::u16string mName;
};

/// Counts the rows that it loses.
class LostRows : public dao::Recordset {
  public:
    void SetIndex(std::u16string_view) override {}
    void MoveFirst() override {}
    void MoveNext() override {}
    bool AtEnd() const override { return true; }
    void Seek(std::string_view, std::span<const dao::Value>) override {}
    bool NoMatch() const override { return true; }
    void Edit() override {}
    void AddNew() override {}
    void Update() override { ++mCount; }
    dao::RecordsetField& Fields(std::u16string_view) override { return mField; }
    dao::RecordsetField& Fields(int) override { return mField; }
    int FieldCount() const override { return 0; }
    std::int32_t RecordCount() const override { return mCount; }
    void Close() override {}

  private:
    LostField mField;
    std::int32_t mCount = 0;
};

/// The target database of --discard: only its rows are asked for.
class LostTarget : public dao::Database {
  public:
    std::shared_ptr<dao::Recordset> OpenRecordset(std::u16string_view) override {
        return std::make_shared<LostRows>();
    }
    std::shared_ptr<dao::TableDef> CreateTableDef(std::u16string_view) override { return nullptr; }
    dao::TableDefs& TableDefs() override { throw std::logic_error("no tables"); }
    std::shared_ptr<dao::Relation> CreateRelation(std::u16string_view) override { return nullptr; }
    dao::Relations& Relations() override { throw std::logic_error("no relations"); }
    void SetPause(std::function<void()>) override {}
    void Flush() override {}
    void Close() override {}
};

double CpuSeconds() {
    constexpr double Microseconds = 1e6;
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / Microseconds;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

double PeakMebibytes() {
    constexpr double Kibibytes = 1024;
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / Kibibytes;
}

struct Measure {
    std::int64_t Rows = 0;
    double Wall = 0;  // seconds
    double Cpu = 0;
};

void Print(const std::string& name, const Measure& measure) {
    std::printf("%-24s %9lld rows  %7.3f s wall  %7.3f s CPU  %9.0f rows/s\n", name.c_str(),
                static_cast<long long>(measure.Rows), measure.Wall, measure.Cpu,
                static_cast<double>(measure.Rows) / measure.Wall);
}

/// Takes the time of work, which returns how many rows it wrote.
template <typename Work>
Measure Measured(Work work) {
    const auto begin = std::chrono::steady_clock::now();
    const double cpu = CpuSeconds();
    Measure measure;
    measure.Rows = work();
    measure.Cpu = CpuSeconds() - cpu;
    measure.Wall = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    return measure;
}

std::int64_t ExportTable(catalogue::InterfaceState& state, const Captions& list, std::int16_t box) {
    NoWindow window;
    catalogue::EmptyTableFiles(state);
    catalogue::OpenFiles(state, list, window, box);
    catalogue::BuildCollection(state, list, box);
    exporting::AddData(state, list, window, box);
    return state.TargetRecordset->RecordCount();
}

/// From Select DB to the closed target; with the figures of every table where they are asked for.
std::int64_t Export(const fs::path& target, bool discard, bool printTables) {
    NoWindow window;
    engine::LoadSiteConfiguration(false, window);
    if (!engine::gEngine) throw std::runtime_error("the site gives no engine");
    const sample::CompressionAlphabet alphabet;  // of a running program

    catalogue::InterfaceState state;
    Captions list;
    catalogue::StartCatalogue(state, list);
    fs::remove(target);
    catalogue::BuildTargetDatabase(state, target.string());
    if (discard) state.TargetDatabase = std::make_shared<LostTarget>();
    std::int64_t rows = 0;
    for (std::int16_t box = 0; box < catalogue::TableList::BoxCount; ++box) {
        if (list.Caption(box).empty()) continue;
        const Measure table = Measured([&] { return ExportTable(state, list, box); });
        if (printTables) Print("  " + platform::Utf8FromWide(list.Caption(box)), table);
        rows += table.Rows;
    }
    state.TargetDatabase->Close();
    engine::gEngine.reset();
    return rows;
}

void MakeSite(const fs::path& folder, std::int64_t records) {
    if (fs::exists(folder / "manifest.json")) return;
    const pid_t child = fork();
    if (child == 0) {
        try {
            sample::WriteSampleSite(folder, {.Records = records});
        } catch (const std::exception& error) {
            std::fprintf(stderr, "export_bench: %s\n", error.what());
            _exit(1);
        }
        _exit(0);
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child || status != 0)
        throw std::runtime_error("the sample site cannot be made");
}

void Run(const Arguments& arguments, const fs::path& site) {
    MakeSite(site, arguments.Records);
    setenv("TMPDIR", (site / "tmp").c_str(), 1);
    setenv("XDG_CONFIG_HOME", (site / "config").c_str(), 1);
    const fs::path target = site / "export_bench.mdb";
    for (int round = -arguments.WarmUp; round < arguments.Rounds; ++round) {
        const Measure all =
            Measured([&] { return Export(target, arguments.Discard, round + 1 == arguments.Rounds); });
        if (round >= 0) Print("round " + std::to_string(round + 1), all);
    }
    std::printf("target %.1f MiB, peak of memory %.1f MiB\n",
                static_cast<double>(fs::file_size(target)) / (1 << 20), PeakMebibytes());
    fs::remove(target);
}

}  // namespace

int main(int count, char** words) {
    const auto arguments = ReadArguments(count, words);
    if (!arguments) {
        std::fprintf(stderr, "usage: %s RECORDS [--site FOLDER] [--warm-up N] [--rounds N] [--discard]\n",
                     words[0]);
        return 2;
    }
    const fs::path made = fs::temp_directory_path() / ("vantora-export-bench-" + std::to_string(getpid()));
    int status = 0;
    try {
        Run(*arguments, fs::absolute(arguments->Site.value_or(made)));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "export_bench: %s\n", error.what());
        status = 1;
    }
    fs::remove_all(made);
    return status;
}
