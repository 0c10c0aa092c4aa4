#include "ui/range_dialog.h"

#include <QApplication>
#include <QClipboard>
#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QTest>

#include "catalogue/row_fields.h"
#include "tests/catalogue/catalogue_fixture.h"
#include "tools/window_driver/modal_robot.h"
#include "ui/digit_box.h"
#include "ui/interface_window.h"

using namespace Qt::Literals::StringLiterals;

namespace {

using driver::ModalRobot;

constexpr std::int32_t StartValue = 1;
constexpr std::int32_t EndValue = 999;

class RangeDialog : public test::CatalogueFixture {
  protected:
    RangeDialog() { Open(StartValue, EndValue); }

    void Open(std::int32_t start, std::int32_t end) {
        Catalogue->AddMap({.TableName = u"PARTS"});
        Catalogue->AddKey({.Name = u"PARTX", .StartValue = start, .EndValue = end});
        StartCatalogue();
        State.IndexDefinitionRecordset->SetIndex(u"PrimaryKey");
        State.IndexDefinitionRecordset->Seek("=", dao::Value(std::u16string(u"PARTX")));
        Dialog = std::make_unique<ui::fRange>(Row(),
                                              exporting::RangeTexts{.FileDescription = "PARTS",
                                                                    .FieldDescription = "Part number",
                                                                    .Start = std::to_string(start),
                                                                    .End = std::to_string(end)},
                                              Window.Services(), Window.Trap(), nullptr);
        Robot.Leave(*Dialog);  // worked by the test's own hands
        Dialog->setModal(true);
        Dialog->show();
        ComeBack();
    }

    dao::Recordset& Row() { return *State.IndexDefinitionRecordset; }
    std::pair<int, int> Stored() {
        return {catalogue::LongOf(Row(), u"overrideStart"), catalogue::LongOf(Row(), u"overrideEnd")};
    }

    QLineEdit& Start() { return *Dialog->findChild<QLineEdit*>(u"e_Start"_s); }
    QLineEdit& End() { return *Dialog->findChild<QLineEdit*>(u"e_End"_s); }
    QPushButton& Reset() { return *Dialog->findChild<QPushButton*>(u"b_Reset"_s); }
    QPushButton& Ok() { return *Dialog->findChild<QPushButton*>(u"b_OK"_s); }

    /// A message box before has taken the keys from the dialog.
    void ComeBack() { EXPECT_TRUE(QTest::qWaitForWindowActive(Dialog.get())); }

    /// Types over what the box holds, as an operator who comes to it by key.
    void Enter(QLineEdit& box, const QString& text) {
        ComeBack();
        box.setFocus(Qt::TabFocusReason);
        QTest::keyClicks(&box, text);
    }
    void Click(QPushButton& button) {
        ComeBack();
        QTest::mouseClick(&button, Qt::LeftButton);
    }
    void Press(Qt::Key key, QLineEdit& box) {
        ComeBack();
        QTest::keyClick(&box, key);
    }
    void PressTab(QLineEdit& box) { Press(Qt::Key_Tab, box); }

    void ExpectClosesOverAnObjection(const std::function<void()>& close) {
        Enter(Start(), u"0"_s);
        close();
        EXPECT_EQ(OnlyMessage(), u"Starting Value must be >  1"_s);
        EXPECT_FALSE(Dialog->isVisible());
        EXPECT_EQ(Stored(), std::pair(0, 0));
    }

    QString OnlyMessage() const {
        EXPECT_EQ(Robot.Messages.size(), 1U);
        return Robot.Messages.empty() ? QString() : Robot.Messages.front().Text;
    }

