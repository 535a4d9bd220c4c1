// Whether what the engine makes of a file by itself is right.
#pragma once

#include <string>

#include "advice/Candidates.h"
#include "advice/Roles.h"
#include "advice/Table.h"
#include "advice/Trial.h"

namespace tabulex::advice {

// Why it isn't, as a clause; empty where it is. It is where nine of ten lines come out, no column
// has a type that its heading denies, and moments and values are those of the candidate.
std::string WhyOwnIsWrong(const Table& table, const Roles& roles, const Candidate& candidate,
                          const TrialResult& own);

} // namespace tabulex::advice
