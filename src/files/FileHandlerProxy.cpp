// CFileHandler::CProxy: IFileHandler on a file handler, on the caller's thread.

#include "diagnostics/FaultmereClient.h"
#include "platform/values.h"
#include "src/files/FileHandler.h"
#include "src/files/FileHandlerReader.h"

namespace Hesperon::specifics {

namespace {

// For calls that don't let exceptions through.
template <class Call>
HRESULT Guarded(Call call)
try {
    return call();
} catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
} catch (const std::invalid_argument&) {
    return E_INVALIDARG;
}

} // namespace

HRESULT STDMETHODCALLTYPE CFileHandler::CProxy::QueryInterface(REFIID riid, void** ppvObject)
{
    if (!ppvObject)
        return E_POINTER;
    *ppvObject = nullptr;
    if (riid == iid_of<IFileHandler>)
        *ppvObject = static_cast<IFileHandler*>(this);
    else if (riid == iid_of<ILineSource>)
        *ppvObject = static_cast<ILineSource*>(this);
    else if (riid == iid_of<IQRL_TabulexConverter::IReadState>)
        *ppvObject = static_cast<IReadState*>(this);
    else
        return E_NOINTERFACE;
    AddRef();
    return S_OK;
}

// The pool keeps a plain pointer to the proxy and may ask for a reference while the last one is
// released on another thread. So the count goes up from 0 once and ends at kGone for good: AddRef
// then gives 0, and the pool waits until the name is free (CFilePool::FindHandler).
ULONG STDMETHODCALLTYPE CFileHandler::CProxy::AddRef()
{
    ULONG nRefs = m_nRefs.load(std::memory_order_relaxed);
    while (nRefs != kGone)
        if (m_nRefs.compare_exchange_weak(nRefs, nRefs + 1, std::memory_order_relaxed))
            return nRefs + 1;
    return 0;
}

// What other threads did with the proxy before they released it must be seen by EndOfUse: hence
// acquire and release.
ULONG STDMETHODCALLTYPE CFileHandler::CProxy::Release()
{
    ULONG nRefs = m_nRefs.load(std::memory_order_relaxed);
    while (!m_nRefs.compare_exchange_weak(nRefs, nRefs == 1 ? kGone : nRefs - 1,
                                          std::memory_order_acq_rel, std::memory_order_relaxed))
        continue;
    if (nRefs == 1)
        EndOfUse();
    return nRefs - 1;
}

// The worker may be gone as soon as it is stopped, so what is needed afterwards is
// copied first.
void CFileHandler::CProxy::EndOfUse()
{
    const FileHandlerCall removeFileHandler = m_pHandler->m_RemoveFileHandler;
    FaultmereUtil::Assert(static_cast<bool>(removeFileHandler), "RemoveFileHandler");
    const string_t sName = m_pHandler->m_sFileName;
    m_pHandler->Stop();
    if (removeFileHandler)
        removeFileHandler(sName, this);
    delete this;
}

HRESULT STDMETHODCALLTYPE CFileHandler::CProxy::GetFileName(BSTR* bsName)
{
    if (!bsName)
        return E_POINTER;
    *bsName = nullptr;
    return Guarded([&] {
        *bsName = NewBstr(m_pHandler->m_sFileName);
        return S_OK;
    });
}

HRESULT STDMETHODCALLTYPE CFileHandler::CProxy::GetCount(ULONGLONG* nCount, VARIANT_BOOL* bComplete)
{
    if (!nCount)
        return E_POINTER;
    LockGuard lock(m_pHandler->m_lock);
    *nCount = m_pHandler->m_index.RecordCount();
    if (bComplete)
        *bComplete = m_pHandler->m_index.IsComplete() ? VARIANT_TRUE : VARIANT_FALSE;
    return S_OK;
}

// The code page of the caller isn't used: the index decodes in the ANSI code page of the process.
HRESULT STDMETHODCALLTYPE CFileHandler::CProxy::GetRecord(ULONGLONG nIndex, ULONG, BSTR* bsRecord)
{
    if (!bsRecord)
        return E_POINTER;
    *bsRecord = nullptr;
    const auto give = [&](string_view_t text) { *bsRecord = NewBstr(text); };
    return m_pHandler->ReadRecord(nIndex, give) ? S_OK : E_FAIL;
}

HRESULT STDMETHODCALLTYPE CFileHandler::CProxy::SeekRecord(ULONGLONG nIndex)
{
    LockGuard lock(m_pHandler->m_lock);
    const bool bFound =
        m_pHandler->Reading(nIndex, [&] { return m_pHandler->m_index.SeekRecord(nIndex); });
    return bFound ? S_OK : E_FAIL;
}

