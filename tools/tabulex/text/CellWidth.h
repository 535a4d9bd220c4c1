// How many cells a terminal gives to a character.
#pragma once

namespace tabulex {

// 0 for one that stands on the character before, 2 for a wide one such as an ideograph or a
// pictograph; -1 for one that can't be printed. By the tables of the system, which terminals and
// their libraries use, too.
int CellWidth(char32_t c);

} // namespace tabulex
