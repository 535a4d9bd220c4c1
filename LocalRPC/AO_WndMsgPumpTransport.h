// CWndMsgPump: a transport over the message queue of the thread that starts it.
//
// Its tasks run while that thread dispatches messages. One message runs all tasks that are
// queued by then; a task that dispatches messages itself lets others run within it.
#pragma once

#include <chrono>

#include <boost/enable_shared_from_this.hpp>
#include <boost/shared_ptr.hpp>

#include "LocalRPC/AO_Transport.h"
#include "platform/threads/WindowMessage.h"

namespace LocalRPC::details {

inline constexpr WindowMessage<> WM_RUN_TASKS{kUserMessage + 1};
inline constexpr WindowMessage<> WM_SUICIDE{kUserMessage + 2};
inline constexpr WindowMessage<ULONG_PTR> WM_SET_TIMER{kUserMessage + 3}; // ms; 0 ends it

// The hidden window. When the last reference to it is dropped, it runs what is queued and
// destroys itself, on its own thread; else it is destroyed when its thread ends. The object
// lives until both the window and the references are gone.
class CWndImpl final : public MessageWindow, public boost::enable_shared_from_this<CWndImpl>
{
public:
    // On the calling thread, which becomes its own. Throws local_rpc_exception.
    static boost::shared_ptr<CWndImpl> Open(std::shared_ptr<utils::CTaskStorage> pTasks);

    bool IsOwnThread() const;
    bool IsLive() const { return IsLiveWindow(m_hWnd); }

    // Makes the window run what is queued: at once for a synchronous task from its own
    // thread, else when it dispatches. From any thread.
    void Wake(bool bSynchronous);
    // Runs the tasks that are queued now. On its own thread only.
    void ProcessEvents();
    // Runs what is queued once a period; 0 ends that. From any thread.
    void PostTimer(std::chrono::milliseconds period) const;

private:
    explicit CWndImpl(std::shared_ptr<utils::CTaskStorage> pTasks);
    ~CWndImpl() override = default;

    LONG_PTR OnMessage(UINT nMessage, ULONG_PTR wParam, LONG_PTR lParam) override;
    void OnFinalMessage() override { LeaveOwner(); }

    void Release();
    void Suicide();
    void LeaveOwner();

    const std::shared_ptr<utils::CTaskStorage> m_pTasks;
    const std::uint32_t m_nThread;
    const WindowHandle m_hWnd; // kept for threads that ask after the window has gone
    std::atomic<bool> m_bWakePending = false;
    std::atomic<int> m_nOwners = 2; // the window, and the references together
};

class CWndMsgPumpBase : public CAOTransportBase
{
public:
    // Throws away what is queued.
    ~CWndMsgPumpBase() override;

    // The calling thread runs the tasks from now on.
    void Start() override;
    bool PostTask(const TaskPtr& task) override;
    // Doesn't wait. Called on the transport's own thread, it runs the tasks that aren't thrown
    // away before it returns; called on another, they run later. Without bSetStop all are
    // thrown away.
    bool StopEx(const bool bClear, const unsigned long nTimeout, const bool bSetStop) override;

    // Runs what is queued once a period as well; 0 ends that. Nothing while it doesn't run.
    void SetTimer(std::chrono::milliseconds period);

protected:
    CWndMsgPumpBase() = default;

private:
    boost::shared_ptr<CWndImpl> m_pWindow; // guarded by m_lock
};

class CWndMsgPump final : public CWndMsgPumpBase
{};

} // namespace LocalRPC::details
