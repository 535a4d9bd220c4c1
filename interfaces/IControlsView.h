// IControlsView: the controls of one dialog or pane, by their ids.
//
// The component decides what stands in a control and when; a view puts it before the user
// and has no rules of its own. A view needn't have every control: what is written to one
// that it lacks is ignored, and reading it gives an empty text, no rows or no place.
// ControlTable.h has a base that remembers what was written, for views that answer reads
// from memory.
//
// What the user does is told through IControlEvents. What the component writes is not, but
// for the text of an edit, which is told once a write, also where it is the same text.
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

// Characters of an edit, from 0; empty where both are the same, which is the caret's place.
struct TextRange
{
    LONG nFrom = 0;
    LONG nTo = 0;

    bool operator==(const TextRange&) const = default;
};

// The view as a whole, in place of a control's id: its text is the caption, its place the
// one in what holds the view.
inline constexpr LONG kWholeView = 0;

inline constexpr LONG kNoRow = -1;

// What the user does with the controls. Any of these may end the dialog, and the view with
// it, before the call returns.
struct IControlEvents
{
    virtual void OnText(LONG nControl) = 0;   // of an edit
    virtual void OnSelect(LONG nControl) = 0; // another row of a list
    virtual void OnClick(LONG nControl) = 0;  // a button or a check box, whose state has changed
    virtual void OnDate(LONG nControl) = 0;   // of a date picker
    virtual void OnResize() = 0;              // the view's ClientArea is another one

protected:
    ~IControlEvents() = default;
};

struct IControlsView
{
    virtual bool Exists(LONG nControl) = 0;

    // ---- any control

    virtual void SetText(LONG nControl, const OLECHAR* pszText) = 0;
    // Good until the next call on the view; never null.
    virtual const OLECHAR* Text(LONG nControl) = 0;
    // Of the control's text, in the control's font.
    virtual LONG TextWidth(LONG nControl) = 0;
    // A control is enabled and shown until told otherwise.
    virtual void SetEnabled(LONG nControl, bool bEnabled) = 0;
    virtual bool IsEnabled(LONG nControl) = 0;
    virtual void SetShown(LONG nControl, bool bShown) = 0;
    virtual bool IsShown(LONG nControl) = 0;
    virtual ControlPlace Place(LONG nControl) = 0;
    virtual void Move(LONG nControl, const ControlPlace& place) = 0;
    // At once, what lies behind it as well.
    virtual void Repaint(LONG nControl) = 0;
    // The control that the keyboard goes to; kWholeView where it goes elsewhere.
    virtual void SetFocus(LONG nControl) = 0;
    virtual LONG Focus() = 0;
    // What the controls can lie in; its upper left corner is 0, 0.
    virtual ControlPlace ClientArea() = 0;

    // ---- lists; rows count from 0

    // The row's number; kNoRow if it was refused. nData is the component's own.
    virtual LONG AddRow(LONG nControl, const OLECHAR* pszText, LONG_PTR nData) = 0;
    virtual void RemoveRow(LONG nControl, LONG nRow) = 0;
    virtual void ClearRows(LONG nControl) = 0;
    virtual LONG RowCount(LONG nControl) = 0;
    // Good until the next call on the view; never null. Empty and 0 for a row that isn't there.
    virtual const OLECHAR* RowText(LONG nControl, LONG nRow) = 0;
    virtual LONG_PTR RowData(LONG nControl, LONG nRow) = 0;
    // False for a row that isn't there; nothing is selected then.
    virtual bool Select(LONG nControl, LONG nRow) = 0;
    virtual LONG Selected(LONG nControl) = 0; // kNoRow for none
    virtual LONG RowHeight(LONG nControl) = 0;
    virtual void SetRowHeight(LONG nControl, LONG nHeight) = 0;

    // ---- edits

    virtual void SetReadOnly(LONG nControl, bool bReadOnly) = 0;
    virtual bool IsReadOnly(LONG nControl) = 0;
    virtual TextRange SelectedText(LONG nControl) = 0;
    virtual void SelectText(LONG nControl, const TextRange& range) = 0;
    virtual void ShowCaret(LONG nControl) = 0; // scrolls it into sight

    // ---- check boxes

    virtual void SetCheck(LONG nControl, LONG nState) = 0;
    virtual LONG Check(LONG nControl) = 0; // 0 is off

    // ---- date pickers

    // Null for no date; the control then shows none.
    virtual void SetDate(LONG nControl, const SYSTEMTIME* pDate) = 0;
    // False where the control has no date.
    virtual bool Date(LONG nControl, SYSTEMTIME& date) = 0;
    // A date picture of the system, such as "yyyy-MM-dd HH:mm:ss".
    virtual void SetDateFormat(LONG nControl, const OLECHAR* pszFormat) = 0;

protected:
    ~IControlsView() = default;
};

} // namespace IQRL_TabulexConverter
