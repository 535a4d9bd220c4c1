#include "tools/tabulex/import/ImportViews.h"

#include "interfaces/NativeHost.h"
#include "tools/tabulex/import/ImportDialogView.h"
#include "tools/tabulex/import/SmallDialogView.h"
#include "tools/tabulex/text/VisibleText.h"

namespace tabulex {

using namespace IQRL_TabulexConverter;

namespace {

// A message for a box may have several lines.
std::string OneLine(string_t text)
{
    for (OLECHAR& c : text)
        if (c == OLECHAR('\n') || c == OLECHAR('\r'))
            c = OLECHAR(' ');
    return VisibleText(text);
}

} // namespace

ImportViews::ImportViews(Desk& desk) : m_desk(desk)
{
    TabulexSetDialogViews(this);
    TabulexSetWarningListener(
        [](void* pContext, LONG_PTR, const OLECHAR* pszText) {
            static_cast<Desk*>(pContext)->Tell(OneLine(pszText));
        },
        &desk);
}

ImportViews::~ImportViews()
{
    TabulexSetWarningListener(nullptr, nullptr);
    TabulexSetDialogViews(nullptr);
}

LONG ImportViews::Run(DialogId dialog, LONG_PTR, IDialogEvents& events)
{
    switch (dialog) {
    case DialogImport:
        return ImportDialogView(m_desk, events).Run();
    case DialogTemplate:
    case DialogDelimiters:
        return SmallDialogView(m_desk, dialog, events).Run();
    default:
        return kDialogFailed;
    }
}

} // namespace tabulex
