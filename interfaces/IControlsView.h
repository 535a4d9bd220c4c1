// IControlsView: the controls of one dialog or pane, by their ids.
//
// The component decides what stands in a control and when; a view puts it before the user
// and has no rules of its own. A view needn't have every control: what is written to one
// that it lacks is ignored, and reading it gives an empty text or place. ControlTable.h has
// a base that remembers what was written, for views that answer reads from memory.
//
// All calls come on the thread of the dialog. Places are in units of the view's own.
#pragma once

#include "platform/component.h"

namespace IQRL_TabulexConverter {

// Where a control lies, from the upper left corner of the view.
struct ControlPlace
{
    LONG nLeft = 0;
    LONG nTop = 0;
    LONG nRight = 0;
    LONG nBottom = 0;

    bool operator==(const ControlPlace&) const = default;
};

// The view as a whole, in place of a control's id: its text is the caption, its place the
// one on the screen.
inline constexpr LONG kWholeView = 0;

struct IControlsView
{
    virtual void SetText(LONG nControl, const OLECHAR* pszText) = 0;
    // Good until the next call on the view; never null.
    virtual const OLECHAR* Text(LONG nControl) = 0;
    // A control is enabled and shown until told otherwise.
    virtual void SetEnabled(LONG nControl, bool bEnabled) = 0;
    virtual bool IsEnabled(LONG nControl) = 0;
    virtual void SetShown(LONG nControl, bool bShown) = 0;
    virtual bool IsShown(LONG nControl) = 0;
    virtual ControlPlace Place(LONG nControl) = 0;
    virtual void Move(LONG nControl, const ControlPlace& place) = 0;
    // The control that the keyboard goes to; kWholeView for none.
    virtual void SetFocus(LONG nControl) = 0;
    virtual LONG Focus() = 0;

protected:
    ~IControlsView() = default;
};

} // namespace IQRL_TabulexConverter
