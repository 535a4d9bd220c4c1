// Assigning types and templates to columns.
#pragma once

#include <vector>

#include "tools/tabulex/host/Settings.h"

namespace tabulex {

// Applies each setting in turn; a second time gives the same columns. Throws Fault
// for a column that the file lacks, and for a Date or Time column that no template
// of its type reads where none is given.
void ApplyColumns(Host& host, const std::vector<ColumnSetting>& columns);

} // namespace tabulex
