// Whether the time between two records is a step of the resolution.
#pragma once

#include <cmath>

#include "src/parsing/ParserState.h"

namespace Hesperon::specifics {

// A span is taken to the nearest half second, and must hold as many whole units of the resolution
// as its size says, a week's at least seven days.
struct StepRule
{
    static constexpr double kHalfSecond = 5.787037037037037e-6; // in days

    double fUnitsPerDay = 0; // 0: any step will do
    double fLeast = 0;       // whole units

    // For a span of days.
    bool IsBrokenBy(double fSpan) const
    {
        const double fUnits = (fSpan + std::copysign(kHalfSecond, fSpan)) * fUnitsPerDay;
        // A whole number is reached by what is truncated where it is by what isn't.
        return fUnitsPerDay != 0 && (fUnits >= 0 ? fUnits : std::trunc(fUnits)) < fLeast;
    }
};

// Of a resolution that is one.
StepRule StepRuleOf(const ParserState& state);

} // namespace Hesperon::specifics
