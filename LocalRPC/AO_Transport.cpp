#include "LocalRPC/AO_Transport.h"

#include "diagnostics/FaultmereClient.h"

namespace LocalRPC::details {

namespace utils {

void CTaskStorage::Add(const TaskPtr& task)
{
    const std::lock_guard lock(m_lock);
    m_queue.push_back(task);
}

void CTaskStorage::Take(TaskPtr& task)
{
    task.reset();
    const std::lock_guard lock(m_lock);
    if (m_queue.empty())
        return;
    task = std::move(m_queue.front());
    m_queue.pop_front();
}

// The tasks are destroyed after the lock is left: what goes with them may post others.
void CTaskStorage::Clear()
{
    std::deque<TaskPtr> dropped;
    const std::lock_guard lock(m_lock);
    m_queue.swap(dropped);
}

std::size_t CTaskStorage::Size() const
{
    const std::lock_guard lock(m_lock);
    return m_queue.size();
}

} // namespace utils

void CAOTransportBaseBase::execute_task(ITask& task) noexcept
{
    try {
        task.Execute();
    } catch (...) {
        FaultmereUtil::Assert(false, "Unhandled exception occure during execute task.");
    }
}

} // namespace LocalRPC::details
