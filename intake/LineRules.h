// LineRules: which lines are left out by their place and their beginning.
#pragma once

#include <cstdint>
#include <string_view>

#include "intake/Recipe.h"

namespace tabulex::intake {

class LineRules
{
public:
    explicit LineRules(const LinesOut& rules);

    // To be asked once for each line, in order. nLine counts from 1.
    bool LeavesOut(std::string_view line, std::uint64_t nLine);

private:
    bool IsComment(std::string_view line) const;

    const LinesOut m_rules;
    const bool m_bAny; // there is a rule at all
    bool m_bBegun;     // the line that the rows come behind was seen
    bool m_bEnded = false;
};

} // namespace tabulex::intake
