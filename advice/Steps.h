// What the moments of the rows show: their order, their steps, and the resolution that these are.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "advice/Reading.h"

namespace tabulex::advice {

struct StepFacts
{
    bool bForwards = false;  // no row is earlier than the one before
    bool bBackwards = false; // no row is later than the one before
    bool bInSymbols = false; // one of both holds within each symbol
    std::size_t nSymbols = 1;
    bool bTwice = false;     // a moment occurs twice in a symbol
    std::int64_t nStep = 0;  // greatest common measure of all steps, milliseconds; 0: no steps
    bool bWholeFile = false; // first or last row is neither the first nor the last moment
};

StepFacts FindSteps(const std::vector<ReadRow>& rows);

// Sets resolution and size. `bBars`: there are open, high, low and close.
void ChooseResolution(const StepFacts& steps, bool bBars, bool bTimes, Reading& reading);

} // namespace tabulex::advice
