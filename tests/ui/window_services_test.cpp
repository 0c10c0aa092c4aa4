#include <QApplication>
#include <QFontInfo>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

#include "tests/support/expect_error.h"
#include "tools/window_driver/modal_robot.h"
#include "ui/interface_window.h"
#include "ui/status_text_box.h"
#include "ui/window_services_qt.h"

using namespace Qt::Literals::StringLiterals;

namespace {

class WindowServices : public testing::Test {
  protected:
    ui::StatusTextBox& Status() { return *Window.findChild<ui::StatusTextBox*>(u"txtStatus"_s); }

    /// Yields until events are dispatched, which a clock decides.
    void YieldUntilDispatched() {
        bool isDispatched = false;
        QTimer::singleShot(0, &Window, [&] { isDispatched = true; });
        while (!isDispatched) Services.Yield();
    }

    driver::ModalRobot Robot;
    ui::fInterface Window;
    ui::QtWindowServices& Services = Window.Services();
};

TEST_F(WindowServices, ProgressBecomesTextWhenEventsAreDispatched) {
    YieldUntilDispatched();
    Services.SetProgress(12, 340);
    EXPECT_EQ(Status().text(), QString());
    YieldUntilDispatched();
    EXPECT_EQ(Status().text(), u"Processing:  12 of  340"_s);
}

TEST_F(WindowServices, TheBarShowsTheShareDone) {
    const struct {
        std::int32_t Count, Total;
        double Share;
    } cases[] = {{85, 340, 0.25}, {340, 340, 1}, {29071, 6600, 1}, {1, 0, 0}, {0, 340, 0}, {5, -1, 0}};
    for (const auto& each : cases) {
        Services.SetProgress(each.Count, each.Total);
        Services.RenderProgress();
        EXPECT_DOUBLE_EQ(Status().Share(), each.Share) << each.Count << " of " << each.Total;
    }
    Services.SetStatus("Complete");
    EXPECT_DOUBLE_EQ(Status().Share(), 0);
}

TEST_F(WindowServices, TheHexDisplayShowsTheDumpUntilCancel) {
    Robot.Expect([](QWidget& dialog) {
        EXPECT_EQ(dialog.windowTitle(), u"Hex Variable Display"_s);
        const auto* const dump = dialog.findChild<QPlainTextEdit*>();
        EXPECT_EQ(dump->toPlainText(), u"000001 41 42\n"_s);
        EXPECT_TRUE(QFontInfo(dump->font()).fixedPitch());
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

TEST_F(WindowServices, AFailedHandlersErrorComesOutOfTheYieldThatRanIt) {
    QTimer::singleShot(0, &Window,
                       [this] { Window.Trap().Run([] { throw platform::Error(platform::DeviceIoError); }); });
    const platform::Error error = test::ErrorOf([this] { YieldUntilDispatched(); });
    EXPECT_EQ(error.Number, platform::DeviceIoError);
    Robot.Soon([] { QCoreApplication::exit(); });
    QApplication::exec();  // an error tells every loop to end; those of later tests are not to
}

}  // namespace
