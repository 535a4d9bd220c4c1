// Controls: what a view does with the controls of one dialog window or pane, by their ids.
//
//   class MyView final : public ControlsOf<IPaneView> { ... };
//
// It holds a window of the system, made from a dialog's resource, and no state beside it but
// what the system's controls can't keep. Places are in pixels of the window's client area; that
// of the whole view is in the client area of its parent, or on the screen for a window without.
//
// The window's procedure hands its messages to OnMessage, which tells the user's doings. All
// calls come on the window's thread. What the system refuses has no effect.
#pragma once

#include <map>

#include "interfaces/IControlsView.h"

namespace Hesperon::specifics::UILayer {

class Controls
{
public:
    using ControlPlace = IQRL_TabulexConverter::ControlPlace;
    using TextRange = IQRL_TabulexConverter::TextRange;
    using IControlEvents = IQRL_TabulexConverter::IControlEvents;

    // The window whose controls these are; it outlives its last use here.
    void SetWindow(HWND hWnd) { m_hWnd = hWnd; }
    HWND Window() const { return m_hWnd; }
    // The window of a control, the window itself for kWholeView; null for one that isn't there.
    HWND At(LONG nControl) const;

    // Tells the events that a message of the dialog stands for: WM_COMMAND of controls,
    // WM_NOTIFY of date pickers. False for any other message, of which nothing is told.
    // The events may end the window, and this object with it, before the call returns.
    bool OnMessage(UINT nMessage, WPARAM wParam, LPARAM lParam, IControlEvents& events);

    // ---- as in IControlsView

    bool Exists(LONG nControl) const { return At(nControl) != nullptr; }
    void SetText(LONG nControl, const OLECHAR* pszText);
    const OLECHAR* Text(LONG nControl);
    LONG TextWidth(LONG nControl);
    // The keyboard goes on to the next control from one that is disabled while it has it.
    void SetEnabled(LONG nControl, bool bEnabled);
    bool IsEnabled(LONG nControl) const;
    void SetShown(LONG nControl, bool bShown);
    bool IsShown(LONG nControl) const;
    ControlPlace Place(LONG nControl) const;
    void Move(LONG nControl, const ControlPlace& place);
    void Repaint(LONG nControl);
    void SetFocus(LONG nControl);
    LONG Focus() const;
    ControlPlace ClientArea() const;

    LONG AddRow(LONG nControl, const OLECHAR* pszText, LONG_PTR nData);
    void RemoveRow(LONG nControl, LONG nRow);
    void ClearRows(LONG nControl);
    LONG RowCount(LONG nControl) const;
    const OLECHAR* RowText(LONG nControl, LONG nRow);
    LONG_PTR RowData(LONG nControl, LONG nRow) const;
    bool Select(LONG nControl, LONG nRow);
    LONG Selected(LONG nControl) const;
    LONG RowHeight(LONG nControl) const;
    void SetRowHeight(LONG nControl, LONG nHeight);

    void SetReadOnly(LONG nControl, bool bReadOnly);
    bool IsReadOnly(LONG nControl) const;
    TextRange SelectedText(LONG nControl) const;
    void SelectText(LONG nControl, const TextRange& range);
    void ShowCaret(LONG nControl);

    void SetCheck(LONG nControl, LONG nState);
    LONG Check(LONG nControl) const;

    void SetDate(LONG nControl, const SYSTEMTIME* pDate);
    bool Date(LONG nControl, SYSTEMTIME& date) const;
    void SetDateFormat(LONG nControl, const OLECHAR* pszFormat);

private:
    // A date picker always holds a date. One that shows none has an empty format meanwhile.
    struct Picker
    {
        string_t sFormat; // empty for the system's own
        bool bDate = true;
    };

