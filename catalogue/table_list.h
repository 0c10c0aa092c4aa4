// The list of exportable tables: 76 check boxes whose captions are the tables' names. A box's number is the
// handle by which the catalogue and export routines speak of a table. The window implements it; tests bring
// their own.
#pragma once

#include <string>

namespace catalogue {

/// The colour of a table's caption, which tells its place in the catalogue's hierarchy.
enum class TableColour { AsDesigned, Green, Purple };  // green RGB (0, 128, 0), purple RGB (128, 0, 128)

class TableList {
  public:
    static constexpr int BoxCount = 76;  // numbers 0 to 75

    virtual ~TableList() = default;

    /// The table's name; empty for a box that lists none.
    virtual std::u16string Caption(int box) const = 0;
    /// Changes one thing of a box, numbered from 0; the box raises no click.
    virtual void SetCaption(int box, const std::u16string& caption) = 0;
    virtual void SetColour(int box, TableColour colour) = 0;
    virtual void SetVisible(int box, bool visible) = 0;
    virtual void SetEnabled(int box, bool enabled) = 0;

    /// Exactly ticked; a greyed box is not.
    virtual bool Ticked(int box) const = 0;

    /// Ticking or clearing by code raises the box's click when its state changes, as a click by hand does.
    virtual void SetTicked(int box, bool ticked) = 0;

    /// text is UTF-8; an empty one shows nothing.
    virtual void SetToolTip(int box, const std::string& text) = 0;
};

}  // namespace catalogue
