// All ways to cut a name in three are tried, the longest front first and then the shortest part.
// Names are short, and each single star goes back by itself, so that no name that fits is missed.

#include "tools/tabulex/text/NamePattern.h"

#include <stdexcept>

#include <fmt/format.h>

namespace tabulex {

namespace {

constexpr std::string_view kPart = "{}";

// Goes back to the last star where the rest doesn't fit, and lets it take one character more.
bool Matches(std::string_view pattern, std::string_view text)
{
    std::size_t nPattern = 0, nText = 0, nStar = pattern.npos, nTaken = 0;
    while (nText < text.size()) {
        const bool bMore = nPattern < pattern.size();
        if (bMore && pattern[nPattern] == '*') {
            nStar = nPattern++;
            nTaken = nText;
        } else if (bMore && (pattern[nPattern] == '?' || pattern[nPattern] == text[nText])) {
            ++nPattern;
            ++nText;
        } else if (nStar != pattern.npos) {
            nPattern = nStar + 1;
            nText = ++nTaken;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', nPattern) == pattern.npos;
}

} // namespace

NamePattern::NamePattern(std::string_view pattern)
{
    const std::size_t nAt = pattern.find(kPart);
    if (nAt == pattern.npos || pattern.find(kPart, nAt + kPart.size()) != pattern.npos ||
        pattern.find('/') != pattern.npos)
        throw std::invalid_argument(fmt::format(
            "'{}' is not a name without its folder that has {{}} once, such as '{{}}_daily.csv'",
            pattern));
    m_sAhead = pattern.substr(0, nAt);
    m_sBehind = pattern.substr(nAt + kPart.size());
}

std::optional<std::string> NamePattern::PartOf(std::string_view name) const
{
    for (std::size_t nFrom = name.size(); nFrom-- > 0;) {
        if (!Matches(m_sAhead, name.substr(0, nFrom)))
            continue;
        for (std::size_t nTo = nFrom + 1; nTo <= name.size(); ++nTo)
            if (Matches(m_sBehind, name.substr(nTo)))
                return std::string(name.substr(nFrom, nTo - nFrom));
    }
    return std::nullopt;
}

} // namespace tabulex
