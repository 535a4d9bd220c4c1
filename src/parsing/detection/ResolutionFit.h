// Whether a resolution is offered by the host, and whether the columns suit it.
#pragma once

#include "src/parsing/ParserState.h"

namespace Hesperon::specifics {

bool IsOffered(const ParserState& state, LONG nResolution);

// The size after the last bar of the first name that the host offers the resolution by,
// such as 5 of "Minutes|5"; 0 for none.
LONG HostSize(const ParserState& state, LONG nResolution);

// The first type that the resolution requires and no column has; kNoType for none.
unsigned LackingType(const ParserState& state, LONG nResolution);

// The type of the first column whose type another one has too; kNoType for none.
unsigned DuplicatedType(const ParserState& state);

} // namespace Hesperon::specifics
