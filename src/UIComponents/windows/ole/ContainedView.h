// ContainedView: the window of a contained control, which the contained window fills.
//
// It has no looks of its own: where there is no contained window yet, it shows the colour of
// dialogs. It gives the keyboard to the contained window, and takes its size along.
//
// Lifetime: it owns itself. It tells the control when its window goes, and then goes too.
// Used by the window's thread.
#pragma once

#include <memory>

#include "src/UIComponents/controls/QRLCommonCtrlContained.h"
#include "src/UIComponents/windows/ole/ContainedWindow.h"
#include "src/UIComponents/windows/ole/ControlSite.h"

namespace Hesperon::specifics::UILayer {

class ContainedView final : public IContainedView
{
public:
    // Null if the window can't be made. The control isn't told yet: attach the view to it.
    static ContainedView* Create(const InPlace& place, CQRLCommonCtrlContained& control);
    HWND Window() const { return m_hWnd; }

    // ---- IContainedView

    HRESULT Make(const ContainedWindowArguments& arguments) override;
    void Destroy() override;
    ULONGLONG Contained() override;
    LONG_PTR PassCurrent() override;
    LONG_PTR Pass(ULONGLONG pMessage) override;

private:
    friend std::default_delete<ContainedView>;

    explicit ContainedView(CQRLCommonCtrlContained& control) : m_control(control) {}
    ~ContainedView() = default;

    static LRESULT CALLBACK Procedure(HWND hWnd, UINT nMessage, WPARAM wParam, LPARAM lParam);
    LRESULT OnMessage(UINT nMessage, WPARAM wParam, LPARAM lParam);
    void Fill(LONG nWidth, LONG nHeight);

    CQRLCommonCtrlContained& m_control;
    HWND m_hWnd = nullptr;
    std::shared_ptr<ContainedWindow> m_pContained; // null for none
};

} // namespace Hesperon::specifics::UILayer
