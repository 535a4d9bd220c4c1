#include "interfaces/NativeHost.h"

#include <atomic>
#include <mutex>

#include "Simples/interface/ResourceStrings.h"
#include "component/ProcessDefaults.h"
#include "diagnostics/FaultmereClient.h"
#include "platform/MessageBox.h"
#include "platform/text/CodePage.h"
#include "platform/threads/MessageWindow.h"
#include "src/UIComponents/views/DialogTexts.h"
#include "src/UIComponents/views/DialogViews.h"
#include "src/UIComponents/views/ProgressView.h"

namespace {

std::atomic<bool> g_bLanguageChosen = false;
std::atomic<bool> g_bEncodingChosen = false;

} // namespace

void SetProcessDefaults()
{
    static std::once_flag once;
    std::call_once(once, [] {
        if (!g_bLanguageChosen)
            TabulexSetLanguage(TABULEX_LANGUAGE_ENGLISH);
        if (!g_bEncodingChosen)
            TabulexSetEncoding("utf-8");
    });
}

void TabulexSetLanguage(TabulexLanguage language)
{
    g_bLanguageChosen = true;
    SetResourceLanguage(language == TABULEX_LANGUAGE_ENGLISH ? Language::English
                                                             : Language::Chinese);
}

HRESULT TabulexSetEncoding(const char* name)
{
    if (!name)
        return E_POINTER;
    g_bEncodingChosen = true;
    return SetAnsiCodePage(CodePageByName(name)) ? S_OK : E_INVALIDARG;
}

void TabulexSetReportLog(const char* path)
{
    FaultmereUtil::SetReceiver(path && *path ? FaultmereUtil::LogTo(path)
                                             : FaultmereUtil::Receiver());
}

void TabulexSetProgressViews(TabulexProgressViewFactory pfnMake, void* pContext)
{
    Hesperon::specifics::UILayer::SetProgressViews(pfnMake, pContext);
}

void TabulexSetDialogViews(IQRL_TabulexConverter::IDialogViews* pViews)
{
    Hesperon::specifics::UILayer::SetDialogViews(pViews);
}

void TabulexSetWarningListener(TabulexWarningListener pfnListen, void* pContext)
{
    if (!pfnListen) {
        SetWarningListener({});
        return;
    }
    SetWarningListener([pfnListen, pContext](LONG_PTR hWnd, string_view_t text) {
        pfnListen(pContext, hWnd, string_t(text).c_str());
    });
}

const OLECHAR* TabulexDialogText(IQRL_TabulexConverter::DialogId dialog, LONG nControl)
{
    return Hesperon::specifics::UILayer::DialogText(dialog, nControl);
}

unsigned TabulexPumpMessages(unsigned nMilliseconds)
{
    constexpr unsigned kWithoutEnd = 0xFFFFFFFF;
    if (nMilliseconds == kWithoutEnd)
        return PumpMessages(std::nullopt);
    return PumpMessages(std::chrono::milliseconds(nMilliseconds));
}
