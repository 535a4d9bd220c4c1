// Keys are caught in the windows of the view: a modal dialog of the system never asks the view to
// translate them. Which window has the keyboard differs between versions of the shell, so all that
// the view has made are watched; an edit for a new name comes later and isn't.

#include "src/UIComponents/windows/shell/ShellView.h"

#include <cstddef>
#include <memory>

#include <commctrl.h>

namespace Hesperon::specifics::UILayer {

using namespace IQRL_TabulexConverter;

namespace {

constexpr UINT kViewFlags = UINT{FWF_SINGLESEL} | UINT{FWF_SHOWSELALWAYS};
static_assert(kViewFlags == 0x2040);

// 0 for a key that stays the view's own.
LONG CommandOfKey(WPARAM wKey)
{
    if (wKey == VK_RETURN)
        return FolderOpenSelection;
    return wKey == VK_BACK ? LONG{FolderUp} : 0;
}

// Dialogs keep Enter for themselves unless a control wants that very message.
bool WantsMessage(LPARAM lParam)
{
    const auto* pMessage = reinterpret_cast<const MSG*>(lParam);
    return pMessage && pMessage->message == WM_KEYDOWN && CommandOfKey(pMessage->wParam);
}

// What a key types is the same number as the key, for these two.
LRESULT CALLBACK OnViewMessage(HWND hWnd, UINT nMessage, WPARAM wParam, LPARAM lParam, UINT_PTR nId,
                               DWORD_PTR nCommands)
{
    switch (nMessage) {
    case WM_GETDLGCODE:
        return DefSubclassProc(hWnd, nMessage, wParam, lParam) |
               (WantsMessage(lParam) ? DLGC_WANTMESSAGE : 0);
    case WM_KEYDOWN:
        if (const LONG nCommand = CommandOfKey(wParam)) {
            // Later: the command may end this window.
            PostMessageW(reinterpret_cast<HWND>(nCommands), WM_COMMAND,
                         static_cast<WPARAM>(nCommand), 0);
            return 0;
        }
        break;
    case WM_CHAR:
        if (CommandOfKey(wParam))
            return 0;
        break;
    case WM_NCDESTROY:
        RemoveWindowSubclass(hWnd, &OnViewMessage, nId);
        break;
    }
    return DefSubclassProc(hWnd, nMessage, wParam, lParam);
}

BOOL CALLBACK WatchKeys(HWND hWnd, LPARAM nCommands)
{
    SetWindowSubclass(hWnd, &OnViewMessage, 0, static_cast<DWORD_PTR>(nCommands));
    return TRUE;
}

RECT ClientAreaOf(HWND hWnd)
{
    RECT rect{};
    GetClientRect(hWnd, &rect);
    return rect;
}

// The first of the things that a data object of the shell names, as its folder's child.
ItemIds FirstItem(const ItemIds& folder, IDataObject& data)
{
    static const UINT nFormat = RegisterClipboardFormatW(L"Shell IDList Array");
    FORMATETC format{static_cast<CLIPFORMAT>(nFormat), nullptr, DVASPECT_CONTENT, -1,
                     TYMED_HGLOBAL};
    STGMEDIUM medium{};
    if (data.GetData(&format, &medium) != S_OK)
        return {};
    ItemIds item;
    if (const auto* pArray = static_cast<const CIDA*>(GlobalLock(medium.hGlobal))) {
        if (pArray->cidl > 0)
            item = folder.Child(reinterpret_cast<PCUITEMID_CHILD>(
                reinterpret_cast<const std::byte*>(pArray) + pArray->aoffset[1]));
        GlobalUnlock(medium.hGlobal);
    }
    ReleaseStgMedium(&medium);
    return item;
}

} // namespace

// ---- coming and going

std::unique_ptr<ShellView> ShellView::Show(const Host& host, ItemIds folder, FolderMode mode)
{
    if (!folder)
        return nullptr;
    std::unique_ptr<ShellView> pView(new ShellView(host, std::move(folder)));
    return pView->Open(mode) ? std::move(pView) : nullptr;
}

bool ShellView::Open(FolderMode mode)
{
    m_pFolder = OpenShellFolder(m_folder);
    if (!m_pFolder || !IsReadable() || FAILED(CreateObject(m_pBrowser)) ||
        FAILED(m_pFolder->CreateViewObject(m_host.hCommands, __uuidof(IShellView),
                                           m_pView.put_void())))
        return false;
    m_pBrowser->Connect(m_host.hPlace, *this);
    return MakeWindow(mode);
}

// The shell shows a folder that it can't read as an empty one.
bool ShellView::IsReadable() const
{
    com_ptr<IEnumIDList> pItems;
    return SUCCEEDED(
        m_pFolder->EnumObjects(nullptr, SHCONTF_FOLDERS | SHCONTF_NONFOLDERS, pItems.put()));
}

bool ShellView::MakeWindow(FolderMode mode)
{
    const FOLDERSETTINGS settings{static_cast<UINT>(mode), kViewFlags};
    RECT area = ClientAreaOf(m_host.hPlace);
    if (FAILED(m_pView->CreateViewWindow(nullptr, &settings, m_pBrowser.get(), &area, &m_hWnd)) ||
        !m_hWnd)
        return false;
    m_pView->UIActivate(SVUIA_ACTIVATE_NOFOCUS);
    WatchKeys(m_hWnd, reinterpret_cast<LPARAM>(m_host.hCommands));
    EnumChildWindows(m_hWnd, &WatchKeys, reinterpret_cast<LPARAM>(m_host.hCommands));
    return true;
}

ShellView::~ShellView()
{
    if (m_pBrowser)
        m_pBrowser->Disconnect();
    if (!m_hWnd)
        return;
    m_pView->UIActivate(SVUIA_DEACTIVATE);
    m_pView->DestroyViewWindow();
}

// ---- the window

void ShellView::Fill()
{
    const RECT area = ClientAreaOf(m_host.hPlace);
    MoveWindow(m_hWnd, 0, 0, area.right, area.bottom, TRUE);
}

void ShellView::TakeFocus()
{
    SetFocus(m_hWnd); // which hands it on to its list
}

// ---- selection

// The shell has no object for "nothing selected".
string_t ShellView::Selected() const
{
    com_ptr<IDataObject> pData;
    if (FAILED(m_pView->GetItemObject(SVGIO_SELECTION, __uuidof(IDataObject), pData.put_void())) ||
        !pData)
        return {};
    const ItemIds item = FirstItem(m_folder, *pData.get());
    return item ? PathOfItem(*m_pFolder.get(), item.Last()) : string_t();
}

void ShellView::Select(string_view_t sPath)
{
    const ItemIds item = sPath.empty() ? ItemIds() : ItemOfPath(sPath);
    SelectNothing();
    if (item && ILIsParent(m_folder.get(), item.get(), TRUE))
        m_pView->SelectItem(item.Last(),
                            SVSI_SELECT | SVSI_FOCUSED | SVSI_ENSUREVISIBLE | SVSI_DESELECTOTHERS);
}

// Not every version of the view does it without a thing to select instead; those that don't are
// over the system's list.
void ShellView::SelectNothing()
{
    m_pView->SelectItem(nullptr, SVSI_DESELECTOTHERS);
    const HWND hList = FindWindowExW(m_hWnd, nullptr, WC_LISTVIEWW, nullptr);
    LVITEMW item{};
    item.stateMask = LVIS_SELECTED;
    if (hList)
        SendMessageW(hList, LVM_SETITEMSTATE, static_cast<WPARAM>(-1),
                     reinterpret_cast<LPARAM>(&item));
}

// ---- what the shell asks and tells

bool ShellView::Includes(PCUITEMID_CHILD pChild)
{
    return m_host.events.Includes(m_folder.Child(pChild), PathOfItem(*m_pFolder.get(), pChild));
}

// While its window is made, the view has nothing to tell.
void ShellView::OnSelectionChange()
{
    if (m_hWnd)
        m_host.events.OnSelectionChange();
}

void ShellView::OnDefaultAction()
{
    PostMessageW(m_host.hCommands, WM_COMMAND, FolderOpenSelection, 0);
}

} // namespace Hesperon::specifics::UILayer
