// CThread: a transport with a thread of its own.
//
// A running task can't be cut short. Where a stop runs out of time the thread is left
// alone instead: it takes no other task, ends behind the one that it runs, and touches
// nothing of the transport any more. The thread of a later start waits for it, so tasks
// never overlap.
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
    // From its own thread: a report and false. With a time limit, up to twice that. A second
    // stop waits for the first.
    bool StopEx(const bool bClear, const unsigned long nTimeout, const bool bSetStop) override;

protected:
    CThreadBase() = default;

    struct SWorker;
    static void ThreadMain(const std::shared_ptr<SWorker>& This);

private:
    bool IsOwnThread();
    bool RefuseOwnThread();
    void StartThread();
    void AskToEnd(bool bClear, bool bSetStop);
    void Join();
    void Leave();
    void SetWorker(std::shared_ptr<SWorker> pWorker);

    CriticalSection m_lifeLock;         // one start or stop at a time; taken before m_lock
    std::shared_ptr<SWorker> m_pWorker; // changes under both locks
    std::shared_ptr<SWorker> m_pLeft;   // the last one that a stop has left; under m_lifeLock
    std::thread m_thread;               // under m_lifeLock
};

class CThread final : public CThreadBase
{};

} // namespace LocalRPC::details
