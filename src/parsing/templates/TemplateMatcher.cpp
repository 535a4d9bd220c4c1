// The text is cut at the dividers of the template, and each piece is matched against its
// chunk, from the right if the chunk starts with a star, else from the left. The runs of a
// chunk take their characters one after the other; what a run took is a number, a month's
// name or the PM word, and is added to the run's variable. A run without a '?' inside is
// one piece of the text and needs no copy.

#include "src/parsing/templates/TemplateMatcher.h"

#include <algorithm>
#include <array>
#include <span>

#include "src/parsing/templates/MonthNames.h"
#include "src/parsing/templates/NumberText.h"
#include "src/parsing/templates/TextTests.h"
#include "src/values/CaseFold.h"

namespace Hesperon::specifics {

namespace {

// After a leading '-' the seconds start at 1 instead of 0; then one '+' is skipped.
string_view_t SkipTimeSign(string_view_t sText, tagMATHVALUE& seconds)
{
    if (sText.starts_with(OLESTR('-'))) {
        seconds = tagMATHVALUE::Integer(1);
        sText.remove_prefix(1);
    }
    return sText.starts_with(OLESTR('+')) ? sText.substr(1) : sText;
}

// Years of two digits are 1950 to 2049; 100 to 199 count from 1900.
void WidenYear(tagMATHVALUE& year)
{
    if (year.nValue < 50)
        year.Add(tagMATHVALUE::Integer(2000));
    else if (year.nValue < 200)
        year.Add(tagMATHVALUE::Integer(1900));
}

bool ReadMonthName(string_view_t sText, LONGLONG& value)
{
    const int nMonth = FindMonthIndex(sText);
    value = nMonth + 1;
    return nMonth >= 0;
}

bool ReadNumberOrMonth(string_view_t sText, LONGLONG& value)
{
    if (ReadDigits(sText, value))
        return true;
    if (!IsIntegerText(sText, false))
        return ReadMonthName(sText, value);
    value = TextToInt64(sText);
    return true;
}

} // namespace

// What is left of a chunk's text. Characters are taken from its right end if the chunk is
// matched from the right.
class ChunkText
{
public:
    ChunkText(string_view_t sText, bool bReversed) : m_sText(sText), m_bReversed(bReversed) {}

    std::size_t Size() const { return m_sText.size(); }
    bool IsReversed() const { return m_bReversed; }

    // In the text's order. REQUIRES: nCount <= Size().
    string_view_t Take(std::size_t nCount)
    {
        const std::size_t nLeft = m_sText.size() - nCount;
        const string_view_t taken = m_bReversed ? m_sText.substr(nLeft) : m_sText.substr(0, nCount);
        m_sText = m_bReversed ? m_sText.substr(0, nLeft) : m_sText.substr(nCount);
        return taken;
    }

private:
    string_view_t m_sText;
    bool m_bReversed;
};

namespace {

// A run's characters where '?' leaves gaps between them, in the text's order.
class GatheredRun
{
public:
    explicit GatheredRun(bool bReversed)
        : m_bReversed(bReversed), m_nBegin(bReversed ? kMaxText : 0), m_nEnd(m_nBegin)
    {}

