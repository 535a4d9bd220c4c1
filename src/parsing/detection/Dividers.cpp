// The record is walked once, and the strongest candidate in it wins. A comma thus wins over
// the blanks and colons that dates and times bring along. If a blank was in the lead before
// the winner came, it may join a date and a time in the first field: then it divides too.

#include "src/parsing/detection/Dividers.h"

#include <algorithm>
#include <optional>

#include "src/parsing/templates/NumberText.h"

namespace Hesperon::specifics {
namespace {

constexpr std::size_t kBlankRank = 1;

struct Ranking
{
    std::optional<std::size_t> nWinner; // rank in the list of candidates
    // Number of candidates before the blank that took the lead. Used as a character index
    // on purpose.
    std::optional<std::size_t> nBeforeBlank;
};

Ranking RankCandidates(string_view_t sRecord)
{
    Ranking ranking;
    std::size_t nMet = 0;
    for (OLECHAR c : sRecord) {
        const std::size_t nRank = kDividerCandidates.find(c);
        if (nRank == string_view_t::npos)
            continue;
        if (!ranking.nWinner || nRank > *ranking.nWinner) {
            ranking.nWinner = nRank;
            if (nRank == kBlankRank)
                ranking.nBeforeBlank = nMet;
        }
        ++nMet;
    }
    return ranking;
}

// Whether a blank and a digit occur between nFrom and the first winner: a date and a time
// joined by the blank, which are two columns.
bool BlankJoinsDateAndTime(string_view_t sRecord, std::size_t nFrom, OLECHAR winner)
{
    const std::size_t nEnd = sRecord.find(winner);
    if (nFrom >= nEnd)
        return false;
    const string_view_t sHead = sRecord.substr(nFrom, nEnd - nFrom);
    return sHead.find(' ') != sHead.npos && std::ranges::any_of(sHead, IsDigit);
}

} // namespace

LONG DividerSet::Mask() const
{
    LONG nMask = 0;
    for (std::size_t i = 0; i < kDividerCandidates.size(); ++i)
        if (Contains(kDividerCandidates[i]))
            nMask |= 1 << i;
    return nMask;
}

DividerSet DividerSet::FromMask(LONG nMask)
{
    DividerSet set;
    for (std::size_t i = 0; i < kDividerCandidates.size(); ++i)
        if (nMask & (1 << i))
            set.Insert(kDividerCandidates[i]);
    return set;
}

DividerSet FindDividers(string_view_t sRecord)
{
    const Ranking ranking = RankCandidates(sRecord);
    const OLECHAR winner = ranking.nWinner ? kDividerCandidates[*ranking.nWinner] : OLECHAR(0);
    DividerSet dividers;
    dividers.Insert(winner);
    dividers.Insert('\t');
    if (winner != ' ' && ranking.nBeforeBlank &&
        BlankJoinsDateAndTime(sRecord, *ranking.nBeforeBlank, winner))
        dividers.Insert(' ');
    return dividers;
}

} // namespace Hesperon::specifics
