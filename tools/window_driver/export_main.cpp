// window_export TARGET [--patience MS]: starts the tool as it is, with its window, and works it as an
// operator does who wants everything: Select DB (an older file is replaced), a tick in every box, Update,
// Exit. Every message box is written out, as "message TITLE: TEXT", and closed; "closed" is written when the
// update has run to its end. Needs no display with QT_QPA_PLATFORM=offscreen. The exit status is the tool's.
//
// --patience is how many milliseconds a call on a share may take.
#include <QApplication>
#include <QCheckBox>
#include <QFileDialog>
#include <QPushButton>
#include <cstdio>

#include "platform/bounded_call.h"
#include "tools/window_driver/window_driver.h"
#include "ui/run_tool.h"

using namespace Qt::Literals::StringLiterals;

namespace {

using driver::ModalRobot;
using driver::WindowDriver;

QWidget* ToolWindow() {
    for (QWidget* const widget : QApplication::topLevelWidgets()) {
        if (widget->objectName() == u"fInterface"_s && widget->isVisible()) return widget;
    }
    return nullptr;
}

void ExportEverything(const QString& target, ModalRobot& robot) {
    QWidget* const window = ToolWindow();
    if (window == nullptr) return;  // the start-up has failed
    const WindowDriver hands(*window, robot);
    robot.Expect([&target](QWidget& dialog) {
        static_cast<QFileDialog&>(dialog).setOption(QFileDialog::DontConfirmOverwrite);
        ModalRobot::ChooseFile(target)(dialog);
    });
    hands.Press(WindowDriver::SelectDb);
    if (hands.Button(WindowDriver::Update).isEnabled()) {
        for (const QCheckBox* const box : hands.ListedBoxes()) hands.Click(box->text());
        hands.Press(WindowDriver::Update);
        // After an error the buttons stay as they were: before the update, or while it ran.
        const bool isDone = hands.Button(WindowDriver::SelectDb).isEnabled() &&
                            !hands.Button(WindowDriver::Update).isEnabled();
        if (isDone) std::puts("closed");
    }
    // After an error the tool is about to end: then it has the report up, and the window takes no input.
    robot.Soon([] {
        if (QWidget* const left = ToolWindow()) left->close();
    });
}

}  // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    if (argc != 2 && (argc != 4 || argv[2] != std::string_view("--patience"))) {
        std::fprintf(stderr, "usage: window_export TARGET [--patience MS]\n");
        return 2;
    }
    if (argc == 4) platform::SetCallPatience(std::chrono::milliseconds(std::atoi(argv[3])));
    ModalRobot robot;
    robot.Soon([&] { ExportEverything(QString::fromLocal8Bit(argv[1]), robot); });
    const int status = ui::RunTool();
    for (const ModalRobot::SeenMessage& message : robot.Messages) {
        std::printf("message %s: %s\n", qPrintable(message.Title), qPrintable(message.Text));
    }
    return status;
}
