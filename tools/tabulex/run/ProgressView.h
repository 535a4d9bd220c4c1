// ProgressView: the component's progress box on a terminal.
//
// The box writes its figures and errors to controls; the view draws a line of progress
// from the figures, and has the reporter tell and decide a bad line. The box may let go
// of its view after the run that it showed, so the two share what they need.
#pragma once

#include <memory>

#include "interfaces/IProgressView.h"
#include "tools/tabulex/run/ErrorReporter.h"
#include "tools/tabulex/run/ProgressBar.h"

namespace tabulex {

// Puts the tool's views in place of the component's for as long as it lives, which is a
// run. Used by the run's thread.
class ProgressViews
{
public:
    // Both must outlive this.
    ProgressViews(ProgressBar& bar, ErrorReporter& errors);
    // Takes the views out of the run's hands, whether the component still has one or not.
    ~ProgressViews();
    ProgressViews(const ProgressViews&) = delete;
    ProgressViews& operator=(const ProgressViews&) = delete;

    // A view is on show. After the end of a run one pump or two let it go.
    bool IsOnShow() const;

    struct Run; // what a view knows of its run

private:
    std::shared_ptr<Run> m_run;
};

} // namespace tabulex
