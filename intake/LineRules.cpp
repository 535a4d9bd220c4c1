#include "intake/LineRules.h"

#include <algorithm>

namespace tabulex::intake {

LineRules::LineRules(const LinesOut& rules)
    : m_rules(rules), m_bAny(rules.nFirst != 0 || !rules.sUpTo.empty() || !rules.sStopAt.empty() ||
                             !rules.comments.empty()),
      m_bBegun(rules.sUpTo.empty())
{}

// Blanks ahead don't make a comment something else.
bool LineRules::IsComment(std::string_view line) const
{
    line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
    return std::ranges::any_of(
        m_rules.comments, [line](const std::string& comment) { return line.starts_with(comment); });
}

bool LineRules::LeavesOut(std::string_view line, std::uint64_t nLine)
{
    if (!m_bAny)
        return false;
    if (m_bEnded || nLine <= m_rules.nFirst)
        return true;
    m_bBegun = m_bBegun || line.find(m_rules.sUpTo) != std::string_view::npos;
    m_bEnded = m_bBegun && !m_rules.sStopAt.empty() &&
               line.find(m_rules.sStopAt) != std::string_view::npos;
    return !m_bBegun || m_bEnded || IsComment(line);
}

} // namespace tabulex::intake
