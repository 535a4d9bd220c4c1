// What carries tasks to the thread of an active object.
//
// Tasks go through a store; one thread takes them out and runs them in order. Locks: a
// transport's, then its store's; no task is run or destroyed under either.
#pragma once

#include <atomic>
#include <deque>
#include <memory>
#include <stdexcept>

#include "LocalRPC/TaskFactory.h"
#include "platform/threads/CriticalSection.h"
#include "platform/threads/Mutex.h"

namespace LocalRPC {

class local_rpc_exception : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

inline constexpr unsigned long kNoTimeLimit = 0xFFFFFFFF;

namespace details {

namespace utils {

// All operations may be called from any thread.
class ITaskStorage
{
public:
    virtual ~ITaskStorage() = default;

    virtual void Add(const TaskPtr& task) = 0;
    // The task at the front; empty when there is none.
    virtual void Take(TaskPtr& task) = 0;
    virtual void Reserved() {} // holds the third slot
    virtual void Clear() = 0;
};

class CTaskStorage final : public ITaskStorage
{
public:
    void Add(const TaskPtr& task) override;
    void Take(TaskPtr& task) override;
    void Clear() override;
    std::size_t Size() const;

private:
    mutable Mutex m_lock; // guards the queue
    std::deque<TaskPtr> m_queue;
};

} // namespace utils

// All operations may be called from any thread, unless they say otherwise.
class IAOTransport
{
public:
    virtual ~IAOTransport() = default;

    // Stops first if it runs. Throws local_rpc_exception.
    virtual void Start() = 0;
    // False where the transport doesn't run or is being stopped: the task won't run.
    virtual bool PostTask(const TaskPtr& task) = 0;
    // With bClear the queued tasks are thrown away, without it they run first. With bSetStop
    // new tasks are refused at once, without it they are taken until the queue is found empty.
    // The time is in milliseconds. False if the transport doesn't run, or hasn't ended when
    // the time is over.
    virtual bool StopEx(const bool bClear, const unsigned long nTimeout, const bool bSetStop) = 0;
    virtual bool IsRunning() const = 0;
};

// The store outlives the transport while a thread or a window still uses it.
class CAOTransportBaseBase : public IAOTransport
{
public:
    // Runs the task; what it throws is reported.
    static void execute_task(ITask& task) noexcept;

protected:
    CAOTransportBaseBase() = default;
    CAOTransportBaseBase(const CAOTransportBaseBase&) = delete;
    CAOTransportBaseBase& operator=(const CAOTransportBaseBase&) = delete;

    bool IsStopping() const { return m_bStopping; }
    void AllowTasks() { m_bStopping = false; }
    void RefuseTasks() { m_bStopping = true; }

    std::shared_ptr<utils::CTaskStorage> m_pTasks = std::make_shared<utils::CTaskStorage>();

private:
    std::atomic<bool> m_bStopping = false;
};

class CAOTransportBase : public CAOTransportBaseBase
{
public:
    bool IsRunning() const override { return m_bRunning; }

protected:
    bool TakesTasks() const { return !IsStopping() && m_bRunning; }
    void SetRunning(bool bRunning) { m_bRunning = bRunning; }

    // Guards what a start or a stop changes, and makes the decision to take a task one with
    // its queueing.
    CriticalSection m_lock;

private:
    std::atomic<bool> m_bRunning = false;
};

} // namespace details

} // namespace LocalRPC
