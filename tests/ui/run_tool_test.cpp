#include "ui/run_tool.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QMenu>
#include <QTest>

#include "platform/dao/database.h"
#include "platform/site.h"
#include "tests/ui/window_fixture.h"

using namespace Qt::Literals::StringLiterals;

namespace {

namespace fs = std::filesystem;

using test::ModalRobot;
using test::WindowDriver;

/// The tool as a whole: it makes its own window.
class RunTool : public test::WindowFixture {
  protected:
    static QWidget* ToolWindow() {
        for (QWidget* const widget : QApplication::topLevelWidgets()) {
            if (widget->objectName() == u"fInterface"_s && widget->isVisible()) return widget;
        }
        return nullptr;
    }

    /// Runs the tool; deeds are done when its window has come up. Gives its exit status.
    int Run(const std::function<void(const WindowDriver&)>& deeds) {
        Robot.Soon([this, deeds] {
            EXPECT_TRUE(QTest::qWaitForWindowActive(ToolWindow()));
            deeds(WindowDriver(*ToolWindow(), Robot));
        });
        return Run();
    }

    int Run() {
        Robot.OnMessage = [this](QWidget&) { mWindowAtMessage = ToolWindow() != nullptr; };
        testing::internal::CaptureStderr();
        const int status = ui::RunTool();
        mReport = testing::internal::GetCapturedStderr();
        return status;
    }

    /// The one message was the report of this error, and stands on standard error too.
    void ExpectReport(const QString& text) {
        ASSERT_EQ(Robot.Messages.size(), 1U);
        EXPECT_TRUE(Robot.Messages[0].Text.startsWith(text)) << qPrintable(Robot.Messages[0].Text);
        EXPECT_TRUE(Robot.Messages[0].Critical);
        EXPECT_EQ(Robot.Messages[0].Title, u"Vantora Database Explorer"_s);
        EXPECT_NE(mReport.find(Robot.Messages[0].Text.toStdString()), std::string::npos) << mReport;
    }

    std::string mReport;
    bool mWindowAtMessage = false;
};

TEST_F(RunTool, StartsShowsTheSiteAndEndsWhenTheWindowIsClosed) {
    EXPECT_EQ(Run([](const WindowDriver& hands) {
                  EXPECT_EQ(ToolWindow()->windowTitle(),
                            u"Vantora Database Explorer     Version   1.00.0000"_s);
                  const QString panels[] = {u"Client :" + QString::fromStdString(platform::ComputerName()),
                                            u"Host :SRV1"_s, u"Terminal :47"_s,
                                            u"Source :KSW0123      Store # 0123"_s};
                  for (int i = 0; i < 4; ++i)
                      EXPECT_EQ(hands.Find<QLabel>(u"sb1(%1)"_s.arg(i + 1)).text(), panels[i]);
                  EXPECT_EQ(hands.ListedBoxes().size(), 15U);
                  for (const QCheckBox* const box : hands.ListedBoxes()) EXPECT_FALSE(box->isEnabled());
                  QTest::keyClick(ToolWindow(), Qt::Key_F, Qt::AltModifier);
                  for (const auto key : {Qt::Key_Down, Qt::Key_Return})
                      QTest::keyClick(&hands.Find<QMenu>(u"mnuFile"_s), key);
              }),
              0);
    EXPECT_TRUE(Robot.Messages.empty());
}

TEST_F(RunTool, ASiteWithoutEngineEndsQuietlyAfterItsMessage) {
    fs::rename(SiteFolder / "share" / "SRV1", SiteFolder / "share" / "SRV2");
    EXPECT_EQ(Run(), 0);
    fs::remove(SiteFolder / "tmp" / "kSWCatalog.ini");
    EXPECT_EQ(Run(), 0);
    ASSERT_EQ(Robot.Messages.size(), 2U);
    EXPECT_EQ(Robot.Messages[1].Title, u"EpcError"_s);
    EXPECT_FALSE(mWindowAtMessage) << "the window never appears";
}

TEST_F(RunTool, AnErrorAtTheStartEndsTheToolWithAReportAndNoWindow) {
    const struct {
        const char* File;
        const char16_t* Report;
    } cases[] = {{"share/SRV1/KSTLLNK/LINKSFILE",
                  u"Run-time error '91':\n\nObject variable or With block variable not set"},
                 {"drive_c/Program Files/Kestrel Software, Inc/Vantora/MasterFileInformation.mdb",
                  u"Run-time error '3024':\n\n"}};
    for (const auto& each : cases) {
        EXPECT_TRUE(fs::remove(SiteFolder / each.File));
        Robot.Messages.clear();
        EXPECT_EQ(Run(), 1);
        ExpectReport(QString::fromUtf16(each.Report));
        EXPECT_FALSE(mWindowAtMessage);
    }
}

TEST_F(RunTool, AnErrorInAnActionEndsTheToolWithAReport) {
    EXPECT_EQ(Run([this](const WindowDriver& hands) {
                  hands.SelectDatabase(Target);
                  Robot.Expect(ModalRobot::PressEscape);  // closes the target; Update stays enabled
                  hands.Press(WindowDriver::SelectDb);
                  hands.Press(WindowDriver::Update);
              }),
              1);
    ExpectReport(u"Run-time error '3420':\n\n"_s);
    EXPECT_NO_THROW(dao::OpenDatabase(Target.toStdString()));
}

TEST_F(RunTool, ABadRangeEndsTheToolFromInsideTheDialog) {
    EXPECT_EQ(Run([this](const WindowDriver& hands) {
                  hands.SelectDatabase(Target);
                  Robot.Expect([](QWidget& dialog) {
                      auto* const start = dialog.findChild<QWidget*>(u"e_Start"_s);
                      QTest::keyClick(start, Qt::Key_Delete);
                      QTest::keyClick(start, Qt::Key_Tab);
                  });
                  hands.Click(u"INVOICES"_s);
              }),
              1);
    ExpectReport(u"Run-time error '13':\n\nType mismatch"_s);
}

}  // namespace
