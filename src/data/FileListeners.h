// FileListeners: the objects that hear from a data parser how the count of its file grows.
//
// Safe from any thread; the lock is a leaf and isn't held during a call.
#pragma once

#include <thread>
#include <unordered_map>
#include <vector>

#include "interfaces/IFileHandlerEvents.h"
#include "platform/com_ptr.h"
#include "platform/threads/CriticalSection.h"

namespace Hesperon::specifics {

class FileListeners
{
public:
    // E_NOINTERFACE: the object takes no file events. A listener that is added again stays
    // alive for good: nothing gives back the reference that this takes.
    HRESULT Add(IDispatch& listener);
    void Remove(IDispatch& listener);
    void Clear();
    bool IsEmpty();

    // Calls each listener. One that is being called on this thread, since it is a data parser
    // that hands the call on to where it came from, isn't called again.
    void RecordCountChange(ULONGLONG nNewCount, VARIANT_BOOL bComplete);

private:
    using Listener = com_ptr<IQRL_TabulexConverter::IFileHandlerEvents>;

    // A call that is under way.
    struct RunningCall
    {
        std::thread::id thread;
        IQRL_TabulexConverter::IFileHandlerEvents* pListener;

        bool operator==(const RunningCall&) const = default;
    };

    std::vector<Listener> Live();
    bool BeginCall(const RunningCall& call);
    void EndCall(const RunningCall& call);

    CriticalSection m_lock; // guards what follows
    // A listener that was removed leaves its key with a null value.
    std::unordered_map<IDispatch*, Listener> m_mapFileEventHandlers;
    std::vector<RunningCall> m_calls;
};

} // namespace Hesperon::specifics
