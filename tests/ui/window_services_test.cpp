#include <QApplication>
#include <QFontInfo>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

#include "tests/support/expect_error.h"
#include "tests/ui/modal_robot.h"
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

    test::ModalRobot Robot;
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

TEST_F(WindowServices, TheLastProgressIsRenderedAtTheEnd) {
    Services.SetProgress(11, 340);
    Services.SetProgress(12, 340);
    Services.RenderProgress();
    EXPECT_EQ(Status().text(), u"Processing:  12 of  340"_s);
}

TEST_F(WindowServices, AStatusTextComesAtOnceAndOverridesProgress) {
    Services.SetProgress(12, 340);
    Services.SetStatus("Complete");
    EXPECT_EQ(Status().text(), u"Complete"_s);
    Services.RenderProgress();
    EXPECT_EQ(Status().text(), u"Complete"_s);
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

TEST_F(WindowServices, TheBarIsDrawnBehindTheText) {
    Status().ShowProgress(u"x"_s, 0.5);
    const QImage image = Status().grab().toImage();
    const int middle = image.height() / 2;
    EXPECT_NE(image.pixelColor(image.width() / 3, middle), image.pixelColor(image.width() * 2 / 3, middle));
    EXPECT_EQ(image.pixelColor(image.width() * 2 / 3, middle),
              Status().style()->standardPalette().color(QPalette::Base));
}

TEST_F(WindowServices, MessageBoxesCarryTitleTextAndIcon) {
    platform::Message plain;
    plain.Text = "<b>plain</b> & simple";
    platform::Message critical;
    critical.Text = "Problem finding files for PARTS";
    critical.Title = "OpenFiles";
    critical.Critical = true;
    platform::Message modal;
    modal.Text = "You are missing file";
    modal.Title = "EpcError";
    modal.SystemModal = true;
    for (const auto& message : {plain, critical, modal}) Services.ShowMessage(message);
    const std::vector<test::ModalRobot::SeenMessage> expected{
        {u"<b>plain</b> & simple"_s, u"Vantora Database Explorer"_s, false},
        {u"Problem finding files for PARTS"_s, u"OpenFiles"_s, true},
        {u"You are missing file"_s, u"EpcError"_s, false}};
    EXPECT_EQ(Robot.Messages, expected);
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

TEST_F(WindowServices, TheHourglassIsShownOnceAndTakenBack) {
    Services.ShowHourglass(true);
    Services.ShowHourglass(true);
    ASSERT_NE(QApplication::overrideCursor(), nullptr);
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
    Services.ShowHourglass(false);
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(WindowServices, EachActionIsEnabledByItsNumber) {
    for (int i = 0; i < 3; ++i) {
        Services.EnableAction(i, false);
        EXPECT_FALSE(Window.findChild<QPushButton*>(u"btnAction(%1)"_s.arg(i))->isEnabled());
        Services.EnableAction(i, true);
        EXPECT_TRUE(Window.findChild<QPushButton*>(u"btnAction(%1)"_s.arg(i))->isEnabled());
    }
}

TEST_F(WindowServices, AFailedHandlersErrorComesOutOfTheYieldThatRanIt) {
    QTimer::singleShot(0, &Window,
                       [this] { Window.Trap().Run([] { throw platform::Error(platform::DeviceIoError); }); });
    const platform::Error error = test::ErrorOf([this] { YieldUntilDispatched(); });
    EXPECT_EQ(error.Number, platform::DeviceIoError);
}

TEST(ErrorTrap, KeepsTheFirstErrorAndRunsNothingMore) {
    ui::ErrorTrap trap;
    int runs = 0;
    trap.Run([&] { ++runs; });
    trap.RethrowIfTripped();
    trap.Run([] { throw platform::Error(platform::Overflow); });
    trap.Run([&] { ++runs; });
    EXPECT_EQ(runs, 1);
    EXPECT_EQ(test::ErrorOf([&] { trap.RethrowIfTripped(); }).Number, platform::Overflow);
}

}  // namespace
