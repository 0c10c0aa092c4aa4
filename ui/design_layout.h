// A layout that keeps a form as it was designed: every control has its place in twips (1440 an inch, 15 a
// pixel at 96 dpi), and the whole form grows evenly when the window is enlarged. Where fonts need more room
// than the design gives a control, the smallest size of the form grows until every control has it.
#pragma once

#include <QLayout>
#include <QRect>
#include <memory>
#include <vector>

namespace ui {

class DesignLayout : public QLayout {
    Q_OBJECT
  public:
    /// parent shows the form; designSize in twips.
    DesignLayout(QWidget* parent, QSize designSize);
    ~DesignLayout() override;

    /// Places a child of the form; place in twips. A control that needs more height than its place may use
    /// room twips from its upper edge on before the form grows; by default just the place's height.
    void Place(QWidget* control, const QRect& place, int room = 0);

    void addItem(QLayoutItem* item) override;
    int count() const override { return static_cast<int>(mItems.size()); }
    QLayoutItem* itemAt(int index) const override;
    QLayoutItem* takeAt(int index) override;
    QSize sizeHint() const override { return minimumSize(); }
    QSize minimumSize() const override;
    void setGeometry(const QRect& rectangle) override;

  private:
    struct Item {
        std::unique_ptr<QLayoutItem> Control;
        QRect Place;  // twips
        int Room;     // twips
    };

    QSizeF PixelsOfTwip() const;

    std::vector<Item> mItems;
    QSize mDesignSize;
};

}  // namespace ui
