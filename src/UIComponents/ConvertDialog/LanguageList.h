// The list of code pages in which a file can be read, in a list control. A row's data is its
// code page.
#pragma once

#include <span>

#include "interfaces/IControlsView.h"
#include "platform/text/CodePage.h"

namespace Hesperon::specifics::UILayer {

// Adds a row for each page, in their order, and then selects Western European, where the pages
// have it: what the file is really read in is selected by SelectLanguage later. A row that
// the view refuses is reported.
void FillLanguageList(IQRL_TabulexConverter::IControlsView& view, LONG nControl,
                      std::span<const CodePageDescription> pages);

// TYPE_E_ELEMENTNOTFOUND, and the selection as it was, for a page that the list doesn't have.
HRESULT SelectLanguage(IQRL_TabulexConverter::IControlsView& view, LONG nControl, ULONG nCodePage);

} // namespace Hesperon::specifics::UILayer
