// Corrects, from the values of sampled records, what column order got wrong: a High
// below a Low, a total that is the sum of two columns, a price that looks like a
// volume. Applies to files without a header; of a header's words only the rule for
// a symbol in front of the date is stronger.
#pragma once

#include "src/parsing/ParserState.h"
#include "src/parsing/detection/DetectionReport.h"

namespace Hesperon::specifics {

// Whether a first column that isn't the date is taken for the symbol.
enum class FirstColumn
{
    MayBeSymbol,
    IsNoSymbol,
};

// Works on state.m_fields in place.
void RefineFieldTypes(ParserState& state, FirstColumn firstColumn, DetectionReport& report);

} // namespace Hesperon::specifics
