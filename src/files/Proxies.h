// Stand-ins that let a worker hold a counted reference without keeping the target
// alive. The target cuts the link with Detach() before it is destroyed; calls then
// reach nothing. All links are guarded by one process-wide lock.
#pragma once

#include "interfaces/IFileHandlerEvents.h"
#include "module/ComObject.h"
#include "platform/threads/CriticalSection.h"
#include "platform/threads/MessageWindow.h"
#include "src/files/IFileConsumer.h"

namespace Hesperon::specifics {

// Guards the links of all proxies and the running transactions. A transaction is cancelled
// with this lock held, and its end waits for the thread of the host that hears of it.
CriticalSection& ProxyLock();

// Holds the proxy lock. Its holder may be waiting for this thread to handle a message, so a
// thread with windows dispatches while it waits. Hold no other lock meanwhile.
class ProxyLockGuard
{
public:
    ProxyLockGuard()
    {
        if (!ProxyLock().try_lock())
            LockPumping(ProxyLock());
    }
    ~ProxyLockGuard() { ProxyLock().unlock(); }
    ProxyLockGuard(const ProxyLockGuard&) = delete;
    ProxyLockGuard& operator=(const ProxyLockGuard&) = delete;
};

// Stands in for a consumer of file events.
class CFileHandlerEventsProxy
    : public ComObject<CFileHandlerEventsProxy, Dual<IQRL_TabulexConverter::IFileHandlerEvents>,
                       ICountHearer>
{
public:
    // The target isn't counted.
    void Attach(IQRL_TabulexConverter::IFileHandlerEvents* pTarget);
    void Detach();

    HRESULT STDMETHODCALLTYPE RecordCountChange(ULONGLONG nNewCount,
                                                VARIANT_BOOL bComplete) override;
    HRESULT STDMETHODCALLTYPE PutData(VARIANT vFields, ULONGLONG nFrom, ULONGLONG nCount) override;
    HRESULT STDMETHODCALLTYPE ProcessRecord(ULONGLONG nIndex, BSTR bsRecord,
                                            VARIANT_BOOL bComplete) override;

    bool STDMETHODCALLTYPE HearsCounts() override;

private:
    com_ptr<IQRL_TabulexConverter::IFileHandlerEvents> Target();

    IQRL_TabulexConverter::IFileHandlerEvents* m_pTarget = nullptr; // guarded by ProxyLock
};

} // namespace Hesperon::specifics
