// headless_export TARGET [--flush-every N] [--patience MS]: exports every table of the site that the
// environment points at and says, line by line, what of it the file holds from then on, whatever becomes of
// this process:
//
//   built               the target and all its tables, without rows
//   safe TABLE ROWS     so many rows of a table; told of every table that has grown
//   closed              the whole export
//
// The rows are written out after every N records, 5000 unless given, and besides as the program itself does.
// A call on a share may take MS milliseconds, a minute unless given. An error is reported as the program
// does, and ends this one with status 1.
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "platform/bounded_call.h"
#include "platform/error.h"
#include "tools/headless_export/site_export.h"

namespace {

struct Arguments {
    std::string Target;
    std::int64_t FlushEvery = 5000;
};

std::optional<Arguments> ReadArguments(int count, char** words) {
    if (count < 2 || count % 2 != 0) return std::nullopt;
    Arguments arguments;
    arguments.Target = words[1];
    for (int i = 2; i < count; i += 2) {
        const std::string_view option = words[i];
        const std::int64_t number = std::atoll(words[i + 1]);
        if (number < 1) return std::nullopt;
        if (option == "--flush-every") {
            arguments.FlushEvery = number;
        } else if (option == "--patience") {
            platform::SetCallPatience(std::chrono::milliseconds(number));
        } else {
            return std::nullopt;
        }
    }
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
        std::fprintf(stderr, "usage: %s TARGET [--flush-every N] [--patience MS]\n", words[0]);
        return 2;
    }
    try {
        ToldExport(*arguments).Run();
    } catch (const std::exception&) {
        std::fprintf(stderr, "%s\n", platform::RunTimeErrorReportWithPath(platform::ErrorInHand()).c_str());
        return 1;
    }
    return 0;
}
