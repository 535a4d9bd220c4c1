// Cuts are views of the template's text, so nothing is copied: whoever keeps a chunk keeps the
// template too.

#include "src/parsing/templates/TemplateChunk.h"

#include <algorithm>

#include "src/parsing/templates/TextTests.h"

namespace Hesperon::specifics {

string_view_t PatternOf(string_view_t sTemplate)
{
    return sTemplate.substr(0, sTemplate.find(kPmWordMark));
}

string_view_t PmWordOf(string_view_t sTemplate)
{
    const std::size_t at = sTemplate.find(kPmWordMark);
    return at == sTemplate.npos ? string_view_t() : sTemplate.substr(at + 1);
}

ChunkCut CutChunk(string_view_t sPattern)
{
    const std::size_t at = std::ranges::find_if(sPattern, IsTemplateDivider) - sPattern.begin();
    if (at == sPattern.size())
        return {sPattern, {}, 0, true};
    return {sPattern.substr(0, at), sPattern.substr(at + 1), sPattern[at], false};
}

// A star in front is looked for first, so a chunk with one at each end is malformed by the
// one that is left; and so is a star alone.
TemplateChunk::TemplateChunk(string_view_t sChunk) : m_sSymbols(sChunk)
{
    if (sChunk.starts_with(kStar)) {
        m_bStar = m_bReversed = true;
        m_sSymbols.remove_prefix(1);
    } else if (sChunk.ends_with(kStar)) {
        m_bStar = true;
        m_sSymbols.remove_suffix(1);
    }
    m_bWellFormed = !m_sSymbols.empty() && m_sSymbols.find(kStar) == m_sSymbols.npos;
}

} // namespace Hesperon::specifics
