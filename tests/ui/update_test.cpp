#include <QAction>
#include <QCheckBox>
#include <QPushButton>
#include <QTest>

#include "platform/dao/database.h"
#include "tests/ui/window_fixture.h"

using namespace Qt::Literals::StringLiterals;

namespace {

using test::Buttons;

class UpdateAction : public test::WindowFixture {
  protected:
    void SetUp() override {
        StartShown();
        SelectDatabase(Target);
    }

    bool AnyBoxIsEnabledOrTicked() const {
        const auto boxes = ListedBoxes();
        return std::any_of(boxes.begin(), boxes.end(),
                           [](const QCheckBox* box) { return box->isEnabled() || box->isChecked(); });
    }
};

TEST_F(UpdateAction, ExportsEveryTickedTable) {
    TickAll();
    Press(1);
    EXPECT_EQ(Text(u"txtStatus"_s), u"Complete"_s);
    EXPECT_EQ(ButtonStates(), (Buttons{true, false, true}));
    EXPECT_FALSE(AnyBoxIsEnabledOrTicked());
    EXPECT_EQ(RowsIn(Target), ExpectedRows());
}

TEST_F(UpdateAction, LeavesTablesThatAreNotTickedEmpty) {
    Tick(u"VENDORS"_s);
    Press(1);
    auto expected = ExpectedRows();
    for (auto& [table, rows] : expected) rows = table == "VENDORS" ? rows : 0;
    EXPECT_EQ(RowsIn(Target), expected);
}

TEST_F(UpdateAction, WithoutATickOnlyClosesTheTarget) {
    Press(1);
    EXPECT_EQ(Text(u"txtStatus"_s), QString());
    EXPECT_EQ(ButtonStates(), (Buttons{true, false, true}));
    EXPECT_FALSE(AnyBoxIsEnabledOrTicked());
    EXPECT_THROW(Window->State().TargetDatabase->Close(), platform::Error);
}

TEST_F(UpdateAction, TickingShowsTheCountAndTheRange) {
    Tick(u"TAX_CODES"_s);
    EXPECT_TRUE(Box(u"TAX_CODES"_s).toolTip().startsWith(u"Total Records to process:  "_s));
    EXPECT_FALSE(Box(u"TAX_CODES"_s).toolTip().contains(u"Selected Range"_s));
    Tick(u"INVOICES"_s);
    EXPECT_TRUE(Box(u"INVOICES"_s).toolTip().contains(u"   Selected Range:  "_s));

    QCheckBox& box = Box(u"INVOICES"_s);
    QTest::keyClick(&box, Qt::Key_Space);
    EXPECT_FALSE(box.isChecked());
    EXPECT_EQ(box.toolTip(), QString());
}

TEST_F(UpdateAction, ATickByKeyOpensTheRangeDialogToo) {
    Robot.Expect([](QWidget& dialog) {
        EXPECT_EQ(dialog.windowTitle(), u"Range Selection"_s);
        PressOk(dialog);
    });
    QTest::keyClick(&Box(u"INVOICES"_s), Qt::Key_Space);
    EXPECT_TRUE(Robot.IsDone());
}

TEST_F(UpdateAction, CancelStopsTheRunAndKeepsWhatIsWritten) {
    Tick(u"INVOICE_HISTORY_DETAIL"_s);
    Tick(u"VENDORS"_s);
    Buttons whileUpdating{};
    Buttons whileCancelling{};
    Robot.Soon([&] {
        whileUpdating = ButtonStates();
        Press(2);
        whileCancelling = ButtonStates();
    });
    Press(1);
    EXPECT_EQ(whileUpdating, (Buttons{false, false, true}));
    EXPECT_EQ(whileCancelling, (Buttons{true, false, false}));
    EXPECT_EQ(ButtonStates(), (Buttons{true, false, false}));
    EXPECT_TRUE(Window->State().CancelRequested);
    EXPECT_FALSE(AnyBoxIsEnabledOrTicked());
    EXPECT_TRUE(Text(u"txtStatus"_s).isEmpty() || Text(u"txtStatus"_s).startsWith(u"Processing: "_s));
    const auto rows = RowsIn(Target);
    EXPECT_LT(rows.at("INVOICE_HISTORY_DETAIL"), ExpectedRows().at("INVOICE_HISTORY_DETAIL"));
    EXPECT_EQ(rows.at("VENDORS"), 0) << "later tables return at once";
}

TEST_F(UpdateAction, CancelAfterTheEndOnlySetsTheRequest) {
    Tick(u"VENDORS"_s);
    Press(1);
    Press(2);
    EXPECT_EQ(ButtonStates(), (Buttons{true, false, false}));
    EXPECT_TRUE(Window->State().CancelRequested);
    EXPECT_EQ(Text(u"txtStatus"_s), u"Complete"_s);
}

TEST_F(UpdateAction, TheSameTableGoesIntoANewFileNextTime) {
    const std::filesystem::path second = Scratch / "second.mdb";
    Tick(u"VENDORS"_s);
    Press(1);
    SelectDatabase(second);
    EXPECT_EQ(ButtonStates(), (Buttons{true, true, true}));
    Tick(u"VENDORS"_s);
    Press(1);
    EXPECT_EQ(RowsIn(second), RowsIn(Target));
    EXPECT_EQ(RowsIn(second).at("VENDORS"), ExpectedRows().at("VENDORS"));
}

TEST_F(UpdateAction, ABoxTickedDuringARunIsExportedInItsTurn) {
    Tick(u"CUSTOMERS"_s);
    Robot.Soon([this] { Tick(u"VENDORS"_s); });
    Press(1);
    const auto rows = RowsIn(Target);
    EXPECT_EQ(rows.at("CUSTOMERS"), ExpectedRows().at("CUSTOMERS"));
    EXPECT_EQ(rows.at("VENDORS"), ExpectedRows().at("VENDORS"));
}

TEST_F(UpdateAction, ClosingTheWindowEndsTheRunAndLeavesAWholeFile) {
    Tick(u"INVOICE_HISTORY_DETAIL"_s);
    bool wasKept = false;
    Robot.Soon([&] {
        Find<QAction>(u"mnuExit"_s).trigger();
        wasKept = Window->State().TargetDatabase != nullptr;  // the run still needs it
    });
    Press(1);
    EXPECT_TRUE(wasKept);
    EXPECT_FALSE(Window->isVisible());
    EXPECT_EQ(Window->State().TargetDatabase, nullptr);
    const auto table = dao::OpenDatabase(Target.string())->OpenRecordset(u"INVOICE_HISTORY_DETAIL");
    EXPECT_LT(table->RecordCount(), ExpectedRows().at("INVOICE_HISTORY_DETAIL"));
    EXPECT_TRUE(Robot.Messages.empty());
}

}  // namespace
