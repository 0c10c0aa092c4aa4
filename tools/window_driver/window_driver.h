// The main window by mouse and keys: its controls are found by the system's names for them.
#pragma once

#include <QWidget>
#include <stdexcept>
#include <vector>

#include "tools/window_driver/modal_robot.h"

class QCheckBox;
class QPushButton;

namespace driver {

class WindowDriver {
  public:
    enum Action { SelectDb, Update, CancelUpdate };

    /// Both must outlive this object.
    WindowDriver(QWidget& window, ModalRobot& robot) : mWindow(window), mRobot(robot) {}

    /// Raises std::invalid_argument when the window has no such control.
    template <typename Control>
    Control& Find(const QString& name) const {
        auto* const control = mWindow.findChild<Control*>(name);
        if (control == nullptr) throw std::invalid_argument("no control " + name.toStdString());
        return *control;
    }

    QPushButton& Button(Action action) const;
    void Press(Action action) const;

    std::vector<QCheckBox*> ListedBoxes() const;

    /// The check box of a table. Raises std::invalid_argument when it is not listed.
    QCheckBox& Box(const QString& table) const;

    /// Clicks the square of a table's box.
    void Click(const QString& table) const;

    /// Presses Select DB and chooses file, which does not exist.
    void SelectDatabase(const QString& file) const;

  private:
    QWidget& mWindow;
    ModalRobot& mRobot;
};

}  // namespace driver
