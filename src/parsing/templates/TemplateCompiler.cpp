// The constructor of CompiledTemplate. A pattern is cut into chunks at its dividers. The
// symbols of a chunk are taken in the order in which they are matched and joined to runs:
// a run begins at a variable's letter and goes on while the same letter follows; a '?'
// inside it passes over a character, and the symbol after that belongs to the run whatever
// it is. A star belongs to the last run of its chunk. A letter that the type doesn't
// declare ends the chunk with a run that no text matches.

#include "src/parsing/DataTypes.h"
#include "src/parsing/templates/TemplateChunk.h"
#include "src/parsing/templates/TemplateMatcher.h"
#include "src/parsing/templates/TextTests.h"

namespace Hesperon::specifics {

class TemplateCompiler
{
public:
    TemplateCompiler(CompiledTemplate& target, const TemplateVariables& vars)
        : m_target(target), m_vars(vars)
    {}

    void Compile(string_view_t sPattern)
    {
        while (!sPattern.empty()) {
            const ChunkCut cut = CutChunk(sPattern);
            AddChunk(cut);
            sPattern = cut.sRest;
        }
    }

private:
    using Run = CompiledTemplate::Run;
    using RunKind = CompiledTemplate::RunKind;
    using Chunk = CompiledTemplate::Chunk;

    static std::uint16_t Short(std::size_t n) { return static_cast<std::uint16_t>(n); }

    void AddChunk(const ChunkCut& cut);
    void AddRuns(const TemplateChunk& symbols);
    // Both give the number of the first symbol after what they added.
    std::size_t AddLeadingSkips(const TemplateChunk& symbols);
    std::size_t AddVariable(const TemplateChunk& symbols, std::size_t nSymbol);
    void AddTake(OLECHAR cSymbol, OLECHAR cVariable);
    void AddSkip(const TemplateChunk& symbols, std::size_t nSymbol, OLECHAR cVariable);
    bool MayEndAt(OLECHAR cSymbol, OLECHAR cVariable) const;
    bool WantsDigit(OLECHAR cSymbol) const { return m_target.m_bDate && cSymbol != OLESTR('m'); }
    Run StartRun(OLECHAR cVariable) const;
    void GiveStarToLastRun();

    CompiledTemplate& m_target;
    const TemplateVariables& m_vars;
};

void TemplateCompiler::AddChunk(const ChunkCut& cut)
{
    const TemplateChunk symbols(cut.sChunk);
    Chunk chunk;
    chunk.cDivider = cut.cDivider;
    chunk.bLast = cut.bLast;
    chunk.bWellFormed = symbols.IsWellFormed();
    chunk.bStar = symbols.HasStar();
    chunk.bReversed = symbols.IsReversed();
    chunk.nSymbols = Short(symbols.SymbolCount());
    chunk.nFirstRun = Short(m_target.m_runs.size());
    if (chunk.bWellFormed)
        AddRuns(symbols);
    chunk.nRuns = Short(m_target.m_runs.size() - chunk.nFirstRun);
    m_target.m_chunks.push_back(chunk);
}

void TemplateCompiler::AddRuns(const TemplateChunk& symbols)
{
    std::size_t nSymbol = AddLeadingSkips(symbols);
    while (nSymbol < symbols.SymbolCount()) {
        nSymbol = AddVariable(symbols, nSymbol);
        if (m_target.m_runs.back().kind == RunKind::Undeclared)
            return;
    }
    if (symbols.HasStar())
        GiveStarToLastRun();
}

std::size_t TemplateCompiler::AddLeadingSkips(const TemplateChunk& symbols)
{
    std::size_t nCount = 0;
    while (nCount < symbols.SymbolCount() && symbols.Symbol(nCount) == kSkip)
        ++nCount;
    if (nCount > 0)
        m_target.m_runs.push_back({.kind = RunKind::Skip, .nSteps = Short(nCount)});
    return nCount;
}

std::size_t TemplateCompiler::AddVariable(const TemplateChunk& symbols, std::size_t nSymbol)
{
    const OLECHAR cVariable = symbols.Symbol(nSymbol);
    Run run = StartRun(cVariable);
    const std::size_t nFirst = nSymbol;
    bool bJoin = run.kind != RunKind::Undeclared;
    while (nSymbol < symbols.SymbolCount() && bJoin) {
        AddTake(symbols.Symbol(nSymbol++), cVariable);
        if (nSymbol == symbols.SymbolCount())
            break;
        if (symbols.Symbol(nSymbol) == kSkip) {
            run.bSparse = true;
            AddSkip(symbols, nSymbol++, cVariable);
        } else
            bJoin = symbols.Symbol(nSymbol) == cVariable;
    }
    run.nSteps = Short(nSymbol - nFirst);
    m_target.m_runs.push_back(run);
    return nSymbol;
}

TemplateCompiler::Run TemplateCompiler::StartRun(OLECHAR cVariable) const
{
    if (!m_vars.Declares(cVariable))
        return {.kind = RunKind::Undeclared};
    Run run;
    if (cVariable == OLESTR('t'))
        run.kind = RunKind::PmWord;
    run.bDigits = WantsDigit(cVariable);
    run.nSlot = static_cast<std::uint8_t>(TemplateVariables::SlotOf(cVariable));
    run.nFirstStep = Short(m_target.m_steps.size());
    return run;
}

void TemplateCompiler::AddTake(OLECHAR cSymbol, OLECHAR cVariable)
{
    m_target.m_steps.push_back(
        {.bSkip = false, .bDigit = WantsDigit(cSymbol), .bMayEnd = MayEndAt(cSymbol, cVariable)});
}

// A text that ends before a '?' has nothing to skip, so it ends before the symbol
// after that.
void TemplateCompiler::AddSkip(const TemplateChunk& symbols, std::size_t nSymbol, OLECHAR cVariable)
{
    const bool bLast = nSymbol + 1 == symbols.SymbolCount();
    m_target.m_steps.push_back(
        {.bSkip = true,
         .bDigit = false,
         .bMayEnd = bLast || MayEndAt(symbols.Symbol(nSymbol + 1), cVariable)});
}

// A text may end inside a run, or before another variable, which then gets nothing.
bool TemplateCompiler::MayEndAt(OLECHAR cSymbol, OLECHAR cVariable) const
{
    return cSymbol == cVariable || m_vars.Declares(cSymbol);
}

void TemplateCompiler::GiveStarToLastRun()
{
    Run& last = m_target.m_runs.back();
    if (last.kind == RunKind::Skip) {
        m_target.m_runs.push_back({.kind = RunKind::Undeclared});
        return;
    }
    last.bStar = true;
    last.bStarDigits = m_target.m_bDate;
}

CompiledTemplate::CompiledTemplate(unsigned uiType, string_view_t sTemplate,
                                   const TemplateVariables& vars)
    : m_bDate(uiType == TypeDate), m_sPmWord(PmWordOf(sTemplate))
{
    const string_view_t sPattern = PatternOf(sTemplate);
    TemplateCompiler(*this, vars).Compile(m_bDate ? RemoveBoundaryDividers(sPattern) : sPattern);
}

} // namespace Hesperon::specifics
