// Text that a terminal may be given: every character takes its cells, and none does anything.
//
// A control character is written as ^A, a byte that is no character as \x80, and what would
// change the order of the text around it, or isn't printable, by its number, as \u{202E}.
#pragma once

#include <string>
#include <string_view>

#include "platform/component.h"

namespace tabulex {

// Whether a character may go to a terminal as it is.
bool IsPrintable(char32_t c);

// The cells of UTF-8 that VisibleText gives.
int CellsOf(std::string_view text);

// Tabs become blanks up to the next multiple of nTab cells; with 0 they are control characters.
// A lone surrogate U+DC80 to U+DCFF is a byte of a file's name that isn't UTF-8.
std::string VisibleText(string_view_t text, int nTab = 0);
// The same of UTF-8.
std::string VisibleUtf8(std::string_view text);
// The same of several lines, whose ends and tabs stay what they are.
std::string VisibleLines(std::string_view text);

// What is left of a text without its first nCells cells.
std::string_view WithoutFront(std::string_view text, int nCells);

} // namespace tabulex