    void Add(string_view_t sText)
    {
        if (m_bReversed)
            m_nBegin -= sText.size();
        std::ranges::copy(sText, m_buffer.begin() + (m_bReversed ? m_nBegin : m_nEnd));
        if (!m_bReversed)
            m_nEnd += sText.size();
    }
    string_view_t Text() const { return {m_buffer.data() + m_nBegin, m_nEnd - m_nBegin}; }

private:
    bool m_bReversed;
    std::size_t m_nBegin;
    std::size_t m_nEnd;
    std::array<OLECHAR, kMaxText> m_buffer;
};

bool AreDigits(string_view_t sText)
{
    return std::ranges::all_of(sText, IsDigit);
}

} // namespace

HRESULT CompiledTemplate::Evaluate(string_view_t sText, TemplateVariables& vars) const
{
    if (vars.IsEmpty())
        return E_INVALIDARG;
    sText = RemoveBoundaryDividers(sText);
    vars.ResetToZero();
    if (tagMATHVALUE* seconds = vars.Find(OLESTR('s')))
        sText = SkipTimeSign(sText, *seconds);
    const HRESULT hr = MatchChunks(sText, vars);
    tagMATHVALUE* year = vars.Find(OLESTR('y'));
    if (SUCCEEDED(hr) && year)
        WidenYear(*year);
    return hr;
}

// A text that ends before the template does matches. The variables that it didn't reach
// stay 0, and the validity rules judge them.
HRESULT CompiledTemplate::MatchChunks(string_view_t sText, TemplateVariables& vars) const
{
    for (const Chunk& chunk : m_chunks) {
        if (sText.empty())
            return S_OK;
        if (chunk.bLast)
            return MatchChunk(chunk, sText, vars);
        const std::size_t at = sText.find(chunk.cDivider);
        if (at == sText.npos)
            return E_FAIL;
        const HRESULT hr = MatchChunk(chunk, sText.substr(0, at), vars);
        if (FAILED(hr))
            return hr;
        sText.remove_prefix(at + 1);
    }
    return S_OK;
}

HRESULT CompiledTemplate::MatchChunk(const Chunk& chunk, string_view_t sText,
                                     TemplateVariables& vars) const
{
    if (!chunk.bWellFormed || sText.empty())
        return E_INVALIDARG;
    if (!chunk.bStar && sText.size() != chunk.nSymbols)
        return E_INVALIDARG;
    ChunkText text(sText, chunk.bReversed);
    return MatchRuns(chunk, text, vars);
}

HRESULT CompiledTemplate::MatchRuns(const Chunk& chunk, ChunkText& text,
                                    TemplateVariables& vars) const
{
    for (const Run& run : std::span(m_runs).subspan(chunk.nFirstRun, chunk.nRuns)) {
        const bool bTextEnds = text.Size() < run.nSteps;
        const HRESULT hr = MatchRun(run, text, vars);
        if (FAILED(hr) || bTextEnds)
            return hr;
    }
    return S_OK;
}

HRESULT CompiledTemplate::MatchRun(const Run& run, ChunkText& text, TemplateVariables& vars) const
{
    switch (run.kind) {
    case RunKind::Undeclared:
        return E_INVALIDARG;
    case RunKind::Skip:
        if (text.Size() < run.nSteps)
            return E_INVALIDARG;
        text.Take(run.nSteps);
        return S_OK;
    default:
        return run.bSparse ? MatchSparseRun(run, text, vars) : MatchDenseRun(run, text, vars);
    }
}

HRESULT CompiledTemplate::MatchDenseRun(const Run& run, ChunkText& text,
                                        TemplateVariables& vars) const
{
    const std::size_t nOwn = std::min<std::size_t>(run.nSteps, text.Size());
    const string_view_t sRun = text.Take(run.bStar ? text.Size() : nOwn);
    LONGLONG value;
    if (run.kind == RunKind::Number && ReadDigits(sRun, value)) [[likely]] {
        vars.At(run.nSlot).Add(tagMATHVALUE::Integer(value));
        return S_OK;
    }
    const std::size_t nStar = sRun.size() - nOwn;
    const string_view_t sStar = text.IsReversed() ? sRun.substr(0, nStar) : sRun.substr(nOwn);
    if (run.bDigits || (run.bStarDigits && !AreDigits(sStar)))
        return E_INVALIDARG;
    return Convert(run, sRun, vars);
}

HRESULT CompiledTemplate::MatchSparseRun(const Run& run, ChunkText& text,
                                         TemplateVariables& vars) const
{
    GatheredRun gathered(text.IsReversed());
    bool bMatches = true;
    for (const Step& step : std::span(m_steps).subspan(run.nFirstStep, run.nSteps)) {
        if (text.Size() == 0) {
            bMatches = step.bMayEnd;
            break;
        }
        const string_view_t sTaken = text.Take(1);
        if (step.bSkip)
            continue;
        if (step.bDigit && !AreDigits(sTaken))
            return E_INVALIDARG;
        gathered.Add(sTaken);
    }
    const string_view_t sStar = text.Take(run.bStar ? text.Size() : 0);
    if (run.bStarDigits && !AreDigits(sStar))
        return E_INVALIDARG;
    gathered.Add(sStar);
    const HRESULT hr = Convert(run, gathered.Text(), vars);
    return FAILED(hr) || bMatches ? hr : E_INVALIDARG;
}

HRESULT CompiledTemplate::Convert(const Run& run, string_view_t sRun, TemplateVariables& vars) const
{
    if (run.kind == RunKind::PmWord) {
        if (!m_sPmWord.empty() && EqualIgnoringCase(m_sPmWord, sRun))
            vars.At(run.nSlot) = tagMATHVALUE::Integer(1);
        return S_OK;
    }
    LONGLONG value;
    if (!ReadNumberOrMonth(sRun, value))
        return E_INVALIDARG;
    vars.At(run.nSlot).Add(tagMATHVALUE::Integer(value));
    return S_OK;
}

} // namespace Hesperon::specifics
