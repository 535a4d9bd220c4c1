// Where the panes of the import dialog lie in the terminal.
//
// Each pane has a line of its own above it, which is its border and bears its title. Below the
// last one stand a border, the status line and the line of keys; the dialog's title is on top.
#pragma once

#include <array>

#include "tools/tabulex/import/terminal/Canvas.h"

namespace tabulex {

enum ImportPane
{
    PaneFolder,
    PaneContent,
    PaneSettings,
    PaneDecode,
    PaneCount
};

struct ImportLayout
{
    // Insides, in the order of ImportPane; a pane without rows is closed, and has no title.
    std::array<Rect, PaneCount> panes;
    int nBottom = 0; // row of the last border
};

// nFormRows is what the settings take; bFileGiven says that the folder can't be used anyway.
// The size is kLeastSize at least.
ImportLayout LayOutImport(Size size, int nFormRows, bool bFileGiven);

} // namespace tabulex
