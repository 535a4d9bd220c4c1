// ContainedWindow: a window of any class, whose messages pass through a procedure that its maker
// has named.
//
// The class of the window is the system's or the host's, and so is the procedure. The messages of
// the window's making go to the class; from then on each one is noted while it is handled, and
// passed to the procedure.
//
// Lifetime: shared, since the procedure may end whoever holds it in the middle of a message. The
// window goes by Destroy, with its parent, or when whoever has its handle destroys it.
// Used by the window's thread.
#pragma once

#include <memory>

#include "src/UIComponents/controls/IContainedView.h"

namespace Hesperon::specifics::UILayer {

class ContainedWindow : public std::enable_shared_from_this<ContainedWindow>
{
public:
    // Makes the window as a child that fills another one. A failure is the system's.
    static HRESULT Make(HWND hParent, const ContainedWindowArguments& arguments,
                        std::shared_ptr<ContainedWindow>& result);
    ~ContainedWindow() { Destroy(); }
    ContainedWindow(const ContainedWindow&) = delete;
    ContainedWindow& operator=(const ContainedWindow&) = delete;

    HWND Window() const { return m_hWnd; } // null once it has gone
    void Destroy();

    // Calls the procedure with a message, of which the window's handle counts for nothing: it is
    // always this one.
    LRESULT Pass(const MSG& message) const;
    // The message that is being handled, the inmost one; an empty one outside of any.
    const MSG& Current() const;

private:
    explicit ContainedWindow(const ContainedWindowArguments& arguments);

    HRESULT MakeWindow(HWND hParent, const ContainedWindowArguments& arguments);
    HRESULT Subclass();
    LRESULT OnMessage(const MSG& message);
    static LRESULT CALLBACK Procedure(HWND hWnd, UINT nMessage, WPARAM wParam, LPARAM lParam);

    const WNDPROC m_pfnSuper;
    HWND m_hWnd = nullptr;
    const MSG* m_pCurrent = nullptr;
};

} // namespace Hesperon::specifics::UILayer
