// The table list as the 76 check boxes of the window show it.
#pragma once

#include <array>
#include <string>

#include "catalogue/table_list.h"
#include "ui/table_box.h"

namespace ui {

using CheckBoxes = std::array<TableBox*, catalogue::TableList::BoxCount>;

class TableListBoxes : public catalogue::TableList {
  public:
    explicit TableListBoxes(const CheckBoxes& boxes) : mBoxes(boxes) {}

    std::u16string Caption(int box) const override;
    void SetCaption(int box, const std::u16string& caption) override;
    void SetColour(int box, catalogue::TableColour colour) override;
    void SetVisible(int box, bool visible) override;
    void SetEnabled(int box, bool enabled) override;
    bool Ticked(int box) const override;
    void SetTicked(int box, bool ticked) override;
    void SetToolTip(int box, const std::string& text) override;

  private:
    TableBox& Box(int box) const { return *mBoxes.at(static_cast<std::size_t>(box)); }

    CheckBoxes mBoxes;
    std::array<std::u16string, BoxCount> mCaptions;  // as given; a box shows "&" by doubling it
};

}  // namespace ui
