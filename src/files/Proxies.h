// Stand-ins that let a worker hold a counted reference without keeping the object
// behind it alive. The object cuts the link with Detach() before it goes; calls
// then reach nothing. All links are guarded by one process-wide lock, under which
// nothing else is taken.
#pragma once

#include "interfaces/IFileHandlerEvents.h"
#include "module/ComObject.h"
#include "platform/CriticalSection.h"

namespace Hesperon::specifics {

CriticalSection& ProxyLock();

// Stands in for a consumer of file events.
class CFileHandlerEventsProxy
    : public ComObject<CFileHandlerEventsProxy, Dual<IQRL_TabulexConverter::IFileHandlerEvents>>
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

private:
    com_ptr<IQRL_TabulexConverter::IFileHandlerEvents> Target();

    IQRL_TabulexConverter::IFileHandlerEvents* m_pTarget = nullptr; // guarded by ProxyLock
};

} // namespace Hesperon::specifics
