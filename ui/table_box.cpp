#include "ui/table_box.h"

#include <QEvent>

#include "ui/readable_colours.h"

namespace ui {

namespace {

using catalogue::TableColour;

constexpr QColor Green(0, 128, 0);
constexpr QColor Purple(128, 0, 128);

QColor TextColour(TableColour colour, const QPalette& ordinary) {
    const QColor ground = ordinary.color(QPalette::Active, QPalette::Window);
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

void TableBox::SetColour(TableColour colour) {
    mColour = colour;
    Recolour();
}

/// The palette that comes from the form is another one, or the box's own has just been set: then Recolour
/// sets the same once more, which changes nothing.
void TableBox::changeEvent(QEvent* event) {
    QCheckBox::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) Recolour();
}

void TableBox::Recolour() {
    const QPalette ordinary = parentWidget()->palette();
    const QColor text = TextColour(mColour, ordinary);
    QPalette palette;
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Disabled, QPalette::WindowText,
                     Faded(text, ordinary.color(QPalette::Active, QPalette::Window)));
    setPalette(palette);
}

}  // namespace ui
