// The picture behind the main window's controls.
#pragma once

#include <QWidget>

namespace ui {

/// Draws the quiet picture of ledger sheets into area, in tones of the palette's window colour so that text
/// stays readable on it.
void PaintBackground(QPainter& painter, const QRect& area, const QPalette& palette);

class BackgroundPicture : public QWidget {
    Q_OBJECT
  public:
    using QWidget::QWidget;

  protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace ui
