// Reading: one way to read a file, as settings of the tool and a recipe of the intake.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "intake/Recipe.h"
#include "interfaces/FieldsAndResolutions.h"

namespace tabulex::advice {

enum class DayMonth
{
    Certain, // the file says which
    DayFirst,
    MonthFirst,
    YearFirst // of two digits
};

struct Reading
{
    intake::Recipe recipe; // empty: the lines as they stand
    // The component's id; ResolutionNone leaves it to the component.
    long nResolution = IQRL_TabulexConverter::ResolutionNone;
    long nSize = 0;          // in units of the resolution; 0 leaves it to the component
    bool bWholeFile = false; // first and last line aren't the first and last moment
    DayMonth dayMonth = DayMonth::Certain;
    std::string sWhat;              // what it is, beside others: "day first", "prices of 'ETH'"
    std::vector<std::string> steps; // what is done and why, a clause each

    // The engine's own.
    bool IsOwn() const { return recipe.IsEmpty(); }
};

// A row as a reading gives it, or as it came out of the engine.
struct ReadRow
{
    std::int64_t nMoment = 0; // milliseconds since 1970, of the clock
    std::string sSymbol;
    std::vector<double> values; // in the order of the columns of numbers
};

struct ReadRows
{
    std::vector<std::string> columns; // the engine's names of the columns of numbers
    bool bSymbols = false;
    bool bTimes = false;
    std::vector<ReadRow> rows; // in any order
    std::uint64_t nBad = 0;    // lines that should be rows and aren't
};

} // namespace tabulex::advice
