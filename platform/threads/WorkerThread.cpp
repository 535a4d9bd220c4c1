#include "platform/threads/WorkerThread.h"

#include <optional>

#include "platform/threads/Apartment.h"
#include "platform/threads/MessageWindow.h"
#include "platform/threads/Thread.h"

void WorkerThread::Start(Priority priority, Runtime runtime, std::function<void()> run)
{
    m_pState = std::make_shared<State>();
    try {
        m_thread = std::thread([=, pState = m_pState, run = std::move(run)] {
            Main(*pState, priority, runtime, run);
        });
    } catch (...) {
        m_pState.reset();
        throw;
    }
}

// The system may give the number of a thread that has been joined to another one, so it is
// taken back while the thread still has it.
void WorkerThread::Main(State& state, Priority priority, Runtime runtime,
                        const std::function<void()>& run)
{
    if (priority == Priority::Lowered)
        LowerThreadPriority();
    state.id = std::this_thread::get_id();
    {
        std::optional<ThreadApartment> apartment;
        if (runtime == Runtime::Apartment)
            apartment.emplace();
        run();
    }
    state.id = std::thread::id();
    state.ended.Set();
}

bool WorkerThread::IsSelf() const
{
    return m_pState && m_pState->id.load() == std::this_thread::get_id();
}

bool WorkerThread::HasEnded() const
{
    return m_pState && m_pState->ended.Wait(std::chrono::milliseconds(0));
}

void WorkerThread::Join()
{
    m_thread.join();
}

void WorkerThread::JoinPumping()
{
    WaitPumping(m_pState->ended);
    Join();
}

void WorkerThread::Leave()
{
    m_thread.detach();
}
