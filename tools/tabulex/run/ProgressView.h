// ProgressView: the component's progress box on a terminal.
//
// The box writes its figures and errors to controls; the view draws a line of progress
// from the figures, and hands bad lines to the reporter, which decides about them. The box
// may keep its view longer than the run lasts, so both share what the view needs.
#pragma once

#include <memory>

#include "interfaces/IProgressView.h"
#include "tools/tabulex/run/ErrorReporter.h"
#include "tools/tabulex/run/ProgressBar.h"

namespace tabulex {

// Has the component use the tool's views while it lives, which is for one run. Used by the
// run's thread.
class ProgressViews
{
public:
    // All must outlive this. With a view of its own the run has its progress there, and the bar
    // shows none; null for none.
    ProgressViews(ProgressBar& bar, ErrorReporter& errors, IConversionView* pView);
    // Takes the views out of the run's hands, whether the component still has one or not.
    ~ProgressViews();
    ProgressViews(const ProgressViews&) = delete;
    ProgressViews& operator=(const ProgressViews&) = delete;

    // The component has a view. After the end of a run it lets go of it within one or two
    // calls of TabulexPumpMessages.
    bool IsOnShow() const;

    // Ends the run if the user wants that. While the run goes on.
    void CancelIfWanted();

    struct Run; // what a view knows of its run

private:
    std::shared_ptr<Run> m_run;
};

} // namespace tabulex
