// Colours of texts that can be read on their ground, on light desktops and on dark ones.
#pragma once

#include <QColor>
#include <QPalette>

namespace ui {

/// From 1, the same colour, to 21, black on white: the ratio of the relative luminances. Opaque colours only.
double Contrast(const QColor& a, const QColor& b);

/// A colour that is meant for a light ground; for a dark one the same hue, lightened.
QColor Readable(const QColor& colour, const QColor& ground);

/// text faded halfway into its ground, less far where it could not be read any more.
QColor Faded(const QColor& text, const QColor& ground);

/// What to add to an ordinary palette: disabled controls show the texts of enabled ones, faded, because what
/// cannot be done yet is to be read. Sets nothing else.
QPalette ReadableDisabledTexts(const QPalette& ordinary);

}  // namespace ui
