// A conversion: its start, its steps on the file's worker, and its end.
//
// A run is on while m_pDataParserEvents is set. Whoever takes the sink out of it
// under the lock sends EndTransaction, which therefore goes out once a run. The
// sink is called without the lock, since it may wait for a thread that wants it.

#include <algorithm>
#include <chrono>

#include "Simples/interface/ResourceStrings.h"
#include "diagnostics/FaultmereClient.h"
#include "platform/MessageWindow.h"
#include "src/data/DataParser.h"
#include "src/data/ErrorDescription.h"
#include "src/data/RecordBatch.h"
#include "src/files/AsyncTransactionPool.h"
#include "src/files/Proxies.h"
#include "src/parsing/DataTypes.h"

using FaultmereUtil::Assert;

namespace Hesperon::specifics {

// ---- start

HRESULT CDataParser::StartConversion(IDispatch* pEventSink, ULONG_PTR nTranId)
{
    if (!pEventSink)
        return E_POINTER;
    const HRESULT hr = Guarded([&] { return StartWholeFile(pEventSink, nTranId); });
    // Also where the sink was that of a run that is on, which then ends unheard.
    if (FAILED(hr))
        TakeSink();
    return hr;
}

HRESULT CDataParser::StartWholeFile(IDispatch* pEventSink, ULONG_PTR nTranId)
{
    {
        LockGuard lock(m_lock);
        m_arFieldIndices.clear();
        if (!Assert(!m_pDataParserEvents, "!m_pDataParserEvents"))
            return E_POINTER;
        com_ptr<IDataParserEvents> pEvents;
        HRESULT hr = query(pEventSink, pEvents);
        if (FAILED(hr))
            return hr;
        PutSink(std::move(pEvents));
        hr = ResetRun();
        if (FAILED(hr))
            return hr;
        m_hAbortEvent.Reset();
    }
    return QueueRun(nTranId);
}

HRESULT CDataParser::StartConvertPortion(LONG_PTR hWnd, IDispatch* pEventSink, ULONGLONG StartPos,
                                         ULONGLONG Count, ULONG_PTR nTranId)
{
    if (!pEventSink)
        return E_POINTER;
    return Guarded([&] { return StartPortion(hWnd, pEventSink, StartPos, Count, nTranId); });
}

HRESULT CDataParser::StartPortion(LONG_PTR hWnd, IDispatch* pEventSink, ULONGLONG StartPos,
                                  ULONGLONG Count, ULONG_PTR nTranId)
{
    {
        LockGuard lock(m_lock);
        if (!Assert(!m_pDataParserEvents, "!m_pDataParserEvents"))
            return E_UNEXPECTED;
    }
    com_ptr<IDataParserEvents> pEvents;
    if (FAILED(query(pEventSink, pEvents)))
        return E_NOINTERFACE;
    if (Count == 0) {
        pEvents->EndTransaction(VARIANT_TRUE);
        return S_OK;
    }
    Bstr sName;
    HRESULT hr = get_FileName(sName.put());
    if (FAILED(hr))
        return hr;
    if (!sName) {
        TellNoFile(*pEvents.get());
        return E_INVALIDARG;
    }
    if (StartsBehindEnd(StartPos)) {
        pEvents->EndTransaction(VARIANT_TRUE);
        return S_OK;
    }
    hr = Guarded([&] { return PreparePortion(pEvents, StartPos, Count); });
    if (SUCCEEDED(hr) && CheckConverterSettings(hWnd, pEventSink) != S_OK)
        hr = E_INVALIDARG;
    if (SUCCEEDED(hr))
        hr = QueueRun(nTranId);
    if (FAILED(hr))
        TakeSink();
    return hr;
}

void CDataParser::TellNoFile(IDataParserEvents& events)
{
    Variant description;
    if (SUCCEEDED(MakeErrorDescription(E_INVALIDARG, LoadResourceString(IDS_NO_FILE), description)))
        events.OnError(description);
}

bool CDataParser::StartsBehindEnd(ULONGLONG StartPos)
{
    ULONGLONG nCount = 0;
    VARIANT_BOOL bComplete = VARIANT_FALSE;
    const HRESULT hr = GetCount(&nCount, &bComplete);
    return SUCCEEDED(hr) && bComplete != VARIANT_FALSE && StartPos >= nCount;
}

HRESULT CDataParser::PreparePortion(const com_ptr<IDataParserEvents>& pEvents, ULONGLONG StartPos,
                                    ULONGLONG Count)
{
    LockGuard lock(m_lock);
    PutSink(pEvents);
    const HRESULT hr = ResetRun();
    if (FAILED(hr))
        return hr;
    m_bPortion = true;
    m_nPortionStart = StartPos;
    m_nPortionCount = Count;
    m_hAbortEvent.Reset();
    return S_OK;
}

HRESULT CDataParser::ResetRun()
{
    const HRESULT hr = InitFieldsInfo();
    if (FAILED(hr))
        return hr;
    if (!m_pFileHandler)
        return E_INVALIDARG;
    m_dtLast = {};
    m_nLastSymbolHash = ~0ull;
    m_nSymbolField = kNoField;
    m_pRecordParser->GetFieldIndex(TypeSymbol, &m_nSymbolField);
    return S_OK;
}

HRESULT CDataParser::QueueRun(ULONG_PTR nTranId)
{
    const com_ptr<IFileHandler> pHandler = FileHandler();
    if (!pHandler)
        return E_INVALIDARG;
    RegisterTransaction(nTranId);
    const HRESULT hr = pHandler->QueueConversion(static_cast<IFileHandlerEvents*>(this), Key());
    if (FAILED(hr))
        UnregisterTransaction();
    return hr;
}

// The pool gives 0 for a number that is taken, and also for the number 0. To
// unregister once too often takes another entry away, once too seldom leaves a
// pointer to an object that is gone.
void CDataParser::RegisterTransaction(ULONG_PTR nTranId)
{
    IUnknown* pObject = static_cast<IAsyncTransaction*>(this);
    if (AsyncTransactionPool::RegisterTransaction(nTranId, pObject) == nTranId)
        ++m_nRegistrations;
}

void CDataParser::UnregisterTransaction()
{
    LockGuard lock(ProxyLock()); // entries and count go together
    int nEntries = m_nRegistrations.exchange(0);
    for (; nEntries > 0; --nEntries)
        AsyncTransactionPool::UnregisterTransaction(this);
}

// ---- sink

void CDataParser::PutSink(com_ptr<IDataParserEvents> pEvents)
{
    m_pDataParserEvents = std::move(pEvents);
    m_bRunStale = true;
}

// A worker that holds the lock may wait for an answer from the calling thread.
com_ptr<CDataParser::IDataParserEvents> CDataParser::TakeSink()
{
    LockPumping(m_lock);
    LockGuard lock(m_lock, std::adopt_lock);
    m_bRunStale = true;
    return std::exchange(m_pDataParserEvents, nullptr);
}

// ---- steps

HRESULT CDataParser::get_StartPosition(ULONGLONG* pVal)
{
    if (!pVal)
        return E_POINTER;
    LockGuard lock(m_lock);
    *pVal = m_bPortion ? m_nPortionStart : 0;
    return S_OK;
}

HRESULT CDataParser::ProcessRecord(ULONGLONG nIndex, BSTR, VARIANT_BOOL)
{
    if (m_hAbortEvent.Wait(std::chrono::milliseconds(0)))
        return EndRun({E_FAIL, false});
    if (!RefreshRun())
        return EndRun({E_INVALIDARG, true});

    const HRESULT hrRead = ReadLine(nIndex);
    const bool bLast = FAILED(hrRead) || IsLastPosition(nIndex);
    if (!m_sTempRecords.empty() && m_sTempRecords.size() % kBatchSize == 0) {
        const Outcome outcome =
            InternalProcessRecords(nIndex, m_run.pRecordParser.get(), m_run.pEvents.get());
        if (outcome.hr != S_OK)
            return EndRun(outcome);
    }
    return bLast ? EndRun(LastStep(nIndex)) : hrRead;
}

// References are kept from step to step, so that a step takes no lock unless
// something has changed.
bool CDataParser::RefreshRun()
{
    if (m_bRunStale) {
        Run old = std::move(m_run);
        LockGuard lock(m_lock);
        m_run = {m_pDataParserEvents, OpenLines(m_pFileHandler), m_pRecordParser};
        m_bRunStale = false;
    }
    return m_run.IsComplete();
}

// A failure is how the end of the file shows.
HRESULT CDataParser::ReadLine(ULONGLONG nIndex)
try {
    const HRESULT hr = m_run.pLines->AppendRecord(LineOf(nIndex), m_nLocale, m_sTempRecords);
    if (FAILED(hr))
        return hr;
    const bool bHasText = SysStringLen(m_sTempRecords.back()) != 0;
    Assert(bHasText, "*bsRecord");
    Assert(bHasText, "!m_sTempRecords[ m_sTempRecords.GetCount() - 1 ].IsEmpty()");
    return hr;
} catch (...) {
    return E_FAIL;
}

bool CDataParser::IsLastPosition(ULONGLONG nIndex) const
{
    // The first data line of an inverted file; its header isn't read.
    const ULONGLONG nLastInverted = m_nTotalRecords - (m_bHasHeader != 0) - m_nHeaderOffset - 1;
    if (!m_bPortion)
        return m_bInvertedDirection && nIndex == nLastInverted;
    ULONGLONG nLast = m_nPortionCount + m_nPortionStart - 1;
    if (m_bInvertedDirection)
        nLast = std::min(nLast, nLastInverted);
    return nIndex == nLast;
}

// The batch is taken to end with the record before nIndex, whose read has failed.
// Where it ends with that of nIndex instead, in an inverted file and in a portion,
// line numbers of errors in this batch are those of the position before.
CDataParser::Outcome CDataParser::LastStep(ULONGLONG nIndex)
{
    return InternalProcessRecords(nIndex - 1, m_run.pRecordParser.get(), m_run.pEvents.get());
}

CDataParser::Outcome CDataParser::InternalProcessRecords(ULONGLONG nLast,
                                                         IRecordParser* pRecordParser,
                                                         IDataParserEvents* pHost)
{
    std::unique_lock<CriticalSection> lock(m_lock);
    if (m_sTempRecords.empty())
        return {S_OK, false};
    CRecordBatch batch(*this, nLast, pRecordParser, pHost);
    const HRESULT hr = Guarded([&] { return batch.Parse(); });
    m_sTempRecords.clear();
    lock.unlock();
    if (FAILED(hr))
        return {hr, hr == E_INVALIDARG};
    return {batch.Deliver(), false};
}

// ---- end

// The worker stops for any result but S_OK, so an end that went well is S_FALSE.
HRESULT CDataParser::EndRun(Outcome outcome)
{
    // Before the sink hears of the end: it may start the next run, on another file's worker.
    m_sTempRecords.Release();
    m_batchArray.Release();
    m_run = {};
    m_bRunStale = true;
    // A sink that knows is let go of, unless an abort, which has set its event and
    // waits for the lock, is going to tell it.
    const bool bLeave = outcome.bSinkKnows && m_hAbortEvent.Wait(std::chrono::milliseconds(0));
    // Ahead of the end's being told: the sink may start the next run under this number.
    // And ahead of taking the sink: a cancel that still finds this run is to find its sink too.
    UnregisterTransaction();
    const com_ptr<IDataParserEvents> pEvents = bLeave ? nullptr : TakeSink();
    if (pEvents && !outcome.bSinkKnows)
        pEvents->EndTransaction(SUCCEEDED(outcome.hr) ? VARIANT_TRUE : VARIANT_FALSE);
    return outcome.hr == S_OK ? S_FALSE : outcome.hr;
}

HRESULT CDataParser::AbortConversion()
{
    // The sink may hold the last reference to this object.
    const com_ptr<CDataParser> pSelf(this);
    m_hAbortEvent.Set();
    const com_ptr<IDataParserEvents> pEvents = TakeSink();
    UnregisterTransaction(); // ahead of the end, as in EndRun
    if (pEvents)
        pEvents->EndTransaction(VARIANT_FALSE);
    return S_OK;
}

} // namespace Hesperon::specifics
