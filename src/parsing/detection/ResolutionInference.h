// Works out from the first records of a file what it holds, ticks or bars, and of
// which size. Only resolutions that the host offered are inferred, in a fixed order:
// weeks, days, minutes, tick bars, ticks, count bars.
#pragma once

#include "src/parsing/ParserState.h"

namespace Hesperon::specifics {

// Steps between records; 0 where unknown.
struct Steps
{
    WORD wDay = 0;    // days; also 0 within a day
    WORD wMinute = 0; // minutes
};

// Parses a record as the record parser's Parse does, value reads included; the
// sampling goes through it.
class SampleParser
{
public:
    virtual ~SampleParser() = default;
    virtual HRESULT ParseSample(string_view_t sRecord) = 0;
    virtual HRESULT SampleValue(std::size_t nColumn, VARIANT* pValue) = 0;
};

// Infers layout and resolution from this record and the file, from nothing. With no
// date column or nothing that fits, the resolution is 0 and the columns are those of
// the first look. flag other than 0 forbids taking the first column for a symbol.
HRESULT FindResolution(ParserState& state, SampleParser& parser, string_view_t sRecord, int flag);

// Measures the steps of the first 100 records. False where neither could be told.
bool SampleSteps(ParserState& state, SampleParser& parser, Steps& steps);

// Whether each required type has a column, and no type has two.
bool HasRequiredTypes(const ParserState& state, std::span<const unsigned> required);
bool HasDuplicates(const ParserState& state);

} // namespace Hesperon::specifics
