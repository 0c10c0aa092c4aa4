// Vantora Database Explorer: copies a business's record files into a new Access database.

#include <QApplication>
#include <cstdio>
#include <optional>
#include <string_view>

#include "ui/run_tool.h"

namespace {

constexpr const char* Version = "Vantora Database Explorer " VANTORA_VERSION "\n";
constexpr const char* Usage =
    "usage: vantora-explorer [--help | --version]\n"
    "\n"
    "Opens the window that copies a business's record files into a new Access database.\n"
    "Where it looks for the site is in its manual page and in the operator's guide.\n";

/// What the program prints instead of opening its window, if it was asked for that.
std::optional<const char*> AnswerTo(int argc, char** argv) {
    if (argc < 2) return std::nullopt;
    const std::string_view argument = argv[1];
    if (argument == "--version") return Version;
    if (argument == "--help" || argument == "-h") return Usage;
    return std::nullopt;
}

}  // namespace

int main(int argc, char** argv) {
    if (const auto answer = AnswerTo(argc, argv)) return std::fputs(*answer, stdout) < 0 ? 1 : 0;
    QApplication::setDesktopFileName(QStringLiteral("vantora-explorer"));
    QApplication application(argc, argv);
    return ui::RunTool();
}
