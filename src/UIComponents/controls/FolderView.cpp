#include "src/UIComponents/controls/FolderView.h"

#include <array>
#include <utility>

#include "diagnostics/FaultmereClient.h"
#include "module/Guarded.h"
#include "module/OutValue.h"
#include "platform/Folders.h"
#include "src/UIComponents/controls/FolderFilter.h"
#include "src/UIComponents/views/DialogTexts.h"
#include "src/UIComponents/views/GuardedEvent.h"

namespace Hesperon::specifics {

using namespace IQRL_TabulexConverter;
using FaultmereUtil::Assert;

namespace {

FolderEntry EntryOf(const FolderItem& item)
{
    return {item.sPath.c_str(), item.sName.c_str(), item.bFolder, item.nSize, item.dtModified};
}

// What a view reports meanwhile isn't the user's doing.
class Quiet
{
public:
    explicit Quiet(bool& bQuiet) : m_bQuiet(bQuiet), m_bBefore(std::exchange(bQuiet, true)) {}
    ~Quiet() { m_bQuiet = m_bBefore; }
    Quiet(const Quiet&) = delete;
    Quiet& operator=(const Quiet&) = delete;

private:
    bool& m_bQuiet;
    const bool m_bBefore;
};

} // namespace

// ---- the view

void CFolderViewCtrl::Attach(IFolderView* pView)
{
    m_pView = pView;
    if (!pView)
        return;
    Guarded([&] {
        if (!m_pShellFolder)
            return OpenFirstFolder();
        if (!CreateViewImpl())
            return E_FAIL;
        pView->SelectEntry(m_sSelection.c_str());
        return S_OK;
    });
    pView->Freeze(m_bDisabled);
}

void CFolderViewCtrl::Move(const ControlPlace& place)
{
    if (m_pView)
        m_pView->Move(kWholeView, place);
}

// False if the view can't show the folder.
bool CFolderViewCtrl::CreateViewImpl()
{
    if (!m_pView)
        return true;
    if (!m_pView->ShowFolder(m_pShellFolder->Path().c_str(), m_mode))
        return false;
    FillLookInList();
    return true;
}

void CFolderViewCtrl::FillLookInList()
{
    m_pView->ClearRows(FolderLookIn);
    LONG nRow = kNoRow;
    LONG_PTR nFolder = 0;
    for (const string_t& sFolder : m_pShellFolder->Chain())
        nRow = m_pView->AddRow(FolderLookIn, FolderName(sFolder).c_str(), nFolder++);
    m_pView->Select(FolderLookIn, nRow);
}

// The list grows both ways, the look-in list in width, and the toolbar keeps to the right.
void CFolderViewCtrl::OnResize()
{
    if (!m_pView)
        return;
    const ControlPlace area = m_pView->ClientArea();
    ControlPlace toolbar = m_pView->Place(FolderToolbar);
    ControlPlace lookIn = m_pView->Place(FolderLookIn);
    ControlPlace list = m_pView->Place(FolderList);
    const LONG nDelta = area.nRight - toolbar.nRight;
    toolbar.nLeft += nDelta;
    toolbar.nRight += nDelta;
    lookIn.nRight += nDelta;
    list.nRight = area.nRight;
    list.nBottom = area.nBottom;
    m_pView->Move(FolderToolbar, toolbar);
    m_pView->Move(FolderLookIn, lookIn);
    m_pView->Move(FolderList, list);
}

// ---- folders

// Where the system's own choice can't be read, or has gone, the user begins at the root: without
// a folder there would be no way to any other.
HRESULT CFolderViewCtrl::OpenFirstFolder()
{
    const HRESULT hr = InternalOpenFolder(StartFolder());
    return SUCCEEDED(hr) ? hr : InternalOpenFolder(OLESTR("/"));
}

// While the view shows the new folder it asks for the new entries already.
HRESULT CFolderViewCtrl::InternalOpenFolder(string_view_t sFolder)
{
    std::unique_ptr<CFolderList> pShellFolder;
    if (const HRESULT hr = CFolderList::Read(sFolder, pShellFolder); FAILED(hr))
        return hr;
    if (!Assert(static_cast<bool>(pShellFolder), "pShellFolder"))
        return E_UNEXPECTED;
    std::swap(m_pShellFolder, pShellFolder);
    string_t sSelection = std::exchange(m_sSelection, {});
    if (!CreateViewImpl()) {
        std::swap(m_pShellFolder, pShellFolder);
        m_sSelection = std::move(sSelection);
        return E_FAIL;
    }
    return S_OK;
}

HRESULT CFolderViewCtrl::InternalShellViewUp()
{
    if (!Assert(static_cast<bool>(m_pShellFolder), "m_pShellFolder"))
        return E_UNEXPECTED;
    const string_t sParent(m_pShellFolder->Parent());
    return sParent.empty() ? S_FALSE : InternalOpenFolder(sParent);
}

// The folder is read again, so what has changed in it shows too. The selection stays.
HRESULT CFolderViewCtrl::InternalSetViewStyle(FolderMode mode)
{
    if (!Assert(static_cast<bool>(m_pShellFolder), "m_pShellFolder"))
        return E_UNEXPECTED;
    const Quiet quiet(m_bQuiet);
    const FolderMode before = std::exchange(m_mode, mode);
    const string_t sFolder = m_pShellFolder->Path();
    string_t sSelection = m_sSelection;
    if (const HRESULT hr = InternalOpenFolder(sFolder); FAILED(hr)) {
        m_mode = before;
        return hr;
    }
    m_sSelection = std::move(sSelection);
    if (m_pView)
        m_pView->SelectEntry(m_sSelection.c_str());
    return S_OK;
}

void CFolderViewCtrl::OpenLookInRow()
{
    const LONG nRow = m_pView->Selected(FolderLookIn);
    const auto nFolder = static_cast<std::size_t>(m_pView->RowData(FolderLookIn, nRow));
    if (nRow == kNoRow || !m_pShellFolder || nFolder >= m_pShellFolder->Chain().size())
        return;
    const string_t sFolder = m_pShellFolder->Chain()[nFolder];
    if (FAILED(InternalOpenFolder(sFolder))) // the list must not name another folder than is shown
        m_pView->Select(FolderLookIn, m_pView->RowCount(FolderLookIn) - 1);
}

void CFolderViewCtrl::OpenSelection()
{
    if (m_bDisabled)
        return;
    GuardedEvent([&] {
        if (m_pView && m_pView->Focus() == FolderLookIn)
            OpenLookInRow();
        else if (const string_t sSelection = m_sSelection; IsFolder(sSelection))
            InternalOpenFolder(sSelection);
    });
}

// ---- IFolderEvents

bool CFolderViewCtrl::Shows(const OLECHAR* pszPath)
{
    return ShowsInFolder(pszPath ? pszPath : OLESTR(""),
                         m_pShellFolder ? m_pShellFolder->Chain() : std::span<const string_t>());
}

LONG CFolderViewCtrl::EntryCount()
{
    return m_pShellFolder ? static_cast<LONG>(m_pShellFolder->Count()) : 0;
}

FolderEntry CFolderViewCtrl::Entry(LONG nEntry)
{
    FolderEntry entry;
    GuardedEvent([&] {
        if (nEntry >= 0 && nEntry < EntryCount())
            entry = EntryOf(m_pShellFolder->Item(static_cast<std::size_t>(nEntry)));
    });
    return entry;
}

void CFolderViewCtrl::OnSelection(const OLECHAR* pszPath)
{
    if (m_bDisabled || m_bQuiet)
        return;
    const HRESULT hr = Guarded([&] {
        m_sSelection = pszPath ? pszPath : OLESTR("");
        return S_OK;
    });
    if (SUCCEEDED(hr))
        CallOnChange();
}

void CFolderViewCtrl::OnClick(LONG nControl)
{
    if (nControl != FolderLookIn || m_bDisabled || !m_pView)
        return;
    GuardedEvent([&] { OpenLookInRow(); });
}

void CFolderViewCtrl::OnCommand(FolderCommand command)
{
    if (m_bDisabled)
        return;
    switch (command) {
    case FolderUp:
        Guarded([&] { return InternalShellViewUp(); });
        break;
    case FolderModes:
        ChooseMode();
        break;
    case FolderIcons:
    case FolderSmallIcons:
    case FolderNames:
    case FolderDetails:
        Guarded([&] {
            return InternalSetViewStyle(static_cast<FolderMode>(command - FolderIcons + ModeIcons));
        });
        break;
    case FolderOpenSelection:
        OpenSelection();
        break;
    }
}

void CFolderViewCtrl::ChooseMode()
{
    if (!m_pView)
        return;
    const com_ptr<CFolderViewCtrl> pSelf(this); // the view may go while the menu is open
    std::array<ViewMenuItem, 4> items;
    LONG nId = FolderIcons;
    for (ViewMenuItem& item : items) {
        item = {.pszText = UILayer::DialogText(DialogFolder, nId), .nId = nId};
        ++nId;
    }
    const LONG nChosen = m_pView->TrackMenu(items);
    if (nChosen >= FolderIcons && nChosen <= FolderDetails)
        OnCommand(static_cast<FolderCommand>(nChosen));
}

// The callee may put another receiver, or end the dialog and this object with it.
void CFolderViewCtrl::CallOnChange()
{
    const com_ptr<IDispatch> pOnChange = m_pOnChange;
    if (!pOnChange)
        return;
    DISPPARAMS none{};
    pOnChange->Invoke(DISPID_VALUE, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &none, nullptr,
                      nullptr, nullptr);
}

// ---- IFolderViewCtrl

// A file that has gone meanwhile keeps its name: whoever opens it says so to the user.
HRESULT CFolderViewCtrl::get_FileName(BSTR* pVal)
{
    return Guarded([&] {
        string_t sFile;
        if (pVal && !m_sSelection.empty()) {
            const HRESULT hr = ResolveFile(m_sSelection, sFile);
            if (FAILED(hr) && hr != E_INVALIDARG)
                sFile = m_sSelection;
        }
        return GiveOut(pVal, sFile);
    });
}

HRESULT CFolderViewCtrl::put_FileName(BSTR newVal)
{
    if (m_bDisabled)
        return S_FALSE;
    const Quiet quiet(m_bQuiet);
    return Guarded([&] {
        string_t sFile;
        if (const HRESULT hr = ResolveFile(TextOf(newVal), sFile); FAILED(hr))
            return hr;
        if (const HRESULT hr = InternalOpenFolder(FolderOfFile(sFile)); FAILED(hr))
            return hr;
        m_sSelection = std::move(sFile);
        if (m_pView)
            m_pView->SelectEntry(m_sSelection.c_str());
        return S_OK;
    });
}

HRESULT CFolderViewCtrl::put_onchange(VARIANT newVal)
{
    if (newVal.vt == VT_EMPTY)
        m_pOnChange.reset();
    else if (newVal.vt == VT_DISPATCH)
        m_pOnChange = com_ptr<IDispatch>(newVal.pdispVal);
    else if (newVal.vt == (VT_DISPATCH | VT_BYREF) && newVal.byref)
        m_pOnChange = com_ptr<IDispatch>(*static_cast<IDispatch**>(newVal.byref));
    else
        return DISP_E_TYPEMISMATCH;
    return S_OK;
}

HRESULT CFolderViewCtrl::get_Folder(BSTR* pVal)
{
    return Guarded(
        [&] { return GiveOut(pVal, m_pShellFolder ? m_pShellFolder->Path() : string_t()); });
}

HRESULT CFolderViewCtrl::put_Folder(BSTR newVal)
{
    const string_view_t sFolder = TextOf(newVal);
    if (m_bDisabled || sFolder.empty())
        return m_bDisabled ? S_FALSE : S_OK;
    const Quiet quiet(m_bQuiet);
    return Guarded([&] { return InternalOpenFolder(sFolder); });
}

HRESULT CFolderViewCtrl::get_Title(BSTR* pVal)
{
    return Guarded([&] { return GiveOut(pVal, m_sTitle); });
}

HRESULT CFolderViewCtrl::put_Title(BSTR newVal)
{
    return Guarded([&] {
        m_sTitle = TextOf(newVal);
        return S_OK;
    });
}

HRESULT CFolderViewCtrl::get_disabled(BOOL* pVal)
{
    return GiveOut(pVal, m_bDisabled ? 1 : 0);
}

HRESULT CFolderViewCtrl::put_disabled(BOOL newVal)
{
    m_bDisabled = newVal != 0;
    if (m_pView)
        m_pView->Freeze(m_bDisabled);
    return S_OK;
}

} // namespace Hesperon::specifics
