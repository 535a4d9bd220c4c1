#include "src/front/qrlSinkWindow.h"

#include <new>

namespace Hesperon::specifics {

WindowHandle CqrlSinkWindow::Open(Sink pSink)
{
    auto* pWindow = new (std::nothrow) CqrlSinkWindow(std::move(pSink));
    if (!pWindow)
        return 0;
    const WindowHandle hWnd = pWindow->Create();
    if (!hWnd)
        delete pWindow;
    return hWnd;
}

// The sink may end the session within its call, and this object with it, so no member is
// touched after the call.
LONG_PTR CqrlSinkWindow::OnMessage(UINT nMessage, ULONG_PTR wParam, LONG_PTR)
{
    const Sink pSink = m_pSink;
    switch (nMessage) {
    case WM_SINK_DATA:
        return pSink->DataChanged(WM_SINK_DATA.First(wParam));
    case WM_SINK_ERROR:
        return pSink->OnError(WM_SINK_ERROR.First(wParam));
    case WM_SINK_END:
        End(WM_SINK_END.First(wParam));
        break;
    case WM_SINK_RELEASE:
        Destroy();
        break;
    }
    return 0;
}

// The window goes before the sink's last call: a sink that dispatches messages in it must
// not get the batch that waits.
void CqrlSinkWindow::End(bool bCommit)
{
    const Sink pSink = std::move(m_pSink);
    Destroy();
    if (bCommit)
        pSink->Commit();
    else
        pSink->Rollback();
}

} // namespace Hesperon::specifics
