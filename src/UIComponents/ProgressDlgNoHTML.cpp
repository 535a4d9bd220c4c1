// A call finds the window's handle in the shared state and sends or posts a message to it; the
// window does the rest on its own thread. A window that has gone meanwhile answers 0, so no call
// has to know whether it still stands.

#include "src/UIComponents/ProgressDlgNoHTML.h"

#include <mutex>

#include "module/Guarded.h"
#include "platform/threads/Thread.h"
#include "platform/values.h"
#include "src/UIComponents/ProgressWindow.h"

namespace Hesperon::specifics::UILayer {

namespace {

// For what nobody waits for: sent on the window's own thread, posted from another. S_FALSE
// where there is no window.
template <class... Parts, class... Values>
HRESULT Tell(const ProgressState::Window& window, const WindowMessage<Parts...>& message,
             Values... values)
{
    const bool bTold = window.nThread == CurrentThreadId()
                           ? message.Send(window.hWnd, values...) != 0
                           : message.Post(window.hWnd, values...);
    return bTold ? S_OK : S_FALSE;
}

} // namespace

HRESULT CProgressDlgNoHTML::FinalConstruct()
{
    return Guarded([this] {
        m_pState = std::make_shared<ProgressState>();
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
    return Guarded([&] { return ProgressWindow::Open(m_pState, hwndParent); });
}

HRESULT CProgressDlgNoHTML::Close()
{
    return Tell(m_pState->DropWindow(), kCloseMessage);
}

// ---- figures and texts

HRESULT CProgressDlgNoHTML::DoProgress(ULONGLONG nPos, ULONGLONG nMax)
{
    const WindowHandle hWnd = m_pState->CurrentWindow().hWnd;
    return kAdvanceMessage.Send(hWnd, nPos, nMax) ? S_OK : S_FALSE;
}

HRESULT CProgressDlgNoHTML::SetProcessedRecordCount(ULONGLONG nMax)
{
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

// One question at a time: a second worker waits here until the first one has its answer.
template <class Show>
HRESULT CProgressDlgNoHTML::Ask(BSTR bsError, Show show)
{
    static constexpr OLECHAR kNoText[] = OLESTR("");
    LockPumping(m_pState->m_questions);
    const std::lock_guard lock(m_pState->m_questions, std::adopt_lock);
    if (m_pState->m_bSkipAll)
        return S_OK;
    if (!show(m_pState->CurrentWindow().hWnd, bsError ? bsError : kNoText))
        return E_UNEXPECTED;
    return m_pState->WaitForAnswer();
}

HRESULT CProgressDlgNoHTML::OnError(BSTR bsError)
{
    return Ask(bsError, [](WindowHandle hWnd, const OLECHAR* pszText) {
        return kErrorMessage.Send(hWnd, pszText);
    });
}

HRESULT CProgressDlgNoHTML::OnError2(LONG_PTR lptrLineNum, LONG lptrFieldNum, BSTR bsDescription)
{
    const ProgressPlace place{lptrLineNum, lptrFieldNum};
    return Ask(bsDescription, [&place](WindowHandle hWnd, const OLECHAR* pszText) {
        return kErrorAtMessage.Send(hWnd, pszText, place);
    });
}

} // namespace Hesperon::specifics::UILayer
