// Tasks: counted units of work for an active object, made around a callable.
//
//   worker.Post(MakeAsyncTask([this] { Refresh(); }));
//
//   const auto task = MakeSyncTask([&] { nCount = Count(); });
//   if (worker.Post(task))
//       task->Wait();
//
// Whoever posts a synchronous task waits for it; on the active object's own thread it
// has run when Post returns, so the wait is over at once there. A task that a stop
// throws away never runs; wait with a time limit if that may happen.
#pragma once

#include <atomic>
#include <utility>

#include <boost/intrusive_ptr.hpp>

#include "LocalRPC/interface/EventUtils.h"

namespace LocalRPC {

class ITask
{
public:
    ITask() = default;
    ITask(const ITask&) = delete;
    ITask& operator=(const ITask&) = delete;

    // What it throws is reported and goes no further.
    virtual void Execute() = 0;
    // Whether its poster waits for it. Never changes.
    virtual bool IsSynchronous() const = 0;

    virtual void AddRef() = 0;
    virtual void Release() = 0; // the last one deletes the task, on any thread

protected:
    virtual ~ITask() = default;
};

inline void intrusive_ptr_add_ref(ITask* pTask)
{
    pTask->AddRef();
}

inline void intrusive_ptr_release(ITask* pTask)
{
    pTask->Release();
}

using TaskPtr = boost::intrusive_ptr<ITask>;

// Starts at 0: the first intrusive_ptr makes it 1.
class CTaskCounter
{
public:
    void Increment() { m_nRefs.fetch_add(1, std::memory_order_relaxed); }
    // True for the last one.
    bool Decrement() { return m_nRefs.fetch_sub(1, std::memory_order_acq_rel) == 1; }

private:
    std::atomic<unsigned> m_nRefs = 0;
};

template <class T>
class CTaskResult;

template <>
class CTaskResult<void> : public CTaskCounter
{
public:
    // True once the task has run, also if it threw.
    bool Wait(Event::Timeout timeout = {}) { return m_done.Wait(timeout); }

protected:
    void SetDone() { m_done.Set(); }

private:
    CSyncTaskEvent m_done;
};

template <class F>
class CBaseTask : public ITask, public CTaskResult<void>
{
public:
    explicit CBaseTask(F function) : m_function(std::move(function)) {}

    void Execute() final
    {
        const Done done{*this};
        m_function();
    }

    void AddRef() final { Increment(); }
    void Release() final
    {
        if (Decrement())
            delete this;
    }

private:
    struct Done
    {
        CBaseTask& task;
        ~Done() { task.SetDone(); }
    };

    F m_function;
};

// Nobody waits for it.
template <class F>
class CAsyncTask final : public CBaseTask<F>
{
public:
    using CBaseTask<F>::CBaseTask;
    bool IsSynchronous() const override { return false; }
};

template <class F>
class SyncTask final : public CBaseTask<F>
{
public:
    using CBaseTask<F>::CBaseTask;
    bool IsSynchronous() const override { return true; }
};

template <class F>
boost::intrusive_ptr<CAsyncTask<F>> MakeAsyncTask(F function)
{
    return new CAsyncTask<F>(std::move(function));
}

template <class F>
boost::intrusive_ptr<SyncTask<F>> MakeSyncTask(F function)
{
    return new SyncTask<F>(std::move(function));
}

} // namespace LocalRPC
