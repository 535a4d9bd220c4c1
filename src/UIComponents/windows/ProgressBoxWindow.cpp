// The presenter writes texts and closes the error section before the box opens, so the dialog
// is made at once and hidden, without a parent; Show gives it one.
//
// A press of a button may release this object, and so may whatever runs in a call that activates
// a window or disables the parent. After such a call no member is used.

#include "src/UIComponents/windows/ProgressBoxWindow.h"

#include <commctrl.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

#include "src/UIComponents/views/GuardedEvent.h"
#include "src/UIComponents/windows/CentreWindow.h"
#include "src/UIComponents/windows/Controls.h"
#include "src/UIComponents/windows/DialogKeys.h"
#include "src/UIComponents/windows/DialogResources.h"
#include "src/UIComponents/windows/DisabledParent.h"

namespace Hesperon::specifics::UILayer {

using namespace IQRL_TabulexConverter;

namespace {

constexpr UINT kFocusSkipMessage = WM_APP; // to the dialog, posted

class ProgressBoxWindow final : public ControlsOf<IProgressView>
{
public:
    // Null if the dialog can't be made.
    static ProgressBoxWindow* Create();
    static bool IsBox(HWND hWnd);

    void Show(LONG_PTR hwndParent, IProgressButtons* pButtons) override;
    void Hide() override;
    void SetPercent(ULONG nPercent) override;
    void AskUser() override;
    void Release() override;
    void Move(LONG nControl, const ControlPlace& place) override;

private:
    ~ProgressBoxWindow() = default;

    static INT_PTR CALLBACK Procedure(HWND hDialog, UINT nMessage, WPARAM wParam, LPARAM lParam);
    bool OnMessage(UINT nMessage, WPARAM wParam);
    void OnCommand(LONG nControl);
    void OnDestroy();
    void FocusSkip();
    // Of a window that stands; the procedure doesn't find this object any more.
    HWND TakeWindow();

