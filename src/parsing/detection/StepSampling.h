// How far apart the records of a file are, in days or in minutes.
#pragma once

#include "src/parsing/ParserState.h"

namespace Hesperon::specifics {

// Steps between records; 0 where unknown.
struct Steps
{
    WORD wDay = 0;    // days; also 0 within a day
    WORD wMinute = 0; // minutes
};

// Parses a record as the record parser's Parse does, and reads the values of its columns.
class SampleParser
{
public:
    virtual ~SampleParser() = default;
    virtual HRESULT ParseSample(string_view_t sRecord) = 0;
    virtual HRESULT SampleValue(std::size_t nColumn, VARIANT* pValue) = 0;
};

// Measures the steps of the first 100 records. False, with no step known, without a Date
// column, with fewer than two records, at a record that can't be read or whose date or
// time doesn't parse, and where neither days nor minutes give a step.
bool SampleSteps(ParserState& state, SampleParser& parser, Steps& steps);

} // namespace Hesperon::specifics
