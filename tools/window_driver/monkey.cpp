#include "tools/window_driver/monkey.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include "tools/window_driver/window_driver.h"
#include "ui/run_tool.h"

using namespace Qt::Literals::StringLiterals;

namespace driver {

namespace {

/// Popups come first: a menu or a list takes the keys from what lies below.
QWidget* TopWindow() {
    if (QWidget* const popup = QApplication::activePopupWidget()) return popup;
    if (QWidget* const dialog = QApplication::activeModalWidget()) return dialog;
    for (QWidget* const widget : QApplication::topLevelWidgets()) {
        if (widget->isVisible() && widget->objectName() == u"fInterface"_s) return widget;
    }
    return nullptr;
}

}  // namespace

void Monkey::Work(std::int64_t events) {
    mEventsLeft = events;
    while (mEventsLeft > 0) {
        ++mRuns;
        QTimer::singleShot(0, this, [this] { Act(); });
        ui::RunTool();
        QCoreApplication::removePostedEvents(this);
    }
}

/// What is done here may open a dialog with a loop of its own, so the next turn is set up first. Several
/// deeds in one turn come before a run sees the first of them.
void Monkey::Act() {
    const int run = mRuns;
    QTimer::singleShot(0, this, [this, run] {
        if (run == mRuns) Act();
    });
    constexpr int LongestBurst = 6;
    for (int deeds = OneIn(4) ? Below(LongestBurst) : 1; deeds > 0; --deeds) ActOnce();
}

void Monkey::ActOnce() {
    QWidget* const window = TopWindow();
    if (window == nullptr) return;
    window->activateWindow();
    if (auto* const box = qobject_cast<QMessageBox*>(window)) return ActOnMessage(*box);
    if (mEventsLeft <= 0) return LeaveTool();
    --mEventsLeft;
    if (window->objectName() == u"dlgCreateDB"_s) return ActOnSaveDialog(*window);
    if (window->objectName() == u"fRange"_s) return ActOnRangeDialog(*window);
    if (window->objectName() == u"fInterface"_s) return ActOnWindow(*window);
    QTest::keyClick(window, OneIn(2) ? Qt::Key_Escape : Qt::Key_Down);
}

void Monkey::LeaveTool() {
    TopWindow()->close();
}

void Monkey::ActOnWindow(QWidget& window) {
    constexpr int ClosedOnceIn = 400;
    if (OneIn(ClosedOnceIn)) {
        window.close();
    } else if (OneIn(6)) {
        PressKey(window);
    } else if (OneIn(3)) {
        const auto buttons = window.findChildren<QPushButton*>();
        QTest::mouseClick(buttons[Below(static_cast<int>(buttons.size()))], Qt::LeftButton);
    } else {
        ModalRobot unused;
        const auto boxes = WindowDriver(window, unused).ListedBoxes();
        if (boxes.empty()) return;
        QCheckBox& box = *boxes[static_cast<std::size_t>(Below(static_cast<int>(boxes.size())))];
        QTest::mouseClick(&box, Qt::LeftButton, {}, QPoint(box.height() / 2, box.height() / 2));
    }
}

void Monkey::PressKey(QWidget& window) {
    constexpr Qt::Key Keys[] = {Qt::Key_Tab,    Qt::Key_Backtab, Qt::Key_Space, Qt::Key_Return,
                                Qt::Key_Escape, Qt::Key_Up,      Qt::Key_Down,  Qt::Key_Delete,
                                Qt::Key_5,      Qt::Key_0,       Qt::Key_A,     Qt::Key_Backspace};
    QWidget* const target = window.focusWidget() != nullptr ? window.focusWidget() : &window;
    if (OneIn(8)) {
        QTest::keyClick(&window, OneIn(2) ? Qt::Key_O : Qt::Key_F, Qt::AltModifier);
    } else {
        QTest::keyClick(target, Keys[Below(static_cast<int>(std::size(Keys)))]);
    }
}

void Monkey::ActOnMessage(QMessageBox& box) {
    ++mMessages[box.text().section(u'\n', 0, 0).section(u'/', 0, 0).toStdString()];
    const auto buttons = box.buttons();
    QTest::mouseClick(buttons[Below(static_cast<int>(buttons.size()))], Qt::LeftButton);
}

/// Few names, so that files are overwritten too.
void Monkey::ActOnSaveDialog(QWidget& dialog) {
    constexpr int Names = 3;
    if (!dialog.isActiveWindow()) return;  // its list would keep the files chosen before
    if (OneIn(4)) return ModalRobot::PressEscape(dialog);
    auto* const name = dialog.findChild<QLineEdit*>(u"fileNameEdit"_s);
    name->setCompleter(nullptr);
    name->setFocus();
    name->setText(mSite.Database(u"database%1.mdb"_s.arg(Below(Names))));
    QTest::keyClick(name, Qt::Key_Return);
}

/// An empty box ends the tool, so boxes are emptied less often than they are filled.
void Monkey::ActOnRangeDialog(QWidget& dialog) {
    if (OneIn(3)) return ModalRobot::PressOk(dialog);
    if (OneIn(12)) return ModalRobot::PressEscape(dialog);
    if (OneIn(8)) return QTest::mouseClick(dialog.findChild<QPushButton*>(u"b_Reset"_s), Qt::LeftButton);
    auto* const box = dialog.findChild<QLineEdit*>(OneIn(2) ? u"e_Start"_s : u"e_End"_s);
    box->setFocus();
    box->selectAll();
    if (OneIn(40)) return QTest::keyClick(box, Qt::Key_Delete);
    QTest::keyClicks(box, QString::number(Below(2000)));
}

}  // namespace driver
