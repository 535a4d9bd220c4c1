// Whoever takes the window out of the link, by one exchange, may send it its last message; so there
// is one end, whichever threads compete for it. Without a window a send gives 0, which is S_OK: a
// batch that comes after the end counts as taken.

#include "src/front/SinkLink.h"

#include <utility>

namespace Hesperon::specifics {

bool SinkLink::Open(CqrlSinkWindow::Sink pSink)
{
    Close();
    m_hWnd = CqrlSinkWindow::Open(std::move(pSink));
    return m_hWnd != 0;
}

HRESULT SinkLink::SendData(const VARIANT& vRecords) const
{
    return static_cast<HRESULT>(WM_SINK_DATA.Send(m_hWnd, vRecords));
}

HRESULT SinkLink::SendError(const VARIANT& vDescription) const
{
    return static_cast<HRESULT>(WM_SINK_ERROR.Send(m_hWnd, vDescription));
}

// The window is taken first, so that a batch on its way finds no window rather than a dead
// one.
bool SinkLink::End(bool bCommit)
{
    const WindowHandle hWnd = m_hWnd.exchange(0);
    if (hWnd)
        WM_SINK_END.Send(hWnd, bCommit);
    return hWnd != 0;
}

void SinkLink::Close()
{
    if (const WindowHandle hWnd = m_hWnd.exchange(0))
        WM_SINK_RELEASE.Send(hWnd);
}

void SinkLink::Release()
{
    if (const WindowHandle hWnd = m_hWnd.exchange(0))
        WM_SINK_RELEASE.Post(hWnd);
}

} // namespace Hesperon::specifics
