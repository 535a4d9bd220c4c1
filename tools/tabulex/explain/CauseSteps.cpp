#include <fmt/format.h>

#include "tools/tabulex/explain/Causes.h"
#include "tools/tabulex/explain/HeadingColumns.h"

namespace tabulex {

std::string NextStep(const std::string& sStep, std::string_view other)
{
    return sStep.empty() ? fmt::format(": {}.", other) : fmt::format("; {}.", sStep);
}

std::string StepOf(const Case& theCase, const std::vector<Correction>& corrections)
{
    return FirstThatWorks(theCase.host, theCase.sample, theCase.settings, corrections);
}

void AddWithHeadings(const Case& theCase, std::size_t nDate, Correction correction,
                     std::vector<Correction>& corrections)
{
    correction.nDate = nDate;
    corrections.push_back(correction);
    for (Correction& whole : WithHeadings(theCase.host, theCase.sample, correction))
        if (whole.sOptions != correction.sOptions)
            corrections.push_back(std::move(whole));
}

} // namespace tabulex
