#include "ui/status_text_box.h"

#include <QApplication>
#include <QPainter>
#include <algorithm>

namespace ui {

StatusTextBox::StatusTextBox(QWidget* parent) : QLineEdit(parent) {
    setReadOnly(true);
    // The ground is drawn here, bar and all; the style adds the frame and the text.
    QPalette transparent;
    transparent.setColor(QPalette::Base, Qt::transparent);
    setPalette(transparent);
}

void StatusTextBox::ShowText(const QString& text) {
    ShowProgress(text, 0);
}

void StatusTextBox::ShowProgress(const QString& text, double share) {
    mShare = std::clamp(share, 0.0, 1.0);
    setText(text);
    update();
}

void StatusTextBox::focusInEvent(QFocusEvent* event) {
    QLineEdit::focusInEvent(event);
    deselect();  // the focus comes here when the buttons are disabled: the text stays as it was
}

void StatusTextBox::paintEvent(QPaintEvent* event) {
    constexpr int FrameWidth = 1;
    constexpr double BarOpacity = 0.35;
    QPainter painter(this);
    QRect ground = rect().adjusted(FrameWidth, FrameWidth, -FrameWidth, -FrameWidth);
    painter.fillRect(ground, QApplication::palette().color(QPalette::Base));
    ground.setWidth(static_cast<int>(ground.width() * mShare));
    painter.setOpacity(BarOpacity);
    painter.fillRect(ground, QApplication::palette().color(QPalette::Highlight));
    painter.end();
    QLineEdit::paintEvent(event);
}

}  // namespace ui
