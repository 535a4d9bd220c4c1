// What the controls of the component's dialogs are in the terminal: a row of a table each.
#pragma once

#include <span>

#include "interfaces/IDialogViews.h"

namespace tabulex {

enum class ControlKind
{
    None, // the dialog has no such control here
    Edit,
    DropList,
    ListBox,
    Button,
    Check,
    Date,
    Label,
};

struct ControlRow
{
    IQRL_TabulexConverter::DialogId dialog;
    LONG nControl;
    ControlKind kind;
    int nWidth;    // cells of an edit or a list; 0 where the text decides
    LONG nLabel;   // control whose text stands before it; 0: its own label
    bool bNewLine; // begins a line of the dialog
};

// The controls of a dialog in the order of Tab.
std::span<const ControlRow> ControlsOf(IQRL_TabulexConverter::DialogId dialog);

ControlKind KindOf(IQRL_TabulexConverter::DialogId dialog, LONG nControl);

} // namespace tabulex
