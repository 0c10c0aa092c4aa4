#include "ui/window_icon.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {

QIcon WindowIcon() {
    QIcon icon;
    for (const int pixels : {16, 24, 32, 48, 64, 128, 256}) {
        icon.addFile(u":/icons/vantora-explorer-%1.png"_s.arg(pixels), QSize(pixels, pixels));
    }
    return icon;
}

}  // namespace ui
