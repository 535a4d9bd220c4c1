// How a template is cut: into pattern and PM word, the pattern into chunks at its
// dividers, and a chunk into its star and its other symbols.
#pragma once

#include "platform/component.h"

namespace Hesperon::specifics {

inline constexpr OLECHAR kPmWordMark = OLESTR('@');
inline constexpr OLECHAR kStar = OLESTR('*');
inline constexpr OLECHAR kSkip = OLESTR('?');

// The template up to its first '@'.
string_view_t PatternOf(string_view_t sTemplate);
// What follows that '@'.
string_view_t PmWordOf(string_view_t sTemplate);

// What a divider cuts off the front of a pattern.
struct ChunkCut
{
    string_view_t sChunk;
    string_view_t sRest; // after the divider
    OLECHAR cDivider;    // meaningless for the last chunk
    bool bLast;          // no divider: the chunk takes the whole rest
};
ChunkCut CutChunk(string_view_t sPattern);

// One chunk's symbols in the order in which they are matched: from the right end
// if it starts with a star, else from the left. The star, which then comes last,
// isn't counted among the symbols.
class TemplateChunk
{
public:
    explicit TemplateChunk(string_view_t sChunk);

    // False for an empty chunk, for a star that is neither first nor last, and for
    // more than one star: no text matches.
    bool IsWellFormed() const { return m_bWellFormed; }
    bool HasStar() const { return m_bStar; }
    bool IsReversed() const { return m_bReversed; }
    std::size_t SymbolCount() const { return m_sSymbols.size(); }
    OLECHAR Symbol(std::size_t nIndex) const
    {
        return m_sSymbols[m_bReversed ? m_sSymbols.size() - 1 - nIndex : nIndex];
    }

private:
    string_view_t m_sSymbols;
    bool m_bStar = false;
    bool m_bReversed = false;
    bool m_bWellFormed = false;
};

} // namespace Hesperon::specifics
