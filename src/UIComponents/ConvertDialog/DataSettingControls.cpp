// The settings pane's side of IUIControls.

#include "Simples/interface/ResourceStrings.h"
#include "diagnostics/FaultmereClient.h"
#include "module/Guarded.h"
#include "platform/SystemVersion.h"
#include "platform/text/Locale.h"
#include "src/UIComponents/ConvertDialog/DataSettingAdapter.h"
#include "src/UIComponents/DecimalText.h"
#include "src/UIComponents/Windowless/UIControls.h"
#include "src/UIComponents/views/ControlPlaces.h"
#include "src/data/DateWithStatus.h"

using namespace IQRL_TabulexConverter;
using FaultmereUtil::Assert;

namespace Hesperon::specifics::UILayer {

namespace {

// In the order in which they are enabled.
constexpr LONG kControls[] = {SettingsSize,
                              SettingsResolution,
                              SettingsField,
                              SettingsTimeZone,
                              SettingsStartRow,
                              SettingsPriceMultiplier,
                              SettingsVolumeMultiplier,
                              SettingsDateFirst,
                              SettingsDateLast,
                              SettingsDelimiters,
                              SettingsBarsEndTime};

// Whether a date comes back from its date number, to the second.
bool ComesBack(const SYSTEMTIME& date, DATE value)
{
    SYSTEMTIME back{};
    return VariantTimeToSystemTime(value, &back) && back.wYear == date.wYear &&
           back.wMonth == date.wMonth && back.wDay == date.wDay && back.wHour == date.wHour &&
           back.wMinute == date.wMinute && back.wSecond == date.wSecond;
}

// The pickers' pictures: mode 1 has the time as well.
string_t PickerFormat(LONG nMode)
{
    constexpr std::size_t kMostUnits = 259;
    string_t sFormat = DateFormatText();
    Assert(!sFormat.empty(), "szDateFormat[0]");
    if (nMode == 1) {
        const string_t sTime = TimeFormatText();
        Assert(!sTime.empty(), "pszTime[0]");
        sFormat += OLECHAR(' ') + sTime;
    }
    return sFormat.substr(0, kMostUnits);
}

constexpr LONG kPickerGap = 5;

} // namespace

// ---- dates

HRESULT CDataSettingAdapter::CPane::GetDateFirst(VARIANT* pDate)
{
    return m_pView ? ReadPicker(m_dateFirst, pDate) : OLE_E_BLANK;
}

HRESULT CDataSettingAdapter::CPane::GetDateLast(VARIANT* pDate)
{
    return m_pView ? ReadPicker(m_dateLast, pDate) : OLE_E_BLANK;
}

HRESULT CDataSettingAdapter::CPane::SetDateFirst(const VARIANT& vDate)
{
    return m_pView ? WritePicker(m_dateFirst, vDate) : OLE_E_BLANK;
}

HRESULT CDataSettingAdapter::CPane::SetDateLast(const VARIANT& vDate)
{
    return m_pView ? WritePicker(m_dateLast, vDate) : OLE_E_BLANK;
}

HRESULT CDataSettingAdapter::CPane::ReadPicker(const Picker& picker, VARIANT* pDate)
{
    pDate->vt = VT_EMPTY;
    SYSTEMTIME date{};
    DATE value = 0;
    if (picker.vWritten.vt == VT_DATE)
        value = picker.vWritten.date;
    else if (!m_pView->Date(picker.nControl, date))
        return E_UNEXPECTED;
    else {
        date.wMilliseconds = 0;
        SystemTimeToVariantTime(&date, &value);
        Assert(ComesBack(date, value), "GetStatus() == valid");
    }
    pDate->vt = VT_DATE;
    pDate->date = value;
    return S_OK;
}

HRESULT CDataSettingAdapter::CPane::WritePicker(Picker& picker, const VARIANT& vDate)
{
    if (vDate.vt != VT_DATE)
        return E_INVALIDARG;
    SYSTEMTIME date{};
    const bool bDate = LowDayBits(vDate.date) != 0;
    picker.vWritten = bDate ? Variant(vDate) : Variant();
    if (bDate)
        VariantTimeToSystemTime(vDate.date, &date);
    m_pView->SetDate(picker.nControl, bDate ? &date : nullptr);
    m_pView->SetEnabled(picker.nControl, bDate);
    return S_OK;
}

HRESULT CDataSettingAdapter::CPane::SetDateFormat(LONG nMode)
{
    if (nMode != 0 && nMode != 1)
        return E_FAIL;
    if (!m_pView)
        return OLE_E_BLANK;
    return Guarded([&] {
        const string_t sFormat = PickerFormat(nMode);
        m_pView->SetDateFormat(SettingsDateFirst, sFormat.c_str());
        m_pView->SetDateFormat(SettingsDateLast, sFormat.c_str());
        Arrange(nMode);
        return S_OK;
    });
}

// Pickers with a time are wide, and leave room for the button only below the second one.
void CDataSettingAdapter::CPane::Arrange(LONG nMode)
{
    constexpr LONG kDateWidth = 101, kTimeWidth = 121, kNewTimeWidth = 141;
    const LONG nWide = SystemMajorVersion() >= 6 ? kNewTimeWidth : kTimeWidth;
    const LONG nWidth = nMode == 1 ? nWide : kDateWidth;
    ControlPlace first = m_pView->Place(SettingsDateFirst);
    first.nRight = first.nLeft + nWidth;
    m_pView->Move(SettingsDateFirst, first);
    ControlPlace last = m_pView->Place(SettingsDateLast);
    last.nLeft = first.nRight + kPickerGap;
    last.nRight = last.nLeft + nWidth;
    m_pView->Move(SettingsDateLast, last);
    MoveTo(*m_pView, SettingsDateLastLabel, last.nLeft, Top(*m_pView, SettingsDateLastLabel));
    if (nMode == 1)
        MoveTo(*m_pView, SettingsDelimiters, last.nLeft, Top(*m_pView, SettingsBarsEndTime) - 1);
    else
        MoveTo(*m_pView, SettingsDelimiters, last.nRight + kPickerGap, last.nTop - 1);
    m_pView->Repaint(SettingsDelimiters);
}

// ---- start row

// The echo of the write is told apart from typing. Without the edit there is none.
HRESULT CDataSettingAdapter::CPane::SetStartRow(ULONG nRow)
{
    if (!m_pView)
        return OLE_E_BLANK;
    m_bSettingStartRow = m_pView->Exists(SettingsStartRow);
    const TextRange selection = m_pView->SelectedText(SettingsStartRow);
    m_pView->SetText(SettingsStartRow, DecimalText(nRow).c_str());
    m_pView->SelectText(SettingsStartRow, selection);
    m_pView->ShowCaret(SettingsStartRow);
    return S_OK;
}

HRESULT CDataSettingAdapter::CPane::GetStartRow(ULONG* pnRow)
{
    *pnRow = 0;
    const string_view_t sRow = m_pView ? m_pView->Text(SettingsStartRow) : OLESTR("");
    if (sRow.empty())
        return E_FAIL;
    *pnRow = AbsoluteDecimalValue(sRow);
    return S_OK;
}

HRESULT CDataSettingAdapter::CPane::ResetStartRow()
{
    m_nStartRow = 0;
    return S_OK;
}

// ---- resolution, multipliers, bars

HRESULT CDataSettingAdapter::CPane::SetResolution(ULONG nSize, ULONG nIndex)
{
    if (!m_pView)
        return OLE_E_BLANK;
    const string_t sSize =
        nSize >= 1 ? DecimalText(nSize) : string_t(LoadResourceString(IDS_NO_SIZE));
    m_pView->SetText(SettingsSize, sSize.c_str());
    if (!m_pView->Select(SettingsResolution, static_cast<LONG>(nIndex))) {
        m_pView->SetEnabled(SettingsSize, false);
        return DISP_E_BADINDEX;
    }
    EnableSize();
    return S_OK;
}

HRESULT CDataSettingAdapter::CPane::SetMultiPrice(const OLECHAR* pszName)
{
    return SelectName(SettingsPriceMultiplier, pszName);
}

HRESULT CDataSettingAdapter::CPane::SetMultiVolume(const OLECHAR* pszName)
{
    return SelectName(SettingsVolumeMultiplier, pszName);
}

// Not by the head of a row: "1" is that of "1/10".
HRESULT CDataSettingAdapter::CPane::SelectName(LONG nControl, const OLECHAR* pszName)
{
    const LONG nRows = m_pView ? m_pView->RowCount(nControl) : 0;
    for (LONG nRow = 0; nRow < nRows; ++nRow)
        if (string_view_t(m_pView->RowText(nControl, nRow)) == pszName)
            return m_pView->Select(nControl, nRow) ? S_OK : TYPE_E_ELEMENTNOTFOUND;
    return TYPE_E_ELEMENTNOTFOUND;
}

HRESULT CDataSettingAdapter::CPane::SetUseBarsEndTime(bool bChecked)
{
    if (!m_pView)
        return OLE_E_BLANK;
    m_pView->SetCheck(SettingsBarsEndTime, bChecked ? 1 : 0);
    return S_OK;
}

HRESULT CDataSettingAdapter::CPane::ShowUseBarsEndTime(bool bShow)
{
    if (!m_pView)
        return OLE_E_BLANK;
    m_pView->SetShown(SettingsBarsEndTime, bShow);
    return S_OK;
}

// ---- enabling

HRESULT CDataSettingAdapter::CPane::SetControlsState(LONG nState)
{
    if (!m_pView)
        return OLE_E_BLANK;
    for (const LONG nControl : kControls) {
        if (!m_pView->Exists(nControl))
            continue;
        if (nControl == SettingsSize)
            EnableSize();
        else if (nControl == SettingsDelimiters)
            m_pView->SetEnabled(nControl, nState == StateUnreadable || nState == StateReady);
        else
            m_pView->SetEnabled(nControl, nState == StateReady);
    }
    return S_OK;
}

} // namespace Hesperon::specifics::UILayer
