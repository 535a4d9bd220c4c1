// CqrlSinkWindow: carries a session's calls over to the host's thread.
//
// It lives on the thread that starts the session, holds the host's sink, and deletes
// itself when it goes: with the end message, with the release message, or with its
// thread. The messages that call the sink are sent, never posted, since what they
// point at is good only while the sender waits.
#pragma once

#include "interfaces/IqrlTabulexDataSink.h"
#include "module/Module.h"
#include "platform/MessageWindow.h"
#include "platform/com_ptr.h"

namespace Hesperon::specifics {

inline constexpr UINT WM_SINK_DATA = kUserMessage + 100;    // wParam: VARIANT* of a batch
inline constexpr UINT WM_SINK_END = kUserMessage + 101;     // wParam: 1 commits, 0 rolls back
inline constexpr UINT WM_SINK_ERROR = kUserMessage + 102;   // wParam: VARIANT* of an error
inline constexpr UINT WM_SINK_RELEASE = kUserMessage + 103; // no word to the sink; posted

class CqrlSinkWindow final : public MessageWindow
{
public:
    using Sink = com_ptr<IQRL_TabulexConverter::IqrlTabulexDataSink>;

    // On the calling thread; 0 where no window can be had.
    static WindowHandle Open(Sink pSink);

private:
    explicit CqrlSinkWindow(Sink pSink) : m_pSink(std::move(pSink)) {}

    LONG_PTR OnMessage(UINT nMessage, ULONG_PTR wParam, LONG_PTR lParam) override;
    void OnFinalMessage() override { delete this; }
    void End(bool bCommit);

    const ModuleLock m_moduleLock; // it may outlive all objects until its thread dispatches
    Sink m_pSink;
};

} // namespace Hesperon::specifics
