// headless_export TARGET [--flush-every N]: exports every table of the site that the environment points at
// and says, line by line, what of it the file holds from then on, whatever becomes of this process:
//
//   built               the target and all its tables, without rows
//   safe TABLE ROWS     so many rows of a table; told of every table that has grown
//   closed              the whole export
//
// The rows are written out after every N records, 5000 unless given, and besides as the program itself does.
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "tools/headless_export/site_export.h"

namespace {

struct Arguments {
    std::string Target;
    std::int64_t FlushEvery = 5000;
};

std::optional<Arguments> ReadArguments(int count, char** words) {
    if (count != 2 && count != 4) return std::nullopt;
    Arguments arguments;
    arguments.Target = words[1];
    if (count == 4) {
        if (std::string_view(words[2]) != "--flush-every") return std::nullopt;
        arguments.FlushEvery = std::atoll(words[3]);
    }
    if (arguments.FlushEvery < 1) return std::nullopt;
    return arguments;
}

/// A line is out before anything else is done.
void Tell(const std::string& line) {
    std::puts(line.c_str());
    std::fflush(stdout);
}

/// An export that tells what is safe.
class ToldExport {
  public:
    explicit ToldExport(const Arguments& arguments)
        : mFlushEvery(arguments.FlushEvery), mExport(arguments.Target, [this] { BeforeRecord(); }) {
        mExport.State().TargetDatabase->Flush();
        Tell("built");
    }

    void Run() {
        for (mTable = 0; mTable < mExport.Tables().size(); ++mTable) mGrown[mTable] = mExport.Copy(mTable);
        mExport.State().TargetDatabase->Close();
        TellGrown();
        Tell("closed");
    }

  private:
    void BeforeRecord() {
        if (++mRecords % mFlushEvery != 0) return;
        mGrown[mTable] = mExport.State().TargetRecordset->RecordCount();
        mExport.State().TargetDatabase->Flush();
        TellGrown();
    }

    void TellGrown() {
        for (const auto& [table, rows] : mGrown)
            Tell("safe " + mExport.Tables()[table] + " " + std::to_string(rows));
        mGrown.clear();
    }

    std::int64_t mFlushEvery;
    std::int64_t mRecords = 0;
    std::size_t mTable = 0;
    std::map<std::size_t, std::int32_t> mGrown;  // rows by table, since the last telling
    headless::SiteExport mExport;
};

}  // namespace

int main(int count, char** words) {
    const auto arguments = ReadArguments(count, words);
    if (!arguments) {
        std::fprintf(stderr, "usage: %s TARGET [--flush-every N]\n", words[0]);
        return 2;
    }
    try {
        ToldExport(*arguments).Run();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "headless_export: %s\n", error.what());
        return 1;
    }
    return 0;
}
