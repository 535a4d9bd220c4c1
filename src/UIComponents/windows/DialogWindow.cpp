// Order of Tab: panes are made after the buttons, which the template has, so each pane is put in
// front of the first button; panes then follow each other as they were made.

#include "src/UIComponents/windows/DialogWindow.h"

#include <commctrl.h>

#include "src/UIComponents/views/GuardedEvent.h"
#include "src/UIComponents/windows/ActivationContext.h"
#include "src/UIComponents/windows/CentreWindow.h"
#include "src/UIComponents/windows/DialogResources.h"
#include "src/UIComponents/windows/FolderWindow.h"

namespace Hesperon::specifics::UILayer {

using namespace IQRL_TabulexConverter;

namespace {

constexpr LONG kEnter = 1; // the command that the dialog manager makes of it
constexpr UINT_PTR kSubclass = 1;

// A button that has the keyboard becomes the default one, and takes Enter as its click.
LRESULT CALLBACK OnOkMessage(HWND hWnd, UINT nMessage, WPARAM wParam, LPARAM lParam, UINT_PTR,
                             DWORD_PTR)
{
    const LRESULT nResult = DefSubclassProc(hWnd, nMessage, wParam, lParam);
    if (nMessage == WM_NCDESTROY)
        RemoveWindowSubclass(hWnd, &OnOkMessage, kSubclass);
    return nMessage == WM_GETDLGCODE ? nResult & ~DLGC_DEFPUSHBUTTON : nResult;
}

// The system tells top windows alone.
BOOL CALLBACK TellNewColours(HWND hWnd, LPARAM)
{
    SendMessageW(hWnd, WM_SYSCOLORCHANGE, 0, 0);
    return TRUE;
}

} // namespace

LONG DialogWindow::Run(DialogId dialog, HWND hParent)
{
    const ActivationContext version6;
    DialogBoxParamW(DialogModule(), MAKEINTRESOURCEW(dialog), hParent, &OnMessage,
                    reinterpret_cast<LPARAM>(this));
    return m_bOpened ? m_nResult : kDialogFailed;
}

void DialogWindow::End(LONG nResult)
{
    m_nResult = nResult;
    EndDialog(m_controls.Window(), nResult);
}

void DialogWindow::Centre()
{
    CentreWindow(m_controls.Window(), GetWindow(m_controls.Window(), GW_OWNER));
}

// ---- panes

IPaneView* DialogWindow::MakePane(DialogId pane, IControlEvents& events)
{
    auto pPane = std::make_unique<PaneWindow>();
    if (!pPane->Create(pane, m_controls.Window(), events))
        return nullptr;
    PutInTabOrder(pPane->Window());
    return m_panes.emplace_back(std::move(pPane)).get();
}

auto DialogWindow::MakeFolderView(IFolderEvents& events) -> IFolderView*
{
    FolderWindow* const pView = FolderWindow::Create(m_controls.Window(), events);
    if (pView)
        PutInTabOrder(pView->Window());
    return pView;
}

void DialogWindow::PutInTabOrder(HWND hPane)
{
    if (const HWND hOk = m_controls.At(ImportOk))
        SetWindowPos(hPane, GetWindow(hOk, GW_HWNDPREV), 0, 0, 0, 0,
                     SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

// ---- messages

INT_PTR CALLBACK DialogWindow::OnMessage(HWND hWnd, UINT nMessage, WPARAM wParam, LPARAM lParam)
{
    if (nMessage == WM_INITDIALOG) {
        SetWindowLongPtrW(hWnd, DWLP_USER, lParam);
        reinterpret_cast<DialogWindow*>(lParam)->Open(hWnd);
        return TRUE;
    }
    auto* const pDialog = reinterpret_cast<DialogWindow*>(GetWindowLongPtrW(hWnd, DWLP_USER));
    if (!pDialog || pDialog->m_bClosed)
        return FALSE;
    bool bHandled = false;
    GuardedEvent([&] { bHandled = pDialog->Handle(nMessage, wParam, lParam); });
    return bHandled;
}

void DialogWindow::Open(HWND hWnd)
{
    m_controls.SetWindow(hWnd);
    m_bOpened = true;
    m_frame.Attach(hWnd);
    TakeEnterFromOk();
    GuardedEvent([&] { m_events.OnOpen(*this); });
}

void DialogWindow::TakeEnterFromOk()
{
    if (const HWND hOk = m_controls.At(ImportOk))
        SetWindowSubclass(hOk, &OnOkMessage, kSubclass, 0);
}

bool DialogWindow::Handle(UINT nMessage, WPARAM wParam, LPARAM lParam)
{
    switch (nMessage) {
    case WM_SIZE:
        m_frame.Follow();
        m_events.OnResize();
        return true;
    case WM_GETMINMAXINFO:
        m_frame.Limit(*reinterpret_cast<MINMAXINFO*>(lParam));
        return true;
    case WM_COMMAND:
        return OnCommand(wParam, lParam);
    case WM_NOTIFY:
        return m_controls.OnMessage(nMessage, wParam, lParam, m_events);
    case WM_KEYDOWN:
        return true;
    case WM_SYSCOLORCHANGE:
        EnumChildWindows(m_controls.Window(), &TellNewColours, 0);
        return true;
    case WM_DESTROY:
        m_events.OnDestroy();
        m_bClosed = true;
        return true;
    default:
        return false;
    }
}

bool DialogWindow::OnCommand(WPARAM wParam, LPARAM lParam)
{
    if (LOWORD(wParam) == kEnter && !m_controls.Exists(kEnter)) {
        m_events.OnDefaultCommand();
        return true;
    }
    return m_controls.OnMessage(WM_COMMAND, wParam, lParam, m_events);
}

} // namespace Hesperon::specifics::UILayer
