// CSelectDelimitersDialog: the small dialog in which the user ticks the field delimiters.
//
//   CSelectDelimitersDialog dialog;
//   dialog.m_nDividers = nMask;
//   if (dialog.DoModal() == kDialogOk)
//       nMask = dialog.m_nDividers;
//
// Used by one thread.
#pragma once

#include <array>
#include <span>

#include "src/UIComponents/views/DialogViews.h"

namespace Hesperon::specifics::UILayer {

class CSelectDelimitersDialog final : private IDialogEvents
{
public:
    // A check box, and its bit in the mask.
    struct Delimiter
    {
        IQRL_TabulexConverter::DelimiterControl control;
        int nBit;
    };
    static std::span<const Delimiter> Delimiters();

    // Over the active window: kDialogOk, kDialogCancel, or kDialogFailed without views.
    LONG DoModal();

    // As IRecordParser::FieldDividers. kDialogOk replaces it by what is ticked, which may be
    // nothing; bits without a check box are lost then. Any other end leaves it as it was.
    LONG m_nDividers = 0;

private:
    static constexpr std::size_t kDelimiters = 6;

    // ---- IDialogEvents
    void OnOpen(IDialogView& view) override;
    void OnDefaultCommand() override;
    void OnDestroy() override { m_pView = nullptr; }
    void OnText(LONG) override {}
    void OnSelect(LONG) override {}
    void OnClick(LONG nControl) override;
    void OnDate(LONG) override {}
    void OnResize() override {}

    void TakeStates();

    std::array<LONG, kDelimiters> m_states{}; // of the check boxes, 0 is off
    IDialogView* m_pView = nullptr;           // while it runs
};

} // namespace Hesperon::specifics::UILayer
