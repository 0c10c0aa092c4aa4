// One check box of the table list. Its text has the colour of the table's level, also when the desktop
// changes from light to dark.
#pragma once

#include <QCheckBox>

#include "catalogue/table_list.h"

namespace ui {

class TableBox : public QCheckBox {
    Q_OBJECT
  public:
    using QCheckBox::QCheckBox;

    /// Shows the caption in the colour, or in the desktop's own as designed.
    void SetColour(catalogue::TableColour colour);

  protected:
    void changeEvent(QEvent* event) override;

  private:
    void Recolour();

    catalogue::TableColour mColour = catalogue::TableColour::AsDesigned;
};

}  // namespace ui
