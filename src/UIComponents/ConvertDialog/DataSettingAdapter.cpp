// How the controls are filled when the pane is made. A step that fails is reported, and the
// others still run.

#include "src/UIComponents/ConvertDialog/DataSettingAdapter.h"

#include <algorithm>

#include "Simples/interface/ResourceStrings.h"
#include "module/Guarded.h"
#include "src/UIComponents/DecimalText.h"
#include "src/UIComponents/DialogAssert.h"
#include "src/UIComponents/Windowless/StartRow.h"
#include "src/parsing/RecordParserExtractor.h"
#include "src/values/CaseFold.h"
#include "src/values/LockedArray.h"

using namespace IQRL_TabulexConverter;

namespace Hesperon::specifics::UILayer {

namespace {

// A resolution's name without its size; all of it where it has none.
string_t NameWithoutSize(const string_t& sName)
{
    return sName.substr(0, sName.find(OLECHAR('|')));
}

// The record parser of the parser under edit.
class RecordParserOf : public CRecordParserExtactor
{
public:
    using CRecordParserExtactor::CRecordParserExtactor;
    IRecordParser* operator->() const { return m_pRecordParser.get(); }
};

} // namespace

HRESULT CDataSettingAdapter::CPane::Create(IDialogView& parent)
{
    m_sResolution = m_pParams.sResolution;
    m_pView = parent.MakePane(DialogSettings, *this);
    if (!m_pView)
        return E_FAIL;
    return Guarded([&] {
        __init_controls();
        return S_OK;
    });
}

void CDataSettingAdapter::CPane::__init_controls()
{
    AssertDone(__init_resolution());
    AssertDone(__init_list(SettingsField, *m_pParams.pFieldTemplates, m_pParams.sField));
    AssertDone(__init_list(SettingsTimeZone, *m_pParams.pTimeZoneTemplates, m_pParams.sTimeZone));
    AssertDone(__init_start_row());
    AssertDone(__init_multiplier<CPriceMultiplierExtractor>(SettingsPriceMultiplier));
    AssertDone(__init_multiplier<CVolumeMultiplierExtractor>(SettingsVolumeMultiplier));
    AssertDone(__init_bars_end_time());
}

HRESULT CDataSettingAdapter::CPane::__init_resolution()
{
    m_pView->SetText(SettingsSize, string_t(LoadResourceString(IDS_NO_SIZE)).c_str());
    m_pView->SetReadOnly(SettingsSize, m_pParams.nMode == 0);
    for (const STemplateEntry& row : *m_pParams.pResolutionTemplates)
        m_pView->AddRow(SettingsResolution, NameWithoutSize(row.sName).c_str(), row.nId);
    if (!m_pParams.pResolutionTemplates->empty())
        m_pView->Select(SettingsResolution, 0);
    EnableSize();
    return S_OK;
}

// Where several names match without case, the last one is chosen; where none does, the last row.
HRESULT CDataSettingAdapter::CPane::__init_list(LONG nControl,
                                                const std::vector<STemplateEntry>& rows,
                                                string_view_t sChoice)
{
    bool bFound = false;
    for (const STemplateEntry& row : rows) {
        const LONG nRow = m_pView->AddRow(nControl, row.sName.c_str(), row.nId);
        if (!EqualIgnoringCase(row.sName, sChoice))
            continue;
        m_pView->Select(nControl, nRow);
        bFound = true;
    }
    if (bFound)
        return S_OK;
    m_pView->SetEnabled(nControl, !rows.empty());
    if (!rows.empty())
        m_pView->Select(nControl, static_cast<LONG>(rows.size()) - 1);
    return S_OK;
}

// The floor is for a number of lines that has wrapped.
HRESULT CDataSettingAdapter::CPane::__init_start_row()
{
    const RecordParserOf parser(m_pParams.pDataParser.get());
    VARIANT_BOOL bHasHeader = VARIANT_FALSE;
    ULONG nLinesToSkip = 0;
    HRESULT hr = parser.GetStatus();
    if (SUCCEEDED(hr))
        hr = m_pParams.pDataParser->get_HasHeader(&bHasHeader);
    if (SUCCEEDED(hr))
        hr = parser->get_LinesToSkip(&nLinesToSkip);
    if (FAILED(hr))
        return hr;
    const ULONG nLeast = bHasHeader != VARIANT_FALSE ? 2 : 1;
    const ULONG nRow = std::max(ShownRow(nLinesToSkip, bHasHeader != VARIANT_FALSE), nLeast);
    m_pView->SetText(SettingsStartRow, DecimalText(nRow).c_str());
    return S_OK;
}

template <class Extractor>
HRESULT CDataSettingAdapter::CPane::__init_multiplier(LONG nControl)
{
    const Extractor extractor(m_pParams.pDataParser.get());
    if (FAILED(extractor.GetStatus()))
        return extractor.GetStatus();
    const auto pMultiplier = extractor.GetMultiplier();
    Variant vNames;
    HRESULT hr = pMultiplier->get_TransformNames(vNames.put());
    if (FAILED(hr))
        return hr;
    if (vNames.vt != (VT_ARRAY | VT_BSTR))
        return E_INVALIDARG;
    const LockedArray<BSTR> names(vNames.parray);
    for (BSTR sName : names.Elements())
        m_pView->AddRow(nControl, string_t(TextOf(sName)).c_str(), 0);
    if (names.Elements().empty())
        return names.Result();
    Bstr sCurrent;
    hr = pMultiplier->get_Current(sCurrent.put());
    if (SUCCEEDED(hr))
        SelectName(nControl, sCurrent.str().c_str());
    return hr;
}

HRESULT CDataSettingAdapter::CPane::__init_bars_end_time()
{
    const RecordParserOf parser(m_pParams.pDataParser.get());
    if (FAILED(parser.GetStatus()))
        return parser.GetStatus();
    VARIANT_BOOL bChecked = VARIANT_FALSE;
    const HRESULT hr = parser->get_UseBarsEndTime(&bChecked);
    if (SUCCEEDED(hr))
        SetUseBarsEndTime(bChecked != VARIANT_FALSE);
    return hr;
}

// The first row stands for no resolution, which has no size.
void CDataSettingAdapter::CPane::EnableSize()
{
    m_pView->SetEnabled(SettingsSize, m_pView->Selected(SettingsResolution) >= 1);
}

} // namespace Hesperon::specifics::UILayer
