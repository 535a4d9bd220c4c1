// Template and text are walked chunk by chunk as in an evaluation, but nothing is converted
// and letters aren't looked up: a sign at the start of each piece is skipped, lengths must
// fit, and in a date digits must stand where the template wants them.

#include "src/parsing/templates/TemplateDryRun.h"

#include <algorithm>

#include "src/parsing/DataTypes.h"
#include "src/parsing/templates/NumberText.h"
#include "src/parsing/templates/TemplateChunk.h"

namespace Hesperon::specifics {

namespace {

string_view_t SkipSign(string_view_t sText)
{
    const bool bSigned = sText.starts_with(OLESTR('-')) || sText.starts_with(OLESTR('+'));
    return sText.substr(bSigned);
}

bool LengthFits(const TemplateChunk& chunk, string_view_t sText)
{
    return chunk.HasStar() ? sText.size() >= chunk.SymbolCount()
                           : sText.size() == chunk.SymbolCount();
}

// Which symbols of a Date chunk want a digit, asked in the order of matching. A '?' skips a
// character at the start of a chunk, or after a symbol that took one. The symbol after such
// an inner '?' always takes one, even if it is a '?' itself.
class DigitRule
{
public:
    bool WantsDigit(OLECHAR cSymbol)
    {
        if (cSymbol == kSkip && m_last != Last::InnerSkip) {
            if (m_last == Last::Take)
                m_last = Last::InnerSkip;
            return false;
        }
        m_last = Last::Take;
        return cSymbol != OLESTR('m');
    }

private:
    enum class Last
    {
        None,
        Take,
        InnerSkip
    };
    Last m_last = Last::None;
};

// REQUIRES LengthFits.
bool DigitsStandWhereWanted(const TemplateChunk& chunk, string_view_t sText)
{
    DigitRule rule;
    for (std::size_t i = 0; i < sText.size(); ++i) {
        const OLECHAR c = sText[chunk.IsReversed() ? sText.size() - 1 - i : i];
        const bool bWanted = rule.WantsDigit(i < chunk.SymbolCount() ? chunk.Symbol(i) : kStar);
        if (bWanted && !IsDigit(c))
            return false;
    }
    return true;
}

bool ChunkCouldTake(unsigned uiType, const TemplateChunk& chunk, string_view_t sText)
{
    sText = SkipSign(sText);
    if (!chunk.IsWellFormed() || sText.empty() || !LengthFits(chunk, sText))
        return false;
    return uiType != TypeDate || DigitsStandWhereWanted(chunk, sText);
}

} // namespace

bool CouldTake(unsigned uiType, string_view_t sTemplate, string_view_t sText)
{
    string_view_t sPattern = PatternOf(sTemplate);
    while (!sPattern.empty() && !sText.empty()) {
        const ChunkCut cut = CutChunk(sPattern);
        const std::size_t at = cut.bLast ? sText.size() : sText.find(cut.cDivider);
        if (at == sText.npos)
            return false;
        if (!ChunkCouldTake(uiType, TemplateChunk(cut.sChunk), sText.substr(0, at)))
            return false;
        sPattern = cut.sRest;
        sText = cut.bLast ? string_view_t() : sText.substr(at + 1);
    }
    return true;
}

} // namespace Hesperon::specifics