    ModalRobot Robot;
    ui::fInterface Window;
    std::unique_ptr<ui::fRange> Dialog;
};

TEST_F(RangeDialog, ShowsTheTableItsKeyAndTheCataloguesValues) {
    EXPECT_EQ(Dialog->windowTitle(), u"Range Selection"_s);
    EXPECT_EQ(Dialog->findChild<QLabel*>(u"lFileDescription"_s)->text(), u"PARTS"_s);
    EXPECT_EQ(Dialog->findChild<QLabel*>(u"lFieldDescription"_s)->text(), u"Part number"_s);
    EXPECT_EQ(Start().selectedText(), u"1"_s) << "getting the focus selects the whole text";
    QTest::mouseClick(&End(), Qt::LeftButton);
    EXPECT_EQ(End().selectedText(), u"999"_s);
    QTest::mouseClick(&End(), Qt::LeftButton);
    EXPECT_EQ(End().selectedText(), QString()) << "a second click sets the cursor";
}

TEST_F(RangeDialog, ABoxTakesDigitsOnlyAndNoBackspace) {
    for (const auto& [typed, text] :
         {std::pair("12", "12"), {"1a2", "12"}, {"-5", "5"}, {"1.5", "15"}, {"abc", "1"}}) {
        End().setFocus();
        Start().setText(u"1"_s);
        Enter(Start(), QString::fromLatin1(typed));
        QTest::keyClick(&Start(), Qt::Key_Backspace);
        EXPECT_EQ(Start().text().toStdString(), text) << typed;
    }
}

TEST_F(RangeDialog, WhatIsPastedOrDroppedIsFilteredToo) {
    QApplication::clipboard()->setText(u"12ab3"_s);
    Start().setFocus();
    QTest::keySequence(&Start(), QKeySequence::Paste);
    EXPECT_EQ(Start().text(), u"123"_s);

    QMimeData dragged;
    dragged.setText(u"x4y"_s);
    const QPoint place(Start().width() - 2, 5);
    QDragEnterEvent enter(place, Qt::CopyAction, &dragged, Qt::LeftButton, {});
    QApplication::sendEvent(&Start(), &enter);
    QDropEvent drop(place, Qt::CopyAction, &dragged, Qt::LeftButton, {});
    QApplication::sendEvent(&Start(), &drop);
    EXPECT_EQ(Start().text().count(u'4'), 1);
    EXPECT_EQ(Start().text().size(), 4) << qPrintable(Start().text());
}

TEST_F(RangeDialog, ValidBoundsAreStoredWhenTheFocusLeaves) {
    Enter(Start(), u"300"_s);
    EXPECT_EQ(Stored(), std::pair(0, 0));
    PressTab(Start());
    EXPECT_EQ(Stored(), std::pair(300, 0));
    Enter(End(), u"999"_s);
    PressTab(End());
    EXPECT_EQ(Stored(), std::pair(300, 999)) << "a limit is accepted";
    EXPECT_TRUE(Robot.Messages.empty());
}

// The first rule that is broken speaks, and the focus goes where it sends it.
TEST_F(RangeDialog, BoundsOutsideTheRulesAreObjectedTo) {
    const struct {
        const char* Start;
        const char* End;
        bool LeavesStart;
        const char* Message;
        bool FocusOnStart;
    } cases[] = {
        {"0", "999", true, "Starting Value must be >  1", true},
        {"1000", "999", true, "Starting Value must be <  999", true},
        {"500", "400", true, "Starting Value must be <=  400(your selected ending value)", true},
        {"1", "0", false, "Endinging Value must be >  1", false},
        {"1", "1000", false, "Ending Value must be <  999", false},
        {"500", "400", false, "Ending Value must be =>  500(your selected Starting value)", true},
    };
    for (const auto& each : cases) {
        Start().setText(QString::fromLatin1(each.Start));
        End().setText(QString::fromLatin1(each.End));
        QLineEdit& left = each.LeavesStart ? Start() : End();
        Robot.Messages.clear();
        ComeBack();
        // The other box holds what is wrong too: it must not be tested while the focus comes here.
        const QSignalBlocker quiet(each.LeavesStart ? End() : Start());
        left.setFocus();
        PressTab(left);
        EXPECT_EQ(OnlyMessage().toStdString(), each.Message);
        EXPECT_EQ(Dialog->focusWidget(), each.FocusOnStart ? &Start() : &End()) << each.Message;
        EXPECT_EQ(Stored(), std::pair(0, 0)) << each.Message;
    }
}

TEST_F(RangeDialog, AnObjectionKeepsOkFromClosing) {
    Enter(Start(), u"0"_s);
    Click(Ok());
    EXPECT_EQ(OnlyMessage(), u"Starting Value must be >  1"_s);
    EXPECT_TRUE(Dialog->isVisible());
    EXPECT_EQ(Dialog->focusWidget(), &Start());
    Press(Qt::Key_Return, Start());
    EXPECT_EQ(Robot.Messages.size(), 2U);
    EXPECT_TRUE(Dialog->isVisible());

    Enter(Start(), u"2"_s);
    Click(Ok());
    EXPECT_FALSE(Dialog->isVisible());
    EXPECT_EQ(Stored(), std::pair(2, 0));
}

TEST_F(RangeDialog, TheWindowsButtonClosesOverAnObjection) {
    ExpectClosesOverAnObjection([this] { Dialog->close(); });
}

TEST_F(RangeDialog, EscapeClosesOverAnObjection) {
    ExpectClosesOverAnObjection([this] { QTest::keyClick(&Start(), Qt::Key_Escape); });
}

TEST_F(RangeDialog, ResetShowsTheCataloguesValuesUnlessABoxObjects) {
    Enter(Start(), u"0"_s);
    Click(Reset());
    EXPECT_EQ(OnlyMessage(), u"Starting Value must be >  1"_s);
    EXPECT_EQ(Start().text(), u"0"_s);
    Start().setText(u"5"_s);
    Click(Reset());
    EXPECT_EQ(Start().text(), u"1"_s);
    EXPECT_EQ(Stored(), std::pair(5, 0)) << "what is stored stays";
}

}  // namespace
