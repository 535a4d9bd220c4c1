// What the user does in the settings pane, and what the dialog asks it at its end. A view has no
// use for what is thrown, so no event lets anything out.

#include "Simples/interface/ResourceStrings.h"
#include "src/UIComponents/ConvertDialog/DataSettingAdapter.h"
#include "src/UIComponents/DecimalText.h"
#include "src/UIComponents/views/GuardedEvent.h"

using namespace IQRL_TabulexConverter;

namespace Hesperon::specifics::UILayer {

void CDataSettingAdapter::CPane::OnText(LONG nControl)
{
    if (!m_pView)
        return;
    GuardedEvent([&] {
        if (nControl == SettingsSize)
            ApplySize();
        else if (nControl == SettingsStartRow)
            ApplyStartRow();
    });
}

void CDataSettingAdapter::CPane::OnSelect(LONG nControl)
{
    if (!m_pView)
        return;
    GuardedEvent([&] {
        const LONG nRow = m_pView->Selected(nControl);
        const string_t sRow = m_pView->RowText(nControl, nRow);
        if (nControl == SettingsResolution)
            OnResolutionSelected();
        else if (nControl == SettingsPriceMultiplier && nRow != kNoRow)
            m_pSink.OnMultiPriceChanged(sRow.c_str());
        else if (nControl == SettingsVolumeMultiplier && nRow != kNoRow)
            m_pSink.OnMultiVolumeChanged(sRow.c_str());
    });
}

void CDataSettingAdapter::CPane::OnClick(LONG nControl)
{
    if (!m_pView)
        return;
    GuardedEvent([&] {
        if (nControl == SettingsDelimiters)
            m_pSink.OnDelimitersClicked();
        else if (nControl == SettingsBarsEndTime)
            m_pSink.OnUseBarsEndTimeChanged(m_pView->Check(SettingsBarsEndTime) != 0);
    });
}

void CDataSettingAdapter::CPane::OnDate(LONG nControl)
{
    const bool bFirst = nControl == SettingsDateFirst;
    Picker& picker = bFirst ? m_dateFirst : m_dateLast;
    if (!m_pView || picker.nControl != nControl)
        return;
    picker.vWritten = Variant();
    if (FAILED(ReadPicker(picker, picker.vReported.put())))
        return;
    GuardedEvent([&] {
        if (bFirst)
            m_pSink.OnDateFirstChanged(picker.vReported);
        else
            m_pSink.OnDateLastChanged(picker.vReported);
    });
}

// The size is written first, and where it can be typed that counts as a change of its own.
void CDataSettingAdapter::CPane::OnResolutionSelected()
{
    const LONG nRow = m_pView->Selected(SettingsResolution);
    const auto& rows = *m_pParams.pResolutionTemplates;
    string_t sSize(LoadResourceString(IDS_NO_SIZE));
    if (nRow >= 0 && static_cast<std::size_t>(nRow) < rows.size()) {
        const string_t& sName = rows[static_cast<std::size_t>(nRow)].sName;
        if (const std::size_t nBar = sName.find(OLECHAR('|')); nBar != sName.npos)
            sSize = sName.substr(nBar + 1);
    }
    m_pView->SetText(SettingsSize, sSize.c_str());
    EnableSize();
    if (nRow != kNoRow)
        m_pSink.OnResolutionTypeChanged(nRow);
}

HRESULT CDataSettingAdapter::CPane::ApplySize()
{
    const LONG nSize = DecimalOf(SettingsSize);
    if (m_pParams.nMode == 1 && nSize > 0)
        m_pSink.OnResolutionSizeChanged(nSize);
    return S_OK;
}

// Each character typed counts: 12 is 1 and then 12.
void CDataSettingAdapter::CPane::ApplyStartRow()
{
    if (m_bSettingStartRow) {
        m_bSettingStartRow = false;
        return;
    }
    const string_t sRow = m_pView->Text(SettingsStartRow);
    const ULONG nRow = AbsoluteDecimalValue(sRow);
    if (sRow.empty() || nRow == m_nStartRow)
        return;
    m_nStartRow = nRow;
    m_pSink.OnStartRowChanged(nRow);
}

LONG CDataSettingAdapter::CPane::DecimalOf(LONG nControl)
{
    return DecimalValue(m_pView->Text(nControl));
}

// ---- what the dialog asks

HRESULT CDataSettingAdapter::CPane::ApplyFocusedEdit()
{
    const LONG nFocus = m_pView ? m_pView->Focus() : kWholeView;
    if (nFocus == SettingsSize && m_pParams.nMode == 1)
        return ApplySize();
    if (nFocus != SettingsStartRow)
        return 1;
    ApplyStartRow();
    return S_OK;
}

LONG CDataSettingAdapter::CPane::ResolutionSize()
{
    return m_pView ? DecimalOf(SettingsSize) : 0;
}

string_t CDataSettingAdapter::CPane::Field()
{
    return m_pView ? m_pView->RowText(SettingsField, m_pView->Selected(SettingsField)) : string_t();
}

string_t CDataSettingAdapter::CPane::TimeZone()
{
    return m_pView ? m_pView->RowText(SettingsTimeZone, m_pView->Selected(SettingsTimeZone))
                   : string_t();
}

string_t CDataSettingAdapter::CPane::Resolution()
{
    const LONG nRow = m_pView ? m_pView->Selected(SettingsResolution) : kNoRow;
    const auto& rows = *m_pParams.pResolutionTemplates;
    if (nRow >= 0 && static_cast<std::size_t>(nRow) < rows.size())
        m_sResolution = rows[static_cast<std::size_t>(nRow)].sName;
    return m_sResolution;
}

} // namespace Hesperon::specifics::UILayer
