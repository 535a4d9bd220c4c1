// Cells: the fields of a line, cut the way the component cuts them.
//
// Quotes and brackets protect nothing, they are taken away; blanks and tabs around a field go
// too; a field of no characters makes no column.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/component.h"

namespace tabulex {

// By mask as in IRecordParser::FieldDividers.
std::vector<std::string> CellsOf(std::string_view line, LONG nDividers);

// Cells with those that are empty, so one more than dividers.
std::size_t CountCells(std::string_view line, LONG nDividers);

// Whether the component takes the text for data when it looks for a heading.
bool LooksLikeData(std::string_view cell);
// Whether any cell of the line does.
bool HasData(const std::vector<std::string>& cells);

// "comma, tab" of a mask; "none" of 0.
std::string DividerNames(LONG nDividers);
// What --dividers takes, in quotes for a shell.
std::string DividerOption(LONG nDividers);

} // namespace tabulex
