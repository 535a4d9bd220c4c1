// The text of one delivered cell.
#pragma once

#include <string>

#include "tools/tabulex/output/Column.h"
#include "tools/tabulex/text/Formats.h"

namespace tabulex {

// Appends the plain text of a cell, unquoted UTF-8. VT_I2 is a day, as an unsigned number,
// and VT_I4 milliseconds since midnight; a VT_DATE is a day in a Date column and a time of
// day in every other. An empty cell gives nothing.
void AppendCell(std::string& out, ColumnKind kind, const VARIANT& cell, DateText& dates);

} // namespace tabulex
