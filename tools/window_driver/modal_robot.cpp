#include "tools/window_driver/modal_robot.h"

#include <QApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

namespace driver {

namespace {

constexpr int PollInterval = 2;  // milliseconds
constexpr const char* SeenProperty = "seenByRobot";

}  // namespace

ModalRobot::ModalRobot() {
    QTimer::singleShot(PollInterval, this, [this] { Poll(); });
}

void ModalRobot::Leave(QWidget& dialog) {
    dialog.setProperty(SeenProperty, true);
}

void ModalRobot::Soon(const std::function<void()>& action) {
    QTimer::singleShot(0, this, action);
}

/// An answer may open further dialogs with loops of their own, so the next poll is set up first.
void ModalRobot::Poll() {
    QTimer::singleShot(PollInterval, this, [this] { Poll(); });
    QWidget* const dialog = QApplication::activeModalWidget();
    if (dialog == nullptr || dialog->property(SeenProperty).toBool()) return;
    dialog->activateWindow();
    if (!dialog->isActiveWindow()) return;  // its boxes have no focus yet
    Leave(*dialog);
    Answer(*dialog);
}

void ModalRobot::Answer(QWidget& dialog) {
    if (const auto* const box = qobject_cast<QMessageBox*>(&dialog)) {
        Messages.push_back({box->text(), box->windowTitle(), box->icon() == QMessageBox::Critical});
        OnMessage(dialog);
        QTest::mouseClick(box->buttons().constFirst(), Qt::LeftButton);
    } else if (!mReplies.empty()) {
        const Reply reply = std::move(mReplies.front());
        mReplies.pop_front();
        reply(dialog);
    } else if (dialog.objectName() == u"fRange"_s) {
        PressOk(dialog);
    } else {
        PressEscape(dialog);
    }
}

ModalRobot::Reply ModalRobot::ChooseFile(const QString& path) {
    return [path](QWidget& dialog) {
        auto* const name = dialog.findChild<QLineEdit*>(u"fileNameEdit"_s);
        name->setCompleter(nullptr);  // its list would take the keys
        QTest::keyClicks(name, path);
        QTest::keyClick(name, Qt::Key_Return);
    };
}

void ModalRobot::PressOk(QWidget& rangeDialog) {
    QTest::mouseClick(rangeDialog.findChild<QPushButton*>(u"b_OK"_s), Qt::LeftButton);
}

void ModalRobot::PressEscape(QWidget& dialog) {
    QTest::keyClick(&dialog, Qt::Key_Escape);
}

}  // namespace driver
