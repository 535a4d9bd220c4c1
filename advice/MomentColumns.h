// MomentColumns: which columns hold the moment of a row, and by which form it is read.
//
// Day and month are a question of their own: several orders may read every cell. Then the orders
// are held against each other by what they give; where nothing decides, all that are left are told.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "advice/Table.h"
#include "advice/forms/MomentForms.h"

namespace tabulex::advice {

// A way to read the moments of the file.
struct MomentChoice
{
    std::vector<std::size_t> columns; // joined by blanks
    MomentForm form;                  // of what is joined
    std::string sReason;              // why this order, or why none is decided; a clause

    // The moment of a row in milliseconds since 1970; empty where it can't be read.
    std::optional<std::int64_t> Of(const TableRow& row) const;
    // The text that is read.
    std::string TextOf(const TableRow& row) const;
};

struct MomentColumns
{
    std::vector<MomentChoice> choices; // the likeliest first; one where nothing is in doubt
    std::size_t nTellingRow = 0;       // of table.rows: which tells the orders apart, or would
    bool bTimes = false;               // the rows have times of day
    bool bTimeAlone = false;           // there are times, but no column of dates
    bool bOtherYears = false; // of two digits, in a language that counts them otherwise as well
    bool bZeroTimes = false;  // a time stands there, which is midnight in all rows

    bool IsDecided() const { return choices.size() == 1; }
};

MomentColumns FindMoments(const Table& table);

} // namespace tabulex::advice