    LRESULT Send(LONG nControl, UINT nMessage, WPARAM wParam = 0, LPARAM lParam = 0) const;
    // The same to a list, in the message of its kind; nNone where there is no such list.
    LRESULT SendList(LONG nControl, UINT nBoxMessage, UINT nComboMessage, WPARAM wParam,
                     LPARAM lParam, LRESULT nNone) const;
    bool IsCombo(LONG nControl) const;
    const OLECHAR* Keep(string_t sText);
    void ShowFormat(LONG nControl, const Picker& picker);
    void OnDateChosen(LONG nControl);

    HWND m_hWnd = nullptr;
    string_t m_sText; // what was given last
    std::map<LONG, Picker> m_pickers;
};

// A view over the controls of a window. View is IControlsView or an interface derived from it.
template <class View>
class ControlsOf : public View
{
public:
    using ControlPlace = IQRL_TabulexConverter::ControlPlace;
    using TextRange = IQRL_TabulexConverter::TextRange;

    bool Exists(LONG n) override { return m_controls.Exists(n); }
    void SetText(LONG n, const OLECHAR* psz) override { m_controls.SetText(n, psz); }
    const OLECHAR* Text(LONG n) override { return m_controls.Text(n); }
    LONG TextWidth(LONG n) override { return m_controls.TextWidth(n); }
    void SetEnabled(LONG n, bool b) override { m_controls.SetEnabled(n, b); }
    bool IsEnabled(LONG n) override { return m_controls.IsEnabled(n); }
    void SetShown(LONG n, bool b) override { m_controls.SetShown(n, b); }
    bool IsShown(LONG n) override { return m_controls.IsShown(n); }
    ControlPlace Place(LONG n) override { return m_controls.Place(n); }
    void Move(LONG n, const ControlPlace& place) override { m_controls.Move(n, place); }
    void Repaint(LONG n) override { m_controls.Repaint(n); }
    void SetFocus(LONG n) override { m_controls.SetFocus(n); }
    LONG Focus() override { return m_controls.Focus(); }
    ControlPlace ClientArea() override { return m_controls.ClientArea(); }

    LONG AddRow(LONG n, const OLECHAR* psz, LONG_PTR nData) override
    {
        return m_controls.AddRow(n, psz, nData);
    }
    void RemoveRow(LONG n, LONG nRow) override { m_controls.RemoveRow(n, nRow); }
    void ClearRows(LONG n) override { m_controls.ClearRows(n); }
    LONG RowCount(LONG n) override { return m_controls.RowCount(n); }
    const OLECHAR* RowText(LONG n, LONG nRow) override { return m_controls.RowText(n, nRow); }
    LONG_PTR RowData(LONG n, LONG nRow) override { return m_controls.RowData(n, nRow); }
    bool Select(LONG n, LONG nRow) override { return m_controls.Select(n, nRow); }
    LONG Selected(LONG n) override { return m_controls.Selected(n); }
    LONG RowHeight(LONG n) override { return m_controls.RowHeight(n); }
    void SetRowHeight(LONG n, LONG nHeight) override { m_controls.SetRowHeight(n, nHeight); }

    void SetReadOnly(LONG n, bool b) override { m_controls.SetReadOnly(n, b); }
    bool IsReadOnly(LONG n) override { return m_controls.IsReadOnly(n); }
    TextRange SelectedText(LONG n) override { return m_controls.SelectedText(n); }
    void SelectText(LONG n, const TextRange& range) override { m_controls.SelectText(n, range); }
    void ShowCaret(LONG n) override { m_controls.ShowCaret(n); }

    void SetCheck(LONG n, LONG nState) override { m_controls.SetCheck(n, nState); }
    LONG Check(LONG n) override { return m_controls.Check(n); }

    void SetDate(LONG n, const SYSTEMTIME* pDate) override { m_controls.SetDate(n, pDate); }
    bool Date(LONG n, SYSTEMTIME& date) override { return m_controls.Date(n, date); }
    void SetDateFormat(LONG n, const OLECHAR* psz) override { m_controls.SetDateFormat(n, psz); }

protected:
    ~ControlsOf() = default;

    Controls m_controls;
};

} // namespace Hesperon::specifics::UILayer
