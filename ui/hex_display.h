// The diagnostics dialog: shows a hexadecimal dump in a fixed-pitch text box.
#pragma once

#include <QDialog>

namespace ui {

class frmHexDisplay : public QDialog {
    Q_OBJECT
  public:
    frmHexDisplay(const QString& text, QWidget* parent);
};

}  // namespace ui
