// CFileEventHandler: forwards what a file's worker counts to the control of the dialog.
//
// It may outlive the control, as long as a parser holds it; the control takes itself out before
// it goes.
#pragma once

#include "interfaces/IFileHandlerEvents.h"
#include "module/ComObject.h"
#include "platform/threads/CriticalSection.h"
#include "src/UIComponents/Windowless/EventSinks.h"

namespace Hesperon::specifics {

class CFileEventHandler
    : public ComObject<CFileEventHandler, Dual<IQRL_TabulexConverter::IFileHandlerEvents>>
{
public:
    // Null for nobody; when this returns, the former sink isn't called any more.
    void PointAt(notify::IFileEventSink* pSink);

    // ---- IFileHandlerEvents, on the worker's thread

    HRESULT STDMETHODCALLTYPE RecordCountChange(ULONGLONG nNewCount,
                                                VARIANT_BOOL bComplete) override;
    HRESULT STDMETHODCALLTYPE PutData(VARIANT, ULONGLONG, ULONGLONG) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE ProcessRecord(ULONGLONG, BSTR, VARIANT_BOOL) override { return S_OK; }

private:
    // Held while the sink is called, which only posts.
    CriticalSection m_lock;
    notify::IFileEventSink* m_pSink = nullptr;
};

} // namespace Hesperon::specifics
