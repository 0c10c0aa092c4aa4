#include "ui/table_list_boxes.h"

#include "ui/window_texts.h"

namespace ui {

std::u16string TableListBoxes::Caption(int box) const {
    return mCaptions.at(static_cast<std::size_t>(box));
}

void TableListBoxes::SetCaption(int box, const std::u16string& caption) {
    mCaptions.at(static_cast<std::size_t>(box)) = caption;
    Box(box).setText(WithoutAccessKey(QString::fromStdU16String(caption)));
}

void TableListBoxes::SetColour(int box, catalogue::TableColour colour) {
    Box(box).SetColour(colour);
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
