// The file under a data parser: opening, direction, positions, counts.

#include "diagnostics/FaultmereClient.h"
#include "src/data/DataParser.h"
#include "src/files/FilePool.h"

using FaultmereUtil::Assert;

namespace Hesperon::specifics {

com_ptr<IFileHandler> CDataParser::FileHandler()
{
    LockGuard lock(m_lock);
    return m_pFileHandler;
}

// ---- opening

HRESULT CDataParser::get_FileName(BSTR* pVal)
{
    return Guarded([&] {
        const com_ptr<IFileHandler> pHandler = FileHandler();
        return pHandler ? pHandler->GetFileName(pVal) : E_FAIL;
    });
}

HRESULT CDataParser::put_FileName(BSTR newVal)
{
    constexpr int kTries = 5;
    for (int i = 0; i < kTries; ++i) {
        try {
            return OpenFile(TextOf(newVal));
        } catch (...) {
            // Another thread may have been closing the file at this moment.
        }
    }
    return E_FAIL;
}

HRESULT CDataParser::OpenFile(string_view_t sName)
{
    // The pool waits for its threads, so it is asked without the lock.
    const com_ptr<IFileHandler> pHandler = FilePool::AttachFile(sName);
    if (!pHandler) {
        CloseFile();
        return S_FALSE;
    }
    {
        LockGuard lock(m_lock);
        if (IsBoundTo(sName)) {
            RebindFile(pHandler);
            QueueCountEvents();
            return S_OK;
        }
    }
    const HRESULT hr = RenewProxies();
    if (FAILED(hr))
        return hr;
    LockGuard lock(m_lock);
    RebindFile(pHandler);
    if (m_bAutoDetectCodePage)
        DetectCodePage();
    ForgetLayout();
    RefreshDateRange();
    QueueCountEvents();
    return S_OK;
}

bool CDataParser::IsBoundTo(string_view_t sName)
{
    Bstr sBound;
    return m_pFileHandler && SUCCEEDED(m_pFileHandler->GetFileName(sBound.put())) &&
           sBound.view() == sName;
}

void CDataParser::RebindFile(const com_ptr<IFileHandler>& pHandler)
{
    if (m_pFileHandler == pHandler)
        return;
    m_pFileHandler = pHandler;
    m_bRunStale = true;
}

void CDataParser::CloseFile()
{
    FileProxies proxies;
    com_ptr<IFileHandler> pHandler;
    {
        LockGuard lock(m_lock);
        std::swap(proxies, m_proxies);
        std::swap(pHandler, m_pFileHandler);
        m_bRunStale = true;
    }
    proxies.Detach();
    if (pHandler)
        pHandler->CancelRequests(Key());
}

void CDataParser::ForgetLayout()
{
    if (m_pRecordParser)
        m_pRecordParser->Reset();
    m_bHasHeader = 0;
    m_nHeaderOffset = 0;
    m_bInvertedDirection = false;
}

HRESULT CDataParser::InvalidateFileInfo(VARIANT_BOOL Erase)
{
    return Locked([&] {
        if (!m_pFileHandler)
            return E_UNEXPECTED;
        const HRESULT hr = m_pFileHandler->Invalidate(Erase);
        return SUCCEEDED(hr) ? RefreshDateInfo(VARIANT_FALSE) : hr;
    });
}

// ---- proxies

HRESULT CDataParser::FileProxies::Create()
{
    const HRESULT hr = CreateObject(pFileEvents);
    return SUCCEEDED(hr) ? CreateObject(pRecordParser) : hr;
}

void CDataParser::FileProxies::Detach()
{
    if (pFileEvents)
        pFileEvents->Detach();
    if (pRecordParser)
        pRecordParser->Detach();
    *this = {};
}

// Old links are cut before the new ones stand, so that no event of the old file
// arrives for the new one.
HRESULT CDataParser::RenewProxies()
{
    FileProxies proxies;
    com_ptr<IRecordParser> pParser;
    {
        LockGuard lock(m_lock);
        std::swap(proxies, m_proxies);
        pParser = m_pRecordParser;
    }
    proxies.Detach();
    const HRESULT hr = proxies.Create();
    if (FAILED(hr))
        return hr;
    proxies.pFileEvents->Attach(this);
    proxies.pRecordParser->Attach(pParser.get());
    {
        LockGuard lock(m_lock);
        std::swap(proxies.pFileEvents, m_proxies.pFileEvents);
        // A link to a parser that was replaced meanwhile must not stay.
        if (m_pRecordParser == pParser)
            std::swap(proxies.pRecordParser, m_proxies.pRecordParser);
    }
    proxies.Detach();
    return S_OK;
}

void CDataParser::QueueCountEvents()
{
    if (m_pFileHandler && m_proxies.pFileEvents)
        m_pFileHandler->QueueCountEvents(m_proxies.pFileEvents->Identity(), Key());
}

// ---- counts

HRESULT CDataParser::GetCount(ULONGLONG* nCount, VARIANT_BOOL* bComplete)
{
    return Locked([&] {
        if (!m_pFileHandler)
            return E_FAIL;
        if (!nCount)
            return S_OK;
        const HRESULT hr = m_pFileHandler->GetCount(nCount, bComplete);
        // Wraps for a file that is shorter than its header.
        if (SUCCEEDED(hr))
            *nCount -= m_nHeaderOffset + ULONGLONG(m_bHasHeader);
        return hr;
    });
}

HRESULT CDataParser::GetApproxCount(ULONGLONG* nCount)
{
    return Guarded([&] {
        const com_ptr<IFileHandler> pHandler = FileHandler();
        return pHandler ? pHandler->GetApproxCount(nCount) : OLE_E_BLANK;
    });
}

HRESULT CDataParser::GetRelativePos(ULONGLONG nPosition, FLOAT* fRelative)
{
    return Guarded([&] {
        const com_ptr<IFileHandler> pHandler = FileHandler();
        return pHandler ? pHandler->GetRelativePos(nPosition, fRelative) : E_UNEXPECTED;
    });
}

// Of the file, and not of this object's own reads: a run reads through a clone.
HRESULT CDataParser::GetReadState(IQRL_TabulexConverter::ReadState* pState)
{
    if (!pState)
        return E_POINTER;
    *pState = {};
    return Guarded([&] {
        const auto pFile = FileHandler().as<IQRL_TabulexConverter::IReadState>();
        return pFile ? pFile->GetReadState(pState) : E_FAIL;
    });
}

// ---- direction

HRESULT CDataParser::get_InvertedDirection(VARIANT_BOOL* pVal)
{
    if (!pVal)
        return E_POINTER;
    LockGuard lock(m_lock);
    *pVal = m_bInvertedDirection ? VARIANT_TRUE : VARIANT_FALSE;
    return S_OK;
}

HRESULT CDataParser::put_InvertedDirection(VARIANT_BOOL newVal)
{
    return Locked([&] { return SetInverted(newVal != VARIANT_FALSE); });
}

HRESULT CDataParser::SetInverted(bool bInverted)
{
    if (bInverted && !m_pFileHandler)
        return E_UNEXPECTED;
    // Asking again for the inverted direction switches back.
    if (!bInverted || m_bInvertedDirection) {
        m_bInvertedDirection = false;
        return S_OK;
    }
    // There is no such line: looking for it walks through the whole file.
    m_pFileHandler->SeekRecord(~0ull);
    VARIANT_BOOL bComplete = VARIANT_FALSE;
    const HRESULT hr = m_pFileHandler->GetCount(&m_nTotalRecords, &bComplete);
    if (!Assert(SUCCEEDED(hr) && bComplete != VARIANT_FALSE,
                "(((HRESULT)(hr)) >= 0) && ((VARIANT_BOOL)0) != bComplete"))
        return hr;
    m_bInvertedDirection = true;
    return S_OK;
}

// ---- positions

HRESULT CDataParser::get_Position(ULONGLONG* pVal)
{
    if (!pVal)
        return E_POINTER;
    LockGuard lock(m_lock);
    *pVal = m_nPosition;
    return S_OK;
}

HRESULT CDataParser::put_Position(ULONGLONG newVal)
{
    return Locked([&] { return SetPosition(newVal); });
}

HRESULT CDataParser::SetPosition(ULONGLONG nPosition)
{
    if (!m_pFileHandler)
        return E_FAIL;
    const HRESULT hr = m_pFileHandler->SeekRecord(LineOf(nPosition));
    if (hr == S_OK)
        m_nPosition = nPosition;
    return hr;
}

HRESULT CDataParser::get_CurrentRecord(BSTR* pVal)
{
    return Locked([&] { return ReadCurrent(pVal); });
}

HRESULT CDataParser::ReadCurrent(BSTR* pRecord)
{
    if (!m_pFileHandler)
        return E_FAIL;
    if (!pRecord)
        return E_POINTER;
    *pRecord = nullptr;
    return m_pFileHandler->GetRecord(LineOf(m_nPosition), m_nLocale, pRecord);
}

HRESULT CDataParser::get_LastRecord(BSTR* pVal)
{
    return Locked([&] { return ReadLast(pVal); });
}

HRESULT CDataParser::ReadLast(BSTR* pRecord)
{
    if (!m_pFileHandler)
        return E_UNEXPECTED;
    if (!pRecord)
        return E_POINTER;
    *pRecord = nullptr;
    if (!m_bInvertedDirection)
        return m_pFileHandler->GetLastRecord(m_nLocale, pRecord);
    const ULONGLONG nFirstLine = m_nHeaderOffset + ULONGLONG(m_bHasHeader);
    return m_pFileHandler->GetRecord(nFirstLine, m_nLocale, pRecord);
}

} // namespace Hesperon::specifics
