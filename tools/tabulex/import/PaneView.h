// PaneView: one of the panes of the import dialog that hold controls: lines of the file,
// settings, or columns and records.
#pragma once

#include <memory>

#include "tools/tabulex/import/Form.h"
#include "tools/tabulex/import/GridView.h"

namespace tabulex {

class PaneView final : public ControlsView<IQRL_TabulexConverter::IPaneView>
{
public:
    PaneView(Desk& desk, IQRL_TabulexConverter::DialogId pane,
             IQRL_TabulexConverter::IControlEvents& events)
        : ControlsView(desk, pane, events), m_form(desk, pane, *this, *this, events)
    {}
    ~PaneView() = default;

    Form& Controls() { return m_form; }
    GridView* Grid() { return m_pGrid.get(); } // null until the component has made one
    // What the user does with a button that lies elsewhere on the screen.
    void Click(LONG nControl) { m_form.Activate(nControl); }

    IQRL_TabulexConverter::IGridView* MakeGrid(IQRL_TabulexConverter::IGridEvents& events) override
    {
        m_pGrid = std::make_unique<GridView>(m_desk, events);
        return m_pGrid.get();
    }

private:
    Form m_form;
    std::unique_ptr<GridView> m_pGrid;
};

} // namespace tabulex
