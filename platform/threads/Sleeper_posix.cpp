// Messages come through queues of our own, whose events are waited for like others, so the request
// to end for the system's input isn't used.

#include "platform/threads/Sleeper.h"

#include "platform/threads/Mutex.h"

struct Sleeper::Signal
{
    Condition wakeUp;
};

Sleeper::Sleeper() : m_pSignal(new Signal) {}

Sleeper::~Sleeper()
{
    delete m_pSignal;
}

Sleeper::Ending Sleeper::Sleep(std::unique_lock<Mutex>& lock, Deadline deadline, bool)
{
    if (!deadline) {
        m_pSignal->wakeUp.wait(lock);
        return Ending::Woken;
    }
    return m_pSignal->wakeUp.wait_until(lock, *deadline) == std::cv_status::timeout ? Ending::Late
                                                                                    : Ending::Woken;
}

void Sleeper::Wake()
{
    m_pSignal->wakeUp.notify_one();
}
