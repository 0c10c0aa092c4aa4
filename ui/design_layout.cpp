#include "ui/design_layout.h"

#include <QWidget>
#include <algorithm>
#include <cmath>

namespace ui {

namespace {

constexpr double TwipsOfInch = 1440;

int Scaled(int twips, double factor) {
    return static_cast<int>(std::lround(twips * factor));
}

}  // namespace

DesignLayout::DesignLayout(QWidget* parent, QSize designSize) : QLayout(parent), mDesignSize(designSize) {
    setContentsMargins(0, 0, 0, 0);
}

DesignLayout::~DesignLayout() = default;

void DesignLayout::Place(QWidget* control, const QRect& place, int room) {
    addChildWidget(control);
    mItems.push_back({std::make_unique<QWidgetItem>(control), place, std::max(room, place.height())});
    invalidate();
}

void DesignLayout::addItem(QLayoutItem* item) {
    mItems.push_back({std::unique_ptr<QLayoutItem>(item), QRect(QPoint(0, 0), mDesignSize), 0});
}

QLayoutItem* DesignLayout::itemAt(int index) const {
    if (index < 0 || index >= count()) return nullptr;
    return mItems[static_cast<std::size_t>(index)].Control.get();
}

QLayoutItem* DesignLayout::takeAt(int index) {
    if (index < 0 || index >= count()) return nullptr;
    QLayoutItem* const item = mItems[static_cast<std::size_t>(index)].Control.release();
    mItems.erase(mItems.begin() + index);
    return item;
}

QSizeF DesignLayout::PixelsOfTwip() const {
    const QWidget& form = *parentWidget();
    return {form.logicalDpiX() / TwipsOfInch, form.logicalDpiY() / TwipsOfInch};
}

QSize DesignLayout::minimumSize() const {
    double x = PixelsOfTwip().width();
    double y = PixelsOfTwip().height();
    for (const Item& item : mItems) {
        if (item.Control->isEmpty()) continue;
        const QSize needed = item.Control->minimumSize();
        x = std::max(x, static_cast<double>(needed.width()) / item.Place.width());
        y = std::max(y, static_cast<double>(needed.height()) / item.Room);
    }
    return {static_cast<int>(std::ceil(mDesignSize.width() * x)),
            static_cast<int>(std::ceil(mDesignSize.height() * y))};
}

void DesignLayout::setGeometry(const QRect& rectangle) {
    QLayout::setGeometry(rectangle);
    const double x = static_cast<double>(rectangle.width()) / mDesignSize.width();
    const double y = static_cast<double>(rectangle.height()) / mDesignSize.height();
    for (const Item& item : mItems) {
        const int height = std::max(Scaled(item.Place.height(), y), item.Control->minimumSize().height());
        // Straight to the widget: the item would keep a button from growing with the form.
        item.Control->widget()->setGeometry(QRect(rectangle.x() + Scaled(item.Place.x(), x),
                                                  rectangle.y() + Scaled(item.Place.y(), y),
                                                  Scaled(item.Place.width(), x), height));
    }
}

}  // namespace ui
