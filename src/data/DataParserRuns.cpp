// How conversions and enumerations of symbols start. A conversion is queued with the worker of
// the file, which then calls ProcessRecord; an enumeration walks on a copy of the parser.

#include "Simples/interface/ResourceStrings.h"
#include "diagnostics/FaultmereClient.h"
#include "module/OutValue.h"
#include "src/data/DataParser.h"
#include "src/data/DeliveredFields.h"
#include "src/data/ErrorDescription.h"
#include "src/data/RecordBlock.h"
#include "src/data/SettingsCheck.h"
#include "src/data/SymbolEnumerator.h"
#include "src/parsing/DataTypes.h"

using FaultmereUtil::Assert;

namespace Hesperon::specifics {

namespace {

void ReportNoFile(IQRL_TabulexConverter::IDataParserEvents& events)
{
    Variant description;
    if (SUCCEEDED(MakeErrorDescription(E_INVALIDARG, LoadResourceString(IDS_NO_FILE), description)))
        events.OnError(description);
}

} // namespace

// ---- a whole file

HRESULT CDataParser::StartConversion(IDispatch* pEventSink, ULONG_PTR nTranId)
{
    if (!pEventSink)
        return E_POINTER;
    const HRESULT hr = Guarded([&] { return StartWholeFile(pEventSink, nTranId); });
    // Also takes the sink of a run that is under way: it then ends without EndTransaction.
    if (FAILED(hr))
        m_run.LetGoOfSink();
    return hr;
}

HRESULT CDataParser::StartWholeFile(IDispatch* pEventSink, ULONG_PTR nTranId)
{
    {
        LockGuard lock(m_lock);
        if (!Assert(!m_run.HasSink(), "!m_pDataParserEvents"))
            return E_POINTER;
        com_ptr<IDataParserEvents> pEvents;
        HRESULT hr = query(pEventSink, pEvents);
        if (SUCCEEDED(hr))
            hr = BeginRun(pEvents, nullptr);
        if (FAILED(hr))
            return hr;
    }
    return QueueRun(nTranId);
}

// ---- a portion

HRESULT CDataParser::StartConvertPortion(LONG_PTR hWnd, IDispatch* pEventSink, ULONGLONG StartPos,
                                         ULONGLONG Count, ULONG_PTR nTranId)
{
    if (!pEventSink)
        return E_POINTER;
    return Guarded([&] {
        return StartPortion(hWnd, pEventSink, {true, StartPos, Count}, nTranId);
    });
}

// What is empty, or begins after the last record of a file that is counted to its end, ends well at
// once, without a run.
HRESULT CDataParser::StartPortion(LONG_PTR hWnd, IDispatch* pEventSink, const RunPortion& portion,
                                  ULONG_PTR nTranId)
{
    {
        LockGuard lock(m_lock);
        if (!Assert(!m_run.HasSink(), "!m_pDataParserEvents"))
            return E_UNEXPECTED;
    }
    com_ptr<IDataParserEvents> pEvents;
    if (FAILED(query(pEventSink, pEvents)))
        return E_NOINTERFACE;
    if (portion.nCount == 0)
        return pEvents->EndTransaction(VARIANT_TRUE), S_OK;
    Bstr sName;
    HRESULT hr = get_FileName(sName.put());
    if (FAILED(hr))
        return hr;
    if (!sName) {
        ReportNoFile(*pEvents.get());
        return E_INVALIDARG;
    }
    if (StartsPastEnd(portion.nStart))
        return pEvents->EndTransaction(VARIANT_TRUE), S_OK;
    hr = Locked([&] { return BeginRun(pEvents, &portion); });
    if (SUCCEEDED(hr) && CheckConverterSettings(hWnd, pEventSink) != S_OK)
        hr = E_INVALIDARG;
    if (SUCCEEDED(hr))
        hr = QueueRun(nTranId);
    if (FAILED(hr))
        m_run.LetGoOfSink();
    return hr;
}

bool CDataParser::StartsPastEnd(ULONGLONG StartPos)
{
    ULONGLONG nCount = 0;
    VARIANT_BOOL bComplete = VARIANT_FALSE;
    const HRESULT hr = GetCount(&nCount, &bComplete);
    return SUCCEEDED(hr) && bComplete != VARIANT_FALSE && StartPos >= nCount;
}

// ---- both

// With the lock held. Copies all that the run needs to know.
HRESULT CDataParser::BeginRun(const com_ptr<IDataParserEvents>& pEvents, const RunPortion* pPortion)
{
    RunSettings settings;
    const HRESULT hr =
        FindDeliveredFields(m_pRecordParser.get(), m_vTypeNames, settings.arFieldIndices);
    if (FAILED(hr))
        return hr;
    if (!m_pFileHandler)
        return E_INVALIDARG;
    m_nSymbolField = FindSymbolField();
    settings.lines = m_lines;
    settings.nLocale = m_nLocale;
    settings.dtStart = m_dtStart;
    settings.dtEnd = m_dtEnd;
    settings.sSymbolName = Bstr(m_sSymbolName.view());
    settings.nSymbolField = m_nSymbolField;
    if (pPortion)
        m_run.Portion() = *pPortion;
    m_run.Begin(pEvents, std::move(settings));
    return S_OK;
}

// The number is registered first: the worker may have ended the run before QueueConversion returns,
// and the number of a run that has ended must be free.
HRESULT CDataParser::QueueRun(ULONG_PTR nTranId)
{
    const com_ptr<IFileHandler> pHandler = FileHandler();
    if (!pHandler)
        return E_INVALIDARG;
    m_run.Register(nTranId);
    const HRESULT hr = pHandler->QueueConversion(
        static_cast<IQRL_TabulexConverter::IFileHandlerEvents*>(this), Key());
    if (FAILED(hr))
        m_run.Unregister();
    return hr;
}

HRESULT CDataParser::get_StartPosition(ULONGLONG* pVal)
{
    return Locked([&] { return GiveOut(pVal, m_run.Portion().StartPosition()); });
}

HRESULT CDataParser::ProcessRecord(ULONGLONG nIndex, BSTR, VARIANT_BOOL)
{
    return m_run.Step(nIndex);
}

HRESULT CDataParser::ProcessRecords(ULONGLONG nIndex, ULONGLONG nMost, ULONGLONG& nTaken)
{
    return m_run.Steps(nIndex, nMost, nTaken);
}

HRESULT CDataParser::AbortConversion()
{
    // The sink may hold the last reference to this object.
    const com_ptr<CDataParser> pSelf(this);
    m_run.Cancel();
    return S_OK;
}

HRESULT CDataParser::CheckConverterSettings(LONG_PTR hWnd, IDispatch* pEventSink)
{
    return Locked([&] {
        return CheckSettings({m_pRecordParser.get(), m_dtStart, m_dtEnd}, hWnd, pEventSink);
    });
}

// ---- symbols

HRESULT CDataParser::StartEnumSymbols(IDispatch* pEventSink, ULONG_PTR nTranId)
{
    return Guarded([&] {
        // The copy releases the file until its first step; this keeps it open meanwhile.
        const com_ptr<IFileHandler> pHandler = FileHandler();
        if (!pHandler)
            return E_UNEXPECTED;
        com_ptr<CSymbolEnumerator> pEnumerator;
        HRESULT hr = CreateObject(pEnumerator);
        if (SUCCEEDED(hr))
            hr = pEnumerator->put_DataParser(static_cast<IDataParser*>(this));
        if (SUCCEEDED(hr))
            hr = pEnumerator->put_Receiver(pEventSink);
        if (FAILED(hr))
            return hr;
        pEnumerator->put_SymbolField(FindSymbolField());
        // This takes the proxy lock, so the object's lock isn't held here.
        pEnumerator->RegisterTransaction(nTranId);
        return pEnumerator->Start();
    });
}

ULONG CDataParser::FindSymbolField()
{
    ULONG nField = kNoField;
    LockGuard lock(m_lock);
    if (m_pRecordParser)
        m_pRecordParser->GetFieldIndex(TypeSymbol, &nField);
    return nField;
}

// ---- blocks for previews

HRESULT CDataParser::ParseRecords(VARIANT* v, ULONG nFrom, ULONG nCount)
{
    if (!v)
        return E_POINTER;
    VariantInit(v);
    return Locked([&] {
        Variant block;
        const BlockSource source{m_pFileHandler.get(), m_pRecordParser.get(), m_lines, m_nLocale};
        const HRESULT hr = ReadRecordBlock(source, nFrom, nCount, block);
        *v = block.detach();
        return hr;
    });
}

} // namespace Hesperon::specifics
