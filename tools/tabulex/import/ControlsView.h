// ControlsView: the controls of a pane or dialog in the terminal.
//
// It remembers what is written to them (ControlTable.h), and tells each text of an edit once,
// whoever wrote it. A Form draws the controls and takes the keys.
#pragma once

#include <set>

#include "interfaces/ControlTable.h"
#include "tools/tabulex/import/ControlKinds.h"
#include "tools/tabulex/import/terminal/Desk.h"

namespace tabulex {

// What a Form asks of a view beyond IControlsView.
struct IDateFormats
{
    // Whether a date is shown with a time of day.
    virtual bool ShowsTime(LONG nControl) const = 0;

protected:
    ~IDateFormats() = default;
};

// View is IPaneView or IDialogView.
template <class View>
class ControlsView : public IQRL_TabulexConverter::ControlTable<View>, public IDateFormats
{
public:
    using Table = IQRL_TabulexConverter::ControlTable<View>;

    // All outlive the view.
    ControlsView(Desk& desk, IQRL_TabulexConverter::DialogId dialog,
                 IQRL_TabulexConverter::IControlEvents& events)
        : m_desk(desk), m_dialog(dialog), m_events(events)
    {}

    bool Exists(LONG nControl) override
    {
        return nControl == IQRL_TabulexConverter::kWholeView ||
               KindOf(m_dialog, nControl) != ControlKind::None;
    }
    void SetText(LONG nControl, const OLECHAR* pszText) override
    {
        Table::SetText(nControl, string_t(pszText).c_str()); // it may be the control's own text
        m_desk.Invalidate();
        if (KindOf(m_dialog, nControl) == ControlKind::Edit)
            m_events.OnText(nControl);
    }
    // In a date picture of the system hours are an h or an H, and nothing else is.
    void SetDateFormat(LONG nControl, const OLECHAR* pszFormat) override
    {
        Table::SetDateFormat(nControl, pszFormat);
        if (string_view_t(pszFormat).find_first_of(OLESTR("hH")) != string_view_t::npos)
            m_timed.insert(nControl);
        else
            m_timed.erase(nControl);
        m_desk.Invalidate();
    }
    bool ShowsTime(LONG nControl) const override { return m_timed.contains(nControl); }
    void Repaint(LONG) override { m_desk.Invalidate(); }

protected:
    ~ControlsView() = default;

    Desk& m_desk;
    const IQRL_TabulexConverter::DialogId m_dialog;
    IQRL_TabulexConverter::IControlEvents& m_events;

private:
    std::set<LONG> m_timed; // dates with a time of day
};

} // namespace tabulex
