// ControlWindow: the window of a hosted control, watched from outside.
//
// The window belongs to its view, and goes with the view or with the window that it lies in. While
// it is there its control is held, so that the window never calls a control that has gone: a
// container may destroy its own window and release the control in any order.
//
// A control that only its window holds is one that the container has let go of without closing
// it. CloseSoon ends the window then, on the window's thread.
//
// Threads: the window's, but CloseSoon and Window, which any thread may call.
#pragma once

#include <atomic>

#include "platform/component.h"

namespace Hesperon::specifics::UILayer {

// What a window's control hears.
struct IControlWindowEvents
{
    virtual void OnMousePress() = 0; // in the window, or in one inside it
    // The window has gone, for whatever reason. The control may go after this call.
    virtual void OnWindowGone() = 0;
    // A reference to the control, taken and given back.
    virtual void HoldControl() = 0;
    virtual void ReleaseControl() = 0;

protected:
    ~IControlWindowEvents() = default;
};

class ControlWindow
{
public:
    explicit ControlWindow(IControlWindowEvents& control) : m_control(control) {}
    ControlWindow(const ControlWindow&) = delete;
    ControlWindow& operator=(const ControlWindow&) = delete;

    // Watches a window until it goes; there is none yet. False, and the window has gone, if that
    // can't be done.
    bool Watch(HWND hWnd);
    HWND Window() const { return m_hWnd; } // null while there is none
    void Destroy();
    // Within the window that it lies in; what is outside of the clip isn't drawn.
    void Move(const RECT& rect, const RECT& clip);
    // Gives the keyboard to the window, unless something in it has it.
    void TakeFocus();

    // Ends a window that was Window() before.
    static void CloseSoon(HWND hWnd);

private:
    static LRESULT CALLBACK OnMessage(HWND hWnd, UINT nMessage, WPARAM wParam, LPARAM lParam,
                                      UINT_PTR nWatch, DWORD_PTR pThis);
    void OnDestroyed();

    IControlWindowEvents& m_control;
    std::atomic<HWND> m_hWnd = nullptr;
    bool m_bClipped = false; // the window has a region
};

} // namespace Hesperon::specifics::UILayer
