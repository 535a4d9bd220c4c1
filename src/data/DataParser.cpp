// The life of a data parser, its record parser, clones, listeners and plain properties. The file,
// the dates and the runs are in the other DataParser*.cpp.
//
// The two parsers point at each other, and only the link to the record parser is counted: if both
// were, neither would ever go. So whoever lets go of a record parser cuts its link back first,
// unless that leads to another data parser by now.

#include "src/data/DataParser.h"

#include "diagnostics/FaultmereClient.h"
#include "interfaces/ClassIds.h"
#include "module/OutValue.h"
#include "src/files/FilePool.h"

using namespace IQRL_TabulexConverter;
using FaultmereUtil::Assert;
using FaultmereUtil::AssertOk;

namespace Hesperon::specifics {

namespace {

bool IsSameObject(IUnknown* first, IUnknown* second)
{
    com_ptr<IUnknown> a, b;
    return SUCCEEDED(query(first, a)) && SUCCEEDED(query(second, b)) && a == b;
}

} // namespace

// ---- life

HRESULT CDataParser::FinalConstruct()
{
    const HRESULT hr = Guarded([&] {
        HRESULT hrStep = CreateOwnInstance(CLSID_CRecordParser, iid_of<IRecordParser>,
                                           m_pRecordParser.put_void());
        if (SUCCEEDED(hrStep))
            hrStep = m_pRecordParser->put_DataParser(static_cast<IDataParser*>(this));
        return SUCCEEDED(hrStep) ? m_pRecordParser->GetTypeNames(m_vTypeNames.put()) : hrStep;
    });
    if (SUCCEEDED(hr)) {
        FilePool::AddParser();
        m_bCountedInPool = true;
    }
    return AssertOk(hr);
}

// The proxies come first: from then on the worker reaches nothing of this object. The pool comes
// last, since it may wait for the worker, which ends only when the file has been released.
void CDataParser::FinalRelease()
{
    m_proxies.Detach();
    if (m_pFileHandler)
        m_pFileHandler->CancelRequests(Key());
    m_run.Close();
    m_listeners.Clear();
    m_pFileHandler.reset();
    UnlinkRecordParser();
    m_pRecordParser.reset();
    m_pLinkOwner.reset();
    m_vTypeNames.put();
    if (m_bCountedInPool)
        FilePool::ReleaseParser();
}

HRESULT CDataParser::InterfaceSupportsErrorInfo(REFIID riid)
{
    return riid == iid_of<IDataParser> ? S_OK : S_FALSE;
}

// ---- record parser

// Cuts the record parser's link to this object, or to the one that this was cloned from. The
// link isn't counted, so a record parser that lives on must not keep it.
void CDataParser::UnlinkRecordParser()
{
    if (!m_pRecordParser)
        return;
    IDataParser* pOwner = m_pLinkOwner ? m_pLinkOwner.get() : this;
    com_ptr<IDispatch> pLinked;
    m_pRecordParser->get_DataParser(pLinked.put());
    if (pLinked && IsSameObject(pLinked.get(), pOwner))
        m_pRecordParser->put_DataParser(nullptr);
}

HRESULT CDataParser::get_RecordParser(IDispatch** pVal)
{
    if (!pVal)
        return E_POINTER;
    *pVal = nullptr;
    return Locked([&] {
        if (!m_pRecordParser)
            return E_NOTIMPL;
        return m_pRecordParser->QueryInterface(iid_of<IDispatch>, reinterpret_cast<void**>(pVal));
    });
}

HRESULT CDataParser::put_RecordParser(IDispatch* newVal)
{
    if (!Assert(newVal != nullptr, "pParser"))
        return E_POINTER;
    com_ptr<IRecordParser> pOld;
    com_ptr<CDataParser> pOldOwner;
    com_ptr<CRecordParserProxy> pOldProxy;
    const HRESULT hr = Locked([&] {
        UnlinkRecordParser();
        pOldOwner = std::move(m_pLinkOwner);
        pOldProxy = std::move(m_proxies.pRecordParser);
        pOld = std::move(m_pRecordParser);
        m_run.Replaced();
        return BindRecordParser(newVal);
    });
    // Without this object's lock, which a cancel takes with the proxy lock held.
    if (pOldProxy)
        pOldProxy->Detach();
    return AssertOk(hr);
}

HRESULT CDataParser::BindRecordParser(IDispatch* pParser)
{
    HRESULT hr = query(pParser, m_pRecordParser);
    if (SUCCEEDED(hr))
        hr = m_pRecordParser->put_DataParser(static_cast<IDataParser*>(this));
    if (SUCCEEDED(hr))
        RefreshDateInfo(VARIANT_FALSE);
    return hr;
}

HRESULT CDataParser::get_FieldCount(ULONG* pVal)
{
    return Locked([&] { return m_pRecordParser ? m_pRecordParser->get_FieldCount(pVal) : E_FAIL; });
}

// ---- clones

HRESULT CDataParser::Clone(IDispatch** newObj)
{
    if (!newObj)
        return E_POINTER;
    *newObj = nullptr;
    com_ptr<CDataParser> pClone;
    HRESULT hr = CreateObject(pClone);
    if (SUCCEEDED(hr))
        hr = Locked([&] { return CopyTo(*pClone.get()); });
    if (SUCCEEDED(hr))
        *newObj = static_cast<IDataParser*>(pClone.detach());
    return hr;
}

// A clone reads the same open file with a record parser of its own. It has no listeners, and the
// switches for code pages and for reports of bad lines start anew.
HRESULT CDataParser::CopyTo(CDataParser& clone)
{
    if (!m_pRecordParser)
        return E_FAIL;
    com_ptr<IDispatch> pParser;
    HRESULT hr = m_pRecordParser->Clone(pParser.put());
    if (SUCCEEDED(hr))
        hr = query(pParser.get(), clone.m_pRecordParser);
    if (FAILED(hr))
        return hr;
    clone.m_pLinkOwner = m_pLinkOwner ? m_pLinkOwner : com_ptr<CDataParser>(this);
    clone.m_pFileHandler = m_pFileHandler;
    clone.m_sSymbolName = m_sSymbolName;
    clone.m_nLocale = m_nLocale;
    clone.m_nPosition = m_nPosition;
    clone.m_lines = m_lines;
    clone.m_dtStart = m_dtStart;
    clone.m_dtEnd = m_dtEnd;
    clone.m_run.Portion() = m_run.Portion();
    return S_OK;
}

// ---- listeners

HRESULT CDataParser::AddFileEventHandler(IDispatch* pEventHandler)
{
    if (!pEventHandler)
        return E_POINTER;
    return Guarded([&] { return m_listeners.Add(*pEventHandler); });
}

HRESULT CDataParser::RemoveFileEventHandler(IDispatch* pEventHandler)
{
    if (!pEventHandler)
        return E_POINTER;
    m_listeners.Remove(*pEventHandler);
    return S_OK;
}

bool CDataParser::HearsCounts()
{
    return !m_listeners.IsEmpty();
}

HRESULT CDataParser::RecordCountChange(ULONGLONG nNewCount, VARIANT_BOOL bComplete)
{
    Guarded([&] {
        m_listeners.RecordCountChange(nNewCount, bComplete);
        return S_OK;
    });
    return S_OK;
}

// ---- plain properties

HRESULT CDataParser::get_HasHeader(VARIANT_BOOL* pVal)
{
    return Locked([&] { return GiveOut(pVal, m_lines.bHasHeader != 0); });
}

HRESULT CDataParser::put_HasHeader(VARIANT_BOOL newVal)
{
    return Locked([&] {
        m_lines.bHasHeader = newVal != VARIANT_FALSE;
        return S_OK;
    });
}

HRESULT CDataParser::get_HeaderOffset(ULONG* pVal)
{
    return Locked([&] { return GiveOut(pVal, m_lines.nHeaderOffset); });
}

HRESULT CDataParser::put_HeaderOffset(ULONG newVal)
{
    return Locked([&] {
        m_lines.nHeaderOffset = newVal;
        return S_OK;
    });
}

HRESULT CDataParser::get_AutoDetectCodePage(VARIANT_BOOL* pVal)
{
    return GiveOut(pVal, m_bAutoDetectCodePage.load());
}

HRESULT CDataParser::put_AutoDetectCodePage(VARIANT_BOOL newVal)
{
    m_bAutoDetectCodePage = newVal != VARIANT_FALSE;
    return S_OK;
}

HRESULT CDataParser::get_DisableErrorNotify(VARIANT_BOOL* pVal)
{
    return GiveOut(pVal, m_bDisableErrorNotify.load());
}

HRESULT CDataParser::put_DisableErrorNotify(VARIANT_BOOL newVal)
{
    m_bDisableErrorNotify = newVal != VARIANT_FALSE;
    return S_OK;
}

HRESULT CDataParser::get_SymbolName(BSTR* pVal)
{
    if (!pVal)
        return E_POINTER;
    *pVal = nullptr;
    return Locked([&] {
        *pVal = NewBstr(m_sSymbolName.view());
        return S_OK;
    });
}

HRESULT CDataParser::put_SymbolName(BSTR newVal)
{
    if (!newVal)
        return S_OK;
    return Locked([&] {
        m_sSymbolName = Bstr(TextOf(newVal));
        return S_OK;
    });
}

HRESULT CDataParser::get_Locale(ULONG* pVal)
{
    return Locked([&] { return GiveOut(pVal, m_nLocale); });
}

} // namespace Hesperon::specifics
