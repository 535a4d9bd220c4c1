// Calls go over a copy of the list, without the lock, so a listener may add and remove others, or
// itself, in its call. The calls under way are noted by thread and listener: a data parser may
// listen to another that hands the call on to the first, and that chain has to end.

#include "src/data/FileListeners.h"

#include <algorithm>

namespace Hesperon::specifics {

using IQRL_TabulexConverter::IFileHandlerEvents;

HRESULT FileListeners::Add(IDispatch& listener)
{
    LockGuard lock(m_lock);
    Listener& pEntry = m_mapFileEventHandlers[&listener];
    if (!pEntry)
        return query(&listener, pEntry);
    Listener(pEntry).detach();
    return S_OK;
}

void FileListeners::Remove(IDispatch& listener)
{
    Listener pRemoved; // let go of without the lock
    LockGuard lock(m_lock);
    if (const auto entry = m_mapFileEventHandlers.find(&listener);
        entry != m_mapFileEventHandlers.end())
        std::swap(entry->second, pRemoved);
}

void FileListeners::Clear()
{
    std::unordered_map<IDispatch*, Listener> cleared;
    LockGuard lock(m_lock);
    std::swap(m_mapFileEventHandlers, cleared);
}

bool FileListeners::IsEmpty()
{
    LockGuard lock(m_lock);
    return std::ranges::none_of(m_mapFileEventHandlers,
                                [](const auto& entry) { return static_cast<bool>(entry.second); });
}

std::vector<FileListeners::Listener> FileListeners::Live()
{
    std::vector<Listener> live;
    LockGuard lock(m_lock);
    for (const auto& [key, pListener] : m_mapFileEventHandlers)
        if (pListener)
            live.push_back(pListener);
    return live;
}

void FileListeners::RecordCountChange(ULONGLONG nNewCount, VARIANT_BOOL bComplete)
{
    for (const Listener& pListener : Live()) {
        const RunningCall call{std::this_thread::get_id(), pListener.get()};
        if (!BeginCall(call))
            continue;
        pListener->RecordCountChange(nNewCount, bComplete);
        EndCall(call);
    }
}

bool FileListeners::BeginCall(const RunningCall& call)
{
    LockGuard lock(m_lock);
    if (std::ranges::find(m_calls, call) != m_calls.end())
        return false;
    m_calls.push_back(call);
    return true;
}

void FileListeners::EndCall(const RunningCall& call)
{
    LockGuard lock(m_lock);
    std::erase(m_calls, call);
}

} // namespace Hesperon::specifics
