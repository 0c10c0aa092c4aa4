// The table list without a window: what the routines set is there to be read.
#pragma once

#include <array>
#include <functional>
#include <string>

#include "catalogue/table_list.h"

namespace test {

struct Box {
    std::u16string Caption;
    catalogue::TableColour Colour = catalogue::TableColour::AsDesigned;
    bool Visible = false;
    bool Enabled = false;
    bool Ticked = false;
    std::string ToolTip;
};

class TableListFake : public catalogue::TableList {
  public:
    std::array<Box, BoxCount> Boxes;

    Box& At(int box) { return Boxes.at(static_cast<std::size_t>(box)); }
    const Box& At(int box) const { return Boxes.at(static_cast<std::size_t>(box)); }

    std::u16string Caption(int box) const override { return At(box).Caption; }
    void SetCaption(int box, const std::u16string& caption) override { At(box).Caption = caption; }
    void SetColour(int box, catalogue::TableColour colour) override { At(box).Colour = colour; }
    void SetVisible(int box, bool visible) override { At(box).Visible = visible; }
    void SetEnabled(int box, bool enabled) override { At(box).Enabled = enabled; }
    bool Ticked(int box) const override { return At(box).Ticked; }
    void SetTicked(int box, bool ticked) override { At(box).Ticked = ticked; }
    void SetToolTip(int box, const std::string& text) override { At(box).ToolTip = text; }
};

}  // namespace test
