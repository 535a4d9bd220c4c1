// HeaderTheme: how the system draws the cells of a row of headings.
//
// Without a theme they look like classic buttons. Used on the thread of the header's window.
#pragma once

#include "platform/component.h"

#include <uxtheme.h>

namespace Hesperon::specifics::UILayer {

enum class HeadingLook
{
    Normal,
    Hot, // the mouse is over it
    Pressed,
};

class HeaderTheme
{
public:
    HeaderTheme() = default;
    ~HeaderTheme() { Close(); }
    HeaderTheme(const HeaderTheme&) = delete;
    HeaderTheme& operator=(const HeaderTheme&) = delete;

    // Takes the theme as it is now, in place of an earlier one; none where no theme is active.
    void Open(HWND hHeader);
    void Close();
    bool IsOpen() const { return m_hTheme != nullptr; }

    // The background and the border of a cell.
    void DrawFrame(HDC hdc, const RECT& cell, HeadingLook look) const;

private:
    HTHEME m_hTheme = nullptr;
};

} // namespace Hesperon::specifics::UILayer
