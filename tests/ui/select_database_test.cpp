#include <QCheckBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QTest>

#include "platform/file.h"
#include "tests/ui/window_fixture.h"
#include "ui/create_database_dialog.h"

using namespace Qt::Literals::StringLiterals;

namespace {

namespace fs = std::filesystem;

using test::ModalRobot;
using test::WindowDriver;

class SelectDatabase : public test::WindowFixture {
  protected:
    void SetUp() override { Start(); }

    /// Names an existing file in the dialog and agrees to overwriting it.
    void SelectExisting(const QString& file) {
        Robot.Expect([file](QWidget& dialog) {
            static_cast<QFileDialog&>(dialog).setOption(QFileDialog::DontConfirmOverwrite);
            ModalRobot::ChooseFile(file)(dialog);
        });
        Hands->Press(WindowDriver::SelectDb);
    }
};

TEST_F(SelectDatabase, TheDialogProposesANewAccessDatabaseAndCanBeLeft) {
    Robot.Expect([this](QWidget& widget) {
        EXPECT_EQ(EnabledActions(), "") << "disabled while choosing";
        const auto& dialog = static_cast<const QFileDialog&>(widget);
        EXPECT_EQ(dialog.windowTitle(), u"Create Database"_s);
        EXPECT_EQ(dialog.acceptMode(), QFileDialog::AcceptSave);
        EXPECT_EQ(dialog.defaultSuffix(), u"mdb"_s);
        EXPECT_FALSE(dialog.testOption(QFileDialog::DontConfirmOverwrite));
        EXPECT_EQ(dialog.nameFilters(), QStringList(u"VB Databases (*.mdb) (*mdb)"_s));
        EXPECT_EQ(dialog.findChild<QLineEdit*>()->text(), u"MyData"_s);
        ModalRobot::ChooseFile(Path("no folder/a.mdb"))(widget);
        EXPECT_TRUE(widget.isVisible());
        ModalRobot::PressEscape(widget);
    });
    Hands->Press(WindowDriver::SelectDb);
    ASSERT_EQ(Robot.Messages.size(), 1U);
    EXPECT_TRUE(Robot.Messages[0].Text.endsWith(u"Path does not exist."_s));
    EXPECT_EQ(Text(u"txtDataBase"_s), QString());
    EXPECT_EQ(EnabledActions(), "Select DB");
    EXPECT_FALSE(AnyBoxIsEnabledOrTicked());
}

TEST_F(SelectDatabase, AFileThatStandsThereIsReplacedUnlessItIsInUse) {
    const fs::path file = Target.toStdString();
    test::WriteBytes(file, "not a database");
    {
        const auto user = platform::File::Open(file.string(), platform::File::Mode::ReadWrite);
        ASSERT_TRUE(user->TryLock(platform::File::Lock::Shared));
        SelectExisting(Target);
    }
    const std::vector<ModalRobot::SeenMessage> refusal{
        {u"Could not Create file: " + Target, u"Vantora Database Explorer"_s, true}};
    EXPECT_EQ(Robot.Messages, refusal);
    EXPECT_EQ(Text(u"txtDataBase"_s), QString());
    EXPECT_EQ(EnabledActions(), "Select DB");
    EXPECT_EQ(test::ReadBytes(file), "not a database");

    SelectExisting(Target);
    EXPECT_EQ(EnabledActions(), "Select DB, Update");
}

TEST_F(SelectDatabase, SelectingAgainForgetsRangesAndTicks) {
    Hands->SelectDatabase(Target);
    Robot.Expect([](QWidget& dialog) {
        QTest::keyClicks(dialog.findChild<QLineEdit*>(u"e_Start"_s), u"2"_s);
        ModalRobot::PressOk(dialog);
    });
    Hands->Click(u"INVOICES"_s);
    const QCheckBox& box = Hands->Box(u"INVOICES"_s);
    EXPECT_TRUE(box.toolTip().contains(u"Selected Range:  2 to "_s)) << qPrintable(box.toolTip());
    Hands->SelectDatabase(Path("second.mdb"));
    EXPECT_TRUE(!box.isChecked() && box.toolTip().isEmpty());
    Hands->Click(u"INVOICES"_s);
    EXPECT_TRUE(box.toolTip().contains(u"Selected Range:  1 to "_s)) << qPrintable(box.toolTip());
}

// Access keeps a lock file beside a database as long as somebody has it open.
TEST(FormerDatabase, IsDeletedUnlessALockFileTellsThatItIsInUse) {
    using namespace std::chrono_literals;
    const test::ScratchFolder scratch;
    const std::string database = (scratch / "a.mdb").string();
    const fs::path lockFile = scratch / "a.ldb";
    EXPECT_TRUE(ui::DeleteFormerDatabase(database)) << "none is as good as deleted";
    test::WriteBytes(database, "x");
    test::WriteBytes(lockFile, "x");
    for (const auto& [age, isLocked, isDeleted] :
         {std::tuple(-1s, false, false), {1s, true, false}, {1s, false, true}}) {
        fs::last_write_time(lockFile, fs::last_write_time(database) - age);
        const auto user = platform::File::Open(lockFile.string(), platform::File::Mode::ReadWrite);
        EXPECT_TRUE(!isLocked || user->TryLock(platform::File::Lock::Exclusive));
        EXPECT_EQ(ui::DeleteFormerDatabase(database), isDeleted) << age.count() << isLocked;
    }
    EXPECT_FALSE(fs::exists(database));
}

}  // namespace
