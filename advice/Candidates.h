// Candidates: the readings that a table suggests, and the rows that each should give.
#pragma once

#include <string>
#include <vector>

#include "advice/MomentColumns.h"
#include "advice/Reading.h"
#include "advice/Roles.h"
#include "advice/Table.h"

namespace tabulex::advice {

struct Candidate
{
    Reading reading;
    ReadRows expected;
    std::vector<Role> roles; // those that are read
};

struct Candidates
{
    std::vector<Candidate> list; // the likeliest first
    bool bUndecided = false;     // the second is as good as the first, and differs in values
    std::string sUndecided;      // what isn't decided; a sentence with the line that would decide
    std::vector<std::string> doubts;
};

// At most eight. None where the table has no date or no price.
Candidates FindCandidates(const Table& table, const MomentColumns& moments, const Roles& roles,
                          bool bWholeSample);

// The engine's name of the column that a meaning goes to; empty for one that has no type.
std::string TypeNameOf(Meaning meaning);

} // namespace tabulex::advice
