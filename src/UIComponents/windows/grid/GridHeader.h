// GridHeader: the row of headings above a grid's list, whose cells look like buttons with menus.
//
// It follows the messages of the list's own header while it is attached. Cells that were added
// with a menu are drawn by DrawCell, at the request of the header; the others draw themselves.
// Used on the window's thread.
#pragma once

#include <functional>

#include "src/UIComponents/windows/grid/HeaderTheme.h"

namespace Hesperon::specifics::UILayer {

class GridHeader
{
public:
    // Called for a press on a cell, but not between two of them. It may end the window, and this
    // object with it. Release must follow if they are still there.
    using Press = std::function<void(LONG nColumn)>;

    explicit GridHeader(Press fnPress) : m_fnPress(std::move(fnPress)) {}
    GridHeader(const GridHeader&) = delete;
    GridHeader& operator=(const GridHeader&) = delete;

    // Follows the messages of a header; true where it does so already. The header may be
    // destroyed at any time, which ends that.
    bool Attach(HWND hHeader);
    // False where another one follows them, too, and came later.
    bool Detach();
    // Takes the theme of the system anew; the caller draws the window again.
    void OpenTheme(HWND hHeader) { m_theme.Open(hHeader); }

    // Draws a cell as the system asks for it (WM_DRAWITEM).
    void DrawCell(const DRAWITEMSTRUCT& item) const;
    // After a press: no cell is pressed any more.
    void Release();

private:
    static LRESULT CALLBACK Procedure(HWND hWnd, UINT nMessage, WPARAM wParam, LPARAM lParam);
    void Forget();
    void OnPress(LPARAM lParam);
    void OnMouse(LPARAM lParam);
    void SetHot(LONG nColumn);
    bool DrawEmpty(HDC hdc) const;
    HeadingLook LookOf(const DRAWITEMSTRUCT& item) const;

    const Press m_fnPress;
    HWND m_hHeader = nullptr;      // while attached
    WNDPROC m_pfnHeader = nullptr; // the header's own procedure
    LONG m_nHot = -1;              // the column under the mouse; -1 for none
    HeaderTheme m_theme;
};

// In the font of a header, in pixels.
LONG HeadingTextWidth(HWND hHeader, const OLECHAR* pszText);
// Of a column's heading, in pixels of the screen; false for a column that isn't there.
bool HeadingPlace(HWND hHeader, LONG nColumn, RECT& place);

} // namespace Hesperon::specifics::UILayer
