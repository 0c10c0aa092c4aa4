#include "ui/window_layout.h"

#include <QAction>
#include <QApplication>
#include <QFontInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <algorithm>

#include "ui/background_picture.h"
#include "ui/design_layout.h"
#include "ui/path_box.h"
#include "ui/status_panels.h"
#include "ui/status_text_box.h"
#include "ui/table_frame.h"
#include "ui/window_icon.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {

namespace {

// Design positions and sizes in twips.
constexpr QSize FormSize(14010, 8700);
constexpr QRect LabelPlace(705, 180, 6600, 255);
constexpr QRect DatabasePlace(690, 495, 6615, 375);
constexpr std::array ActionPlaces{QRect(7575, 255, 1575, 615), QRect(9495, 240, 1575, 615),
                                  QRect(11385, 240, 1575, 615)};
constexpr QRect SelectionsPlace(705, 915, 12600, 7095);
constexpr QRect StatusPlace(690, 8160, 12240, 375);

constexpr int RowsOfColumn = 19;
constexpr std::array ColumnLefts{120, 2880, 5880, 8880};
constexpr int FirstRowTop = 240;
constexpr int RowPitch = 360;
constexpr QSize BoxSize(2775, 195);

constexpr double DesignPoints = 8.25;
constexpr double LabelPoints = 9.75;

/// The design's font sizes belong to desktops with ordinary fonts; a user who has chosen larger ones gets
/// the form in the same proportion.
QFont DesignFont(double points, bool bold) {
    constexpr double OrdinaryPoints = 9;
    QFont font = QApplication::font();
    const double enlarged = QFontInfo(font).pointSizeF() / OrdinaryPoints;
    font.setPointSizeF(points * std::max(1.0, enlarged));
    font.setBold(bold);
    return font;
}

/// Controls that show no text of their own are named for screen readers as they are named everywhere.
void NameTextBox(QLineEdit& box, const QString& name, const QString& description) {
    box.setObjectName(name);
    box.setAccessibleName(name);
    box.setAccessibleDescription(description);
}

void AddDatabaseBox(InterfaceControls& controls, QWidget& form, DesignLayout& layout) {
    auto* const caption = new QLabel(u"Target Database"_s, &form);
    caption->setObjectName(u"Label1"_s);
    caption->setFont(DesignFont(LabelPoints, true));
    layout.Place(caption, LabelPlace, DatabasePlace.top() - LabelPlace.top());

    controls.txtDataBase = new PathBox(&form);
    NameTextBox(*controls.txtDataBase, u"txtDataBase"_s, u"Path of the target database"_s);
    layout.Place(controls.txtDataBase, DatabasePlace);
}

void AddButtons(InterfaceControls& controls, QWidget& form, DesignLayout& layout) {
    const std::array captions{u"Select DB"_s, u"Update"_s, u"Cancel Update"_s};
    for (std::size_t i = 0; i < captions.size(); ++i) {
        controls.btnAction[i] = new QPushButton(captions[i], &form);
        controls.btnAction[i]->setObjectName(u"btnAction(%1)"_s.arg(i));
        layout.Place(controls.btnAction[i], ActionPlaces[i]);
    }
}

void AddTableList(InterfaceControls& controls, QWidget& form, DesignLayout& layout) {
    auto* const frame = new TableFrame(u"Select File to Export"_s, &form);
    frame->setObjectName(u"fSelections"_s);
    frame->setToolTip(u"Show Available tables when a DataBase is open."_s);
    layout.Place(frame, SelectionsPlace);

    auto* const list = new DesignLayout(&frame->Content(), SelectionsPlace.size());
    for (std::size_t i = 0; i < controls.x_SelectedTable.size(); ++i) {
        auto* const box = new TableBox(&frame->Content());
        box->setObjectName(u"x_SelectedTable(%1)"_s.arg(i));
        const int top = FirstRowTop + RowPitch * static_cast<int>(i % RowsOfColumn);
        list->Place(box, QRect(QPoint(ColumnLefts[i / RowsOfColumn], top), BoxSize), RowPitch);
        controls.x_SelectedTable[i] = box;
    }
}

void AddStatusLine(InterfaceControls& controls, QWidget& form, DesignLayout& layout) {
    controls.txtStatus = new StatusTextBox(&form);
    NameTextBox(*controls.txtStatus, u"txtStatus"_s, u"Progress of the update"_s);
    controls.txtStatus->setFont(DesignFont(DesignPoints, true));
    layout.Place(controls.txtStatus, StatusPlace);
}

void AddMenus(InterfaceControls& controls, QMainWindow& window) {
    QMenu* const file = window.menuBar()->addMenu(u"&File"_s);
    file->setObjectName(u"mnuFile"_s);
    file->setSeparatorsCollapsible(false);  // it begins with one
    file->addSeparator()->setObjectName(u"mnuSpace2"_s);
    controls.mnuExit = file->addAction(u"Close"_s);
    controls.mnuExit->setObjectName(u"mnuExit"_s);

    QMenu* const options = window.menuBar()->addMenu(u"&Options"_s);
    options->setObjectName(u"mnuOptions"_s);
    controls.mnuEnforceReferentialIntegrity = options->addAction(u"Enforce Referential Integrity"_s);
    controls.mnuEnforceReferentialIntegrity->setObjectName(u"mnuEnforceReferentialIntegrity"_s);
    controls.mnuEnforceReferentialIntegrity->setCheckable(true);
}

}  // namespace

InterfaceControls LayOutInterface(QMainWindow& window) {
    window.setObjectName(u"fInterface"_s);
    window.setWindowTitle(u"Vantora Database Explorer"_s);
    window.setWindowIcon(WindowIcon());
    window.setFont(DesignFont(DesignPoints, false));

    InterfaceControls controls{};
    auto* const form = new BackgroundPicture(&window);
    auto* const layout = new DesignLayout(form, FormSize);
    AddDatabaseBox(controls, *form, *layout);
    AddButtons(controls, *form, *layout);
    AddTableList(controls, *form, *layout);
    AddStatusLine(controls, *form, *layout);
    AddMenus(controls, window);
    window.setCentralWidget(form);
    controls.sb1 = new StatusPanels(&window);
    window.setStatusBar(controls.sb1);
    controls.btnAction[0]->setFocus();  // the one thing that can be done at first
    return controls;
}

}  // namespace ui
