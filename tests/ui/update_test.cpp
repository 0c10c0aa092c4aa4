#include <QAction>
#include <QCheckBox>
#include <QTest>

#include "platform/dao/database.h"
#include "platform/error.h"
#include "tests/ui/window_fixture.h"

using namespace Qt::Literals::StringLiterals;

namespace {

using test::ModalRobot;
using test::WindowDriver;

const QString Long = u"INVOICE_HISTORY_DETAIL"_s;

class UpdateAction : public test::WindowFixture {
  protected:
    void SetUp() override {
        Start();
        Hands->SelectDatabase(Target);
    }

    /// Starts an update in whose middle deeds are done.
    void UpdateAndMeanwhile(const std::function<void()>& deeds) {
        bool isDone = false;
        Robot.Soon([&] {
            deeds();
            isDone = true;
        });
        Hands->Press(WindowDriver::Update);
        EXPECT_TRUE(isDone);
        EXPECT_NO_THROW(Window->Trap().RethrowIfTripped());
    }
};

TEST_F(UpdateAction, ExportsEveryTickedTable) {
    for (const QCheckBox* const box : Hands->ListedBoxes()) Hands->Click(box->text());
    Hands->Press(WindowDriver::Update);
    EXPECT_EQ(Text(u"txtStatus"_s), u"Complete"_s);
    EXPECT_EQ(EnabledActions(), "Select DB, Cancel Update");
    EXPECT_FALSE(AnyBoxIsEnabledOrTicked());
    EXPECT_EQ(RowsIn(Target), ExpectedRows());

    Hands->SelectDatabase(Path("second.mdb"));
    EXPECT_EQ(EnabledActions(), "Select DB, Update, Cancel Update");
    Hands->Click(u"VENDORS"_s);
    Hands->Press(WindowDriver::Update);
    auto expected = ExpectedRows();
    for (auto& [table, rows] : expected) rows = table == "VENDORS" ? rows : 0;
    EXPECT_EQ(RowsIn(Path("second.mdb")), expected);

    Hands->Press(WindowDriver::CancelUpdate);
    EXPECT_EQ(EnabledActions(), "Select DB");
}

TEST_F(UpdateAction, TickingShowsTheCountAndTheRange) {
    Hands->Click(u"TAX_CODES"_s);
    const QString count = Hands->Box(u"TAX_CODES"_s).toolTip();
    EXPECT_TRUE(count.startsWith(u"Total Records to process:  "_s) && !count.contains(u"Range"_s));
    QCheckBox& keyed = Hands->Box(u"INVOICES"_s);
    Robot.Expect(ModalRobot::PressOk);
    QTest::keyClick(&keyed, Qt::Key_Space);
    EXPECT_TRUE(keyed.toolTip().contains(u"   Selected Range:  1 to  "_s)) << qPrintable(keyed.toolTip());
    QTest::keyClick(&keyed, Qt::Key_Space);
    EXPECT_FALSE(keyed.isChecked());
    EXPECT_EQ(keyed.toolTip(), QString());
}

TEST_F(UpdateAction, CancelStopsTheRunAndKeepsWhatIsWritten) {
    Hands->Click(Long);
    Hands->Click(u"VENDORS"_s);
    UpdateAndMeanwhile([this] {
        EXPECT_EQ(EnabledActions(), "Cancel Update");
        Hands->Press(WindowDriver::CancelUpdate);
        EXPECT_EQ(EnabledActions(), "Select DB");
    });
    EXPECT_EQ(EnabledActions(), "Select DB");
    EXPECT_FALSE(AnyBoxIsEnabledOrTicked());
    EXPECT_NE(Text(u"txtStatus"_s), u"Complete"_s);
    const auto rows = RowsIn(Target);
    EXPECT_LT(rows.at(Long.toStdString()), ExpectedRows().at(Long.toStdString()));
    EXPECT_EQ(rows.at("VENDORS"), 0) << "later tables return at once";
}

TEST_F(UpdateAction, BoxesAheadAreTakenAndLeftAsTheyAreTickedMeanwhile) {
    Hands->Click(u"CUSTOMERS"_s);
    Hands->Click(u"PARTS"_s);
    UpdateAndMeanwhile([this] {
        Hands->Click(u"VENDORS"_s);
        Hands->Click(u"PARTS"_s);
        Hands->Click(u"CUSTOMERS"_s);  // the one being exported
    });
    auto expected = ExpectedRows();
    for (auto& [table, rows] : expected) rows = table == "CUSTOMERS" || table == "VENDORS" ? rows : 0;
    EXPECT_EQ(RowsIn(Target), expected);
}

TEST_F(UpdateAction, ANewTargetInTheMiddleEndsTheUpdateAndIsReady) {
    Hands->Click(Long);
    UpdateAndMeanwhile([this] {
        Hands->Press(WindowDriver::CancelUpdate);
        Hands->SelectDatabase(Path("second.mdb"));
    });
    EXPECT_EQ(EnabledActions(), "Select DB, Update");
    EXPECT_TRUE(Hands->Box(Long).isEnabled());
    EXPECT_FALSE(Hands->Box(Long).isChecked());
    Hands->Click(u"VENDORS"_s);
    Hands->Press(WindowDriver::Update);
    EXPECT_EQ(RowsIn(Path("second.mdb")).at("VENDORS"), ExpectedRows().at("VENDORS"));
    EXPECT_LT(RowsIn(Target).at(Long.toStdString()), ExpectedRows().at(Long.toStdString()));
}

TEST_F(UpdateAction, AnUpdateInsideAnUpdateIsWholeAndTheOuterOneEnds) {
    Hands->Click(Long);
    UpdateAndMeanwhile([this] {
        Hands->Press(WindowDriver::CancelUpdate);
        Hands->SelectDatabase(Path("second.mdb"));
        Hands->Click(Long);
        Hands->Press(WindowDriver::Update);
    });
    EXPECT_EQ(EnabledActions(), "Select DB, Cancel Update");
    EXPECT_EQ(RowsIn(Path("second.mdb")).at(Long.toStdString()), ExpectedRows().at(Long.toStdString()));
    EXPECT_LT(RowsIn(Target).at(Long.toStdString()), ExpectedRows().at(Long.toStdString()));
}

TEST_F(UpdateAction, ClosingTheWindowEndsTheRunAndLeavesAWholeFile) {
    Hands->Click(Long);
    UpdateAndMeanwhile([this] {
        Hands->Find<QAction>(u"mnuExit"_s).trigger();
        EXPECT_NE(Window->State().TargetDatabase, nullptr) << "the run still needs it";
    });
    EXPECT_FALSE(Window->isVisible());
    EXPECT_EQ(Window->State().TargetDatabase, nullptr);
    const auto database = dao::OpenDatabase(Target.toStdString());
    EXPECT_LT(database->OpenRecordset(Long.toStdU16String())->RecordCount(),
              ExpectedRows().at(Long.toStdString()));
    EXPECT_TRUE(Robot.Messages.empty());
}

}  // namespace
