#include <QFontMetricsF>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

#include "tools/window_driver/modal_robot.h"
#include "ui/interface_window.h"
#include "ui/status_text_box.h"
#include "ui/window_services_qt.h"

using namespace Qt::Literals::StringLiterals;

namespace {

class WindowServices : public testing::Test {
  protected:
    driver::ModalRobot Robot;
    ui::fInterface Window;
    ui::QtWindowServices& Services = Window.Services();
};

TEST_F(WindowServices, ProgressBecomesTextAndBarWhenItIsRendered) {
    const auto& status = *Window.findChild<ui::StatusTextBox*>(u"txtStatus"_s);
    const struct {
        std::int32_t Count, Total;
        const char* Text;
        double Share;
    } cases[] = {{85, 340, "Processing:  85 of  340", 0.25},
                 {29071, 6600, "Processing:  29071 of  6600", 1},
                 {1, 0, "Processing:  1 of  0", 0},
                 {5, -1, "Processing:  5 of -1", 0}};
    for (const auto& each : cases) {
        Services.SetProgress(each.Count, each.Total);
        EXPECT_NE(status.text().toStdString(), each.Text);
        Services.RenderProgress();
        EXPECT_EQ(status.text().toStdString(), each.Text);
        EXPECT_DOUBLE_EQ(status.Share(), each.Share) << each.Text;
    }
    Services.SetStatus("Complete");
    EXPECT_DOUBLE_EQ(status.Share(), 0);
}

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
