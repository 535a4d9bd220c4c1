// Score: how good a reading is by what came out of the engine. From 0 to 100, the sum of its parts.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "advice/Candidates.h"
#include "advice/Trial.h"

namespace tabulex::advice {

struct ScorePart
{
    const char* pszName;
    double dShare = 0;    // 0 to 1
    unsigned nPoints = 0; // at a share of 1
    std::string sReason;  // a clause with figures
};

struct Score
{
    std::vector<ScorePart> parts;

    double Total() const;
};

// How two sets of rows compare, in the columns that both have.
struct Agreement
{
    std::size_t nSame = 0;    // rows of the second that are in the first
    std::size_t nOther = 0;   // rows of the second that aren't
    std::size_t nMissing = 0; // rows of the first that the second lacks
};

Agreement Compare(const ReadRows& expected, const ReadRows& delivered);

Score ScoreOf(const Candidate& candidate, const TrialResult& result);

} // namespace tabulex::advice
