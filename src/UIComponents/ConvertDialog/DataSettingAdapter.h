// CDataSettingAdapter::CPane: the strip of the import dialog that shows what will be applied to
// the file: resolution, fields, time zone, start row, multipliers, dates, delimiters.
//
// It turns what the user does with its controls into calls of IDataSettingEventSink, and carries
// out the calls of IUIControls that are about its controls, under the same names. A list of the
// parameters and the list on show have the same rows.
//
// Used on the dialog's thread. Without a view its operations do nothing or fail.
#pragma once

#include "platform/values.h"
#include "src/UIComponents/ConvertDialog/ConvertDialogParams.h"
#include "src/UIComponents/Windowless/EventSinks.h"
#include "src/UIComponents/views/DialogViews.h"

namespace Hesperon::specifics::UILayer {

struct CDataSettingAdapter
{
    class CPane;
};

class CDataSettingAdapter::CPane final : public IQRL_TabulexConverter::IControlEvents
{
public:
    // Both outlive the pane.
    CPane(const SConvertDialogParams& params, notify::IDataSettingEventSink& sink)
        : m_pParams(params), m_pSink(sink)
    {}

    // Makes the view and fills the controls. E_FAIL where the view can't be made.
    HRESULT Create(IDialogView& parent);
    IPaneView* View() { return m_pView; } // null without one
    void Close() { m_pView = nullptr; }   // the view goes

    // ---- of IUIControls; SetControlsState leaves the other panes' controls alone

    HRESULT GetDateFirst(VARIANT* pDate);
    HRESULT GetDateLast(VARIANT* pDate);
    HRESULT GetStartRow(ULONG* pnRow);
    HRESULT SetControlsState(LONG nState);
    HRESULT SetDateFirst(const VARIANT& vDate);
    HRESULT SetDateFormat(LONG nMode);
    HRESULT SetDateLast(const VARIANT& vDate);
    HRESULT SetUseBarsEndTime(bool bChecked);
    HRESULT SetStartRow(ULONG nRow);
    HRESULT SetMultiPrice(const OLECHAR* pszName);
    HRESULT SetMultiVolume(const OLECHAR* pszName);
    HRESULT SetResolution(ULONG nSize, ULONG nIndex);
    HRESULT ShowUseBarsEndTime(bool bShow);
    HRESULT ResetStartRow();

    // ---- what the dialog asks

    // Enter: applies the edit that the keyboard goes to. 1 where that isn't one of this pane's
    // edits that take input.
    HRESULT ApplyFocusedEdit();
    // The choices as they stand on show. The name of the resolution is the one in the list of
    // the parameters.
    LONG ResolutionSize();
    string_t Field();
    string_t Resolution();
    string_t TimeZone();

    // ---- IControlEvents

    void OnText(LONG nControl) override;
    void OnSelect(LONG nControl) override;
    void OnClick(LONG nControl) override;
    void OnDate(LONG nControl) override;
    void OnResize() override {}

private:
    // A date picker gives back what was written to it until the user touches it: by itself it
    // holds whole seconds.
    struct Picker
    {
        LONG nControl;
        Variant vWritten; // VT_EMPTY where that was no date, or the user has chosen another
        Variant vReported;
    };

    void __init_controls();
    HRESULT __init_resolution();
    HRESULT __init_list(LONG nControl, const std::vector<STemplateEntry>& rows,
                        string_view_t sChoice);
    HRESULT __init_start_row();
    template <class Extractor>
    HRESULT __init_multiplier(LONG nControl);
    HRESULT __init_bars_end_time();

    void OnResolutionSelected();
    HRESULT ApplySize();
    void ApplyStartRow();
    HRESULT ReadPicker(const Picker& picker, VARIANT* pDate);
    HRESULT WritePicker(Picker& picker, const VARIANT& vDate);
    HRESULT SelectName(LONG nControl, const OLECHAR* pszName);
    void EnableSize();
    void Arrange(LONG nMode);
    LONG DecimalOf(LONG nControl);

    const SConvertDialogParams& m_pParams;
    notify::IDataSettingEventSink& m_pSink;
    IPaneView* m_pView = nullptr;
    Picker m_dateFirst{IQRL_TabulexConverter::SettingsDateFirst, {}, {}};
    Picker m_dateLast{IQRL_TabulexConverter::SettingsDateLast, {}, {}};
    bool m_bSettingStartRow = false; // the next change of the edit's text is the pane's own
    ULONG m_nStartRow = 0;           // reported last
    string_t m_sResolution;          // chosen last
};

} // namespace Hesperon::specifics::UILayer
