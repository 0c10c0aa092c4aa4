#include "tools/window_driver/window_driver.h"

#include <QCheckBox>
#include <QPushButton>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace driver {

QPushButton& WindowDriver::Button(Action action) const {
    return Find<QPushButton>(u"btnAction(%1)"_s.arg(static_cast<int>(action)));
}

void WindowDriver::Press(Action action) const {
    QTest::mouseClick(&Button(action), Qt::LeftButton);
}

std::vector<QCheckBox*> WindowDriver::ListedBoxes() const {
    std::vector<QCheckBox*> listed;
    for (QCheckBox* const box : mWindow.findChildren<QCheckBox*>()) {
        if (!box->isHidden()) listed.push_back(box);
    }
    return listed;
}

QCheckBox& WindowDriver::Box(const QString& table) const {
    for (QCheckBox* const box : ListedBoxes()) {
        if (box->text() == table) return *box;
    }
    throw std::invalid_argument("no table " + table.toStdString());
}

void WindowDriver::Click(const QString& table) const {
    QCheckBox& box = Box(table);
    QTest::mouseClick(&box, Qt::LeftButton, {}, QPoint(box.height() / 2, box.height() / 2));
}

void WindowDriver::SelectDatabase(const QString& file) const {
    mRobot.Expect(ModalRobot::ChooseFile(file));
    Press(SelectDb);
}

}  // namespace driver
