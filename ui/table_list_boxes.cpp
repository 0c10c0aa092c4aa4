#include "ui/table_list_boxes.h"

#include "ui/mixed_colour.h"
#include "ui/window_texts.h"

namespace ui {

namespace {

using catalogue::TableColour;

constexpr QColor Green(0, 128, 0);
constexpr QColor Purple(128, 0, 128);

/// How far a disabled box's text fades into its ground: the list is to be read before it can be ticked.
constexpr double DisabledShare = 0.5;

/// The colours are meant for a light ground; on a dark one the same hue is lightened.
QColor Readable(const QColor& colour, const QColor& ground) {
    constexpr int HalfLight = 128;
    constexpr int Lightened = 260;  // percent
    return ground.lightness() < HalfLight ? colour.lighter(Lightened) : colour;
}

QColor TextColour(TableColour colour, const QPalette& ordinary) {
    const QColor ground = ordinary.color(QPalette::Window);
    switch (colour) {
        case TableColour::Green:
            return Readable(Green, ground);
        case TableColour::Purple:
            return Readable(Purple, ground);
        default:
            return ordinary.color(QPalette::Active, QPalette::WindowText);
    }
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
    const QPalette ordinary = Box(box).parentWidget()->palette();
    const QColor ground = ordinary.color(QPalette::Window);
    const QColor text = TextColour(colour, ordinary);
    QPalette palette;
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Disabled, QPalette::WindowText, Mixed(text, ground, DisabledShare));
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
