// The main window's controls: their kinds, names, texts and design positions, and the menus.
#pragma once

#include <array>

#include "ui/table_list_boxes.h"

class QAction;
class QLineEdit;
class QMainWindow;
class QPushButton;

namespace ui {

class StatusPanels;
class StatusTextBox;

/// The controls that the window's code speaks of; they belong to the window.
struct InterfaceControls {
    QLineEdit* txtDataBase;
    std::array<QPushButton*, 3> btnAction;  // Select DB, Update, Cancel Update
    CheckBoxes x_SelectedTable;
    StatusTextBox* txtStatus;
    StatusPanels* sb1;
    QAction* mnuExit;
    QAction* mnuEnforceReferentialIntegrity;
};

/// Creates all controls in window, each under the system's name for it.
InterfaceControls LayOutInterface(QMainWindow& window);

}  // namespace ui
