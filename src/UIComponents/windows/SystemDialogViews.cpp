#include "src/UIComponents/windows/SystemDialogViews.h"

#include <ole2.h>

#include "src/UIComponents/windows/DialogWindow.h"

namespace Hesperon::specifics::UILayer {

namespace {

// The shell's view of a folder drags and drops. On a thread of another kind this fails, and the
// view does without.
class Ole
{
public:
    Ole() : m_hr(OleInitialize(nullptr)) {}
    ~Ole()
    {
        if (SUCCEEDED(m_hr))
            OleUninitialize();
    }
    Ole(const Ole&) = delete;
    Ole& operator=(const Ole&) = delete;

private:
    const HRESULT m_hr;
};

// A cursor is its thread's. Plain values, since a destructor would keep the module loaded.
thread_local unsigned t_nWaits = 0;
thread_local HCURSOR t_hBefore = nullptr;

} // namespace

LONG SystemDialogViews::Run(IQRL_TabulexConverter::DialogId dialog, LONG_PTR hwndParent,
                            IDialogEvents& events)
{
    const Ole ole;
    return DialogWindow(events).Run(dialog, reinterpret_cast<HWND>(hwndParent));
}

LONG_PTR SystemDialogViews::ActiveWindow()
{
    return reinterpret_cast<LONG_PTR>(GetActiveWindow());
}

void SystemDialogViews::ShowWaiting(bool bWaiting)
{
    constexpr WORD kWaitCursor = 32514;
    if (bWaiting && t_nWaits++ == 0)
        t_hBefore = SetCursor(LoadCursorW(nullptr, MAKEINTRESOURCEW(kWaitCursor)));
    else if (!bWaiting && --t_nWaits == 0)
        SetCursor(t_hBefore);
}

} // namespace Hesperon::specifics::UILayer