HRESULT STDMETHODCALLTYPE CFileHandler::CProxy::QueueFirstRecord(IUnknown* pObject, ULONGLONG nKey)
{
    return Guarded([&] {
        m_pHandler->Queue(PendingRequest::Kind::FirstRecord, pObject, nKey);
        return S_OK;
    });
}

HRESULT STDMETHODCALLTYPE CFileHandler::CProxy::CancelRequests(ULONGLONG nKey)
{
    return Guarded([&] {
        FileRequests::List cancelled; // released after the lock
        LockGuard lock(m_pHandler->m_lock);
        cancelled =
            nKey == kAllKeys ? m_pHandler->m_requests.TakeAll() : m_pHandler->m_requests.Take(nKey);
        return nKey == kAllKeys || !cancelled.empty() ? S_OK : S_FALSE;
    });
}

HRESULT STDMETHODCALLTYPE CFileHandler::CProxy::QueueCountEvents(IUnknown* pObject, ULONGLONG nKey)
{
    return Guarded([&] {
        m_pHandler->Queue(PendingRequest::Kind::CountEvents, pObject, nKey);
        return S_OK;
    });
}

HRESULT STDMETHODCALLTYPE CFileHandler::CProxy::QueueConversion(IUnknown* pObject, ULONGLONG nKey)
{
    return Guarded([&] {
        m_pHandler->Queue(PendingRequest::Kind::Conversion, pObject, nKey);
        return S_OK;
    });
}

HRESULT STDMETHODCALLTYPE CFileHandler::CProxy::GetRelativePos(ULONGLONG nIndex, FLOAT* fRelative)
{
    if (!fRelative)
        return E_POINTER;
    LockGuard lock(m_pHandler->m_lock);
    return Guarded([&] { return m_pHandler->m_index.GetRelativePos(nIndex, fRelative); });
}

// The text may be long, so nothing of it is kept, and the copy for the caller is made
// without the lock.
template <class Read>
HRESULT CFileHandler::CProxy::GiveLastRecord(BSTR* bsRecord, Read read)
{
    if (!bsRecord)
        return E_POINTER;
    *bsRecord = nullptr;
    string_t sText;
    {
        LockGuard lock(m_pHandler->m_lock);
        const bool bFound = m_pHandler->Reading(IQRL_TabulexConverter::kNoFaultLine,
                                                [&] { return read(m_pHandler->m_index, sText); });
        if (!bFound)
            return E_FAIL;
    }
    *bsRecord = NewBstr(sText);
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CFileHandler::CProxy::GetLastRecord(ULONG, BSTR* bsRecord)
{
    return GiveLastRecord(
        bsRecord, [](LineIndex& index, string_t& sText) { return index.GetLastRecord(sText); });
}

HRESULT STDMETHODCALLTYPE CFileHandler::CProxy::GetLastRecordHead(ULONG, BSTR* bsRecord)
{
    return GiveLastRecord(
        bsRecord, [](LineIndex& index, string_t& sText) { return index.GetLastRecordHead(sText); });
}

HRESULT STDMETHODCALLTYPE CFileHandler::CProxy::RefreshFileSize()
{
    LockGuard lock(m_pHandler->m_lock);
    m_pHandler->m_index.RefreshFileSize();
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CFileHandler::CProxy::Invalidate(VARIANT_BOOL bErase)
{
    LockGuard lock(m_pHandler->m_lock);
    m_pHandler->m_index.Invalidate(bErase != VARIANT_FALSE);
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CFileHandler::CProxy::GetApproxCount(ULONGLONG* nCount)
{
    if (!nCount)
        return E_INVALIDARG;
    return Guarded([&] {
        *nCount = m_pHandler->Reading(IQRL_TabulexConverter::kNoFaultLine,
                                      [&] { return m_pHandler->m_index.GetApproxCount(); });
        return S_OK;
    });
}

HRESULT STDMETHODCALLTYPE CFileHandler::CProxy::OpenLines(ILineReader** ppLines)
{
    if (!ppLines)
        return E_POINTER;
    *ppLines = nullptr;
    com_ptr<CReader> pReader;
    const HRESULT hr = CreateObject(pReader);
    if (FAILED(hr))
        return hr;
    pReader->Attach(m_pHandler);
    *ppLines = pReader.detach();
    return S_OK;
}

HRESULT STDMETHODCALLTYPE
CFileHandler::CProxy::GetReadState(IQRL_TabulexConverter::ReadState* pState)
{
    if (!pState)
        return E_POINTER;
    *pState = {};
    LockGuard lock(m_pHandler->m_lock);
    const auto nSizeNow = m_pHandler->m_pFile->Size();
    if (!nSizeNow)
        return E_FAIL;
    const FailedRead& fault = m_pHandler->m_firstFault;
    *pState = {fault.kind, fault.nPosition, m_pHandler->m_nFaultLine,
               m_pHandler->m_index.FileSize(), *nSizeNow};
    return S_OK;
}

} // namespace Hesperon::specifics
