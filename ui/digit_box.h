// A text box of the range dialog: selects its whole text when it gets the focus, takes digits only, and tells
// when the focus moves on to another control.
#pragma once

#include <QLineEdit>
#include <QValidator>

namespace ui {

/// Takes everything that is no digit out of what an edit adds to a text. What stood in the text before stays:
/// the catalogue's own values may carry a sign.
class AddedDigits : public QValidator {
    Q_OBJECT
  public:
    using QValidator::QValidator;

    /// The text that digits are added to: what it has already may stay, digits or not.
    void SetBefore(const QString& text) { mBefore = text; }
    State validate(QString& text, int& cursor) const override;

  private:
    QString mBefore;
};

class DigitBox : public QLineEdit {
    Q_OBJECT
  public:
    DigitBox(const QString& name, QWidget* parent);

    /// Shows a value of the catalogue, whatever its characters.
    void ShowValue(const QString& value);

  Q_SIGNALS:
    /// The focus has moved to another control of the dialog; a switch to another window does not count.
    void Left();

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

  private:
    AddedDigits mDigits;
    bool mSelectOnRelease = false;
};

}  // namespace ui
