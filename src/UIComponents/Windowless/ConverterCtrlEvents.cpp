// What a change of a setting does to the parsers, and what is shown again after it.
//
// A change of the start row is the long one. Building the columns anew forgets the lines to
// skip, so they are put in again behind it, and the dates, which that leaves unread, are read.

#include <algorithm>

#include "interfaces/FieldsAndResolutions.h"
#include "platform/values.h"
#include "src/UIComponents/DecimalText.h"
#include "src/UIComponents/DelDialog.h"
#include "src/UIComponents/DialogAssert.h"
#include "src/UIComponents/Windowless/ConverterCtrl.h"
#include "src/UIComponents/Windowless/StartRow.h"
#include "src/parsing/RecordParserExtractor.h"

using namespace IQRL_TabulexConverter;
using FaultmereUtil::Assert;
using FaultmereUtil::AssertOk;

namespace Hesperon::specifics::DataFlow {

namespace {

template <class Extractor>
HRESULT PutMultiplier(IDataParser* pParser, const OLECHAR* pszName)
{
    const Extractor extractor(pParser);
    if (FAILED(extractor.GetStatus()))
        return extractor.GetStatus();
    return extractor.GetMultiplier()->put_Current(Bstr(string_view_t(pszName)).get());
}

bool HasDate(const Variant& vDate)
{
    return vDate.vt == VT_DATE;
}

} // namespace

void CConvertCtrl::OnFileLanguageChanged(ULONG nCodePage)
{
    if (!m_pDataGrid || !m_pDataParser || FAILED(m_pDataGrid->NotifySourceDetach()))
        return;
    AssertOk(m_pDataParser->put_Locale(nCodePage));
    AssertOk(m_pDataGrid->CreateFields());
    if (FAILED(__sync_dates()))
        return;
    com_ptr<IDispatch> pParser;
    AssertOk(m_pDataGrid->get_DataParser(pParser.put()));
    if (const com_ptr<IDataParser> pGridParser = pParser.as<IDataParser>())
        AssertOk(pGridParser->put_Locale(nCodePage));
    __refresh();
}

// What the parser makes of a date isn't shown: the picker keeps what the user chose.
void CConvertCtrl::OnDateFirstChanged(const VARIANT& vDate)
{
    if (!m_pDataParser)
        return;
    AssertOk(m_pDataParser->put_StartDateTime(vDate));
    Variant vStart;
    AssertOk(m_pDataParser->get_StartDateTime(vStart.put()));
    __refresh();
}

void CConvertCtrl::OnDateLastChanged(const VARIANT& vDate)
{
    if (!m_pDataParser)
        return;
    AssertDone(m_pDataParser->put_EndDateTime(vDate));
    __refresh();
}

void CConvertCtrl::OnMultiPriceChanged(const OLECHAR* pszName)
{
    if (!m_pDataGrid)
        return;
    AssertDone(PutMultiplier<CPriceMultiplierExtractor>(m_pDataParser.get(), pszName));
    __refresh();
}

void CConvertCtrl::OnMultiVolumeChanged(const OLECHAR* pszName)
{
    if (!m_pDataGrid)
        return;
    AssertDone(PutMultiplier<CVolumeMultiplierExtractor>(m_pDataParser.get(), pszName));
    __refresh();
}

void CConvertCtrl::OnUseBarsEndTimeChanged(bool bChecked)
{
    if (!m__recParser)
        return;
    AssertDone(m__recParser->put_UseBarsEndTime(bChecked ? VARIANT_TRUE : VARIANT_FALSE));
    AssertDone(__sync_dates());
    __refresh();
}

// ---- resolution

void CConvertCtrl::OnResolutionSizeChanged(const LONG nSize)
{
    if (!Assert(static_cast<bool>(m__recParser), "m__recParser != 0") || nSize < 1)
        return;
    LONG nPresent = 0;
    AssertOk(m__recParser->get_ResolutionSize(&nPresent));
    if (nPresent != nSize)
        AssertOk(m__recParser->put_ResolutionSize(nSize));
    __refresh();
}

void CConvertCtrl::OnResolutionTypeChanged(const int nIndex)
{
    if (!Assert(static_cast<bool>(m__recParser), "m__recParser != 0"))
        return;
    const auto& rows = *m_pParams.pResolutionTemplates;
    if (nIndex < 0 || static_cast<std::size_t>(nIndex) >= rows.size()) {
        AssertOk(E_INVALIDARG);
        return;
    }
    const STemplateEntry& row = rows[static_cast<std::size_t>(nIndex)];
    AssertOk(m__recParser->put_Resolution(row.nId));
    __take_size_of_name(row.sName);
    __push_dates();
    AssertOk(__sync_date_format(row.nId));
    if (m_pDataGrid) {
        AssertOk(m_pDataGrid->CreateFields());
        __refresh();
    }
}

// A name without a size leaves the parser's own.
void CConvertCtrl::__take_size_of_name(string_view_t sName)
{
    LONG nPresent = 0;
    AssertOk(m__recParser->get_ResolutionSize(&nPresent));
    const std::size_t nBar = sName.rfind(OLECHAR('|'));
    const string_view_t sSize = nBar == sName.npos ? string_view_t() : sName.substr(nBar + 1);
    const LONG nSize = UILayer::DecimalValue(sSize);
    if (!sSize.empty() && nSize != nPresent)
        AssertOk(m__recParser->put_ResolutionSize(nSize));
}

// The pickers win over the parser. One without a date has nothing to say.
void CConvertCtrl::__push_dates()
{
    if (!m_pDataParser)
        return;
    Variant vDate;
    if (SUCCEEDED(m_pControls.GetDateFirst(vDate.put())))
        AssertOk(m_pDataParser->put_StartDateTime(vDate));
    if (SUCCEEDED(m_pControls.GetDateLast(vDate.put())))
        AssertOk(m_pDataParser->put_EndDateTime(vDate));
}

// ---- start row

void CConvertCtrl::OnStartRowChanged(const ULONG nRow)
{
    m_bStartRowTyped = true;
    __apply_start_row(nRow);
}

void CConvertCtrl::__apply_start_row(const ULONG nRow)
{
    VARIANT_BOOL bHasHeader = VARIANT_FALSE, bComplete = VARIANT_FALSE;
    ULONGLONG nCount = 0;
    if (!m_pDataParser || !m__recParser || FAILED(m_pDataParser->get_HasHeader(&bHasHeader)) ||
        FAILED(m_pDataParser->GetCount(&nCount, &bComplete)))
        return;
    if (nCount <= nRow) {
        __show_start_row();
        return;
    }
    __skip_lines(nRow, bHasHeader != VARIANT_FALSE);
    ULONG nLinesToSkip = 0;
    AssertOk(m__recParser->get_LinesToSkip(&nLinesToSkip));
    if (m_pTextGrid)
        AssertOk(m_pTextGrid->CreateFields());
    __show_file_dates();
    __recreate_columns(bHasHeader, nLinesToSkip);
}

// The edit snaps back where the parser takes another row than the one typed.
void CConvertCtrl::__skip_lines(ULONG nRow, bool bHasHeader)
{
    const ULONG nSkip = LinesToSkipOf(nRow, bHasHeader);
    if (nSkip > kMostLinesToSkip) {
        __show_start_row();
        return;
    }
    ULONG nShown = 0;
    if (AssertOk(m__recParser->put_LinesToSkip(nSkip)) == S_OK && __shown_row(nShown) == S_OK &&
        nShown != nRow)
        m_pControls.SetStartRow(nShown);
}

void CConvertCtrl::__show_file_dates()
{
    Variant vMinDate, vMaxDate;
    const HRESULT hrMin = m_pDataParser->GetMinDateTime(vMinDate.put());
    if (FAILED(AssertOk(hrMin)))
        return;
    Assert(HasDate(vMinDate), "VT_DATE == vMinDate.vt");
    const HRESULT hrMax = m_pDataParser->GetMaxDateTime(vMaxDate.put());
    if (FAILED(AssertOk(hrMax)))
        return;
    Assert(HasDate(vMaxDate), "VT_DATE == vMaxDate.vt");
    m_pControls.SetDateFirst(vMinDate);
    m_pControls.SetDateLast(vMaxDate);
}

void CConvertCtrl::__recreate_columns(VARIANT_BOOL bHasHeader, ULONG nLinesToSkip)
{
    if (FAILED(AssertOk(m__recParser->RecreateFealds())))
        return;
    ULONG nPresent = 0;
    if (SUCCEEDED(m__recParser->get_LinesToSkip(&nPresent)) && nPresent != nLinesToSkip) {
        AssertOk(m_pDataParser->put_HasHeader(bHasHeader));
        AssertOk(m__recParser->put_LinesToSkip(nLinesToSkip));
        AssertOk(m_pDataParser->RefreshDateInfo(VARIANT_FALSE));
    }
    if (m_pDataGrid && SUCCEEDED(m_pDataGrid->CreateFields()))
        __refresh();
}

// ---- delimiters

void CConvertCtrl::OnDelimitersClicked()
{
    if (!m__recParser)
        return;
    const HRESULT hr = __change_delimiters();
    m_pControls.SetControlsState(FAILED(hr) ? UILayer::StateUnreadable : UILayer::StateReady);
}

// The import dialog may go while the small one is open, and the parsers with it.
HRESULT CConvertCtrl::__change_delimiters()
{
    UILayer::CSelectDelimitersDialog dialog;
    const HRESULT hr = m__recParser->get_FieldDividers(&dialog.m_nDividers);
    if (FAILED(hr))
        return hr;
    const bool bChosen = dialog.DoModal() == kDialogOk && m__recParser;
    return bChosen ? __apply_delimiters(dialog.m_nDividers) : S_OK;
}

HRESULT CConvertCtrl::__apply_delimiters(LONG nDividers)
{
    HRESULT hr = m__recParser->put_FieldDividers(nDividers);
    if (SUCCEEDED(hr) && m_pDataGrid)
        hr = m_pDataGrid->CreateFields();
    if (SUCCEEDED(hr))
        hr = __apply_shown_row();
    if (SUCCEEDED(hr))
        hr = __sync_dates();
    if (SUCCEEDED(hr))
        hr = __push_shown_dates();
    if (SUCCEEDED(hr))
        hr = __sync_controls();
    if (SUCCEEDED(hr))
        __refresh();
    return hr;
}

// A row that nobody typed is what an earlier layout was found with; the one of the new layout
// holds.
HRESULT CConvertCtrl::__apply_shown_row()
{
    if (!m_bStartRowTyped && m_pDataParser)
        __show_start_row();
    ULONG nRow = 0;
    const HRESULT hr = m_pControls.GetStartRow(&nRow);
    if (hr == S_OK)
        __apply_start_row(nRow);
    return hr;
}

HRESULT CConvertCtrl::__push_shown_dates()
{
    Variant vDate;
    HRESULT hr = m_pControls.GetDateFirst(vDate.put());
    if (SUCCEEDED(hr))
        hr = m_pDataParser->put_StartDateTime(vDate);
    if (SUCCEEDED(hr))
        hr = m_pControls.GetDateLast(vDate.put());
    return SUCCEEDED(hr) ? m_pDataParser->put_EndDateTime(vDate) : hr;
}

// ---- column types

void CConvertCtrl::OnDataChanged()
{
    LONG nResolution = 0;
    if (SUCCEEDED(__retype_columns(nResolution)))
        m_pControls.SetControlsState(nResolution != ResolutionNone ? UILayer::StateReady
                                                                   : UILayer::StateNone);
}

HRESULT CConvertCtrl::__retype_columns(LONG& nResolution)
{
    if (!m__recParser || !m_pDataGrid)
        return E_FAIL;
    m__recParser->RecalcResolutionSize();
    HRESULT hr = m__recParser->get_Resolution(&nResolution);
    nResolution = std::max<LONG>(nResolution, ResolutionNone);
    if (SUCCEEDED(hr))
        hr = m_pDataGrid->CreateFields();
    if (SUCCEEDED(hr))
        hr = __sync_date_format(nResolution);
    if (SUCCEEDED(hr))
        hr = __sync_resolution(nResolution);
    return SUCCEEDED(hr) ? __sync_dates() : hr;
}

} // namespace Hesperon::specifics::DataFlow
