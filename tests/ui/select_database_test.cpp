#include <QCheckBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <chrono>

#include "platform/dao/database.h"
#include "platform/file.h"
#include "tests/ui/window_fixture.h"
#include "ui/create_database_dialog.h"

using namespace Qt::Literals::StringLiterals;

namespace {

namespace fs = std::filesystem;

using test::Buttons;

class SelectDatabase : public test::WindowFixture {
  protected:
    void SetUp() override { StartShown(); }

    /// Names an existing file in the dialog and agrees to overwriting it.
    void SelectExisting(const fs::path& file) {
        Robot.Expect([&file](QWidget& dialog) {
            static_cast<QFileDialog&>(dialog).setOption(QFileDialog::DontConfirmOverwrite);
            Choose(dialog, file);
        });
        Press(0);
    }

    bool TicksAreOpen() const {
        const auto boxes = ListedBoxes();
        return std::all_of(boxes.begin(), boxes.end(), [](const QCheckBox* box) { return box->isEnabled(); });
    }
};

TEST_F(SelectDatabase, CreatesEveryTableAndOpensTheList) {
    SelectDatabase::WindowFixture::SelectDatabase(Target);
    EXPECT_EQ(Text(u"txtDataBase"_s).toStdString(), Target.string());
    EXPECT_EQ(ButtonStates(), (Buttons{true, true, false}));
    EXPECT_TRUE(TicksAreOpen());
    for (const QCheckBox* const box : ListedBoxes()) {
        EXPECT_EQ(box->checkState(), Qt::Unchecked);
        EXPECT_NO_THROW(Window->State().TargetDatabase->OpenRecordset(box->text().toStdU16String()));
    }
}

TEST_F(SelectDatabase, TheDialogProposesANewAccessDatabase) {
    Robot.Expect([this](QWidget& widget) {
        EXPECT_FALSE(Button(0).isEnabled()) << "disabled while choosing";
        const auto& dialog = static_cast<const QFileDialog&>(widget);
        EXPECT_EQ(dialog.windowTitle(), u"Create Database"_s);
        EXPECT_EQ(dialog.acceptMode(), QFileDialog::AcceptSave);
        EXPECT_EQ(dialog.defaultSuffix(), u"mdb"_s);
        EXPECT_FALSE(dialog.testOption(QFileDialog::DontConfirmOverwrite));
        EXPECT_EQ(dialog.nameFilters(), QStringList(u"VB Databases (*.mdb)"_s));
        EXPECT_EQ(dialog.findChild<QLineEdit*>()->text(), u"MyData"_s);
        Cancel(widget);
    });
    Press(0);
}

TEST_F(SelectDatabase, ANameWithoutExtensionGetsMdb) {
    WindowFixture::SelectDatabase(Scratch / "named");
    EXPECT_EQ(Text(u"txtDataBase"_s).toStdString(), (Scratch / "named.mdb").string());
    EXPECT_TRUE(fs::exists(Scratch / "named.mdb"));
}

TEST_F(SelectDatabase, ACancelledDialogChoosesNothing) {
    Robot.Expect(Cancel);
    Press(0);
    EXPECT_EQ(Text(u"txtDataBase"_s), QString());
    EXPECT_EQ(ButtonStates(), (Buttons{true, false, false}));
    EXPECT_FALSE(TicksAreOpen());
}

TEST_F(SelectDatabase, CancellingLaterClosesTheTargetAndLeavesTheRest) {
    WindowFixture::SelectDatabase(Target);
    Tick(u"TAX_CODES"_s);
    Robot.Expect(Cancel);
    Press(0);
    EXPECT_EQ(Text(u"txtDataBase"_s), QString());
    EXPECT_EQ(ButtonStates(), (Buttons{true, true, false}));
    EXPECT_TRUE(Box(u"TAX_CODES"_s).isChecked());
    EXPECT_THROW(Window->State().TargetDatabase->Close(), platform::Error);
}

TEST_F(SelectDatabase, AFileThatStandsThereIsReplaced) {
    test::WriteBytes(Target, "not a database");
    SelectExisting(Target);
    EXPECT_TRUE(Robot.Messages.empty());
    EXPECT_EQ(ButtonStates(), (Buttons{true, true, false}));
    EXPECT_GT(fs::file_size(Target), 4096U);
}

TEST_F(SelectDatabase, AFileInUseCannotBeCreated) {
    test::WriteBytes(Target, "somebody's database");
    const auto user = platform::File::Open(Target.string(), platform::File::Mode::ReadWrite);
    ASSERT_TRUE(user->TryLock(platform::File::Lock::Shared));
    SelectExisting(Target);
    const std::vector<test::ModalRobot::SeenMessage> expected{
        {u"Could not Create file: " + QString::fromStdString(Target.string()), u"Vantora Database Explorer"_s,
         true}};
    EXPECT_EQ(Robot.Messages, expected);
    EXPECT_EQ(Text(u"txtDataBase"_s), QString());
    EXPECT_EQ(ButtonStates(), (Buttons{true, false, false}));
    EXPECT_EQ(test::ReadBytes(Target), "somebody's database");
}

TEST_F(SelectDatabase, TheCatalogueItselfIsInUse) {
    const fs::path catalogue =
        SiteFolder / "drive_c/Program Files/Kestrel Software, Inc/Vantora/MasterFileInformation.mdb";
    EXPECT_FALSE(ui::DeleteFormerDatabase(catalogue.string()));
    EXPECT_TRUE(fs::exists(catalogue));
}

TEST_F(SelectDatabase, SelectingAgainForgetsRangesAndTicks) {
    WindowFixture::SelectDatabase(Target);
    Robot.Expect([](QWidget& dialog) {
        QTest::keyClicks(dialog.findChild<QLineEdit*>(u"e_Start"_s), u"2"_s);
        PressOk(dialog);
    });
    QCheckBox& box = Box(u"INVOICES"_s);
    QTest::mouseClick(&box, Qt::LeftButton, {}, QPoint(8, 8));
    EXPECT_TRUE(box.toolTip().contains(u"Selected Range:  2 to "_s)) << qPrintable(box.toolTip());
    WindowFixture::SelectDatabase(Scratch / "second.mdb");
    EXPECT_FALSE(box.isChecked());
    EXPECT_EQ(box.toolTip(), QString());
    Tick(u"INVOICES"_s);
    EXPECT_TRUE(box.toolTip().contains(u"Selected Range:  1 to "_s)) << qPrintable(box.toolTip());
}

class FormerDatabase : public testing::Test {
  protected:
    test::ScratchFolder Scratch;
    const fs::path Database = Scratch / "a.mdb";
    const fs::path LockFile = Scratch / "a.ldb";
};

TEST_F(FormerDatabase, NoneIsAsGoodAsDeleted) {
    EXPECT_TRUE(ui::DeleteFormerDatabase(Database.string()));
}

TEST_F(FormerDatabase, AFolderCannotBeDeleted) {
    fs::create_directory(Database);
    EXPECT_FALSE(ui::DeleteFormerDatabase(Database.string()));
}

TEST_F(FormerDatabase, AYoungerLockFileMeansThatAccessHasItOpen) {
    using namespace std::chrono_literals;
    test::WriteBytes(Database, "x");
    test::WriteBytes(LockFile, "x");
    const auto written = fs::last_write_time(Database);
    fs::last_write_time(LockFile, written + 1s);
    EXPECT_FALSE(ui::DeleteFormerDatabase(Database.string()));
    fs::last_write_time(LockFile, written - 1s);
    EXPECT_TRUE(ui::DeleteFormerDatabase(Database.string()));
    EXPECT_FALSE(fs::exists(Database));
}

TEST_F(FormerDatabase, ALockedLockFileMeansThatAccessHasItOpen) {
    using namespace std::chrono_literals;
    test::WriteBytes(Database, "x");
    test::WriteBytes(LockFile, "x");
    fs::last_write_time(LockFile, fs::last_write_time(Database) - 1s);
    const auto user = platform::File::Open(LockFile.string(), platform::File::Mode::ReadWrite);
    ASSERT_TRUE(user->TryLock(platform::File::Lock::Exclusive));
    EXPECT_FALSE(ui::DeleteFormerDatabase(Database.string()));
}

}  // namespace
