// Sessions: how they start, how their events come in, and how the host ends them.
//
// DoConvert to its end:
//
// host's thread  RunSession         makes the session's object and, for the sink, a sink window
//                StartConversion    copies the settings, clones the parser, shows the box
//                CDataParser        registers the clone's run by the sink's address and queues it
// worker         ConversionRun      steps, with the session's object to hear its events
//                ConversionSession  sends batches to the sink window, asks the box about bad lines
//                ConversionRun      lets go of the session's object and reports the end to it
// host's thread  CqrlSinkWindow     goes, then calls Commit or Rollback
// worker         ConversionSession  closes the box; the last reference to the object goes
//
// Each message that calls the sink is waited for, so the host has to dispatch messages. Unadvise
// takes the run's place at its end: it takes the session's object from the run, on the host's
// thread, and reports the end itself.

#include "module/Guarded.h"
#include "src/files/AsyncTransactionPool.h"
#include "src/front/SettingsCheck.h"
#include "src/front/qrlDataParserEventsProxy.h"
#include "src/front/qrlTabulexConvertor.h"

using namespace IQRL_TabulexConverter;

namespace Hesperon::specifics {

namespace {

// The number under which a session is cancelled.
ULONG_PTR TransactionOf(IDispatch* pReceiverSink)
{
    return reinterpret_cast<ULONG_PTR>(pReceiverSink);
}

com_ptr<IqrlTabulexDataSink> SinkOf(IDispatch* pReceiverSink)
{
    com_ptr<IqrlTabulexDataSink> pSink;
    query(pReceiverSink, pSink);
    return pSink;
}

} // namespace

// ---- conversions

// Starts a session on a worker of its own. A start that fails after the sink was taken is
// reported to the sink.
template <class Start>
HRESULT CqrlTabulexConvertor::RunSession(IDispatch* pReceiverSink, Start start)
{
    com_ptr<CqrlTabulexConvertor> pWorker;
    HRESULT hr = CreateObject(pWorker);
    if (FAILED(hr))
        return hr;
    if (!pWorker->m_session.OpenSink(SinkOf(pReceiverSink)))
        return E_UNEXPECTED;
    hr = Guarded([&] { return start(*pWorker.get(), TransactionOf(pReceiverSink)); });
    if (FAILED(hr))
        pWorker->m_session.Abandon();
    return hr;
}

HRESULT CqrlTabulexConvertor::DoConvert(IDispatch* pReceiverSink, LONG_PTR ParentWindow)
{
    if (!pReceiverSink)
        return E_POINTER;
    m_bFileTaken = true;
    if (!SinkOf(pReceiverSink))
        return E_NOINTERFACE;
    Bstr sFileName;
    const HRESULT hr = get_FileName(sFileName.put());
    if (FAILED(hr))
        return hr;
    if (!sFileName)
        return E_INVALIDARG;
    return RunSession(pReceiverSink, [&](CqrlTabulexConvertor& worker, ULONG_PTR nTransaction) {
        return StartConversion(worker, nTransaction, sFileName.get(), ParentWindow);
    });
}

// The box is open before the run starts, so that the first figures find it.
HRESULT CqrlTabulexConvertor::StartConversion(CqrlTabulexConvertor& worker, ULONG_PTR nTransaction,
                                              BSTR sFileName, LONG_PTR hwndParent) const
{
    CopySettingsTo(worker);
    HRESULT hr = worker.m_session.MakeProgressBox();
    if (SUCCEEDED(hr))
        hr = CloneParserTo(worker);
    if (FAILED(hr))
        return hr;
    const com_ptr<IProgressBox> pBox = worker.m_session.ProgressBox();
    pBox->put_DataParser(worker.m_pDataParser.get());
    pBox->SetFileName(sFileName);
    pBox->ShowProgress(hwndParent);
    hr = worker.InitFieldsInfo();
    if (FAILED(hr))
        return hr;
    return worker.m_pDataParser->StartConversion(static_cast<IqrlTabulexConvertor*>(&worker),
                                                 nTransaction);
}

HRESULT CqrlTabulexConvertor::DoConvertPortion(LONG_PTR hWnd, IDispatch* pReceiverSink,
                                               ULONGLONG StartPos, ULONGLONG Count)
{
    if (!pReceiverSink)
        return E_POINTER;
    if (!SinkOf(pReceiverSink) || !m_pDataParser)
        return E_NOINTERFACE;
    return RunSession(pReceiverSink, [&](CqrlTabulexConvertor& worker, ULONG_PTR nTransaction) {
        worker.m_session.BeQuiet();
        worker.m_session.SkipTo(StartPos);
        CopySettingsTo(worker);
        HRESULT hr = CloneParserTo(worker);
        if (SUCCEEDED(hr))
            hr = worker.InitFieldsInfo();
        if (FAILED(hr))
            return hr;
        return worker.m_pDataParser->StartConvertPortion(
            hWnd, static_cast<IDataParserEvents*>(&worker), StartPos, Count, nTransaction);
    });
}

// ---- the events

HRESULT CqrlTabulexConvertor::PutRecords(VARIANT vRecords, ULONGLONG nRecCountWithSkeeped)
{
    return Session().PutRecords(vRecords, nRecCountWithSkeeped);
}

HRESULT CqrlTabulexConvertor::EndTransaction(VARIANT_BOOL bResult)
{
    return Session().EndTransaction(bResult != VARIANT_FALSE);
}

HRESULT CqrlTabulexConvertor::OnError(VARIANT Description)
{
    return Session().OnError(Description);
}

HRESULT CqrlTabulexConvertor::OnError2(LONG_PTR lptrLineNum, LONG lptrFieldNum, BSTR bsDescription)
{
    return Session().OnError2(lptrLineNum, lptrFieldNum, bsDescription);
}

HRESULT CqrlTabulexConvertor::GetResolutionName(LONG Resolution, BSTR* Name)
{
    return m_settings.GetResolutionName(Resolution, Name);
}

// ---- enumerations

HRESULT CqrlTabulexConvertor::DoEnumSymbols(IDispatch* pReceiverSink)
{
    com_ptr<IqrlTabulexDataSink> pSink = SinkOf(pReceiverSink);
    if (!pSink || !m_pDataParser)
        return E_NOINTERFACE;
    com_ptr<CqrlDataParserEventsProxy> pEvents;
    HRESULT hr = CreateObject(pEvents);
    if (FAILED(hr))
        return hr;
    if (!pEvents->Link().Open(std::move(pSink)))
        return E_UNEXPECTED;
    hr = m_pDataParser->StartEnumSymbols(pEvents.get(), TransactionOf(pReceiverSink));
    if (FAILED(hr))
        pEvents->EndTransaction(VARIANT_FALSE);
    return hr;
}

// ---- the host's end of a session, and its check of the settings

HRESULT CqrlTabulexConvertor::Unadvise(IDispatch* pReceiverSink)
{
    return AsyncTransactionPool::CancelTransaction(TransactionOf(pReceiverSink)) ? S_OK : S_FALSE;
}

HRESULT CqrlTabulexConvertor::CheckConverterSettings(LONG_PTR hWnd, IDispatch* pEventSink)
{
    com_ptr<IqrlTabulexDataSink> pSink = SinkOf(pEventSink);
    if (!pSink || !m_pDataParser)
        return E_NOINTERFACE;
    const com_ptr<IDataParserEvents> pSelf(this); // the sink may let go of this object
    com_ptr<SettingsCheck> pCheck;
    HRESULT hr = CreateObject(pCheck);
    if (FAILED(hr))
        return hr;
    hr = Guarded([&] {
        return pCheck->Open(m_pDataParser, m_settings, std::move(pSink)) ? S_OK : E_UNEXPECTED;
    });
    if (FAILED(hr))
        return hr;
    // A sink may ask this object for its events, or for another check.
    ConversionSession* const pOuter = std::exchange(m_pCheck, &pCheck->Session());
    hr = m_pDataParser->CheckConverterSettings(hWnd, pCheck.get());
    m_pCheck = pOuter;
    pCheck->Session().Close();
    return hr;
}

} // namespace Hesperon::specifics
