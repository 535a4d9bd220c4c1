// Life, copies, and the properties that go straight through to the parsers.

#include "src/front/qrlTabulexConvertor.h"

#include "Simples/interface/ResourceStrings.h"
#include "diagnostics/FaultmereClient.h"
#include "interfaces/ClassIds.h"
#include "module/Guarded.h"
#include "module/MessageLoops.h"
#include "module/Tweaks.h"
#include "src/data/SymbolEnumeratorHost.h"
#include "src/files/FilePool.h"
#include "src/front/qrlSinkWindow.h"
#include "src/parsing/EnvironmentDocument.h"

using namespace IQRL_TabulexConverter;
using FaultmereUtil::AssertOk;

namespace Hesperon::specifics {

namespace {

template <class T, class Value>
HRESULT GiveOut(T* pVal, Value value)
{
    if (!pVal)
        return E_POINTER;
    *pVal = value;
    return S_OK;
}

} // namespace

// ---- life

HRESULT CqrlTabulexConvertor::FinalConstruct()
{
    return AssertOk(Guarded([&] { return Construct(); }));
}

HRESULT CqrlTabulexConvertor::Construct()
{
    HRESULT hr =
        CreateOwnInstance(CLSID_CDataParser, iid_of<IDataParser>, m_pDataParser.put_void());
    if (FAILED(hr))
        return hr;
    const com_ptr<IRecordParser> pRecordParser = RecordParser();
    if (!pRecordParser)
        return E_NOINTERFACE;
    hr = pRecordParser->GetTypeNames(m_vTypeNames.put());
    if (SUCCEEDED(hr))
        hr = CreateObject(m_pPriceMultiplier);
    if (SUCCEEDED(hr))
        hr = CreateObject(m_pVolumeMultiplier);
    if (SUCCEEDED(hr))
        hr = HandOutMultipliers(*pRecordParser.get());
    if (FAILED(hr))
        return hr;
    SymbolEnumeratorHost::AddConvertor();
    m_bCountedByEnumerations = true;
    m_arResolutionTemplates.Append(LoadResourceString(IDS_NO_RESOLUTION_NAME), 0);
    return PublishResolutions();
}

// A run that ended without a word has left its window and its box open.
void CqrlTabulexConvertor::FinalRelease()
{
    PostWindowMessage(m_hWndSink, WM_SINK_RELEASE, 0, 0);
    CloseProgressBox();
    if (m_bCountedByEnumerations)
        SymbolEnumeratorHost::ReleaseConvertor();
    m_pDataParser.reset();
}

com_ptr<CqrlTabulexConvertor::IRecordParser> CqrlTabulexConvertor::RecordParser() const
{
    com_ptr<IDispatch> pParser;
    if (m_pDataParser)
        m_pDataParser->get_RecordParser(pParser.put());
    return pParser.as<IRecordParser>();
}

HRESULT CqrlTabulexConvertor::HandOutMultipliers(IRecordParser& parser)
{
    const HRESULT hr = parser.put_PriceMultiplier(m_pPriceMultiplier.get());
    return FAILED(hr) ? hr : parser.put_VolumeMultiplier(m_pVolumeMultiplier.get());
}

// ---- copies

HRESULT CqrlTabulexConvertor::Clone(IDispatch** newObj)
{
    if (!newObj)
        return E_POINTER;
    *newObj = nullptr;
    Bstr sFileName;
    const HRESULT hrName = get_FileName(sFileName.put());
    if (!sFileName)
        return E_INVALIDARG;
    if (FAILED(hrName))
        return hrName;
    com_ptr<CqrlTabulexConvertor> pClone;
    HRESULT hr = CreateObject(pClone);
    if (SUCCEEDED(hr))
        hr = Guarded([&] { return CopyTo(*pClone.get()); });
    if (SUCCEEDED(hr))
        *newObj = static_cast<IqrlTabulexConvertor*>(pClone.detach());
    return hr;
}

HRESULT CqrlTabulexConvertor::CopyTo(CqrlTabulexConvertor& clone)
{
    HRESULT hr = clone.MakeProgressBox();
    if (FAILED(hr))
        return hr;
    CopySettingsTo(clone);
    hr = CloneParserTo(clone);
    if (SUCCEEDED(hr))
        hr = clone.ProgressBox()->put_DataParser(clone.m_pDataParser.get());
    return FAILED(hr) ? hr : clone.InitFieldsInfo();
}

HRESULT CqrlTabulexConvertor::MakeProgressBox()
{
    LockGuard lock(m_boxLock);
    return CreateOwnInstance(CLSID_CProgressDlgNoHTML, iid_of<IProgressBox>,
                             m_pProgressBox.put_void());
}

void CqrlTabulexConvertor::CopySettingsTo(CqrlTabulexConvertor& clone) const
{
    clone.m_arFieldTemplates = m_arFieldTemplates;
    clone.m_arResolutionTemplates = m_arResolutionTemplates;
    clone.m_arTimeZoneTemplates = m_arTimeZoneTemplates;
    clone.m_sFieldTemplate = m_sFieldTemplate;
    clone.m_sResolutionTemplate = m_sResolutionTemplate;
    clone.m_sTimeZoneTemplate = m_sTimeZoneTemplate;
    clone.m_nResolutionSize = m_nResolutionSize;
    clone.m_arFieldNames = m_arFieldNames;
    clone.m_arFieldTypes = m_arFieldTypes;
    clone.m_sFolder = m_sFolder;
    clone.m_pPriceMultiplier->SetCode(m_pPriceMultiplier->Code());
    clone.m_pVolumeMultiplier->SetCode(m_pVolumeMultiplier->Code());
}

HRESULT CqrlTabulexConvertor::CloneParserTo(CqrlTabulexConvertor& clone) const
{
    com_ptr<IDispatch> pParser;
    HRESULT hr = m_pDataParser->Clone(pParser.put());
    if (SUCCEEDED(hr))
        hr = query(pParser.get(), clone.m_pDataParser);
    if (FAILED(hr))
        return hr;
    const com_ptr<IRecordParser> pRecordParser = clone.RecordParser();
    return pRecordParser ? clone.HandOutMultipliers(*pRecordParser.get()) : E_NOINTERFACE;
}

// ---- analyse

HRESULT CqrlTabulexConvertor::DoAnalyse(VARIANT_BOOL* Status, LONG_PTR)
{
    if (!Status)
        return E_POINTER;
    m_arFieldNames.clear();
    AddDefaultTemplates();
    if (!m_pDataParser)
        return E_NOTIMPL;
    *Status = VARIANT_FALSE; // there is no dialog to confirm
    return InitFieldsInfo();
}

void CqrlTabulexConvertor::AddDefaultTemplates()
{
    constexpr unsigned kTexts[] = {IDS_TEMPLATE1, IDS_TEMPLATE2, IDS_TEMPLATE3};
    if (!m_arFieldTemplates.IsEmpty() || !m_arResolutionTemplates.IsEmpty() ||
        !m_arTimeZoneTemplates.IsEmpty())
        return;
    for (LONG nId = 0; const unsigned nText : kTexts) {
        const string_view_t sName = LoadResourceString(nText);
        for (auto* list : {&m_arFieldTemplates, &m_arResolutionTemplates, &m_arTimeZoneTemplates})
            list->Append(sName, nId);
        ++nId;
    }
    m_sFieldTemplate = m_sResolutionTemplate = m_sTimeZoneTemplate = LoadResourceString(kTexts[0]);
}

// ---- properties of the parsers

HRESULT CqrlTabulexConvertor::get_DataParser(IDispatch** pVal)
{
    if (!pVal)
        return E_POINTER;
    *pVal = com_ptr<IDataParser>(m_pDataParser).detach();
    return S_OK;
}

HRESULT CqrlTabulexConvertor::get_FileName(BSTR* pVal)
{
    return m_pDataParser ? m_pDataParser->get_FileName(pVal) : E_NOINTERFACE;
}

HRESULT CqrlTabulexConvertor::put_FileName(BSTR newVal)
{
    if (!m_pDataParser)
        return E_NOINTERFACE;
    const HRESULT hr = m_pDataParser->put_FileName(newVal);
    if (hr != S_OK)
        return hr;
    const com_ptr<IRecordParser> pRecordParser = RecordParser();
    if (!pRecordParser)
        return E_NOINTERFACE;
    return Guarded([&] {
        LONG nResolution = 0;
        pRecordParser->get_Resolution(&nResolution);
        if (const auto* row = m_arResolutionTemplates.FindId(nResolution))
            m_sResolutionTemplate = row->sName;
        pRecordParser->get_ResolutionSize(&m_nResolutionSize);
        return InitFieldsInfo();
    });
}

HRESULT CqrlTabulexConvertor::get_SymbolName(BSTR* pVal)
{
    return m_pDataParser ? m_pDataParser->get_SymbolName(pVal) : E_FAIL;
}

HRESULT CqrlTabulexConvertor::put_SymbolName(BSTR newVal)
{
    return m_pDataParser ? m_pDataParser->put_SymbolName(newVal) : E_FAIL;
}

HRESULT CqrlTabulexConvertor::get_StartDateTime(VARIANT* pVal)
{
    return m_pDataParser ? m_pDataParser->get_StartDateTime(pVal) : E_UNEXPECTED;
}

HRESULT CqrlTabulexConvertor::put_StartDateTime(VARIANT newVal)
{
    return m_pDataParser ? m_pDataParser->put_StartDateTime(newVal) : E_UNEXPECTED;
}

HRESULT CqrlTabulexConvertor::get_EndDateTime(VARIANT* pVal)
{
    return m_pDataParser ? m_pDataParser->get_EndDateTime(pVal) : E_UNEXPECTED;
}

HRESULT CqrlTabulexConvertor::put_EndDateTime(VARIANT newVal)
{
    return m_pDataParser ? m_pDataParser->put_EndDateTime(newVal) : E_UNEXPECTED;
}

HRESULT CqrlTabulexConvertor::get_PriceMultiplier(BYTE* pVal)
{
    return GiveOut(pVal, m_pPriceMultiplier->Code());
}

HRESULT CqrlTabulexConvertor::put_PriceMultiplier(BYTE newVal)
{
    return m_pPriceMultiplier->SetCode(newVal);
}

HRESULT CqrlTabulexConvertor::get_VolumeMultiplier(BYTE* pVal)
{
    return GiveOut(pVal, m_pVolumeMultiplier->Code());
}

HRESULT CqrlTabulexConvertor::put_VolumeMultiplier(BYTE newVal)
{
    return m_pVolumeMultiplier->SetCode(newVal);
}

// ---- environment

HRESULT CqrlTabulexConvertor::get_Environment(BSTR* pVal)
{
    if (!pVal)
        return E_POINTER;
    *pVal = nullptr;
    const com_ptr<IRecordParser> pRecordParser = RecordParser();
    if (!pRecordParser)
        return E_NOINTERFACE;
    return Guarded([&] {
        Bstr sTemplates;
        const HRESULT hr = pRecordParser->get_Environment(sTemplates.put());
        if (FAILED(hr))
            return hr;
        Bstr sDocument(WriteEnvironment(m_sFolder, sTemplates.view()));
        ReadFolder(sDocument.view(), m_sFolder);
        *pVal = sDocument.detach();
        return S_OK;
    });
}

HRESULT CqrlTabulexConvertor::put_Environment(BSTR newVal)
{
    const com_ptr<IRecordParser> pRecordParser = RecordParser();
    if (!pRecordParser)
        return E_NOINTERFACE;
    return Guarded([&] {
        if (!ReadFolder(TextOf(newVal), m_sFolder))
            return E_INVALIDARG;
        return FAILED(pRecordParser->put_Environment(newVal)) ? E_INVALIDARG : S_OK;
    });
}

// ---- mode, file

HRESULT CqrlTabulexConvertor::put_Mode(LONG newVal)
{
    if (newVal != 0 && newVal != 1)
        return DISP_E_TYPEMISMATCH;
    return std::exchange(m_nMode, newVal) == newVal ? S_FALSE : S_OK;
}

HRESULT CqrlTabulexConvertor::ReleaseFile()
{
    Bstr sFileName;
    const HRESULT hr = get_FileName(sFileName.put());
    if (FAILED(hr))
        return hr;
    FilePool::ReleaseFile(sFileName.view(), m_bFileTaken);
    return S_OK;
}

// ---- looks

HRESULT CqrlTabulexConvertor::get_MenuStyle(LONG* pVal)
{
    return GiveOut(pVal, MenuStyle());
}

HRESULT CqrlTabulexConvertor::put_MenuStyle(LONG newVal)
{
    SetMenuStyle(newVal);
    return S_OK;
}

HRESULT CqrlTabulexConvertor::get_MenuEffect(LONG* pVal)
{
    return GiveOut(pVal, MenuEffect());
}

HRESULT CqrlTabulexConvertor::put_MenuEffect(LONG newVal)
{
    SetMenuEffect(newVal);
    return S_OK;
}

HRESULT CqrlTabulexConvertor::get_ResourceHandle(LONG_PTR* pVal)
{
    return GiveOut(pVal, ::ResourceHandle());
}

HRESULT CqrlTabulexConvertor::put_ResourceHandle(LONG_PTR newVal)
{
    SetResourceHandle(newVal);
    return S_OK;
}

HRESULT CqrlTabulexConvertor::get_ModelessProgress(VARIANT_BOOL* pVal)
{
    const CTabulexConvMessageLoop* pLoop = ThisMessageLoop();
    if (!pLoop)
        return E_UNEXPECTED;
    return GiveOut(pVal, pLoop->m_nModelessProgress != 0 ? VARIANT_TRUE : VARIANT_FALSE);
}

HRESULT CqrlTabulexConvertor::put_ModelessProgress(VARIANT_BOOL newVal)
{
    CTabulexConvMessageLoop* pLoop = ThisMessageLoop();
    if (!pLoop)
        return E_UNEXPECTED;
    pLoop->m_nModelessProgress = newVal != VARIANT_FALSE;
    return S_OK;
}

} // namespace Hesperon::specifics
