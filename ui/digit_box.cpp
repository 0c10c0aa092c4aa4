#include "ui/digit_box.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <algorithm>

namespace ui {

namespace {

bool IsDigit(QChar character) {
    return character >= u'0' && character <= u'9';
}

/// How many characters two texts share at their beginnings, up to limit.
qsizetype CommonStart(QStringView a, QStringView b) {
    const auto shorter = std::min(a.size(), b.size());
    return std::mismatch(a.begin(), a.begin() + shorter, b.begin()).first - a.begin();
}

qsizetype CommonEnd(QStringView a, QStringView b) {
    const auto shorter = std::min(a.size(), b.size());
    return std::mismatch(a.rbegin(), a.rbegin() + shorter, b.rbegin()).first - a.rbegin();
}

/// Keys that put a character into the box or, as backspace, count as one.
bool TypesNoDigit(const QKeyEvent& event) {
    if (event.key() == Qt::Key_Backspace) return true;
    if (event.modifiers() == Qt::ControlModifier) return false;  // a command, such as paste
    const QString text = event.text();
    return !text.isEmpty() && text.front().isPrint() && !IsDigit(text.front());
}

bool MovesToAnotherWindow(Qt::FocusReason reason) {
    return reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason ||
           reason == Qt::MenuBarFocusReason;
}

}  // namespace

QValidator::State AddedDigits::validate(QString& text, int& cursor) const {
    const qsizetype start = CommonStart(mBefore, text);
    const qsizetype end = CommonEnd(QStringView(mBefore).mid(start), QStringView(text).mid(start));
    const qsizetype behind = text.size() - end;
    for (qsizetype i = behind - 1; i >= start; --i) {
        if (IsDigit(text[i])) continue;
        text.remove(i, 1);
        if (cursor > i) --cursor;
    }
    return Acceptable;
}

DigitBox::DigitBox(const QString& name, QWidget* parent) : QLineEdit(parent), mDigits(this) {
    setObjectName(name);
    setAccessibleName(name);
    setValidator(&mDigits);
    connect(this, &QLineEdit::textChanged, this, [this](const QString& text) { mDigits.SetBefore(text); });
}

void DigitBox::ShowValue(const QString& value) {
    mDigits.SetBefore(value);
    setText(value);
}

void DigitBox::keyPressEvent(QKeyEvent* event) {
    if (TypesNoDigit(*event)) {
        event->accept();
        return;
    }
    QLineEdit::keyPressEvent(event);
}

void DigitBox::focusInEvent(QFocusEvent* event) {
    QLineEdit::focusInEvent(event);
    selectAll();
    // The click that brought the focus sets the cursor next, which would undo the selection.
    mSelectOnRelease = event->reason() == Qt::MouseFocusReason;
}

void DigitBox::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    if (!MovesToAnotherWindow(event->reason())) Q_EMIT Left();
}

void DigitBox::mouseReleaseEvent(QMouseEvent* event) {
    QLineEdit::mouseReleaseEvent(event);
    if (mSelectOnRelease && !hasSelectedText()) selectAll();
    mSelectOnRelease = false;
}

}  // namespace ui
