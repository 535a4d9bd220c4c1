// Which part of a date is the day and which the month, where every cell can be read both ways.
#pragma once

#include "advice/MomentColumns.h"
#include "advice/Table.h"

namespace tabulex::advice {

// Leaves those choices of `found` that the file's dates don't speak against, the likeliest first,
// each with the reason.
void DecideDayOrder(const Table& table, MomentColumns& found);

} // namespace tabulex::advice
