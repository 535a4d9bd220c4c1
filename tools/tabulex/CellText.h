// The text of one delivered cell.
#pragma once

#include <string>

#include "tools/tabulex/Columns.h"
#include "tools/tabulex/Formats.h"

namespace tabulex {

// Appends the plain text of a cell, unquoted UTF-8. A VT_DATE is a day in a Date
// column and a time of day in every other; an empty cell gives nothing.
void AppendCell(std::string& out, ColumnKind kind, const VARIANT& cell, DateText& dates);

} // namespace tabulex
