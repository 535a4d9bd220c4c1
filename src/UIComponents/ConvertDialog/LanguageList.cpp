#include "src/UIComponents/ConvertDialog/LanguageList.h"

#include "diagnostics/FaultmereClient.h"
#include "src/values/CaseFold.h"

namespace Hesperon::specifics::UILayer {

using namespace IQRL_TabulexConverter;

namespace {

bool StartsWith(string_view_t sText, string_view_t sStart)
{
    return EqualIgnoringCase(sText.substr(0, sStart.size()), sStart);
}

// By its text, since a system may offer one page more than once.
void SelectText(IControlsView& view, LONG nControl, string_view_t sStart)
{
    for (LONG nRow = 0; nRow < view.RowCount(nControl); ++nRow)
        if (StartsWith(view.RowText(nControl, nRow), sStart)) {
            view.Select(nControl, nRow);
            return;
        }
}

} // namespace

void FillLanguageList(IControlsView& view, LONG nControl,
                      std::span<const CodePageDescription> pages)
{
    string_view_t sDefault;
    for (const CodePageDescription& page : pages) {
        const LONG nRow =
            view.AddRow(nControl, page.sDescription.c_str(), static_cast<LONG_PTR>(page.nCodePage));
        FaultmereUtil::AssertOk(nRow == kNoRow ? E_FAIL : S_OK);
        if (page.nCodePage == kLatinCodePage)
            sDefault = page.sDescription;
    }
    if (!sDefault.empty())
        SelectText(view, nControl, sDefault);
}

HRESULT SelectLanguage(IControlsView& view, LONG nControl, ULONG nCodePage)
{
    for (LONG nRow = 0; nRow < view.RowCount(nControl); ++nRow)
        if (view.RowData(nControl, nRow) == static_cast<LONG_PTR>(nCodePage)) {
            view.Select(nControl, nRow);
            return S_OK;
        }
    return TYPE_E_ELEMENTNOTFOUND;
}

} // namespace Hesperon::specifics::UILayer
