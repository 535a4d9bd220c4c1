#include "src/UIComponents/windows/grid/HeaderTheme.h"

#include <vssym32.h>

#include <utility>

namespace Hesperon::specifics::UILayer {

namespace {

int ThemeStateOf(HeadingLook look)
{
    switch (look) {
    case HeadingLook::Hot:
        return HIS_HOT;
    case HeadingLook::Pressed:
        return HIS_PRESSED;
    default:
        return HIS_NORMAL;
    }
}

} // namespace

void HeaderTheme::Open(HWND hHeader)
{
    Close();
    m_hTheme = OpenThemeData(hHeader, L"HEADER");
}

void HeaderTheme::Close()
{
    if (m_hTheme)
        CloseThemeData(std::exchange(m_hTheme, nullptr));
}

// A theme may lack the part, and then the cell is as without a theme.
void HeaderTheme::DrawFrame(HDC hdc, const RECT& cell, HeadingLook look) const
{
    if (m_hTheme && SUCCEEDED(DrawThemeBackground(m_hTheme, hdc, HP_HEADERITEM, ThemeStateOf(look),
                                                  &cell, nullptr)))
        return;
    RECT frame = cell;
    const UINT nPushed = look == HeadingLook::Pressed ? DFCS_PUSHED : 0;
    DrawFrameControl(hdc, &frame, DFC_BUTTON, DFCS_BUTTONPUSH | nPushed);
}

} // namespace Hesperon::specifics::UILayer
