#include "ui/table_frame.h"

#include <QEvent>
#include <QPainter>

namespace ui {

TableFrame::TableFrame(const QString& title, QWidget* parent)
    : QGroupBox(title, parent), mContent(new QWidget(this)) {}

/// What stands in the content may need more room now.
bool TableFrame::event(QEvent* event) {
    if (event->type() == QEvent::LayoutRequest) updateGeometry();
    return QGroupBox::event(event);
}

void TableFrame::paintEvent(QPaintEvent*) {
    constexpr int TitleLeft = 8;
    constexpr int TitlePadding = 4;
    constexpr int CornerRadius = 4;
    const QFontMetrics metrics = fontMetrics();
    const QRect titleArea(TitleLeft, 0, metrics.horizontalAdvance(title()) + 2 * TitlePadding,
                          metrics.height());
    const int titleMiddle = metrics.height() / 2;
    const QRectF frame = QRectF(rect()).adjusted(0.5, titleMiddle + 0.5, -0.5, -0.5);

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(palette().color(QPalette::Mid));
    painter.setBrush(palette().window());
    painter.drawRoundedRect(frame, CornerRadius, CornerRadius);
    painter.drawRoundedRect(titleArea, CornerRadius, CornerRadius);
    painter.fillRect(titleArea.adjusted(1, titleArea.height() / 2, -1, 1), palette().window());
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(titleArea, Qt::AlignCenter, title());
}

void TableFrame::resizeEvent(QResizeEvent* event) {
    QGroupBox::resizeEvent(event);
    mContent->setGeometry(rect());
}

}  // namespace ui
