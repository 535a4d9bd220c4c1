// SinkLink: a session's link to the sink window of its host.
//
// The end of the session, or its release, takes the window from the link. Whoever comes
// later finds none, so no message goes out after the end and no end goes out twice.
//
// Open and Close are for the host's thread, all else is safe from any thread. What calls
// the sink waits until the sink has answered.
#pragma once

#include <atomic>

#include "src/front/qrlSinkWindow.h"

namespace Hesperon::specifics {

class SinkLink
{
public:
    SinkLink() = default;
    ~SinkLink() { Release(); }
    SinkLink(const SinkLink&) = delete;
    SinkLink& operator=(const SinkLink&) = delete;

    // Makes the window on the calling thread; false where none can be made.
    bool Open(CqrlSinkWindow::Sink pSink);

    // The window, for a look at its state; 0 before Open and after the end.
    WindowHandle Window() const { return m_hWnd; }

    // The sink's answer; S_OK where there is no window, or none any more.
    HRESULT SendData(const VARIANT& vRecords) const;
    HRESULT SendError(const VARIANT& vDescription) const;

    // Commits or rolls back, if nobody has ended the session before. Whether it did.
    bool End(bool bCommit);
    // Lets the sink go at once, without a call.
    void Close();
    // The same without waiting: the window goes when its thread dispatches.
    void Release();

private:
    std::atomic<WindowHandle> m_hWnd = 0;
};

} // namespace Hesperon::specifics
