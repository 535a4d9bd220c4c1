// A menu of the system is built for each opening and destroyed after it, with those within it: one
// that was appended to another belongs to that one.

#include "src/UIComponents/windows/PopupMenu.h"

#include <algorithm>
#include <utility>

namespace Hesperon::specifics::UILayer {

using namespace IQRL_TabulexConverter;

namespace {

// Destroys the menu, and those within it.
class MenuOwner
{
public:
    explicit MenuOwner(HMENU hMenu) : m_hMenu(hMenu) {}
    ~MenuOwner()
    {
        if (m_hMenu)
            DestroyMenu(m_hMenu);
    }
    MenuOwner(const MenuOwner&) = delete;
    MenuOwner& operator=(const MenuOwner&) = delete;

    HMENU Menu() const { return m_hMenu; }
    HMENU Detach() { return std::exchange(m_hMenu, nullptr); }

private:
    HMENU m_hMenu;
};

// The system takes a single ampersand for the mark of a key.
string_t MenuCaption(const OLECHAR* pszText)
{
    string_t sCaption;
    for (; *pszText; ++pszText)
        sCaption.append(*pszText == L'&' ? 2 : 1, *pszText);
    return sCaption;
}

bool AppendSubMenu(HMENU hMenu, const ViewMenuItem& item)
{
    MenuOwner subMenu(MakePopupMenu(item.items));
    if (!subMenu.Menu() ||
        !AppendMenuW(hMenu, MF_POPUP | MF_STRING, reinterpret_cast<UINT_PTR>(subMenu.Menu()),
                     MenuCaption(item.pszText).c_str()))
        return false;
    subMenu.Detach();
    return true;
}

bool AppendItem(HMENU hMenu, const ViewMenuItem& item)
{
    if (!item.pszText)
        return AppendMenuW(hMenu, MF_SEPARATOR, 0, nullptr);
    if (!item.items.empty())
        return AppendSubMenu(hMenu, item);
    return AppendMenuW(hMenu, MF_STRING | (item.bChecked ? MF_CHECKED : MF_UNCHECKED),
                       static_cast<UINT_PTR>(item.nId), MenuCaption(item.pszText).c_str());
}

// The system keeps the menu on the monitor, but not off the bars at its borders.
LONG PulledIntoWorkArea(POINT at)
{
    MONITORINFO info{};
    info.cbSize = sizeof info;
    if (!GetMonitorInfoW(MonitorFromPoint(at, MONITOR_DEFAULTTONEAREST), &info))
        return at.x;
    return std::clamp(at.x, info.rcWork.left, info.rcWork.right);
}

} // namespace

HMENU MakePopupMenu(ViewMenu menu)
{
    MenuOwner popup(CreatePopupMenu());
    const auto isAppended = [&](const auto& item) { return AppendItem(popup.Menu(), item); };
    return popup.Menu() && std::ranges::all_of(menu, isAppended) ? popup.Detach() : nullptr;
}

LONG TrackMenuBelow(ViewMenu menu, HWND hOwner, const RECT& place, MenuEdge edge)
{
    const MenuOwner popup(menu.empty() ? nullptr : MakePopupMenu(menu));
    if (!popup.Menu())
        return 0;
    const bool bRight = edge == MenuEdge::Right;
    const POINT corner = {bRight ? place.right : place.left, place.bottom};
    TPMPARAMS exclude{};
    exclude.cbSize = sizeof exclude;
    exclude.rcExclude = place;
    return TrackPopupMenuEx(popup.Menu(),
                            static_cast<UINT>(bRight ? TPM_RIGHTALIGN : TPM_LEFTALIGN) |
                                TPM_VERTICAL | TPM_RETURNCMD,
                            PulledIntoWorkArea(corner), corner.y, hOwner, &exclude);
}

} // namespace Hesperon::specifics::UILayer
