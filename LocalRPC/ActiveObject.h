// Active objects: post tasks from any thread, and they run in order on one thread and
// never at the same time.
#pragma once

#include <memory>

#include <boost/noncopyable.hpp>

#include "LocalRPC/AO_Transport.h"

namespace LocalRPC {

class CActiveObject_base : private boost::noncopyable
{
public:
    // Throws local_rpc_exception.
    void Start();
    // False if the task won't run: before a start and after a stop.
    bool Post(const TaskPtr& task);
    // Refuses tasks from now on, throws away what is queued if bClear is set, and waits at
    // most nTimeout milliseconds for the end. False if it doesn't run, if it hasn't ended when
    // the time is over, and for CActiveObject_thread on its own thread.
    bool Stop(bool bClear, unsigned long nTimeout = kNoTimeLimit);

protected:
    // Without a transport all operations throw local_rpc_exception.
    explicit CActiveObject_base(std::unique_ptr<details::IAOTransport> pTransport);
    ~CActiveObject_base();

private:
    details::IAOTransport& Transport() const;

    const std::unique_ptr<details::IAOTransport> m_pTransport;
};

// Has a thread of its own, and waits for it when it goes.
class CActiveObject_thread : public CActiveObject_base
{
public:
    CActiveObject_thread();
};

// Runs its tasks on the thread that starts it, while that dispatches messages. A stop
// doesn't wait.
class CActiveObject_WndMsg : public CActiveObject_base
{
public:
    CActiveObject_WndMsg();
};

// Stops itself when it goes: what is queued is thrown away, a running task is waited for.
class CTerminate_Local_RPC_Proxy : public CActiveObject_thread
{
public:
    ~CTerminate_Local_RPC_Proxy();
};

} // namespace LocalRPC
