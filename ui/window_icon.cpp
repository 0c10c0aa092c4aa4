#include "ui/window_icon.h"

#include <QPainter>
#include <QPainterPath>

namespace ui {

namespace {

// The drawing's own measures: the icon is a square of 32.
constexpr double Side = 32;
constexpr QColor Ink(38, 70, 110);
constexpr QColor Paper(250, 250, 245);
constexpr QColor Drum(70, 130, 190);
constexpr QColor DrumLid(130, 180, 225);

void DrawSheet(QPainter& painter) {
    const QRectF sheet(3, 2, 17, 24);
    painter.setBrush(Paper);
    painter.drawRect(sheet);
    for (int row = 1; row < 6; ++row) {
        const double y = sheet.top() + 4.0 * row;
        painter.drawLine(QPointF(sheet.left(), y), QPointF(sheet.right(), y));
    }
    painter.drawLine(QPointF(9, sheet.top()), QPointF(9, sheet.bottom()));
}

void DrawDatabase(QPainter& painter) {
    const QRectF lid(13, 12, 16, 6);
    const double depth = 12;
    QPainterPath drum;
    drum.moveTo(lid.left(), lid.center().y());
    drum.lineTo(lid.left(), lid.center().y() + depth);
    drum.arcTo(lid.translated(0, depth), 180, 180);
    drum.lineTo(lid.right(), lid.center().y());
    drum.closeSubpath();
    painter.setBrush(Drum);
    painter.drawPath(drum);
    painter.setBrush(DrumLid);
    painter.drawEllipse(lid);
    painter.setBrush(Qt::NoBrush);
    painter.drawArc(lid.translated(0, depth / 2), 180 * 16, 180 * 16);
}

QPixmap Drawn(int pixels) {
    QPixmap pixmap(pixels, pixels);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(pixels / Side, pixels / Side);
    painter.setPen(QPen(Ink, 1));
    DrawSheet(painter);
    DrawDatabase(painter);
    return pixmap;
}

}  // namespace

QIcon WindowIcon() {
    QIcon icon;
    for (const int pixels : {16, 24, 32, 48, 64, 128, 256}) icon.addPixmap(Drawn(pixels));
    return icon;
}

}  // namespace ui
