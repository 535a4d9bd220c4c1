// Parsing a normalised record into the columns, and date and time read together.
#pragma once

#include <optional>

#include "src/parsing/ParserState.h"

namespace Hesperon::specifics {

// Gives each column its text. Columns beyond the end of the record become invalid. The
// stamps of minute bars are moved to the bar's end if UseBarsEndTime says so.
void ParseColumns(ParserState& state, string_view_t sRecord);

// The value of a column. Date and Time are normalised together first, so that an hour
// of 24 rolls the date. E_FAIL where the column doesn't parse, and where the value is
// of another kind than its type's: a column keeps the value of the record last parsed
// when its type changes. What *pValue holds after a failure owns no memory.
HRESULT ColumnValue(ParserState& state, CDataField& field, VARIANT* pValue);

// Day number of the variables of a Date column; empty outside the calendar's range.
std::optional<std::int32_t> DayNumber(CDataField& date);

// Whether the stamps of records are moved to the ends of their bars.
bool MovesToBarEnd(const ParserState& state);

// Where a stamp is moved to.
DATE BarEnd(const ParserState& state, DATE stamp);

// Date plus time of the record last parsed. E_INVALIDARG without a Date column, E_FAIL if
// one of the two has no value.
HRESULT RecordDateTime(ParserState& state, DATE& date);

} // namespace Hesperon::specifics
