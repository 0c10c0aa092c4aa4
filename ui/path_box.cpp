#include "ui/path_box.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOptionFrame>

namespace ui {

PathBox::PathBox(QWidget* parent) : QLineEdit(parent) {
    setReadOnly(true);
    connect(this, &QLineEdit::textChanged, this, &QWidget::setToolTip);
}

/// Where the style lets the text stand.
QRect PathBox::TextArea() const {
    constexpr int TextMargin = 2;
    QStyleOptionFrame option;
    initStyleOption(&option);
    return style()
        ->subElementRect(QStyle::SE_LineEditContents, &option, this)
        .adjusted(TextMargin, 0, -TextMargin, 0);
}

/// With the focus the box scrolls, so that the whole path can be read and copied.
void PathBox::paintEvent(QPaintEvent* event) {
    const QRect area = TextArea();
    if (hasFocus() || fontMetrics().horizontalAdvance(text()) <= area.width()) {
        QLineEdit::paintEvent(event);
        return;
    }
    QStyleOptionFrame option;
    initStyleOption(&option);
    QPainter painter(this);
    style()->drawPrimitive(QStyle::PE_PanelLineEdit, &option, &painter, this);
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(area, Qt::AlignLeft | Qt::AlignVCenter,
                     fontMetrics().elidedText(text(), Qt::ElideMiddle, area.width()));
}

}  // namespace ui
