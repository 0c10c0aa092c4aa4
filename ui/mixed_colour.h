// Colours between two others.
#pragma once

#include <QColor>

namespace ui {

/// The colour that lies share (0 to 1) of the way from one to another.
inline QColor Mixed(const QColor& from, const QColor& to, double share) {
    const auto mix = [share](int a, int b) { return static_cast<int>(a + (b - a) * share); };
    return {mix(from.red(), to.red()), mix(from.green(), to.green()), mix(from.blue(), to.blue())};
}

}  // namespace ui
