// WorkerThread: a thread of ours, from its start until somebody has waited for its end.
//
// How its work is asked to stop is the owner's affair; a running step is never cut short. A
// thread whose end nobody waited for must be left before its object goes.
//
// Start, Join and Leave are for one caller at a time, and IsSelf not for the time of a Start. The
// transport of active objects starts a new thread while others ask whether they run on the old
// one, and signals the start and the end of a thread at other moments; so it has a std::thread.
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <thread>

#include "platform/threads/Event.h"

class WorkerThread
{
public:
    enum class Priority
    {
        Normal,
        Lowered // other work goes first
    };
    enum class Runtime
    {
        None,
        Apartment // the component runtime, in an apartment of the thread's own
    };

    // Runs the function on a new thread. Throws where no thread can be had. After a join
    // it may be called again.
    void Start(Priority priority, Runtime runtime, std::function<void()> run);

    // Whether the calling thread is this one. From any thread once Start has returned, and
    // from the new thread at once, until its apartment has gone.
    bool IsSelf() const;
    // True after the last thing that the thread does, so that a join doesn't wait.
    bool HasEnded() const;

    // Waits for the end. From any other thread, once.
    void Join();
    // The same, and dispatches the messages of the calling thread meanwhile.
    void JoinPumping();
    // Nobody will wait; the object may go before the thread does.
    void Leave();

private:
    // Shared with the thread, which may outlive the object.
    struct State
    {
        std::atomic<std::thread::id> id; // as long as it can be asked for; set by the thread itself
        Event ended{Event::Kind::ManualReset};
    };

    static void Main(State& state, Priority priority, Runtime runtime,
                     const std::function<void()>& run);

    std::shared_ptr<State> m_pState;
    std::thread m_thread;
};