    IProgressButtons* m_pButtons = nullptr; // null before Show and after Hide
    std::optional<DialogKeys> m_keys;
    std::unique_ptr<DisabledParent> m_pParent;
    bool m_bAsked = false;       // since the last press
    bool m_bSkipFocused = false; // the focus was given for this question
};

// ---- places

// Moves the box up by as much as stands below the screen.
void LiftOntoScreen(HWND hBox)
{
    RECT box{};
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    GetWindowRect(hBox, &box);
    GetMonitorInfoW(MonitorFromWindow(hBox, MONITOR_DEFAULTTONEAREST), &monitor);
    const LONG nBelow = box.bottom - monitor.rcWork.bottom;
    if (nBelow > 0)
        SetWindowPos(hBox, nullptr, box.left, std::max(box.top - nBelow, monitor.rcWork.top), 0, 0,
                     SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

// ---- other windows

// The desktop is nobody's to disable.
HWND TopWindow(LONG_PTR hwndParent)
{
    HWND hTop =
        hwndParent ? GetAncestor(reinterpret_cast<HWND>(hwndParent), GA_ROOT) : GetActiveWindow();
    while (hTop && ProgressBoxWindow::IsBox(hTop))
        hTop = GetWindow(hTop, GW_OWNER);
    return hTop == GetDesktopWindow() ? nullptr : hTop;
}

bool IsOwnProgramInFront()
{
    DWORD nProcess = 0;
    GetWindowThreadProcessId(GetForegroundWindow(), &nProcess);
    return nProcess == GetCurrentProcessId();
}

// In the task bar the box stands under the name of its parent.
void FlashUntilInFront(HWND hBox)
{
    const HWND hOwner = GetWindow(hBox, GW_OWNER);
    FLASHWINFO flash{sizeof(FLASHWINFO), hOwner ? hOwner : hBox, FLASHW_ALL | FLASHW_TIMERNOFG, 0,
                     0};
    FlashWindowEx(&flash);
}

// ---- creation

ProgressBoxWindow* ProgressBoxWindow::Create()
{
    auto* pBox = new ProgressBoxWindow;
    const HWND hBox = MakeDialogWindow(DialogProgress, nullptr, &Procedure, pBox);
    if (!hBox) {
        delete pBox;
        return nullptr;
    }
    SendMessageW(pBox->m_controls.At(ProgressBar), PBM_SETRANGE32, 0, 100);
    return pBox;
}

bool ProgressBoxWindow::IsBox(HWND hWnd)
{
    return GetWindowLongPtrW(hWnd, DWLP_DLGPROC) == reinterpret_cast<LONG_PTR>(&Procedure);
}

// ---- as the presenter wants it

void ProgressBoxWindow::Show(LONG_PTR hwndParent, IProgressButtons* pButtons)
{
    m_pButtons = pButtons;
    const HWND hBox = m_controls.Window();
    if (!hBox)
        return;
    const HWND hParent = TopWindow(hwndParent);
    SetWindowLongPtrW(hBox, GWLP_HWNDPARENT, reinterpret_cast<LONG_PTR>(hParent));
    m_keys.emplace(hBox);
    m_pParent = std::make_unique<DisabledParent>(hParent);
    m_pParent->Disable();
    CentreWindow(hBox, hParent);
    ShowWindow(hBox, SW_SHOW);
}

void ProgressBoxWindow::Hide()
{
    m_pButtons = nullptr;
    m_keys.reset();
    const auto pParent = std::move(m_pParent);
    const HWND hBox = TakeWindow();
    if (pParent)
        pParent->Enable();
    if (hBox)
        DestroyWindow(hBox);
}

void ProgressBoxWindow::Release()
{
    Hide();
    delete this;
}

HWND ProgressBoxWindow::TakeWindow()
{
    const HWND hBox = m_controls.Window();
    if (hBox)
        SetWindowLongPtrW(hBox, DWLP_USER, 0);
    m_controls.SetWindow(nullptr);
    return hBox;
}

void ProgressBoxWindow::SetPercent(ULONG nPercent)
{
    SendMessageW(m_controls.At(ProgressBar), PBM_SETPOS, nPercent, 0);
}

// It grows while it is on show, and its buttons are at its lower end.
void ProgressBoxWindow::Move(LONG nControl, const ControlPlace& place)
{
    ControlsOf::Move(nControl, place);
    if (nControl == kWholeView)
        LiftOntoScreen(m_controls.Window());
}

// ---- questions

void ProgressBoxWindow::AskUser()
{
    const HWND hBox = m_controls.Window();
    if (!hBox) {
        if (m_pButtons)
            m_pButtons->Press(ProgressCancel);
        return;
    }
    m_bAsked = true;
    m_bSkipFocused = false;
    PostMessageW(hBox, kFocusSkipMessage, 0, 0);
    if (IsOwnProgramInFront())
        SetForegroundWindow(hBox);
    else
        FlashUntilInFront(hBox);
}

// Once a question, and only while the box is the active one: the focus would activate it.
void ProgressBoxWindow::FocusSkip()
{
    const HWND hBox = m_controls.Window();
    if (!m_bAsked || GetActiveWindow() != hBox || std::exchange(m_bSkipFocused, true))
        return;
    SendMessageW(hBox, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(m_controls.At(ProgressSkip)), TRUE);
}

// ---- messages

INT_PTR CALLBACK ProgressBoxWindow::Procedure(HWND hDialog, UINT nMessage, WPARAM wParam,
                                              LPARAM lParam)
{
    if (nMessage == WM_INITDIALOG) { // FALSE: the focus is given when the box is shown
        SetWindowLongPtrW(hDialog, DWLP_USER, lParam);
        reinterpret_cast<ProgressBoxWindow*>(lParam)->m_controls.SetWindow(hDialog);
        return FALSE;
    }
    auto* pBox = reinterpret_cast<ProgressBoxWindow*>(GetWindowLongPtrW(hDialog, DWLP_USER));
    return pBox && pBox->OnMessage(nMessage, wParam);
}

bool ProgressBoxWindow::OnMessage(UINT nMessage, WPARAM wParam)
{
    switch (nMessage) {
    case WM_COMMAND: // the default answer to Esc and to the close box is ProgressCancel as well
        if (HIWORD(wParam) == BN_CLICKED)
            GuardedEvent([&] { OnCommand(LOWORD(wParam)); });
        return true;
    case WM_ACTIVATE: // the dialog gives the focus after this, so Skip has to wait
        if (LOWORD(wParam) != WA_INACTIVE)
            PostMessageW(m_controls.Window(), kFocusSkipMessage, 0, 0);
        return false;
    case kFocusSkipMessage:
        FocusSkip();
        return true;
    case WM_DESTROY:
        GuardedEvent([&] { OnDestroy(); });
        return true;
    default:
        return false;
    }
}

// Esc comes also for a button that is disabled.
void ProgressBoxWindow::OnCommand(LONG nControl)
{
    const bool bButton =
        nControl == ProgressSkip || nControl == ProgressSkipAll || nControl == ProgressCancel;
    if (!bButton || !m_pButtons || !m_controls.IsEnabled(nControl))
        return;
    m_bAsked = false;
    m_pButtons->Press(static_cast<ProgressControl>(nControl));
}

// By others: Hide has taken the window before it destroys it. The parent comes last.
void ProgressBoxWindow::OnDestroy()
{
    m_keys.reset();
    const auto pParent = std::move(m_pParent);
    TakeWindow();
    if (std::exchange(m_bAsked, false) && m_pButtons)
        m_pButtons->Press(ProgressCancel);
}

} // namespace

IProgressView* MakeProgressBoxWindow(void*)
{
    return ProgressBoxWindow::Create();
}

} // namespace Hesperon::specifics::UILayer
