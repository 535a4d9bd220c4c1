// Corrects, from the values of sampled records, what column order got wrong: a High
// below a Low, a total that is the sum of two columns, a price that looks like a
// volume. Applies to files without a header; of a header's words only the rule for
// a symbol in front of the date is stronger.
#pragma once

#include "src/parsing/ParserState.h"

namespace Hesperon::specifics {

// Works on state.m_fields in place. flag other than 0 forbids taking the first
// column for a symbol.
void RefineFieldTypes(ParserState& state, int flag);

} // namespace Hesperon::specifics
