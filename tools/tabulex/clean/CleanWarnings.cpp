// What was lost or is in doubt is told; what the recipe was asked for isn't. Cells that can't be
// read are told by the component, line by line.

#include <fmt/format.h>

#include "tools/tabulex/clean/CleanFile.h"
#include "tools/tabulex/text/Formats.h"

namespace tabulex {

namespace {

struct CleanWarning
{
    std::string_view code;
    std::uint64_t intake::IntakeAccount::*count;
    std::uint64_t intake::IntakeAccount::*first; // line; null where it isn't known
    const char* pszThing;
    const char* pszText; // behind the number of things
};

constexpr CleanWarning kWarnings[] = {
    {"open-quotes", &intake::IntakeAccount::nOpenQuotes, &intake::IntakeAccount::nFirstOpenQuote,
     "quotation mark", "isn't closed, and quotes nothing. Look at the line, or leave --quotes out"},
    {"lines-too-long", &intake::IntakeAccount::nCut, &intake::IntakeAccount::nFirstCut, "line",
     "has more than a mebibyte; the rest isn't read"},
    {"volumes-rounded", &intake::IntakeAccount::nRounded, &intake::IntakeAccount::nFirstRounded,
     "value", "has more decimals than --scale keeps, and was rounded. Give more digits"},
    {"times-cut", &intake::IntakeAccount::nFiner, nullptr, "time",
     "lost what is finer than a millisecond"},
    {"no-such-clock", &intake::IntakeAccount::nNoSuchClock, nullptr, "time",
     "lies in an hour that the zone's clocks leap over. See whether --time-zone is right"},
};

} // namespace

void WarnOfCleaning(const intake::IntakeAccount& done, Warnings& warnings)
{
    for (const CleanWarning& warning : kWarnings) {
        const std::uint64_t nCount = done.*warning.count;
        if (nCount == 0)
            continue;
        std::optional<ULONGLONG> nLine;
        std::string place;
        if (warning.first) {
            nLine = done.*warning.first;
            place = fmt::format(" (the first in line {})", *nLine);
        }
        warnings.Add(warning.code,
                     fmt::format("{}{}: each {}.", Counted(nCount, warning.pszThing), place,
                                 warning.pszText),
                     nLine);
    }
    if (done.nTwiceClock > 0)
        warnings.Add("clock-twice",
                     fmt::format("{} come twice when the zone's clocks are put back; the first one "
                                 "is taken for each. Rows of that hour may run backwards.",
                                 Counted(done.nTwiceClock, "time")));
    if (done.bOffsetsDiffer)
        warnings.Add("offsets-differ",
                     fmt::format("{} have offsets from UTC that differ and aren't looked at. Give "
                                 "--time-zone offset to have all in UTC.",
                                 Counted(done.nOffsets, "time")));
}

} // namespace tabulex
