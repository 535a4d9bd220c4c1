// Tasks go into a store, and a message tells the window to run what is in it. One message is enough
// for any number of tasks, so while one is under way others don't post another.
//
// The window's object has two owners, the window and the counted references together, and is
// deleted when both have left. The last reference makes the window run what is left and go, on its
// own thread, so a stop from another thread doesn't wait for it.

#include "LocalRPC/AO_WndMsgPumpTransport.h"

#include <functional>
#include <string>
#include <system_error>

#include "diagnostics/FaultmereClient.h"
#include "platform/threads/Thread.h"

namespace LocalRPC::details {

// ---- the window -----------------------------------------------------------------

CWndImpl::CWndImpl(std::shared_ptr<utils::CTaskStorage> pTasks)
    : m_pTasks(std::move(pTasks)), m_nThread(CurrentThreadId()), m_hWnd(Create())
{}

boost::shared_ptr<CWndImpl> CWndImpl::Open(std::shared_ptr<utils::CTaskStorage> pTasks)
{
    auto* pWindow = new CWndImpl(std::move(pTasks));
    if (!pWindow->m_hWnd) {
        const int nError = LastSystemError();
        delete pWindow;
        throw local_rpc_exception("can't create transport Window. Last error: " +
                                  std::system_category().message(nError));
    }
    return {pWindow, std::mem_fn(&CWndImpl::Release)};
}

bool CWndImpl::IsOwnThread() const
{
    return CurrentThreadId() == m_nThread;
}

void CWndImpl::Wake(bool bSynchronous)
{
    const bool bOwnThread = IsOwnThread();
    if (m_bWakePending.exchange(true) && !bOwnThread)
        return;
    if (bSynchronous && bOwnThread)
        WM_RUN_TASKS.Send(m_hWnd);
    else if (!WM_RUN_TASKS.Post(m_hWnd))
        m_bWakePending = false;
}

void CWndImpl::PostTimer(std::chrono::milliseconds period) const
{
    WM_SET_TIMER.Post(m_hWnd, static_cast<ULONG_PTR>(period.count()));
}

// Tasks that come meanwhile are run by a message of their own, so that a task which posts
// itself again doesn't keep other messages waiting.
void CWndImpl::ProcessEvents()
{
    if (!FaultmereUtil::Assert(IsOwnThread(), "process events in wrong thread"))
        return;
    TaskPtr task;
    for (std::size_t nLeft = m_pTasks->Size(); nLeft > 0; --nLeft) {
        m_pTasks->Take(task);
        if (!task)
            break;
        CAOTransportBaseBase::execute_task(*task);
    }
}

LONG_PTR CWndImpl::OnMessage(UINT nMessage, ULONG_PTR wParam, LONG_PTR)
{
    // A task may stop the transport; this reference keeps the object until the message has
    // been handled.
    const boost::shared_ptr<CWndImpl> pSelf = weak_from_this().lock();
    switch (nMessage) {
    case WM_RUN_TASKS:
        m_bWakePending = false;
        ProcessEvents();
        break;
    case kTimerMessage:
        ProcessEvents();
        break;
    case WM_SET_TIMER:
        SetTimer(std::chrono::milliseconds(WM_SET_TIMER.First(wParam)));
        break;
    case WM_SUICIDE:
        Suicide();
        break;
    }
    return 0;
}

// The last reference has been dropped.
void CWndImpl::Release()
{
    if (!IsOwnThread())
        WM_SUICIDE.Post(m_hWnd);
    else if (Handle())
        Suicide();
    LeaveOwner();
}

// The object may be gone after Destroy.
void CWndImpl::Suicide()
{
    SetTimer(std::chrono::milliseconds(0));
    ProcessEvents();
    const WindowHandle hWnd = m_hWnd;
    Destroy();
    const bool _res = !IsLiveWindow(hWnd);
    FaultmereUtil::Assert(_res, "_res");
}

void CWndImpl::LeaveOwner()
{
    if (--m_nOwners == 0)
        delete this;
}

// ---- the transport --------------------------------------------------------------

CWndMsgPumpBase::~CWndMsgPumpBase()
{
    CWndMsgPumpBase::StopEx(true, 0, true);
}

// Each start makes a new store, so that an old window on another thread finds only its own
// tasks.
void CWndMsgPumpBase::Start()
{
    CWndMsgPumpBase::StopEx(false, 0, true);
    auto pTasks = std::make_shared<utils::CTaskStorage>();
    boost::shared_ptr<CWndImpl> pWindow = CWndImpl::Open(pTasks);
    const LockGuard lock(m_lock);
    m_pTasks.swap(pTasks);
    m_pWindow.swap(pWindow);
    SetRunning(true);
    AllowTasks();
}

// The window is woken without the lock: a synchronous task from its own thread runs in this call,
// and may do anything to the transport.
bool CWndMsgPumpBase::PostTask(const TaskPtr& task)
{
    if (!TakesTasks())
        return false;
    boost::shared_ptr<CWndImpl> pWindow;
    {
        const LockGuard lock(m_lock);
        if (!TakesTasks() || !m_pWindow->IsLive())
            return false;
        m_pTasks->Add(task);
        pWindow = m_pWindow;
    }
    pWindow->Wake(task->IsSynchronous());
    return true;
}

bool CWndMsgPumpBase::StopEx(const bool bClear, const unsigned long, const bool bSetStop)
{
    boost::shared_ptr<CWndImpl> pWindow;
    std::shared_ptr<utils::CTaskStorage> pTasks;
    {
        const LockGuard lock(m_lock);
        if (!IsRunning())
            return false;
        if (bSetStop)
            RefuseTasks();
        pTasks = m_pTasks;
        m_pWindow.swap(pWindow);
        SetRunning(false);
    }
    if (bClear || !bSetStop)
        pTasks->Clear();
    return true;
}

void CWndMsgPumpBase::SetTimer(std::chrono::milliseconds period)
{
    const LockGuard lock(m_lock);
    if (m_pWindow)
        m_pWindow->PostTimer(period);
}

} // namespace LocalRPC::details
