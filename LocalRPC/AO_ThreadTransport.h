// CThread: a transport with a thread of its own.
//
// A running task can't be cut short. When a stop runs out of time, the thread is left to
// itself: it takes no other task, ends after the one that it runs, and no longer touches the
// transport. The thread of a later start waits for it, so tasks never overlap.
#pragma once

#include <thread>

#include "LocalRPC/AO_Transport.h"

namespace LocalRPC::details {

class CThreadBase : public CAOTransportBase
{
public:
    // Throws away what is queued and waits for the thread, unless that is the caller.
    ~CThreadBase() override;

    void Start() override;
    bool PostTask(const TaskPtr& task) override;
    // From its own thread: reports an assertion and gives false. A time limit applies to each
    // of two waits, so the call may take twice as long. A second stop waits for the first.
    bool StopEx(const bool bClear, const unsigned long nTimeout, const bool bSetStop) override;

protected:
    CThreadBase() = default;

    struct WorkerSide;
    static void ThreadMain(const std::shared_ptr<WorkerSide>& This);

private:
    bool IsOwnThread();
    bool RefuseOwnThread();
    void StartThread();
    void AskToEnd(bool bClear, bool bSetStop);
    void Join();
    void Leave();
    void SetWorker(std::shared_ptr<WorkerSide> pWorker);

    CriticalSection m_lifeLock;            // serialises starts and stops; taken before m_lock
    std::shared_ptr<WorkerSide> m_pWorker; // changes under both locks
    std::shared_ptr<WorkerSide>
        m_pLeft;          // the last one that a stop didn't wait for; under m_lifeLock
    std::thread m_thread; // under m_lifeLock
};

class CThread final : public CThreadBase
{};

} // namespace LocalRPC::details
