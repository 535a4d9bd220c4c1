// IProgressView: the surface on which a native progress box appears.
//
// The box decides what is shown and when; the view shows it and has no rules of its
// own. A host hands in a factory for its views (NativeHost.h). Without one a
// box shows nothing, and bad lines are skipped.
//
// All calls come on the box's thread, the one that started the session.
#pragma once

#include "interfaces/IControlsView.h"

namespace IQRL_TabulexConverter {

// Controls of the box.
enum ProgressControl : LONG
{
    ProgressFileName = 400,
    ProgressRecords = 402,   // records processed
    ProgressElapsed = 404,   // "%u min %u sec"
    ProgressRemaining = 406, // the same, estimated
    ProgressBar = 1003,      // 0 to 100
    ProgressErrorTop = 420,  // the line above the error section
    ProgressErrorLineLabel = 409,
    ProgressErrorLine = 408,
    ProgressErrorFieldLabel = 411,
    ProgressErrorField = 410, // a number, or the text for none
    ProgressErrorLabel = 413,
    ProgressErrorText = 412,
    ProgressErrorBottom = 422, // the line below the error section
    ProgressSkip = 416,
    ProgressSkipAll = 414,
    ProgressCancel = 2,
};

struct IProgressButtons
{
    // The user pressed ProgressSkip, ProgressSkipAll or ProgressCancel. On the box's
    // thread, from AskUser or from an event of the view. The view may be released
    // before this returns.
    virtual void Press(ProgressControl button) = 0;

protected:
    ~IProgressButtons() = default;
};

// Its controls are those of ProgressControl; kWholeView is the box.
struct IProgressView : IControlsView
{
    // Opens the box over a parent window, 0 for the thread's active one, and disables the
    // parent. Everything that is visible at first has been set by then. The buttons exist
    // until Hide.
    virtual void Show(LONG_PTR hwndParent, IProgressButtons* pButtons) = 0;
    // Closes the box and enables the parent. Only Release follows. The call comes when the
    // box's thread pumps messages after the end of the session, or when that thread ends.
    virtual void Hide() = 0;
    virtual void SetPercent(ULONG nPercent) = 0; // of ProgressBar
    // An error is shown and the conversion waits for a button. A view without buttons
    // to click asks the user here; it may block until the user has answered.
    virtual void AskUser() = 0;
    // The box doesn't use the view any more.
    virtual void Release() = 0;

protected:
    ~IProgressView() = default;
};

} // namespace IQRL_TabulexConverter
