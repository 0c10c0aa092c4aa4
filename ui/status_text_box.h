// The status line: a read-only text box that can show a share of work done as a bar behind its text.
#pragma once

#include <QLineEdit>

namespace ui {

class StatusTextBox : public QLineEdit {
    Q_OBJECT
  public:
    explicit StatusTextBox(QWidget* parent);

    /// Shows text alone.
    void ShowText(const QString& text);

    /// Shows text over a bar; share runs from 0 to 1, what lies outside counts as the nearer end.
    void ShowProgress(const QString& text, double share);

    double Share() const { return mShare; }

  protected:
    void focusInEvent(QFocusEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    double mShare = 0;
};

}  // namespace ui
