#include "src/UIComponents/ProgressDlgNoHTML.h"

#include <mutex>

#include "module/Guarded.h"
#include "platform/Thread.h"
#include "platform/values.h"
#include "src/UIComponents/ProgressWindow.h"

namespace Hesperon::specifics::UILayer {

namespace {

// Tells the window something that nobody waits for: at once on its own thread, in its
// turn from another. S_FALSE where there is none.
HRESULT Tell(const CProgressState::Window& window, UINT nMessage, ULONG_PTR wParam = 0)
{
    const bool bTold = window.nThread == CurrentThreadId()
                           ? SendWindowMessage(window.hWnd, nMessage, wParam, 0) != 0
                           : PostWindowMessage(window.hWnd, nMessage, wParam, 0);
    return bTold ? S_OK : S_FALSE;
}

} // namespace

HRESULT CProgressDlgNoHTML::FinalConstruct()
{
    return Guarded([this] {
        m_pState = std::make_shared<CProgressState>();
        return S_OK;
    });
}

void CProgressDlgNoHTML::FinalRelease()
{
    if (!m_pState)
        return;
    Close();
    m_pState->PutDataParser(nullptr);
}

// ---- the window

HRESULT CProgressDlgNoHTML::ShowProgress(LONG_PTR hwndParent)
{
    return Guarded([&] { return CProgressWindow::Open(m_pState, hwndParent); });
}

HRESULT CProgressDlgNoHTML::Close()
{
    return Tell(m_pState->DropWindow(), kCloseMessage);
}

// ---- figures and texts

HRESULT CProgressDlgNoHTML::DoProgress(ULONGLONG nPos, ULONGLONG nMax)
{
    const WindowHandle hWnd = m_pState->CurrentWindow().hWnd;
    const bool bShown = SendWindowMessage(hWnd, kAdvanceMessage, reinterpret_cast<ULONG_PTR>(&nPos),
                                          reinterpret_cast<LONG_PTR>(&nMax)) != 0;
    return bShown ? S_OK : S_FALSE;
}

HRESULT CProgressDlgNoHTML::SetProcessedRecordCount(ULONGLONG nMax)
{
    static_assert(sizeof(ULONG_PTR) == sizeof nMax);
    return Tell(m_pState->CurrentWindow(), kCountMessage, nMax);
}

HRESULT CProgressDlgNoHTML::SetTitle(BSTR bsTitle)
{
    return Guarded([&] {
        const string_view_t sTitle = TextOf(bsTitle);
        m_pState->PutTitle(sTitle);
        return sTitle.empty() ? S_FALSE : Tell(m_pState->CurrentWindow(), kTitleMessage);
    });
}

HRESULT CProgressDlgNoHTML::SetFileName(BSTR bsFileName)
{
    return Guarded([&] {
        m_pState->PutFileName(TextOf(bsFileName));
        return Tell(m_pState->CurrentWindow(), kFileNameMessage);
    });
}

HRESULT CProgressDlgNoHTML::put_DataParser(IDispatch* pDataParser)
{
    com_ptr<IQRL_TabulexConverter::IDataParser> pParser;
    const HRESULT hr = query(pDataParser, pParser);
    m_pState->PutDataParser(std::move(pParser));
    return hr;
}

// ---- errors

HRESULT CProgressDlgNoHTML::OnError(BSTR bsError)
{
    return Ask(kErrorMessage, bsError, 0);
}

HRESULT CProgressDlgNoHTML::OnError2(LONG_PTR lptrLineNum, LONG lptrFieldNum, BSTR bsDescription)
{
    const ProgressPlace place{lptrLineNum, lptrFieldNum};
    return Ask(kErrorAtMessage, bsDescription, reinterpret_cast<LONG_PTR>(&place));
}

HRESULT CProgressDlgNoHTML::Ask(UINT nMessage, BSTR bsError, LONG_PTR lParam)
{
    static constexpr OLECHAR kNoText[] = OLESTR("");
    LockPumping(m_pState->m_questions);
    const std::lock_guard lock(m_pState->m_questions, std::adopt_lock);
    if (m_pState->m_bSkipAll)
        return S_OK;
    const WindowHandle hWnd = m_pState->CurrentWindow().hWnd;
    const auto wText = reinterpret_cast<ULONG_PTR>(bsError ? bsError : kNoText);
    if (!SendWindowMessage(hWnd, nMessage, wText, lParam))
        return E_UNEXPECTED;
    return m_pState->WaitForAnswer();
}

} // namespace Hesperon::specifics::UILayer
