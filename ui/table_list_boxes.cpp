#include "ui/table_list_boxes.h"

#include "ui/window_texts.h"

namespace ui {

namespace {

using catalogue::TableColour;

constexpr QColor Green(0, 128, 0);
constexpr QColor Purple(128, 0, 128);

/// The colours are meant for a light ground; on a dark one the same hue is lightened.
QColor Readable(const QColor& colour, const QColor& ground) {
    constexpr int HalfLight = 128;
    constexpr int Lightened = 260;  // percent
    return ground.lightness() < HalfLight ? colour.lighter(Lightened) : colour;
}

}  // namespace

std::u16string TableListBoxes::Caption(int box) const {
    return mCaptions.at(static_cast<std::size_t>(box));
}

void TableListBoxes::SetCaption(int box, const std::u16string& caption) {
    mCaptions.at(static_cast<std::size_t>(box)) = caption;
    Box(box).setText(WithoutAccessKey(QString::fromStdU16String(caption)));
}

void TableListBoxes::SetColour(int box, TableColour colour) {
    QPalette palette;
    if (colour != TableColour::AsDesigned) {
        const QColor ground = Box(box).palette().color(QPalette::Window);
        const QColor text = Readable(colour == TableColour::Green ? Green : Purple, ground);
        // A disabled box stays grey.
        palette.setColor(QPalette::Active, QPalette::WindowText, text);
        palette.setColor(QPalette::Inactive, QPalette::WindowText, text);
    }
    Box(box).setPalette(palette);
}

void TableListBoxes::SetVisible(int box, bool visible) {
    Box(box).setVisible(visible);
}

void TableListBoxes::SetEnabled(int box, bool enabled) {
    Box(box).setEnabled(enabled);
}

bool TableListBoxes::Ticked(int box) const {
    return Box(box).checkState() == Qt::Checked;
}

void TableListBoxes::SetTicked(int box, bool ticked) {
    Box(box).setChecked(ticked);
}

void TableListBoxes::SetToolTip(int box, const std::string& text) {
    Box(box).setToolTip(FromUtf8(text));
}

}  // namespace ui
