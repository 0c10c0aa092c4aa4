#include "ui/run_tool.h"

#include <QAction>
#include <QApplication>
#include <QPushButton>
#include <QTest>

#include "platform/dao/database.h"
#include "platform/error.h"
#include "tests/ui/window_fixture.h"
#include "ui/run_time_error.h"

using namespace Qt::Literals::StringLiterals;

namespace {

namespace fs = std::filesystem;

const char* const CataloguePath =
    "drive_c/Program Files/Kestrel Software, Inc/Vantora/MasterFileInformation.mdb";

/// The tool as a whole: it makes its own window.
class RunTool : public test::WindowFixture {
  protected:
    /// The tool's window, once it is shown.
    static QWidget* ToolWindow() {
        for (QWidget* const widget : QApplication::topLevelWidgets()) {
            if (widget->objectName() == u"fInterface"_s && widget->isVisible()) return widget;
        }
        return nullptr;
    }

    /// Runs the tool; what it writes to standard error is kept.
    int Run() {
        Robot.OnMessage = [this] { mWindowAtMessage = ToolWindow() != nullptr; };
        testing::internal::CaptureStderr();
        const int status = ui::RunTool();
        Report = testing::internal::GetCapturedStderr();
        return status;
    }

    /// The run-time error that the tool showed and wrote; empty unless both agree.
    QString ReportedError() const {
        if (Robot.Messages.size() != 1) return {};
        const auto& message = Robot.Messages.front();
        EXPECT_TRUE(message.Critical);
        EXPECT_EQ(message.Title, u"Vantora Database Explorer"_s);
        EXPECT_NE(Report.find(message.Text.toStdString()), std::string::npos) << Report;
        return message.Text;
    }

    std::string Report;
    bool mWindowAtMessage = false;
};

TEST_F(RunTool, EndsWithStatus0WhenTheWindowIsClosed) {
    bool wasVisible = false;
    Robot.Soon([&] {
        wasVisible = ToolWindow() != nullptr;
        ToolWindow()->findChild<QAction*>(u"mnuExit"_s)->trigger();
    });
    EXPECT_EQ(Run(), 0);
    EXPECT_TRUE(wasVisible);
    EXPECT_TRUE(Robot.Messages.empty());
}

TEST_F(RunTool, EndsQuietlyAfterItsMessageWhenTheConfigurationIsMissing) {
    fs::remove(SiteFolder / "tmp" / "kSWCatalog.ini");
    EXPECT_EQ(Run(), 0);
    ASSERT_EQ(Robot.Messages.size(), 1U);
    const auto& message = Robot.Messages.front();
    EXPECT_EQ(message.Title, u"EpcError"_s);
    EXPECT_EQ(message.Text, u"You are missing file: " +
                                QString::fromStdString((SiteFolder / "tmp" / "kSWCatalog.ini").string()) +
                                u"    Are you running Kestrel Workstation?");
    EXPECT_FALSE(mWindowAtMessage) << "the window never appears";
}

TEST_F(RunTool, ShowsNoWindowWhenTheShareDoesNotAnswer) {
    fs::remove_all(SiteFolder / "share" / "SRV1");
    EXPECT_EQ(Run(), 0);
    EXPECT_FALSE(mWindowAtMessage);
}

TEST_F(RunTool, ReportsAMissingCatalogue) {
    fs::remove(SiteFolder / CataloguePath);
    EXPECT_EQ(Run(), 1);
    EXPECT_TRUE(ReportedError().startsWith(u"Run-time error '3024':\n\n"_s)) << Report;
}

TEST_F(RunTool, ReportsAMissingInvoiceFile) {
    fs::remove(SiteFolder / "share" / "SRV1" / "KSTLLNK" / "LINKSFILE");
    EXPECT_EQ(Run(), 1);
    EXPECT_EQ(ReportedError(), u"Run-time error '91':\n\nObject variable or With block variable not set"_s);
}

TEST_F(RunTool, AnErrorInAnActionEndsTheToolWithAReport) {
    Robot.Soon([this] {
        const auto button = [](int i) {
            return ToolWindow()->findChild<QPushButton*>(u"btnAction(%1)"_s.arg(i));
        };
        Robot.Expect([this](QWidget& dialog) { Choose(dialog, Target); });
        QTest::mouseClick(button(0), Qt::LeftButton);
        Robot.Expect(Cancel);  // closes the target; Update stays enabled
        QTest::mouseClick(button(0), Qt::LeftButton);
        QTest::mouseClick(button(1), Qt::LeftButton);
    });
    EXPECT_EQ(Run(), 1);
    EXPECT_TRUE(ReportedError().startsWith(u"Run-time error '3420':\n\n"_s)) << Report;
    EXPECT_NO_THROW(dao::OpenDatabase(Target.string()));
}

TEST_F(RunTool, ABadRangeEndsTheToolFromInsideTheDialog) {
    Robot.Soon([this] {
        Robot.Expect([this](QWidget& dialog) { Choose(dialog, Target); });
        QTest::mouseClick(ToolWindow()->findChild<QPushButton*>(u"btnAction(0)"_s), Qt::LeftButton);
        Robot.Expect([](QWidget& dialog) {
            auto* const start = dialog.findChild<QWidget*>(u"e_Start"_s);
            QTest::keyClick(start, Qt::Key_Delete);
            QTest::keyClick(start, Qt::Key_Tab);
        });
        for (auto* const box : ToolWindow()->findChildren<QAbstractButton*>()) {
            if (box->text() == u"INVOICES"_s) QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(8, 8));
        }
    });
    EXPECT_EQ(Run(), 1);
    EXPECT_EQ(ReportedError(), u"Run-time error '13':\n\nType mismatch"_s);
}

TEST(RunTimeError, NamesThePathOnStandardErrorOnly) {
    test::ModalRobot robot;
    testing::internal::CaptureStderr();
    ui::ReportRunTimeError(platform::Error(platform::DeviceIoError).WithPath("/a/b"), {}, nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Run-time error '57':\n\nDevice I/O error (/a/b)\n");
    ASSERT_EQ(robot.Messages.size(), 1U);
    EXPECT_EQ(robot.Messages.front().Text, u"Run-time error '57':\n\nDevice I/O error"_s);
}

}  // namespace
