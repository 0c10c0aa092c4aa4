// Exports every table of a sample site without a window and prints what it took:
//
//   export_bench RECORDS [--site FOLDER] [--warm-up N] [--rounds N] [--discard | --writing]
//
// With --discard the decoded rows are thrown away: what is left is the walk through the site's files and the
// decoding. With --writing the rows of each table are decoded into memory first, and the time is that of
// writing them alone; the peak of memory says nothing then. The site is made, with about RECORDS records over
// all its tables, where FOLDER holds none yet; without a folder it is made in the temporary directory and
// removed at the end. A process of its own makes it, so that the peak of memory is the exports'.

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <exception>
#include <filesystem>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

#include "platform/dao/row_sink.h"
#include "tools/headless_export/site_export.h"
#include "tools/sample_site/sample_site.h"

namespace {

namespace fs = std::filesystem;

/// What of an export is timed.
enum class Half { Both, Decoding, Writing };

struct Arguments {
    std::int64_t Records = 0;
    std::optional<fs::path> Site;
    int WarmUp = 0;
    int Rounds = 1;
    Half Measured = Half::Both;
};

std::optional<Arguments> ReadArguments(int count, char** words) {
    Arguments arguments;
    if (count < 2) return std::nullopt;
    arguments.Records = std::atoll(words[1]);
    for (int i = 2; i < count; i += 2) {
        const std::string_view word = words[i];
        if (word == "--discard" || word == "--writing") {
            arguments.Measured = word == "--discard" ? Half::Decoding : Half::Writing;
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
class LostRows : public dao::RowSink {
  public:
    void Update() override { ++mCount; }
    dao::RecordsetField& Fields(std::u16string_view) override { return mField; }
    dao::RecordsetField& Fields(int) override { return mField; }
    std::int32_t RecordCount() const override { return mCount; }

  private:
    LostField mField;
    std::int32_t mCount = 0;
};

/// The target database of --discard: only its rows are asked for.
class LostTarget : public dao::RowSinkDatabase {
  public:
    std::shared_ptr<dao::Recordset> OpenRecordset(std::u16string_view) override {
        return std::make_shared<LostRows>();
    }
};

/// One value of a row that is kept, and the column of the target where it belongs.
struct KeptValue {
    dao::RecordsetField* Column;
    dao::Value Value;
};

/// A column of a target's table, whose values are kept.
class KeptField : public LostField {
  public:
    KeptField(dao::RecordsetField& column, std::vector<KeptValue>& values)
        : mColumn(column), mValues(values) {}

    /// Of the row being added.
    dao::Value GetValue() const override {
        for (auto value = mValues.rbegin(); value != mValues.rend() && value->Column != nullptr; ++value) {
            if (value->Column == &mColumn) return value->Value;
        }
        return {};
    }
    void SetValue(const dao::Value& value) override { mValues.push_back({&mColumn, value}); }

  private:
    dao::RecordsetField& mColumn;
    std::vector<KeptValue>& mValues;
};

/// Keeps the rows of a target's table until they are written.
class KeptRows : public LostRows {
  public:
    explicit KeptRows(std::shared_ptr<dao::Recordset> target) : mTarget(std::move(target)) {}

    void Update() override { mValues.push_back({nullptr, {}}); }
    dao::RecordsetField& Fields(std::u16string_view name) override {
        return mFields.emplace_back(mTarget->Fields(name), mValues);
    }

    std::int32_t Write() {
        mTarget->AddNew();
        for (const KeptValue& value : mValues) {
            try {
                if (value.Column != nullptr) {
                    value.Column->SetValue(value.Value);
                    continue;
                }
                mTarget->Update();
            } catch (const platform::Error&) {
                // A value or row that the table refuses is left out, as an export does.
            }
            if (value.Column == nullptr) mTarget->AddNew();
        }
        return mTarget->RecordCount();
    }

  private:
    std::shared_ptr<dao::Recordset> mTarget;
    std::vector<KeptValue> mValues;  // of all rows; one without column ends a row
    std::deque<KeptField> mFields;
};

/// The target database of --writing: its tables keep their rows.
class KeptTarget : public LostTarget {
  public:
    explicit KeptTarget(std::shared_ptr<dao::Database> target) : mTarget(std::move(target)) {}

    std::shared_ptr<dao::Recordset> OpenRecordset(std::u16string_view name) override {
        return mRows = std::make_shared<KeptRows>(mTarget->OpenRecordset(name));
    }
    void Close() override { mTarget->Close(); }

    std::int32_t WriteTable() { return mRows->Write(); }

  private:
    std::shared_ptr<dao::Database> mTarget;
    std::shared_ptr<KeptRows> mRows;  // of the table opened last
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

    void operator+=(const Measure& other) {
        Rows += other.Rows;
        Wall += other.Wall;
        Cpu += other.Cpu;
    }
};

void Print(const std::string& name, const Measure& measure) {
    std::printf("%-24s %9lld rows  %7.3f s wall  %7.3f s CPU  %9.0f rows/s\n", name.c_str(),
                static_cast<long long>(measure.Rows), measure.Wall, measure.Cpu,
                static_cast<double>(measure.Rows) / measure.Wall);
}

/// Takes the time of work, which returns how many rows it wrote.
template <typename Work>
Measure TimeOf(Work work) {
    const auto begin = std::chrono::steady_clock::now();
    const double cpu = CpuSeconds();
    Measure measure;
    measure.Rows = work();
    measure.Cpu = CpuSeconds() - cpu;
    measure.Wall = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    return measure;
}

/// Replaces the target database by one that loses or keeps its rows, as the measured half asks.
std::shared_ptr<KeptTarget> PrepareHalf(catalogue::InterfaceState& state, Half half) {
    if (half == Half::Decoding) state.TargetDatabase = std::make_shared<LostTarget>();
    if (half != Half::Writing) return nullptr;
    auto kept = std::make_shared<KeptTarget>(state.TargetDatabase);
    state.TargetDatabase = kept;
    return kept;
}

/// From Select DB to the closed target; with the figures of every table where they are asked for. uncounted
/// takes the time of what is not of the half to be measured.
std::int64_t Export(const fs::path& target, Half half, bool printTables, Measure& uncounted) {
    headless::SiteExport run(target);
    const std::shared_ptr<KeptTarget> kept = PrepareHalf(run.State(), half);
    std::int64_t rows = 0;
    for (std::size_t i = 0; i < run.Tables().size(); ++i) {
        const auto decode = [&] { return run.Copy(i); };
        if (kept) uncounted += TimeOf(decode);
        const Measure table = kept ? TimeOf([&] { return kept->WriteTable(); }) : TimeOf(decode);
        if (printTables) Print("  " + run.Tables()[i], table);
        rows += table.Rows;
    }
    run.State().TargetDatabase->Close();
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
        const bool isLast = round + 1 == arguments.Rounds;
        Measure uncounted;
        Measure all = TimeOf([&] { return Export(target, arguments.Measured, isLast, uncounted); });
        all.Wall -= uncounted.Wall;
        all.Cpu -= uncounted.Cpu;
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
        std::fprintf(stderr,
                     "usage: %s RECORDS [--site FOLDER] [--warm-up N] [--rounds N] [--discard | --writing]\n",
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
