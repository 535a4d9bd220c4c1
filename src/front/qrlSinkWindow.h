// CqrlSinkWindow: carries a session's calls over to the host's thread.
//
// It lives on the thread that starts the session, holds the host's sink, and deletes
// itself when it goes: with the end message, with the release message, or with its
// thread. Sessions reach it through a SinkLink.
#pragma once

#include "interfaces/IqrlTabulexDataSink.h"
#include "module/Module.h"
#include "platform/com_ptr.h"
#include "platform/threads/WindowMessage.h"

namespace Hesperon::specifics {

// The messages that call the sink give its answer, and 0 for the end.
inline constexpr WindowMessage<const VARIANT&> WM_SINK_DATA{kUserMessage + 100}; // a batch
inline constexpr WindowMessage<bool> WM_SINK_END{kUserMessage + 101};            // true commits
inline constexpr WindowMessage<const VARIANT&> WM_SINK_ERROR{kUserMessage + 102};
inline constexpr WindowMessage<> WM_SINK_RELEASE{kUserMessage + 103}; // the sink isn't called

class CqrlSinkWindow final : public MessageWindow
{
public:
    using Sink = com_ptr<IQRL_TabulexConverter::IqrlTabulexDataSink>;

    // On the calling thread; 0 where no window can be made.
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
