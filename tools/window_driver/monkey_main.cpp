// window_monkey SEED EVENTS: lets the monkey loose on the real window with a made-up site, then opens every
// database that it made. Needs no display with QT_QPA_PLATFORM=offscreen. Ends with status 1 when the tool
// ended in an error that no click of an operator explains, or left a database that cannot be opened.

#include <QApplication>
#include <cstdio>
#include <cstdlib>
#include <set>

#include "platform/dao/database.h"
#include "platform/error.h"
#include "tools/window_driver/monkey.h"

namespace {

/// What a number that is none, or too large, in the range dialog gives, and an update whose target is closed.
bool IsOperatorsFault(const std::string& message) {
    static const std::set<std::string> faults{
        "Run-time error '13':", "Run-time error '6':", "Run-time error '3420':"};
    return message.rfind("Run-time error", 0) != 0 || faults.count(message) != 0;
}

bool Report(const driver::Monkey& monkey) {
    bool isGood = true;
    std::printf("%d runs of the tool\n", monkey.Runs());
    for (const auto& [message, times] : monkey.Messages()) {
        std::printf("%6d x %s%s\n", times, message.c_str(), IsOperatorsFault(message) ? "" : "   <- why?");
        isGood = isGood && IsOperatorsFault(message);
    }
    return isGood;
}

bool CanBeOpened(const QString& database) {
    try {
        dao::OpenDatabase(database.toStdString());
        return true;
    } catch (const platform::Error& error) {
        std::printf("%s: %s\n", qPrintable(database), error.what());
        return false;
    }
}

}  // namespace

/// Fontconfig keeps what it has read of the fonts until the process ends; the toolkit never tells it to let go.
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libfontconfig\n";
}

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    if (argc != 3) {
        std::fprintf(stderr, "usage: window_monkey SEED EVENTS\n");
        return 2;
    }
    const driver::MadeUpSite site(300);
    driver::Monkey monkey(site, static_cast<std::uint32_t>(std::strtoul(argv[1], nullptr, 10)));
    monkey.Work(std::strtoll(argv[2], nullptr, 10));
    bool isGood = Report(monkey);
    for (const QString& database : site.Databases()) isGood = CanBeOpened(database) && isGood;
    return isGood ? 0 : 1;
}
