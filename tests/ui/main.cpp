// Tests of widgets need an application, on a platform without a display.
#include <QApplication>
#include <gtest/gtest.h>

/// Fontconfig keeps what it has read of the fonts until the process ends; the toolkit never tells it to let
/// go.
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libfontconfig\n";
}

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
