#include "src/front/qrlSinkWindow.h"

#include <new>

namespace Hesperon::specifics {

namespace {

const VARIANT& VariantAt(ULONG_PTR wParam)
{
    return *reinterpret_cast<const VARIANT*>(wParam);
}

} // namespace

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

// The sink may end the session in its call, and this object with it: nothing of it is
// touched afterwards.
LONG_PTR CqrlSinkWindow::OnMessage(UINT nMessage, ULONG_PTR wParam, LONG_PTR)
{
    const Sink pSink = m_pSink;
    switch (nMessage) {
    case WM_SINK_DATA:
        return pSink->DataChanged(VariantAt(wParam));
    case WM_SINK_ERROR:
        return pSink->OnError(VariantAt(wParam));
    case WM_SINK_END:
        End(wParam != 0);
        break;
    case WM_SINK_RELEASE:
        Destroy();
        break;
    }
    return 0;
}

// The sink's last call may pump, and the messages that wait must not reach it then.
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
