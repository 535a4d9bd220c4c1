// Each event takes a counted reference to the target under the proxy lock, and is passed on without
// it: a consumer may do anything in the call, cutting this link included.

#include "src/files/Proxies.h"

#include "module/LiveReference.h"

namespace Hesperon::specifics {

using IQRL_TabulexConverter::IFileHandlerEvents;

// Never destroyed: worker threads may still call while the process ends.
CriticalSection& ProxyLock()
{
    static CriticalSection& lock = *new CriticalSection;
    return lock;
}

void CFileHandlerEventsProxy::Attach(IFileHandlerEvents* pTarget)
{
    const ProxyLockGuard lock;
    m_pTarget = pTarget;
}

void CFileHandlerEventsProxy::Detach()
{
    Attach(nullptr);
}

// A target that has lost its last reference may not have called Detach yet.
com_ptr<IFileHandlerEvents> CFileHandlerEventsProxy::Target()
{
    const ProxyLockGuard lock;
    return m_pTarget ? LiveReference(m_pTarget) : nullptr;
}

HRESULT STDMETHODCALLTYPE CFileHandlerEventsProxy::RecordCountChange(ULONGLONG nNewCount,
                                                                     VARIANT_BOOL bComplete)
{
    const auto pTarget = Target();
    return pTarget ? pTarget->RecordCountChange(nNewCount, bComplete) : S_OK;
}

HRESULT STDMETHODCALLTYPE CFileHandlerEventsProxy::PutData(VARIANT vFields, ULONGLONG nFrom,
                                                           ULONGLONG nCount)
{
    const auto pTarget = Target();
    return pTarget ? pTarget->PutData(vFields, nFrom, nCount) : S_OK;
}

HRESULT STDMETHODCALLTYPE CFileHandlerEventsProxy::ProcessRecord(ULONGLONG nIndex, BSTR bsRecord,
                                                                 VARIANT_BOOL bComplete)
{
    const auto pTarget = Target();
    return pTarget ? pTarget->ProcessRecord(nIndex, bsRecord, bComplete) : S_OK;
}

// A target that can't tell may hear them.
bool STDMETHODCALLTYPE CFileHandlerEventsProxy::HearsCounts()
{
    const auto pTarget = Target();
    if (const auto pHearer = pTarget.as<ICountHearer>())
        return pHearer->HearsCounts();
    return static_cast<bool>(pTarget);
}

} // namespace Hesperon::specifics
