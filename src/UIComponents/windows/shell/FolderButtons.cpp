#include "src/UIComponents/windows/shell/FolderButtons.h"

#include <iterator>

#include "interfaces/IFolderView.h"
#include "module/MenuLibrary_win32.h"
#include "src/UIComponents/views/DialogTexts.h"
#include "src/UIComponents/windows/ActivationContext.h"
#include "src/UIComponents/windows/DialogResources.h"

namespace Hesperon::specifics::UILayer {

using namespace IQRL_TabulexConverter;

namespace {

constexpr LONG kButtons[] = {FolderUp, FolderModes};
constexpr SIZE kImage = {16, 15};
constexpr COLORREF kMask = RGB(255, 0, 255); // of the bitmap

constexpr DWORD kStyle = WS_CHILD | WS_VISIBLE | TBSTYLE_FLAT | TBSTYLE_TOOLTIPS | CCS_NODIVIDER |
                         CCS_NORESIZE | CCS_NOPARENTALIGN;

// Not a bitmap in the toolbar: its mask colour would show.
HIMAGELIST OwnImages()
{
    return ImageList_LoadImageW(DialogModule(), MAKEINTRESOURCEW(kFolderToolbarId), kImage.cx, 0,
                                kMask, IMAGE_BITMAP, LR_CREATEDIBSECTION);
}

HIMAGELIST LoadImages()
{
    MenuLibrary::SelectImageLoaderId(kFolderToolbarId);
    const HIMAGELIST hImages = MenuLibrary::LoadImagesFromToolbar(kFolderToolbarId, DialogModule());
    MenuLibrary::SelectImageLoaderId(0);
    return hImages ? hImages : OwnImages();
}

RECT PlaceInParent(HWND hControl)
{
    RECT rect{};
    GetWindowRect(hControl, &rect);
    MapWindowPoints(nullptr, GetParent(hControl), reinterpret_cast<POINT*>(&rect), 2);
    return rect;
}

HWND MakeToolbar(const wchar_t* pszClass, HWND hControl)
{
    const ActivationContext version6;
    const RECT rect = PlaceInParent(hControl);
    return CreateWindowExW(0, pszClass, L"", kStyle, rect.left, rect.top, rect.right - rect.left,
                           rect.bottom - rect.top, GetParent(hControl),
                           reinterpret_cast<HMENU>(static_cast<INT_PTR>(GetDlgCtrlID(hControl))),
                           nullptr, nullptr);
}

} // namespace

FolderButtons::~FolderButtons()
{
    if (m_hImages)
        ImageList_Destroy(m_hImages);
}

bool FolderButtons::Replace(HWND hControl)
{
    m_hWnd = MakeToolbar(L"KelmFlatToolbar", hControl);
    if (!m_hWnd)
        m_hWnd = MakeToolbar(TOOLBARCLASSNAMEW, hControl);
    if (!m_hWnd)
        return false;
    SetWindowPos(m_hWnd, hControl, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    DestroyWindow(hControl);
    AddButtons();
    return true;
}

void FolderButtons::AddButtons()
{
    m_hImages = LoadImages();
    SendMessageW(m_hWnd, TB_BUTTONSTRUCTSIZE, sizeof(TBBUTTON), 0);
    SendMessageW(m_hWnd, TB_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(m_hImages));
    TBBUTTON buttons[std::size(kButtons)] = {};
    for (std::size_t n = 0; n < std::size(kButtons); ++n) {
        buttons[n].iBitmap = static_cast<int>(n);
        buttons[n].idCommand = kButtons[n];
        buttons[n].fsState = TBSTATE_ENABLED;
        buttons[n].fsStyle = BTNS_BUTTON;
    }
    SendMessageW(m_hWnd, TB_ADDBUTTONSW, std::size(kButtons), reinterpret_cast<LPARAM>(buttons));
}

// The window too, or it would be a place for the mouse still.
void FolderButtons::SetEnabled(bool bEnabled)
{
    for (const LONG nButton : kButtons)
        SendMessageW(m_hWnd, TB_ENABLEBUTTON, static_cast<WPARAM>(nButton), bEnabled);
    EnableWindow(m_hWnd, bEnabled);
}

RECT FolderButtons::PlaceOf(LONG nCommand) const
{
    RECT rect{};
    SendMessageW(m_hWnd, TB_GETRECT, static_cast<WPARAM>(nCommand),
                 reinterpret_cast<LPARAM>(&rect));
    MapWindowPoints(m_hWnd, nullptr, reinterpret_cast<POINT*>(&rect), 2);
    return rect;
}

bool FolderButtons::AnswerTip(NMHDR& notice)
{
    if (notice.code != TTN_GETDISPINFOW)
        return false;
    // Only read by the tip.
    reinterpret_cast<NMTTDISPINFOW&>(notice).lpszText =
        const_cast<wchar_t*>(DialogText(DialogFolder, static_cast<LONG>(notice.idFrom)));
    return true;
}

} // namespace Hesperon::specifics::UILayer
