// Life of the control, the choice of a file, and what shows a parser's state.
//
// A file's records come in the background. Its worker tells of each batch of them; the first
// notice makes the grids' columns, on the dialog's thread. Making them may fail as long as the
// parser has no first record, so it is tried again, through the message queue and without a
// delay, up to kMostAttempts times more.

#include "src/UIComponents/Windowless/ConverterCtrl.h"

#include <algorithm>

#include "interfaces/ClassIds.h"
#include "interfaces/FieldsAndResolutions.h"
#include "module/Guarded.h"
#include "module/Module.h"
#include "platform/values.h"
#include "src/UIComponents/DialogAssert.h"
#include "src/UIComponents/Windowless/StartRow.h"
#include "src/UIComponents/views/DialogViews.h"
#include "src/data/FakeRecordParser.h"
#include "src/parsing/RecordParserExtractor.h"

using namespace IQRL_TabulexConverter;

namespace Hesperon::specifics::DataFlow {

namespace {

constexpr int kMostAttempts = 1000;
constexpr std::size_t kShortestPath = 3;
constexpr const OLECHAR* kNoMultiplier = OLESTR("1");

// The name of the transform that a multiplier has now.
template <class Extractor>
HRESULT ReadMultiplier(IDataParser* pParser, Bstr& sName)
{
    const Extractor extractor(pParser);
    if (FAILED(extractor.GetStatus()))
        return extractor.GetStatus();
    return extractor.GetMultiplier()->get_Current(sName.put());
}

} // namespace

// ---- life

CConvertCtrl::CConvertCtrl(const SConvertDialogParams& params, UILayer::IUIControls& controls)
    : m_pParams(params), m_pControls(controls)
{}

CConvertCtrl::~CConvertCtrl()
{
    Uninitialize();
}

HRESULT CConvertCtrl::SetFileContentGrid(com_ptr<Grid> pGrid)
{
    if (!pGrid)
        return E_UNEXPECTED;
    m_pTextGrid = std::move(pGrid);
    return S_OK;
}

HRESULT CConvertCtrl::SetDataGrid(com_ptr<Grid> pGrid)
{
    if (!pGrid)
        return E_UNEXPECTED;
    m_pDataGrid = std::move(pGrid);
    return S_OK;
}

HRESULT CConvertCtrl::Initialize()
{
    return Guarded([&] {
        __init_parsers();
        VARIANT_BOOL bHasHeader = VARIANT_FALSE;
        HRESULT hr = __init_events();
        if (SUCCEEDED(hr))
            hr = __init_parser_side(bHasHeader);
        if (FAILED(hr))
            return hr;
        if (m__recParser)
            __show_settings(bHasHeader);
        __init_grids();
        Bstr sFileName;
        if (SUCCEEDED(m_pDataParser->get_FileName(sFileName.put())) &&
            sFileName.view().size() > kShortestPath)
            OnFileSelected(sFileName.get());
        return S_OK;
    });
}

// The first parser stands in for the one of the parameters, if they have none.
void CConvertCtrl::__init_parsers()
{
    CreateOwnInstance(CLSID_CDataParser, iid_of<IDataParser>, m_pDataParser.put_void());
    CreateOwnInstance(CLSID_CDataParser, iid_of<IDataParser>, m_pTextParser.put_void());
    com_ptr<CFakeRecordParser> pFake;
    if (m_pTextParser && SUCCEEDED(CreateObject(pFake)))
        m_pTextParser->put_RecordParser(pFake.get());
    __take_record_parser();
}

HRESULT CConvertCtrl::__init_events()
{
    HRESULT hr = CreateObject(m_pFileEvents);
    if (SUCCEEDED(hr))
        hr = CreateObject(m_pDataEvents);
    if (FAILED(hr))
        return hr;
    m_pDataEvents->PointAt(this);
    m_pFileEvents->PointAt(this);
    return S_OK;
}

HRESULT CConvertCtrl::__init_parser_side(VARIANT_BOOL& bHasHeader)
{
    m_pDataParser = m_pParams.pDataParser;
    if (!m_pDataParser)
        return E_UNEXPECTED;
    m_pDataParser->get_HasHeader(&bHasHeader);
    __take_record_parser();
    m_worker.Start(); // before the first notice can come
    AssertDone(m_pDataParser->AddFileEventHandler(m_pFileEvents.get()));
    return S_OK;
}

void CConvertCtrl::__take_record_parser()
{
    com_ptr<IDispatch> pParser;
    if (m_pDataParser)
        m_pDataParser->get_RecordParser(pParser.put());
    if (const com_ptr<IRecordParser> pRecordParser = pParser.as<IRecordParser>())
        m__recParser = pRecordParser;
}

// The row is one too low here on purpose: a file that is there corrects it at once, and without
// one it isn't looked at.
void CConvertCtrl::__show_settings(VARIANT_BOOL bHasHeader)
{
    ULONG nLinesToSkip = 0;
    if (FAILED(m__recParser->get_LinesToSkip(&nLinesToSkip)))
        nLinesToSkip = 0;
    m_pControls.SetStartRow(nLinesToSkip + (bHasHeader == VARIANT_TRUE ? 1 : 0));
    VARIANT_BOOL bEndTime = VARIANT_FALSE;
    m__recParser->get_UseBarsEndTime(&bEndTime);
    m_pControls.SetUseBarsEndTime(bEndTime == VARIANT_TRUE);
}

void CConvertCtrl::__init_grids()
{
    if (m_pTextGrid) {
        AssertDone(m_pTextGrid->put_DataParser(m_pTextParser.get()));
        AssertDone(m_pTextGrid->put_TextMode(VARIANT_TRUE));
    }
    if (m_pDataGrid) {
        AssertDone(m_pDataGrid->put_DataParser(m_pDataParser.get()));
        AssertDone(m_pDataGrid->put_DataChangeSink(m_pDataEvents.get()));
    }
}

// What is posted falls away first: it would run on a control that is going.
void CConvertCtrl::Uninitialize()
{
    m_worker.Stop(true);
    if (m_pFileEvents) {
        if (m_pDataParser)
            m_pDataParser->RemoveFileEventHandler(m_pFileEvents.get());
        if (m_pTextParser)
            m_pTextParser->RemoveFileEventHandler(m_pFileEvents.get());
        m_pFileEvents->PointAt(nullptr);
        m_pFileEvents.reset();
    }
    if (m_pDataEvents) {
        m_pDataEvents->PointAt(nullptr);
        m_pDataEvents.reset();
    }
    m__recParser.reset();
    m_pDataParser.reset();
    m_pTextParser.reset();
}

// ---- a file

void CConvertCtrl::OnFileSelected(const OLECHAR* pszPath)
{
    const UILayer::WaitCursor cursor;
    if (!pszPath || string_view_t(pszPath).size() < kShortestPath || !m_pTextGrid || !m_pDataGrid)
        return;
    const Bstr sPath{string_view_t(pszPath)};
    m_pDataGrid->NotifySourceDetach();
    m_pTextGrid->NotifySourceDetach();
    m_bViewsAttached = false;
    __show_multipliers();
    if (m_pDataParser)
        m_pDataParser->put_FileName(sPath.get());
    if (m_pTextParser)
        __open_text_parser(sPath.get());
    m_pControls.SetControlsState(__sync_dates() == S_OK ? UILayer::StateReady
                                                        : UILayer::StateUnreadable);
    __sync_controls();
    m_pControls.ResetStartRow();
    m_bStartRowTyped = false;
}

void CConvertCtrl::__show_multipliers()
{
    __show_multiplier<CPriceMultiplierExtractor>(&UILayer::IUIControls::SetMultiPrice);
    __show_multiplier<CVolumeMultiplierExtractor>(&UILayer::IUIControls::SetMultiVolume);
}

template <class Extractor>
void CConvertCtrl::__show_multiplier(HRESULT (UILayer::IUIControls::*setName)(const OLECHAR*))
{
    Bstr sName;
    HRESULT hr =
        m__recParser ? ReadMultiplier<Extractor>(m_pDataParser.get(), sName) : E_UNEXPECTED;
    if (SUCCEEDED(hr))
        hr = (m_pControls.*setName)(sName.str().c_str());
    if (FAILED(hr))
        (m_pControls.*setName)(kNoMultiplier);
}

// The raw lines are read in the code page of the records.
void CConvertCtrl::__open_text_parser(BSTR bsPath)
{
    constexpr ULONG kLatin = 1252;
    ULONG nCodePage = kLatin;
    if (m_pDataParser)
        m_pDataParser->get_Locale(&nCodePage);
    m_pTextParser->put_FileName(bsPath);
    m_pTextParser->put_Locale(nCodePage);
    m_pControls.SetFileLanguage(nCodePage);
}

// ---- the grids of a file

// A run tells of each record, so nothing is posted while a posted task waits.
void CConvertCtrl::OnRecordCountChanged()
{
    __post_attach(0);
}

void CConvertCtrl::__post_attach(int nAttempt)
{
    if (m_bAttachPosted.exchange(true))
        return;
    const HRESULT hr = Guarded([&] {
        return m_worker.Post(LocalRPC::MakeAsyncTask([this, nAttempt] {
            m_bAttachPosted = false;
            __attach_views(nAttempt);
        }))
                   ? S_OK
                   : S_FALSE;
    });
    if (hr != S_OK)
        m_bAttachPosted = false;
}

void CConvertCtrl::__attach_views(int nAttempt)
{
    if (m_bViewsAttached || !m_pTextGrid || !m_pDataGrid)
        return;
    if (__create_data_columns()) {
        __hand_count_to_text_grid();
        m_bViewsAttached = true;
    } else if (nAttempt < kMostAttempts) {
        __post_attach(nAttempt + 1);
    }
}

bool CConvertCtrl::__create_data_columns()
{
    if (SUCCEEDED(m_pDataGrid->CreateFields()))
        return true;
    m_pDataGrid->put_DataParser(m_pDataParser.get());
    return SUCCEEDED(m_pDataGrid->CreateFields());
}

// A text grid that has lost its parser gets the main one: its lines are better than none.
void CConvertCtrl::__hand_count_to_text_grid()
{
    com_ptr<IDispatch> pParser;
    if (FAILED(m_pTextGrid->get_DataParser(pParser.put())) || !pParser)
        m_pTextGrid->put_DataParser(m_pDataParser.get());
    const com_ptr<IFileHandlerEvents> pEvents = m_pTextGrid.as<IFileHandlerEvents>();
    ULONGLONG nCount = 0;
    VARIANT_BOOL bComplete = VARIANT_FALSE;
    if (pEvents && m_pDataParser && SUCCEEDED(m_pDataParser->GetCount(&nCount, &bComplete)))
        pEvents->RecordCountChange(nCount, bComplete);
}

// ---- the parsers' state on the controls

HRESULT CConvertCtrl::__sync_dates()
{
    if (!m_pDataParser)
        return OLE_E_BLANK;
    Variant vStart, vEnd;
    HRESULT hr = m_pDataParser->get_StartDateTime(vStart.put());
    if (SUCCEEDED(hr))
        hr = m_pDataParser->get_EndDateTime(vEnd.put());
    if (FAILED(hr))
        return hr;
    m_pControls.SetDateFirst(vStart);
    return m_pControls.SetDateLast(vEnd);
}

HRESULT CConvertCtrl::__sync_controls()
{
    if (!m__recParser)
        return E_FAIL;
    LONG nResolution = 0;
    if (FAILED(m__recParser->get_Resolution(&nResolution)) || nResolution < 0)
        nResolution = 0;
    __sync_date_format(nResolution);
    if (!m_pDataParser)
        return E_FAIL;
    __show_start_row();
    return __sync_resolution(nResolution);
}

HRESULT CConvertCtrl::__show_start_row()
{
    ULONG nRow = 0;
    const HRESULT hr = __shown_row(nRow);
    return hr == S_OK ? m_pControls.SetStartRow(nRow) : hr;
}

HRESULT CConvertCtrl::__shown_row(ULONG& nRow)
{
    ULONG nLinesToSkip = 0;
    VARIANT_BOOL bHasHeader = VARIANT_FALSE;
    HRESULT hr = m__recParser->get_LinesToSkip(&nLinesToSkip);
    if (hr == S_OK)
        hr = m_pDataParser->get_HasHeader(&bHasHeader);
    if (hr == S_OK)
        nRow = ShownRow(nLinesToSkip, bHasHeader != VARIANT_FALSE);
    return hr;
}

HRESULT CConvertCtrl::__sync_resolution(LONG nResolution)
{
    if (!m__recParser)
        return E_FAIL;
    LONG nSize = 0;
    m__recParser->get_ResolutionSize(&nSize);
    if (nResolution == ResolutionTick || nResolution == ResolutionDays ||
        nResolution == ResolutionWeeks)
        nSize = 1;
    const auto& rows = *m_pParams.pResolutionTemplates;
    const auto row = std::ranges::find(rows, nResolution, &STemplateEntry::nId);
    if (!FaultmereUtil::Assert(row != rows.end(), "-1 != nIdx"))
        return E_UNEXPECTED;
    return m_pControls.SetResolution(static_cast<ULONG>(nSize),
                                     static_cast<ULONG>(row - rows.begin()));
}

// Bars of a day or more have no time; only minute bars may be stamped with their end.
HRESULT CConvertCtrl::__sync_date_format(LONG nResolution)
{
    const bool bTimes = nResolution == ResolutionTick || nResolution == ResolutionTickBars ||
                        nResolution == ResolutionCountBars || nResolution == ResolutionMinutes;
    const HRESULT hr = m_pControls.SetDateFormat(bTimes ? 1 : 0);
    const HRESULT hrShow = m_pControls.ShowUseBarsEndTime(nResolution == ResolutionMinutes);
    return FAILED(hr) ? hr : hrShow;
}

void CConvertCtrl::__refresh()
{
    if (m_pDataGrid)
        m_pDataGrid->Refresh();
}

} // namespace Hesperon::specifics::DataFlow
