// ControlTable: a view's memory of what was written to its controls.
//
//   class MyView final : public ControlTable<IProgressView>
//
// A view derives from it and overrides the writes that it shows, calling the one here first.
// As it stands it shows nothing: the controls of a dialog that nobody sees.
#pragma once

#include <map>

#include "interfaces/IControlsView.h"

namespace IQRL_TabulexConverter {

// View is IControlsView or an interface derived from it.
template <class View = IControlsView>
class ControlTable : public View
{
public:
    void SetText(LONG nControl, const OLECHAR* pszText) override
    {
        m_controls[nControl].sText = pszText;
    }
    const OLECHAR* Text(LONG nControl) override { return m_controls[nControl].sText.c_str(); }
    void SetEnabled(LONG nControl, bool bEnabled) override
    {
        m_controls[nControl].bEnabled = bEnabled;
    }
    bool IsEnabled(LONG nControl) override { return m_controls[nControl].bEnabled; }
    void SetShown(LONG nControl, bool bShown) override { m_controls[nControl].bShown = bShown; }
    bool IsShown(LONG nControl) override { return m_controls[nControl].bShown; }
    ControlPlace Place(LONG nControl) override { return m_controls[nControl].place; }
    void Move(LONG nControl, const ControlPlace& place) override
    {
        m_controls[nControl].place = place;
    }
    void SetFocus(LONG nControl) override { m_nFocus = nControl; }
    LONG Focus() override { return m_nFocus; }

protected:
    ~ControlTable() = default;

private:
    struct Control
    {
        string_t sText;
        bool bEnabled = true;
        bool bShown = true;
        ControlPlace place;
    };

    std::map<LONG, Control> m_controls;
    LONG m_nFocus = kWholeView;
};

} // namespace IQRL_TabulexConverter
