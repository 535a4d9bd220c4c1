// Sessions: how they start, and how the host ends them.

#include "diagnostics/FaultmereClient.h"
#include "module/Guarded.h"
#include "src/files/AsyncTransactionPool.h"
#include "src/front/qrlDataParserEventsProxy.h"
#include "src/front/qrlSinkWindow.h"
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

// A session on its way to its start: its number and its worker.
struct CqrlTabulexConvertor::Session
{
    ULONG_PTR nTransaction = 0;
    com_ptr<CqrlTabulexConvertor> pWorker;
};

// ---- conversions

HRESULT CqrlTabulexConvertor::DoConvert(IDispatch* pReceiverSink, LONG_PTR ParentWindow)
{
    if (!pReceiverSink)
        return E_POINTER;
    m_bFileTaken = true;
    if (!SinkOf(pReceiverSink))
        return E_NOINTERFACE;
    Bstr sFileName;
    HRESULT hr = get_FileName(sFileName.put());
    if (FAILED(hr))
        return hr;
    if (!sFileName)
        return E_INVALIDARG;
    Session session;
    hr = BeginSession(pReceiverSink, session);
    if (FAILED(hr))
        return hr;
    hr = Guarded([&] { return StartConversion(session, sFileName.get(), ParentWindow); });
    if (FAILED(hr))
        session.pWorker->AbandonSession();
    return hr;
}

HRESULT CqrlTabulexConvertor::DoConvertPortion(LONG_PTR hWnd, IDispatch* pReceiverSink,
                                               ULONGLONG StartPos, ULONGLONG Count)
{
    if (!pReceiverSink)
        return E_POINTER;
    if (!SinkOf(pReceiverSink))
        return E_NOINTERFACE;
    if (!m_pDataParser)
        return E_NOINTERFACE;
    Session session;
    HRESULT hr = BeginSession(pReceiverSink, session);
    if (FAILED(hr))
        return hr;
    hr = Guarded([&] { return StartPortion(session, hWnd, StartPos, Count); });
    if (FAILED(hr))
        session.pWorker->AbandonSession();
    return hr;
}

HRESULT CqrlTabulexConvertor::BeginSession(IDispatch* pReceiverSink, Session& session) const
{
    session.nTransaction = TransactionOf(pReceiverSink);
    const HRESULT hr = CreateObject(session.pWorker);
    if (FAILED(hr))
        return hr;
    session.pWorker->m_hWndSink = CqrlSinkWindow::Open(SinkOf(pReceiverSink));
    return session.pWorker->m_hWndSink ? S_OK : E_UNEXPECTED;
}

HRESULT CqrlTabulexConvertor::StartConversion(Session& session, BSTR sFileName, LONG_PTR hwndParent)
{
    CqrlTabulexConvertor& worker = *session.pWorker.get();
    CopySettingsTo(worker);
    HRESULT hr = worker.MakeProgressBox();
    if (SUCCEEDED(hr))
        hr = CloneParserTo(worker);
    if (FAILED(hr))
        return hr;
    const com_ptr<IProgressBox> pBox = worker.ProgressBox();
    pBox->put_DataParser(worker.m_pDataParser.get());
    pBox->SetFileName(sFileName);
    pBox->ShowProgress(hwndParent);
    hr = worker.InitFieldsInfo();
    if (FAILED(hr))
        return hr;
    return worker.m_pDataParser->StartConversion(static_cast<IqrlTabulexConvertor*>(&worker),
                                                 session.nTransaction);
}

HRESULT CqrlTabulexConvertor::StartPortion(Session& session, LONG_PTR hWnd, ULONGLONG nStart,
                                           ULONGLONG nCount)
{
    CqrlTabulexConvertor& worker = *session.pWorker.get();
    worker.m_bNoProgress = true;
    worker.m_nProcessed = nStart;
    CopySettingsTo(worker);
    HRESULT hr = CloneParserTo(worker);
    if (SUCCEEDED(hr))
        hr = worker.InitFieldsInfo();
    if (FAILED(hr))
        return hr;
    return worker.m_pDataParser->StartConvertPortion(hWnd, static_cast<IDataParserEvents*>(&worker),
                                                     nStart, nCount, session.nTransaction);
}

// A start that failed after the host's sink was taken is told to it.
void CqrlTabulexConvertor::AbandonSession()
{
    SendWindowMessage(m_hWndSink.exchange(0), WM_SINK_END, 0, 0);
    CloseProgressBox();
}

// ---- enumerations

HRESULT CqrlTabulexConvertor::DoEnumSymbols(IDispatch* pReceiverSink)
{
    com_ptr<IqrlTabulexDataSink> pSink = SinkOf(pReceiverSink);
    if (!pSink)
        return E_NOINTERFACE;
    if (!m_pDataParser)
        return E_NOINTERFACE;
    com_ptr<CqrlDataParserEventsProxy> pEvents;
    HRESULT hr = CreateObject(pEvents);
    if (FAILED(hr))
        return hr;
    const WindowHandle hWnd = CqrlSinkWindow::Open(std::move(pSink));
    if (!hWnd)
        return E_UNEXPECTED;
    pEvents->Attach(hWnd);
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
    const WindowHandle hWndCheck = CqrlSinkWindow::Open(std::move(pSink));
    if (!hWndCheck)
        return E_UNEXPECTED;
    const WindowHandle hWndSaved = m_hWndSink.exchange(hWndCheck);
    const bool bNoProgressSaved = std::exchange(m_bNoProgress, true);
    const HRESULT hr =
        m_pDataParser->CheckConverterSettings(hWnd, static_cast<IDataParserEvents*>(this));
    SendWindowMessage(hWndCheck, WM_SINK_RELEASE, 0, 0);
    m_bNoProgress = bNoProgressSaved;
    m_hWndSink = hWndSaved;
    return hr;
}

} // namespace Hesperon::specifics
