// Lists that open over the dialog: the rows of a drop-down list, and the menus of the component.
//
// Arrows and the first letter of a row move, Enter, a blank or the mouse choose, Esc and what
// ends the dialog close the list without a choice.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "interfaces/IGridView.h"
#include "tools/tabulex/import/terminal/Desk.h"

namespace tabulex {

struct PopupRow
{
    std::string sText; // visible text; empty for a line between rows
    bool bChecked = false;
    bool bMore = false; // opens rows of its own
};

class Popup final : public ILayer
{
public:
    // Opens below `anchor`, or above it where there is more room.
    Popup(Desk& desk, std::vector<PopupRow> rows, const Rect& anchor, std::size_t nSelected);

    // Stands in the status line while a row is selected that opens more rows; with `bAlways`
    // while any is.
    void SetHint(std::string hint, bool bAlways);

    // The row that was chosen; empty for none. The list may be run again, and stays where it was.
    std::optional<std::size_t> Run();
    // Where the selected row lies; set by drawing.
    Rect SelectedPlace() const;
    std::size_t Selected() const { return m_nSelected; }

    void Draw(Canvas& canvas) override;

private:
    enum class Answer
    {
        Wait,
        Chosen,
        Closed
    };

    Answer Handle(const Input& input);
    Answer Press(const Input& input);
    void ShowHint();
    void Move(int nRows);
    void Find(char32_t c);
    bool IsLine(std::size_t nRow) const { return m_rows[nRow].sText.empty(); }
    Rect PlaceIn(Size size) const;

    Desk& m_desk;
    std::vector<PopupRow> m_rows;
    Rect m_anchor;
    std::size_t m_nSelected;
    std::size_t m_nFirst = 0; // in sight
    Rect m_place;             // with its border; set by drawing
    std::string m_sHint;      // empty for none
    bool m_bAlwaysHint = false;
};

// Opens a menu and gives the id of the item that was chosen; 0 for none. The hint is for items
// of menus within the menu.
LONG ChooseFromMenu(Desk& desk, IQRL_TabulexConverter::ViewMenu menu, const Rect& anchor,
                    const std::string& sHint = {});

} // namespace tabulex
