#include "ui/background_picture.h"

#include <QLinearGradient>
#include <QPainter>

#include "ui/mixed_colour.h"

namespace ui {

namespace {

/// One ruled sheet: an outline, a head line and rows, as a table's grid.
void PaintSheet(QPainter& painter, QRectF sheet) {
    constexpr int Rows = 14;
    constexpr double ColumnEdges[] = {0.14, 0.52, 0.76};
    painter.drawRect(sheet);
    const double rowHeight = sheet.height() / Rows;
    for (int row = 1; row < Rows; ++row) {
        const double y = sheet.top() + row * rowHeight;
        painter.drawLine(QPointF(sheet.left(), y), QPointF(sheet.right(), y));
    }
    for (const double edge : ColumnEdges) {
        const double x = sheet.left() + edge * sheet.width();
        painter.drawLine(QPointF(x, sheet.top() + rowHeight), QPointF(x, sheet.bottom()));
    }
}

}  // namespace

void PaintBackground(QPainter& painter, const QRect& area, const QPalette& palette) {
    constexpr double TopShare = 0.16;
    constexpr double BottomShare = 0.05;
    constexpr double LineShare = 0.22;
    const QColor window = palette.color(QPalette::Window);
    const QColor accent = palette.color(QPalette::Highlight);

    QLinearGradient wash(area.topLeft(), area.bottomLeft());
    wash.setColorAt(0, Mixed(window, accent, TopShare));
    wash.setColorAt(1, Mixed(window, accent, BottomShare));
    painter.fillRect(area, wash);

    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Mixed(window, accent, LineShare), 1));
    const QSizeF sheet(area.width() * 0.42, area.height() * 0.62);
    painter.translate(area.width() * 0.60, area.height() * -0.20);
    painter.rotate(-12);
    PaintSheet(painter, QRectF(QPointF(0, 0), sheet));
    PaintSheet(painter, QRectF(QPointF(sheet.width() * 0.18, sheet.height() * 0.22), sheet));
    painter.restore();
}

void BackgroundPicture::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    PaintBackground(painter, rect(), palette());
}

}  // namespace ui
