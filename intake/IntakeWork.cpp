// What is counted of a line that turns out to be no row, or is left out for what it lacks, is taken
// back: the account as it was before the line stands again.

#include "intake/IntakeWork.h"

#include <algorithm>
#include <utility>

namespace tabulex::intake {

namespace {

const Recipe& RequireSound(const Recipe& recipe)
{
    if (std::string fault = FaultIn(recipe); !fault.empty())
        throw RecipeFault{std::move(fault)};
    return recipe;
}

bool IsBlank(std::string_view line)
{
    return line.find_first_not_of(" \t") == std::string_view::npos;
}

} // namespace

Intake::Work::Work(const Recipe& recipe, Output output, MakeStore makeStore)
    : m_recipe(RequireSound(recipe)),
      m_bFilters(recipe.linesOut.bNoDate || recipe.linesOut.bNoValues),
      m_output(m_recipe, std::move(output), std::move(makeStore), m_account),
      m_rules(recipe.linesOut), m_rows(m_recipe, m_account),
      m_cells(recipe.cells.bQuotes, m_rows.CellsWanted()), m_dividers(m_recipe, m_cells, *this),
      m_lines(m_dividers, kMostLineBytes)
{
    m_cells.SetDivider(recipe.cells.cDivider);
    if (m_recipe.HasHeading()) {
        m_rows.MakeHeading({}, m_output.Text());
        m_output.EndHeading();
    }
}

void Intake::Work::LeaveOut()
{
    ++m_account.nLeftOut;
    m_output.BlankLine();
}

// Behind a line that is held back it waits as well.
void Intake::Work::TakeBlank()
{
    if (m_bHead)
        ++m_nBlankAfterHead;
    else
        m_output.BlankLine();
}

void Intake::Work::Take(std::string_view line, bool bCut)
{
    const std::uint64_t nLine = ++m_account.nLines;
    if (bCut && m_account.nCut++ == 0)
        m_account.nFirstCut = nLine;
    if (m_open.empty())
        TakeLine(line, nLine);
    else if (!TakeJoined(line))
        GiveUpJoining();
}

void Intake::Work::TakeLine(std::string_view line, std::uint64_t nLine)
{
    if (m_rules.LeavesOut(line, nLine)) {
        ++m_account.nLeftOut;
        TakeBlank();
        return;
    }
    if (IsBlank(line)) {
        TakeBlank();
        return;
    }
    if (m_cells.Cut(line)) {
        TakeCells(nLine);
        return;
    }
    m_open.emplace_back(line);
    m_joined = line;
    m_nOpen = nLine;
}

// False where the mark stays open for too long.
bool Intake::Work::TakeJoined(std::string_view line)
{
    m_open.emplace_back(line);
    m_joined += ' ';
    m_joined += line;
    const std::size_t nSize = m_joined.size();
    m_joined.append(CellCutter::kPadding, '\0');
    const bool bClosed =
        nSize <= kMostLineBytes && m_cells.Cut(std::string_view(m_joined).substr(0, nSize));
    if (bClosed) {
        const std::uint64_t nMore = m_open.size() - 1;
        m_open.clear();
        m_account.nJoined += nMore;
        TakeCells(m_nOpen);
        for (std::uint64_t n = 0; n < nMore; ++n)
            TakeBlank();
        return true;
    }
    m_joined.resize(nSize);
    return nSize <= kMostLineBytes && m_open.size() < kMostJoinedLines;
}

// The first of the lines is taken as if it had no mark, the others begin anew.
void Intake::Work::GiveUpJoining()
{
    std::vector<std::string> lines = std::exchange(m_open, {});
    const std::uint64_t nFirst = m_nOpen;
    if (m_account.nOpenQuotes++ == 0)
        m_account.nFirstOpenQuote = nFirst;
    for (std::size_t n = 0; n < lines.size(); ++n) {
        const std::size_t nSize = lines[n].size();
        lines[n].append(CellCutter::kPadding, '\0');
        const std::string_view line = std::string_view(lines[n]).substr(0, nSize);
        if (n == 0) {
            m_cells.CutPlain(line);
            TakeCells(nFirst);
        } else if (m_open.empty())
            TakeLine(line, nFirst + n);
        else if (!TakeJoined(line))
            GiveUpJoining();
    }
}

// A line of nothing but dividers is as good as blank.
void Intake::Work::TakeCells(std::uint64_t nLine)
{
    if (std::ranges::all_of(m_cells.Cells(), &std::string_view::empty))
        TakeBlank();
    else if (m_bInRows)
        TakeRow(nLine);
    else
        TakeHead(nLine);
}

void Intake::Work::TakeHead(std::uint64_t nLine)
{
    const IntakeAccount before = m_account;
    m_try.CutTo(0);
    const RowFacts facts = m_rows.MakeFirst(m_cells.Cells(), nLine, m_try);
    if (!facts.bRow) {
        m_account = before;
        GiveHead(false);
        m_head.assign(m_cells.Cells().begin(), m_cells.Cells().end());
        m_bHead = true;
        return;
    }
    GiveHead(true);
    m_bInRows = true;
    const std::size_t nStart = m_output.Text().Size();
    m_output.Text().Add(m_try.Text());
    FilterRow(facts, nStart, nLine, before);
}

// The line that was held back, with the blank ones behind it. As the last one it names the columns,
// unless the recipe does.
void Intake::Work::GiveHead(bool bLast)
{
    if (!std::exchange(m_bHead, false))
        return;
    m_account.nHeading = bLast ? 1 : 0;
    if (bLast && !m_recipe.HasHeading()) {
        const std::vector<std::string_view> cells(m_head.begin(), m_head.end());
        m_rows.MakeHeading(cells, m_output.Text());
        m_output.EndHeading();
    } else if (bLast)
        m_output.BlankLine();
    else
        LeaveOut();
    for (; m_nBlankAfterHead > 0; --m_nBlankAfterHead)
        m_output.BlankLine();
}

void Intake::Work::TakeRow(std::uint64_t nLine)
{
    const std::size_t nStart = m_output.Text().Size();
    if (!m_bFilters) {
        GiveRow(m_rows.Make(m_cells.Cells(), nLine, m_output.Text()), nStart, nLine);
        return;
    }
    const IntakeAccount before = m_account;
    FilterRow(m_rows.Make(m_cells.Cells(), nLine, m_output.Text()), nStart, nLine, before);
}

// What was counted of a row that is left out doesn't count.
void Intake::Work::FilterRow(const RowFacts& facts, std::size_t nStart, std::uint64_t nLine,
                             const IntakeAccount& before)
{
    const LinesOut& rules = m_recipe.linesOut;
    if ((!rules.bNoDate || facts.bMoment) && (!rules.bNoValues || facts.bValue)) {
        GiveRow(facts, nStart, nLine);
        return;
    }
    m_output.Text().CutTo(nStart);
    const std::uint64_t nLeftOut = m_account.nLeftOut;
    m_account = before;
    m_account.nLeftOut = nLeftOut;
    LeaveOut();
}

void Intake::Work::GiveRow(const RowFacts& facts, std::size_t nStart, std::uint64_t nLine)
{
    ++m_account.nRows;
    m_output.EndRow(facts.nMoment, nStart, nLine);
}

void Intake::Work::Finish()
{
    m_lines.Finish();
    m_dividers.Finish();
    while (!m_open.empty())
        GiveUpJoining();
    GiveHead(true);
    m_output.Finish();
}

} // namespace tabulex::intake
