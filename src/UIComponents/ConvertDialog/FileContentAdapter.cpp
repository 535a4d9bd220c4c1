#include "src/UIComponents/ConvertDialog/FileContentAdapter.h"

#include "module/Guarded.h"
#include "src/UIComponents/ConvertDialog/LanguageList.h"
#include "src/UIComponents/ConvertDialog/PaneGrid.h"
#include "src/UIComponents/views/GuardedEvent.h"

namespace Hesperon::specifics::UILayer {

using namespace IQRL_TabulexConverter;

namespace {

// In units of the view.
constexpr LONG kLanguageWidth = 250;
constexpr LONG kLabelToRight = 260; // from the label's right edge to the pane's
constexpr LONG kLabelMargin = 4;

// Measured once a process, so the label of a later dialog in another language may be cut.
LONG LanguageLabelWidth(IControlsView& view)
{
    static const LONG nWidth = view.TextWidth(ContentLanguageLabel) + kLabelMargin;
    return nWidth;
}

void SpanWidth(IControlsView& view, LONG nControl, LONG nLeft, LONG nWidth)
{
    ControlPlace place = view.Place(nControl);
    place.nLeft = nLeft;
    place.nRight = nLeft + nWidth;
    view.Move(nControl, place);
}

} // namespace

HRESULT CFileContentViewAdapter::CPane::Create(IDialogView& parent)
{
    return Guarded([&] {
        IPaneView* const pView = parent.MakePane(DialogContent, *this);
        if (!pView)
            return E_FAIL;
        m_pGrid = MakePaneGrid(*pView);
        FillLanguageList(*pView, ContentLanguage, CodePages());
        m_pView = pView; // events count from here
        OnResize();
        return S_OK;
    });
}

HRESULT CFileContentViewAdapter::CPane::SetFileLanguage(ULONG nCodePage)
{
    return m_pView ? SelectLanguage(*m_pView, ContentLanguage, nCodePage) : TYPE_E_ELEMENTNOTFOUND;
}

void CFileContentViewAdapter::CPane::EnableLanguage(bool bEnabled)
{
    if (m_pView)
        m_pView->SetEnabled(ContentLanguage, bEnabled);
}

void CFileContentViewAdapter::CPane::OnSelect(LONG nControl)
{
    if (nControl != ContentLanguage || !m_pView || !m_pSink)
        return;
    const LONG nRow = m_pView->Selected(ContentLanguage);
    if (nRow == kNoRow)
        return;
    const auto nCodePage = static_cast<ULONG>(m_pView->RowData(ContentLanguage, nRow));
    GuardedEvent([&] { // the view has no use for what is thrown
        m_pSink->OnFileLanguageChanged(nCodePage);
    });
}

// The language stands at the right of the first row, its label left of it; the grid has the rest.
void CFileContentViewAdapter::CPane::OnResize()
{
    if (!m_pView)
        return;
    const LONG nWidth = m_pView->ClientArea().nRight;
    SpanWidth(*m_pView, ContentLanguage, nWidth - kLanguageWidth, kLanguageWidth);
    const LONG nLabel = LanguageLabelWidth(*m_pView);
    SpanWidth(*m_pView, ContentLanguageLabel, nWidth - nLabel - kLabelToRight, nLabel);
    if (m_pGrid)
        PlaceBelow(*m_pView, ContentLanguageLabel, *m_pGrid.get());
}

} // namespace Hesperon::specifics::UILayer
