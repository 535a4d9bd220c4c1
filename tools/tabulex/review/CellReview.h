// CellReview: cells that the component reads as other than they say.
//
// It takes a dash for 0, stops at the second mark of a number, keeps three digits of a second's
// fraction, and divides a line between quotation marks as well. None of this makes a line bad, so
// it is looked for in the file's own bytes, where SuspectBytes found something.
#pragma once

#include "tools/tabulex/account/LineMap.h"
#include "tools/tabulex/account/Warnings.h"
#include "tools/tabulex/host/Host.h"

namespace tabulex {

// Before the map walks: has it look out for what fits the columns.
void ExpectCells(const Host& host, LineMap& lines);

// After the run.
void ReviewCells(const Host& host, LineMap& lines, Warnings& warnings);

} // namespace tabulex
