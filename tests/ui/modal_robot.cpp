#include "tests/ui/modal_robot.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

namespace test {

namespace {

constexpr int PollInterval = 2;  // milliseconds
constexpr const char* SeenProperty = "seenByRobot";

}  // namespace

ModalRobot::ModalRobot() {
    QTimer::singleShot(PollInterval, this, [this] { Poll(); });
}

void ModalRobot::Soon(const std::function<void()>& action) {
    QTimer::singleShot(0, this, action);
}

/// An answer may open further dialogs with loops of their own, so the next poll is set up first.
void ModalRobot::Poll() {
    QTimer::singleShot(PollInterval, this, [this] { Poll(); });
    QWidget* const dialog = QApplication::activeModalWidget();
    if (dialog == nullptr || dialog->property(SeenProperty).toBool()) return;
    dialog->setProperty(SeenProperty, true);
    Answer(*dialog);
}

void ModalRobot::Answer(QWidget& dialog) {
    if (const auto* const box = qobject_cast<QMessageBox*>(&dialog)) {
        Messages.push_back({box->text(), box->windowTitle(), box->icon() == QMessageBox::Critical});
        OnMessage();
        EXPECT_EQ(box->standardButtons(), QMessageBox::Ok);
        QTest::mouseClick(box->button(QMessageBox::Ok), Qt::LeftButton);
        return;
    }
    if (mAnswers.empty()) {
        ADD_FAILURE() << "nobody expected the dialog " << qPrintable(dialog.windowTitle());
        dialog.close();
        return;
    }
    const auto answer = std::move(mAnswers.front());
    mAnswers.pop_front();
    answer(dialog);
}

}  // namespace test
