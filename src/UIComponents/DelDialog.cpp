// The rows of one table are the check boxes; a row's bit goes into its state when the dialog
// opens, and comes back with OK. Mask bits that no row has aren't kept anywhere.

#include "src/UIComponents/DelDialog.h"

namespace Hesperon::specifics::UILayer {

using namespace IQRL_TabulexConverter;

namespace {

constexpr CSelectDelimitersDialog::Delimiter kDelimiterRows[] = {
    {DelimiterSpace, 1}, {DelimiterTab, 5},   {DelimiterSemicolon, 3},
    {DelimiterComma, 2}, {DelimiterColon, 0}, {DelimiterBar, 4},
};

} // namespace

std::span<const CSelectDelimitersDialog::Delimiter> CSelectDelimitersDialog::Delimiters()
{
    return kDelimiterRows;
}

LONG CSelectDelimitersDialog::DoModal()
{
    static_assert(std::size(kDelimiterRows) == kDelimiters);
    return RunDialog(DialogDelimiters, *this);
}

void CSelectDelimitersDialog::OnOpen(IDialogView& view)
{
    m_pView = &view;
    for (std::size_t n = 0; n < kDelimiters; ++n) {
        m_states[n] = m_nDividers >> kDelimiterRows[n].nBit & 1;
        view.SetCheck(kDelimiterRows[n].control, m_states[n]);
    }
    view.Centre();
}

void CSelectDelimitersDialog::TakeStates()
{
    m_nDividers = 0;
    for (std::size_t n = 0; n < kDelimiters; ++n) {
        m_states[n] = m_pView->Check(kDelimiterRows[n].control);
        if (m_states[n] != 0)
            m_nDividers |= LONG{1} << kDelimiterRows[n].nBit;
    }
}

void CSelectDelimitersDialog::OnClick(LONG nControl)
{
    if (!m_pView)
        return;
    if (nControl == SmallDialogOk) {
        TakeStates();
        m_pView->End(kDialogOk);
    } else if (nControl == SmallDialogCancel) {
        m_pView->End(kDialogCancel);
    }
}

// A view that knows no default button reports Enter in this way.
void CSelectDelimitersDialog::OnDefaultCommand()
{
    OnClick(SmallDialogOk);
}

} // namespace Hesperon::specifics::UILayer
