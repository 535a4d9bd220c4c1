// The thread and its transport share one object, WorkerSide, that either may outlive: the thread
// sleeps until it is woken, then takes tasks out of the store until none is left. To stop, a
// flag is set and the thread is woken; it sees the flag before it empties the store for the
// last time, so what was queued before the request still runs. A stop that runs out of time
// marks the shared object as left, and the thread takes nothing more.

#include "LocalRPC/AO_ThreadTransport.h"

#include <string>
#include <system_error>

#include "diagnostics/FaultmereClient.h"
#include "platform/threads/Apartment.h"
#include "platform/threads/MessageWindow.h"
#include "platform/threads/Thread.h"

namespace LocalRPC::details {

namespace {

Event::Timeout TimeoutOf(unsigned long nTimeout)
{
    if (nTimeout == kNoTimeLimit)
        return {};
    return std::chrono::milliseconds(nTimeout);
}

} // namespace

// Shared by thread and transport; it lives as long as either of them.
struct CThreadBase::WorkerSide
{
    WorkerSide(std::shared_ptr<utils::CTaskStorage> tasks, std::shared_ptr<WorkerSide> predecessor)
        : pTasks(std::move(tasks)), pPredecessor(std::move(predecessor))
    {}

    void Run();
    bool Take(TaskPtr& task);
    void AskToEnd();
    void Leave();

    const std::shared_ptr<utils::CTaskStorage> pTasks;
    std::shared_ptr<WorkerSide>
        pPredecessor; // may still run its last task; the thread waits for it
    Event wake{Event::Kind::AutoReset};
    ControlEvent control;
    std::atomic<std::uint32_t> nThread = 0; // set before control signals the start
    std::atomic<bool> bEnd = false;         // end after what is queued
    Mutex takeLock;                         // guards bLeft; held while a task is taken
    bool bLeft = false;                     // take nothing any more
};

void CThreadBase::WorkerSide::Run()
{
    for (bool bLast = false; !bLast;) {
        WaitPumping(wake);
        bLast = bEnd; // what came before the request is in the queue
        for (TaskPtr task; Take(task);)
            execute_task(*task);
    }
}

bool CThreadBase::WorkerSide::Take(TaskPtr& task)
{
    task.reset();
    const std::lock_guard lock(takeLock);
    if (!bLeft)
        pTasks->Take(task);
    return task != nullptr;
}

void CThreadBase::WorkerSide::AskToEnd()
{
    bEnd = true;
    wake.Set();
}

void CThreadBase::WorkerSide::Leave()
{
    {
        const std::lock_guard lock(takeLock);
        bLeft = true;
    }
    AskToEnd();
}

void CThreadBase::ThreadMain(const std::shared_ptr<WorkerSide>& This)
{
    if (!FaultmereUtil::Assert(This != nullptr, "!IsBadReadPtr(This,sizeof(CThreadBase))"))
        return;
    This->nThread = CurrentThreadId();
    This->control.Signal(eCSStart);
    if (const auto pPredecessor = std::move(This->pPredecessor))
        pPredecessor->control.Wait();
    {
        const ThreadApartment apartment;
        This->Run();
    }
    This->control.Signal(eCSStop);
}

// A task may destroy its own active object.
CThreadBase::~CThreadBase()
{
    if (IsOwnThread())
        Leave();
    else
        CThreadBase::StopEx(true, kNoTimeLimit, true);
}

bool CThreadBase::IsOwnThread()
{
    const LockGuard lock(m_lock);
    return m_pWorker && m_pWorker->nThread == CurrentThreadId();
}

bool CThreadBase::RefuseOwnThread()
{
    return !FaultmereUtil::Assert(!IsOwnThread(), "!\"Can't stop thread from itself!\"");
}

void CThreadBase::Start()
{
    if (RefuseOwnThread())
        return;
    const LockGuard life(m_lifeLock);
    CThreadBase::StopEx(false, kNoTimeLimit, true);
    SetWorker(std::make_shared<WorkerSide>(m_pTasks, m_pLeft));
    try {
        StartThread();
    } catch (...) {
        SetWorker(nullptr);
        throw;
    }
    m_pLeft.reset();
    m_pWorker->control.Wait();
    m_pWorker->wake.Set(); // for tasks that the last stop left in the queue
}

void CThreadBase::StartThread()
try {
    m_thread = std::thread(&CThreadBase::ThreadMain, m_pWorker);
} catch (const std::system_error& error) {
    const std::string sText = error.code().message();
    throw local_rpc_exception(sText.empty() ? "create thread unknown error" : sText);
}

void CThreadBase::SetWorker(std::shared_ptr<WorkerSide> pWorker)
{
    const LockGuard lock(m_lock);
    m_pWorker = std::move(pWorker);
    SetRunning(m_pWorker != nullptr);
    if (m_pWorker)
        AllowTasks();
}

// A synchronous task from the thread itself runs at once: in the queue it would wait for the task
// that waits for it.
bool CThreadBase::PostTask(const TaskPtr& task)
{
    if (!TakesTasks())
        return false;
    {
        const LockGuard lock(m_lock);
        if (!TakesTasks())
            return false;
        if (!task->IsSynchronous() || !IsOwnThread()) {
            m_pTasks->Add(task);
            m_pWorker->wake.Set();
            return true;
        }
    }
    execute_task(*task);
    return true;
}

// m_lifeLock is held for as long as this waits, so a start waits for a stop. m_lock isn't, so that
// a task which posts meanwhile doesn't wait for this call, and this call for the task.
bool CThreadBase::StopEx(const bool bClear, const unsigned long nTimeout, const bool bSetStop)
{
    if (!IsRunning() || RefuseOwnThread())
        return false;
    const LockGuard life(m_lifeLock);
    if (!IsRunning())
        return false;
    AskToEnd(bClear, bSetStop);

    const Event::Timeout timeout = TimeoutOf(nTimeout);
    const ControlSignal _cs = m_pWorker->control.Wait(timeout);
    if (!timeout)
        FaultmereUtil::Assert(eCSStop == _cs, "eCSStop==_cs");
    if (_cs != eCSNone || m_pWorker->control.Wait(timeout) != eCSNone)
        Join();
    else
        Leave();
    SetWorker(nullptr);
    return _cs != eCSNone;
}

void CThreadBase::AskToEnd(bool bClear, bool bSetStop)
{
    if (bSetStop) {
        const LockGuard lock(m_lock);
        RefuseTasks();
    }
    if (bClear)
        m_pTasks->Clear();
    m_pWorker->control.Reset();
    m_pWorker->AskToEnd();
}

void CThreadBase::Join()
{
    bool _ch_result = true;
    try {
        m_thread.join();
    } catch (const std::system_error&) {
        _ch_result = false;
    }
    FaultmereUtil::Assert(_ch_result, "_ch_result");
}

void CThreadBase::Leave()
{
    m_pWorker->Leave();
    m_thread.detach();
    m_pLeft = m_pWorker;
}

} // namespace LocalRPC::details
