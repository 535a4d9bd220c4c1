// Life, copies, and the properties that go straight through to the parsers.

#include "src/front/qrlTabulexConvertor.h"

#include "Simples/interface/ResourceStrings.h"
#include "diagnostics/FaultmereClient.h"
#include "interfaces/ClassIds.h"
#include "module/Guarded.h"
#include "module/MessageLoops.h"
#include "module/OutValue.h"
#include "module/Tweaks.h"
#include "src/UIComponents/views/DialogViews.h"
#include "src/data/SymbolEnumeratorHost.h"
#include "src/files/FilePool.h"
#include "src/front/DialogChoices.h"
#include "src/parsing/EnvironmentDocument.h"

using namespace IQRL_TabulexConverter;
using FaultmereUtil::AssertOk;

namespace Hesperon::specifics {

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
    Variant vTypeNames;
    hr = pRecordParser->GetTypeNames(vTypeNames.put());
    m_typeNames = HostTypeNames(std::move(vTypeNames));
    if (SUCCEEDED(hr))
        hr = CreateObject(m_pPriceMultiplier);
    if (SUCCEEDED(hr))
        hr = CreateObject(m_pVolumeMultiplier);
    if (SUCCEEDED(hr))
        hr = HandOutMultipliers(*pRecordParser.get());
    if (FAILED(hr))
        return hr;
    SymbolEnumeratorHost::AddConvertor(); // the enumerator's thread lives while one is counted
    m_bCountedByEnumerations = true;
    m_settings.m_arResolutionTemplates.Append(LoadResourceString(IDS_NO_RESOLUTION_NAME),
                                              ResolutionNone);
    return PublishResolutions();
}

// The data parser goes last, as SymbolEnumeratorHost asks for.
void CqrlTabulexConvertor::FinalRelease()
{
    m_session.Release();
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
    if (!sFileName) // looked at first: an object without a file isn't the parser's failure
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

// A clone has a progress box, though nobody shows it: the events that somebody calls on a
// clone go there.
HRESULT CqrlTabulexConvertor::CopyTo(CqrlTabulexConvertor& clone)
{
    HRESULT hr = clone.m_session.MakeProgressBox();
    if (FAILED(hr))
        return hr;
    CopySettingsTo(clone);
    hr = CloneParserTo(clone);
    if (SUCCEEDED(hr))
        hr = clone.m_session.ProgressBox()->put_DataParser(clone.m_pDataParser.get());
    return FAILED(hr) ? hr : clone.InitFieldsInfo();
}

void CqrlTabulexConvertor::CopySettingsTo(CqrlTabulexConvertor& clone) const
{
    clone.m_settings = m_settings;
    clone.m_pPriceMultiplier->SetCode(m_pPriceMultiplier->Code());
    clone.m_pVolumeMultiplier->SetCode(m_pVolumeMultiplier->Code());
}

// A cloned record parser still has its source's multipliers; the copy hands it its own, whose
// codes CopySettingsTo has set.
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

// The dialog changes the parser itself; of what this object keeps, five choices change, and only
// where the user confirms.
HRESULT CqrlTabulexConvertor::DoAnalyse(VARIANT_BOOL* Status, LONG_PTR ParentWindow)
{
    if (!Status)
        return E_POINTER;
    return Guarded([&] {
        const LONG_PTR hwndParent =
            ParentWindow ? ParentWindow : UILayer::DialogViews().ActiveWindow();
        m_settings.m_arFields.clear();
        m_settings.AddDefaultTemplates();
        if (!m_pDataParser)
            return E_NOTIMPL;
        const com_ptr<IqrlTabulexConvertor> pSelf(this); // the host may release it meanwhile
        SConvertDialogParams params = DialogParams(m_settings);
        params.pDataParser = m_pDataParser;
        params.pEventSink = com_ptr<IDataParserEvents>(this);
        params.nMode = m_nMode;
        UILayer::CConvertDummyDialog dialog(params);
        const bool bConfirmed = dialog.DoModal(hwndParent) == kDialogOk;
        *Status = bConfirmed ? VARIANT_TRUE : VARIANT_FALSE;
        if (bConfirmed)
            TakeChoices(dialog, m_settings);
        return InitFieldsInfo();
    });
}

// ---- properties of the parsers

HRESULT CqrlTabulexConvertor::get_DataParser(IDispatch** pVal)
{
    return GiveOut(pVal, m_pDataParser);
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
    if (hr != S_OK) // also S_FALSE: a file that can't be opened leaves the choices
        return hr;
    const com_ptr<IRecordParser> pRecordParser = RecordParser();
    if (!pRecordParser)
        return E_NOINTERFACE;
    return Guarded([&] {
        LONG nResolution = 0;
        pRecordParser->get_Resolution(&nResolution);
        m_settings.ChooseResolution(nResolution);
        pRecordParser->get_ResolutionSize(&m_settings.m_nResolutionSize);
        return InitFieldsInfo();
    });
}

// Without a data parser each group of properties has a code of its own.
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
        // Read back, so that the folder is what a later put would make of the document.
        Bstr sDocument(WriteEnvironment(m_settings.m_sFolder, sTemplates.view()));
        ReadFolder(sDocument.view(), m_settings.m_sFolder);
        *pVal = sDocument.detach();
        return S_OK;
    });
}

// Whatever the parser finds wrong, it is the text that is wrong for the host.
HRESULT CqrlTabulexConvertor::put_Environment(BSTR newVal)
{
    const com_ptr<IRecordParser> pRecordParser = RecordParser();
    if (!pRecordParser)
        return E_NOINTERFACE;
    return Guarded([&] {
        if (!ReadFolder(TextOf(newVal), m_settings.m_sFolder))
            return E_INVALIDARG;
        return FAILED(pRecordParser->put_Environment(newVal)) ? E_INVALIDARG : S_OK;
    });
}

// ---- mode, file

// There is no get: only the import dialog reads the mode.
HRESULT CqrlTabulexConvertor::put_Mode(LONG newVal)
{
    if (newVal != 0 && newVal != 1)
        return DISP_E_TYPEMISMATCH;
    return std::exchange(m_nMode, newVal) == newVal ? S_FALSE : S_OK;
}

// Other objects that read the file keep it; its name is free for a file that is opened next.
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
    return GiveOut(pVal, pLoop->m_nModelessProgress != 0);
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
