// ImportViews: the views on which the component opens the import dialog and its small dialogs,
// in the terminal.
//
// They are the process's views while they live, which is around DoAnalyse. Warnings of the
// component go into the status line meanwhile. Used by one thread.
#pragma once

#include "interfaces/IDialogViews.h"
#include "tools/tabulex/import/terminal/Desk.h"

namespace tabulex {

class ImportViews final : public IQRL_TabulexConverter::IDialogViews
{
public:
    // The desk outlives the views.
    explicit ImportViews(Desk& desk);
    ~ImportViews();
    ImportViews(const ImportViews&) = delete;
    ImportViews& operator=(const ImportViews&) = delete;

    LONG Run(IQRL_TabulexConverter::DialogId dialog, LONG_PTR hwndParent,
             IQRL_TabulexConverter::IDialogEvents& events) override;
    LONG_PTR ActiveWindow() override { return 0; }
    void ShowWaiting(bool bWaiting) override { m_desk.SetWaiting(bWaiting); }

private:
    Desk& m_desk;
};

} // namespace tabulex
