// CDataDecodeAdapter::CPane: the lowest strip of the import dialog, a label and below it the grid
// of decoded records. All that the grid does is its own and the control's.
//
// It lives as long as the dialog's views call it, that is longer than IDialogViews::Run. Used on
// the dialog's thread.
#pragma once

#include "src/UIComponents/controls/QRLDataGridViewCtrl.h"
#include "src/UIComponents/views/DialogViews.h"

namespace Hesperon::specifics::UILayer {

struct CDataDecodeAdapter
{
    class CPane;
};

class CDataDecodeAdapter::CPane final : private IQRL_TabulexConverter::IControlEvents
{
public:
    CPane() = default;
    CPane(const CPane&) = delete;
    CPane& operator=(const CPane&) = delete;

    // E_FAIL if the dialog makes no such pane. A pane whose grid can't be made goes without.
    HRESULT Create(IDialogView& parent);
    // Null without one; also after Close.
    com_ptr<CQRLDataGridViewCtrl> GetGrid() { return m_pGrid; }
    // Null before Create and after Close.
    IPaneView* View() { return m_pView; }
    void Close() { m_pView = nullptr; }

private:
    void OnText(LONG) override {}
    void OnSelect(LONG) override {}
    void OnClick(LONG) override {}
    void OnDate(LONG) override {}
    void OnResize() override;

    IPaneView* m_pView = nullptr;
    com_ptr<CQRLDataGridViewCtrl> m_pGrid; // kept after Close: its view may still call it
};

} // namespace Hesperon::specifics::UILayer
