// Which heading stands over which column, where the heading line has a cell less than the rows.
#pragma once

#include <string>
#include <vector>

#include "advice/Table.h"

namespace tabulex::advice {

// A heading for each column. One that lacks is looked for: where all others agree best with what
// their columns hold. The last column goes without a heading where nothing speaks for another.
std::vector<std::string> PlaceHeadings(const std::vector<std::string>& headings,
                                       const std::vector<Column>& columns);

} // namespace tabulex::advice
