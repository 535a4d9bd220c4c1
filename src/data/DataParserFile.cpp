// The file under a data parser: opening, direction, positions, counts.
//
// A file is opened in three steps, each under another lock. The pool gives the handler that all
// users of the name share, and nothing is locked while it opens the file. New proxies are put in
// place of the old ones under the proxy lock. Then, under this object's own lock, the file takes
// the place of the one before, the layout is forgotten, and reading the range of dates has the
// record parser find it anew in the first record.

#include "diagnostics/FaultmereClient.h"
#include "src/data/CodePageSample.h"
#include "src/data/DataParser.h"
#include "src/files/FilePool.h"

using FaultmereUtil::Assert;

namespace Hesperon::specifics {

namespace {

bool IsFileOf(const com_ptr<IFileHandler>& pHandler, string_view_t sName)
{
    Bstr sBound;
    return pHandler && SUCCEEDED(pHandler->GetFileName(sBound.put())) && sBound.view() == sName;
}

} // namespace

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
            // Another thread may have closed the file just then.
        }
    }
    return E_FAIL;
}

HRESULT CDataParser::OpenFile(string_view_t sName)
{
    // The pool waits for its threads, so don't hold the lock.
    const com_ptr<IFileHandler> pHandler = FilePool::AttachFile(sName);
    if (!pHandler) {
        CloseFile();
        return S_FALSE;
    }
    {
        LockGuard lock(m_lock);
        if (IsFileOf(m_pFileHandler, sName)) {
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
        m_nLocale = DetectCodePage(*m_pFileHandler.get(), m_nLocale);
    ForgetLayout();
    RefreshDateRange();
    QueueCountEvents();
    return S_OK;
}

void CDataParser::RebindFile(const com_ptr<IFileHandler>& pHandler)
{
    if (m_pFileHandler == pHandler)
        return;
    m_pFileHandler = pHandler;
    m_run.Replaced();
}

void CDataParser::CloseFile()
{
    FileProxies proxies;
    com_ptr<IFileHandler> pHandler;
    {
        LockGuard lock(m_lock);
        std::swap(proxies, m_proxies);
        std::swap(pHandler, m_pFileHandler);
        m_run.Replaced();
    }
    proxies.Detach();
    if (pHandler)
        pHandler->CancelRequests(Key());
}

void CDataParser::ForgetLayout()
{
    if (m_pRecordParser)
        m_pRecordParser->Reset();
    m_lines.bHasHeader = 0;
    m_lines.nHeaderOffset = 0;
    m_lines.bInvertedDirection = false;
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

// The old links are cut before the new ones are made, so that no event of the old file is
// taken for one of the new file.
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
        // The record parser may have been replaced meanwhile; then the link must not stay.
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
        // Wraps if the file is shorter than its header.
        if (SUCCEEDED(hr))
            *nCount -= m_lines.FirstDataLine();
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
    *pVal = m_lines.bInvertedDirection ? VARIANT_TRUE : VARIANT_FALSE;
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
    if (!bInverted || m_lines.bInvertedDirection) {
        m_lines.bInvertedDirection = false;
        return S_OK;
    }
    // No file has this line, so the search goes to the end and counts all lines.
    m_pFileHandler->SeekRecord(~0ull);
    VARIANT_BOOL bComplete = VARIANT_FALSE;
    const HRESULT hr = m_pFileHandler->GetCount(&m_lines.nTotalRecords, &bComplete);
    if (!Assert(SUCCEEDED(hr) && bComplete != VARIANT_FALSE,
                "(((HRESULT)(hr)) >= 0) && ((VARIANT_BOOL)0) != bComplete"))
        return hr;
    m_lines.bInvertedDirection = true;
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
    const HRESULT hr = m_pFileHandler->SeekRecord(m_lines.LineOf(nPosition));
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
    return m_pFileHandler->GetRecord(m_lines.LineOf(m_nPosition), m_nLocale, pRecord);
}

HRESULT CDataParser::get_LastRecord(BSTR* pVal)
{
    return Locked([&] { return ReadLast(Extent::Whole, pVal); });
}

HRESULT CDataParser::get_LastRecordHead(BSTR* pVal)
{
    return Locked([&] { return ReadLast(Extent::Head, pVal); });
}

// In an inverted file that is the first line of data.
HRESULT CDataParser::ReadLast(Extent extent, BSTR* pRecord)
{
    if (!m_pFileHandler)
        return E_UNEXPECTED;
    if (!pRecord)
        return E_POINTER;
    *pRecord = nullptr;
    if (m_lines.bInvertedDirection)
        return m_pFileHandler->GetRecord(m_lines.FirstDataLine(), m_nLocale, pRecord);
    const auto pSource = m_pFileHandler.as<ILineSource>();
    return pSource && extent == Extent::Head ? pSource->GetLastRecordHead(m_nLocale, pRecord)
                                             : m_pFileHandler->GetLastRecord(m_nLocale, pRecord);
}

} // namespace Hesperon::specifics
