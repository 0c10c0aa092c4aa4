// The frame around the table list. It draws its title on its upper border, so that its whole area down from
// there belongs to the list.
#pragma once

#include <QGroupBox>

namespace ui {

class TableFrame : public QGroupBox {
    Q_OBJECT
  public:
    TableFrame(const QString& title, QWidget* parent);

    /// Covers the frame; holds what stands in it.
    QWidget& Content() { return *mContent; }

    QSize minimumSizeHint() const override { return mContent->minimumSizeHint(); }

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    QWidget* mContent;
};

}  // namespace ui
