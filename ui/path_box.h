// The read-only box that shows the target database's path: a path too long for it is shown with its middle
// left out, and in full in the tool tip. The text itself is always the whole path.
#pragma once

#include <QLineEdit>

namespace ui {

class PathBox : public QLineEdit {
    Q_OBJECT
  public:
    explicit PathBox(QWidget* parent);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QRect TextArea() const;
};

}  // namespace ui
