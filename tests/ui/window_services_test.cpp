#include <QFontMetricsF>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

#include "tools/window_driver/modal_robot.h"
#include "ui/interface_window.h"
#include "ui/window_services_qt.h"

using namespace Qt::Literals::StringLiterals;

namespace {

class WindowServices : public testing::Test {
  protected:
    driver::ModalRobot Robot;
    ui::fInterface Window;
    ui::QtWindowServices& Services = Window.Services();
};

TEST_F(WindowServices, TheHexDisplayShowsTheDumpUntilCancel) {
    Robot.Expect([](QWidget& dialog) {
        EXPECT_EQ(dialog.windowTitle(), u"Hex Variable Display"_s);
        const auto* const dump = dialog.findChild<QPlainTextEdit*>();
        EXPECT_EQ(dump->toPlainText(), u"000001 41 42\n"_s);
        const QFontMetricsF metrics(dump->font());
        EXPECT_EQ(metrics.horizontalAdvance(u'i'), metrics.horizontalAdvance(u'M'));
        auto* const cancel = dialog.findChild<QPushButton*>();
        EXPECT_EQ(cancel->text(), u"&Cancel"_s);
        QTest::mouseClick(cancel, Qt::LeftButton);
    });
    Services.ShowHexDisplay("000001 41 42\r\n");
    EXPECT_TRUE(Robot.IsDone());
}

TEST_F(WindowServices, ALongPathIsElidedOnlyInThePicture) {
    auto& box = *Window.findChild<QLineEdit*>(u"txtDataBase"_s);
    const QString path = u"/"_s + QString(40, u'm') + u"/%1/"_s + QString(40, u'm') + u"/MyData.mdb"_s;
    box.resize(200, 25);
    box.setText(path.arg(u'1'));
    const QImage picture = box.grab().toImage();
    EXPECT_EQ(box.toolTip(), box.text());
    box.setText(path.arg(u'2'));
    EXPECT_EQ(box.grab().toImage(), picture) << "the middle is left out";
    box.setText(box.text().chopped(1) + u'c');
    EXPECT_NE(box.grab().toImage(), picture) << "the end is shown";
}

TEST_F(WindowServices, WindowsBelowADialogTakeNoInputUntilItHasReturned) {
    Window.show();
    Robot.Expect([this](QWidget& dialog) {
        dialog.close();
        EXPECT_FALSE(dialog.isVisible());
        Window.close();
        EXPECT_TRUE(Window.isVisible());
    });
    Services.ShowHexDisplay(std::string());
    Window.close();
    EXPECT_FALSE(Window.isVisible());
}

}  // namespace
