// CompiledTemplate: a Date or Time template in the form that texts are matched
// with. See docs/templates.md for the language.
//
// A pattern becomes chunks, and a chunk becomes runs of one variable each. A run knows
// how many characters it takes; only the number that a star takes depends on the text.
// Matching reads the text once, allocates nothing, and may run on several threads at
// once.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/component.h"
#include "src/parsing/templates/TemplateVariables.h"

namespace Hesperon::specifics {

class ChunkText;

class CompiledTemplate
{
public:
    // Of no variables: every text is refused.
    CompiledTemplate() = default;
    // For TypeDate and TypeTime; `vars` holds what the template declares.
    CompiledTemplate(unsigned uiType, string_view_t sTemplate, const TemplateVariables& vars);

    // Sets the variables, those of the constructor, from a text of at most kMaxText
    // characters. A failure leaves those set that were read before it: E_FAIL for
    // a text that lacks one of the template's dividers, E_INVALIDARG for any other
    // mismatch and for a template without variables.
    HRESULT Evaluate(string_view_t sText, TemplateVariables& vars) const;

private:
    friend class TemplateCompiler;

    // One symbol of a run, needed only by runs with a '?' inside.
    struct Step
    {
        bool bSkip;   // the character is passed over
        bool bDigit;  // only a digit may stand here
        bool bMayEnd; // a text that ends before this symbol matches
    };

    enum class RunKind : std::uint8_t
    {
        Number,    // digits or a month's name
        PmWord,    // compared with the PM word
        Skip,      // '?' at the start of a chunk
        Undeclared // a symbol that no text matches; the last run of its chunk
    };

    // Symbols that are converted together, in the order in which they are matched.
    struct Run
    {
        RunKind kind = RunKind::Number;
        bool bDigits = false;     // its own symbols take digits only
        bool bStar = false;       // it also takes the rest of the text
        bool bStarDigits = false; // that rest must be digits
        bool bSparse = false;     // has a '?' inside
        std::uint8_t nSlot = 0;
        std::uint16_t nFirstStep = 0;
        std::uint16_t nSteps = 0; // characters that it takes without the star
    };

    struct Chunk
    {
        OLECHAR cDivider = 0; // after it, unless it is the last
        bool bLast = false;
        bool bWellFormed = false;
        bool bStar = false;
        bool bReversed = false; // matched from the right
        std::uint16_t nSymbols = 0;
        std::uint16_t nFirstRun = 0;
        std::uint16_t nRuns = 0;
    };

    HRESULT MatchChunks(string_view_t sText, TemplateVariables& vars) const;
    HRESULT MatchChunk(const Chunk& chunk, string_view_t sText, TemplateVariables& vars) const;
    HRESULT MatchRuns(const Chunk& chunk, ChunkText& text, TemplateVariables& vars) const;
    HRESULT MatchRun(const Run& run, ChunkText& text, TemplateVariables& vars) const;
    HRESULT MatchDenseRun(const Run& run, ChunkText& text, TemplateVariables& vars) const;
    HRESULT MatchSparseRun(const Run& run, ChunkText& text, TemplateVariables& vars) const;
    HRESULT Convert(const Run& run, string_view_t sRun, TemplateVariables& vars) const;

    bool m_bDate = false;
    string_t m_sPmWord;
    std::vector<Step> m_steps;
    std::vector<Run> m_runs;
    std::vector<Chunk> m_chunks;
};

} // namespace Hesperon::specifics
