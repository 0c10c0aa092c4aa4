// Vantora Database Explorer: copies a business's record files into a new Access database.

#include <QApplication>

#include "ui/run_tool.h"

int main(int argc, char** argv) {
    QApplication::setDesktopFileName(QStringLiteral("vantora-explorer"));
    QApplication application(argc, argv);
    return ui::RunTool();
}
