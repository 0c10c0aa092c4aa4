// The dialog "Range Selection". A box is tested when the focus leaves it, and what it holds is stored at once
// when nothing objects; there is no cancel.
#pragma once

#include <QDialog>

#include "export/key_range.h"
#include "ui/error_trap.h"
#include "ui/window_services_qt.h"

class QGridLayout;
class QPushButton;

namespace ui {

class DigitBox;

class fRange : public QDialog {
    Q_OBJECT
  public:
    /// row stands on the key description that the dialog is about. All references must outlive the dialog.
    fRange(dao::Recordset& row, const exporting::RangeTexts& texts, platform::WindowServices& services,
           ErrorTrap& trap, QWidget* parent);

    /// Escape and the window's button: the box with the focus is tested as if left, then the dialog closes.
    void reject() override;

    void done(int result) override;

  private:
    void AddLabels(QGridLayout& grid);
    void AddBoxes(QGridLayout& grid);
    void AddButtons(QGridLayout& grid);
    void Connect();
    void ConnectButton(QPushButton& button, void (fRange::*action)());
    void ShowCatalogueValues();
    void Close() { accept(); }
    void Leave(exporting::RangeBox box);
    void Object(const exporting::RangeObjection& objection);
    DigitBox& BoxOf(exporting::RangeBox box) const;

    dao::Recordset& mRow;
    const exporting::RangeTexts mTexts;
    platform::WindowServices& mServices;
    ErrorTrap& mTrap;
    DigitBox* e_Start;
    DigitBox* e_End;
    QPushButton* b_Reset;
    QPushButton* b_OK;
    bool mIgnoresLeaving = false;  // a message is up or the dialog closes: focus moves mean nothing then
    bool mSwallowsPress = false;   // the press in hand made a box lose the focus, and the box objected
};

/// The dialog as the tick handler sees it.
class QtRangeDialog : public exporting::RangeDialog {
  public:
    QtRangeDialog(QtWindowServices& services, ErrorTrap& trap) : mServices(services), mTrap(trap) {}

    void ShowModal(dao::Recordset& row, const exporting::RangeTexts& texts) override;

  private:
    QtWindowServices& mServices;
    ErrorTrap& mTrap;
};

}  // namespace ui
