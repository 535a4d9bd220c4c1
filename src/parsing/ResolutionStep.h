// Whether the time between two records is a step of the resolution.
#pragma once

#include "src/parsing/ParserState.h"

namespace Hesperon::specifics {

// For a span of days, and a resolution that is one. The span is taken to the nearest half second,
// and must hold as many whole units of the resolution as its size says, a week's at least seven
// days.
bool BreaksResolution(const ParserState& state, double fSpan);

} // namespace Hesperon::specifics
