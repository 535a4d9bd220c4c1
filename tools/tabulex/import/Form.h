// Form: the controls of a pane or small dialog in lines, as many in each as fit.
//
// Arrange decides which control lies where, from the widths of labels and controls; Draw shows
// them, and Handle lets the user change the one that has the focus. A control that is off or
// hidden can't have the focus. Where the focus is is the view's own knowledge, since the
// component asks for it.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "tools/tabulex/import/ControlsView.h"
#include "tools/tabulex/import/DateEdit.h"

namespace tabulex {

class Form
{
public:
    static constexpr int kListRows = 7; // of a list that is always open

    // All outlive the form.
    Form(Desk& desk, IQRL_TabulexConverter::DialogId dialog,
         IQRL_TabulexConverter::IControlsView& view, const IDateFormats& formats,
         IQRL_TabulexConverter::IControlEvents& events);

    // Gives the number of lines that the controls take at this width.
    int Arrange(int nColumns);
    // As arranged last. Without the focus no control is marked.
    void Draw(Canvas& canvas, const Rect& rect, bool bFocused);

    // The next control (1) or the one before (-1); false beyond the last. From kWholeView it is
    // the first or the last one.
    bool MoveFocus(int nStep);
    // Takes a key for the control that has the focus; false for one that means nothing there.
    bool Handle(const Input& input);
    // A press of the mouse; false where no control lies.
    bool Press(const Input& input);
    // What Enter and a blank do: opens a list, toggles a box, presses a button. False for a
    // control without any of it.
    bool Activate(LONG nControl);
    // The keys that are typed go into its text.
    bool IsTyping() const;

    ControlKind FocusKind() const;

private:
    struct Item
    {
        const ControlRow* pRow;
        std::string sLabel; // before the control; empty for none
        Rect place;         // with its label; from the form's upper left corner
    };

    int WidthOf(const Item& item) const;
    std::string LabelOf(const ControlRow& row) const;
    std::string CaptionOf(LONG nControl) const;
    bool CanFocus(const Item& item) const;
    Item* ItemOf(LONG nControl);
    void Focus(LONG nControl);
    Rect PlaceOf(const Item& item) const;

    void DrawItem(Canvas& canvas, const Item& item, bool bFocused);
    void DrawEdit(Canvas& canvas, const Item& item, const Rect& place, Look look, bool bFocused);
    void DrawDate(Canvas& canvas, const Item& item, const Rect& place, Look look, bool bFocused);
    void DrawList(Canvas& canvas, const Item& item, const Rect& place, bool bFocused);

    bool HandleEdit(LONG nControl, const Input& input);
    bool Type(LONG nControl, const Input& input);
    bool HandleDate(LONG nControl, const Input& input);
    bool HandleDropList(LONG nControl, const Input& input);
    bool HandleListBox(LONG nControl, const Input& input);
    LONG FirstRow(LONG nControl) const;
    void ChooseRow(LONG nControl, LONG nRow);
    void OpenList(LONG nControl);
    DateEdit& EditOf(LONG nControl);
    std::optional<SYSTEMTIME> DateOf(LONG nControl) const;

    Desk& m_desk;
    const IQRL_TabulexConverter::DialogId m_dialog;
    IQRL_TabulexConverter::IControlsView& m_view;
    const IDateFormats& m_formats;
    IQRL_TabulexConverter::IControlEvents& m_events;
    std::vector<Item> m_items; // in the order of Tab
    std::map<LONG, DateEdit> m_dates;
    Rect m_rect; // where it was drawn last
};

} // namespace tabulex
