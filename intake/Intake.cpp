// A line goes through the steps in turn: is it left out, does a quotation mark join it to the next
// one, its cells, its clean line. Lines ahead of the first row are held back until it is known
// which of them names the columns. Clean text leaves in blocks, or row by row to the sorter.

#include "intake/Intake.h"

#include <algorithm>
#include <utility>

#include "intake/CellCutter.h"
#include "intake/LineCutter.h"
#include "intake/LineRules.h"
#include "intake/OriginList.h"
#include "intake/RowMaker.h"
#include "intake/RowSorter.h"
#include "intake/TextBuffer.h"

namespace tabulex::intake {

namespace {

constexpr std::size_t kOutputBlock = 1 << 18;

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

class Intake::Work : public LineTaker
{
public:
    Work(const Recipe& recipe, Output output, MakeStore makeStore);

    void Feed(std::string_view text) { m_lines.Feed(text); }
    void Finish();

    const IntakeAccount& Account() const { return m_account; }
    std::shared_ptr<const Origins> LineOrigins() const { return m_origins; }

private:
    void Take(std::string_view line, bool bCut) override;
    void TakeLine(std::string_view line, std::uint64_t nLine);
    bool TakeJoined(std::string_view line);
    void GiveUpJoining();
    void TakeCells(std::uint64_t nLine);
    void TakeHead(std::uint64_t nLine);
    void TakeRow(std::uint64_t nLine);
    void GiveHead(bool bLast);
    void FilterRow(const RowFacts& facts, std::size_t nStart, std::uint64_t nLine,
                   const IntakeAccount& before);
    void GiveRow(const RowFacts& facts, std::size_t nStart, std::uint64_t nLine);
    void LeaveOut();
    void TakeBlank();
    void BlankLine();
    void FlushIfFull();
    void Flush();
    void GiveSorted();

    const Recipe m_recipe;
    Output m_output;
    MakeStore m_makeStore;
    IntakeAccount m_account;
    LineCutter m_lines;
    LineRules m_rules;
    RowMaker m_rows;
    CellCutter m_cells;
    TextBuffer m_clean;
    TextBuffer m_try;                    // a line that may be the first row
    const bool m_bFilters;               // rows are left out by what they lack
    std::unique_ptr<RowSorter> m_sorter; // null where rows stay in their places
    std::shared_ptr<const Origins> m_origins;
    std::uint64_t m_nBeforeRows = 0; // clean lines ahead of sorted rows
    std::int64_t m_nLastMoment = 0;  // for a row that has none

    // Ahead of the first row: the cells of the last line that has any, which may name the columns.
    bool m_bInRows = false;
    bool m_bHead = false;
    std::vector<std::string> m_head;
    std::uint64_t m_nBlankAfterHead = 0;

    // Lines that a quotation mark joins, as long as it is open.
    std::vector<std::string> m_open;
    std::uint64_t m_nOpen = 0; // number of the first of them
    std::string m_joined;
};

Intake::Work::Work(const Recipe& recipe, Output output, MakeStore makeStore)
    : m_recipe(RequireSound(recipe)), m_output(std::move(output)),
      m_makeStore(std::move(makeStore)), m_lines(*this, kMostLineBytes), m_rules(recipe.linesOut),
      m_rows(m_recipe, m_account), m_cells(recipe.cells.bQuotes, m_rows.CellsWanted()),
      m_bFilters(recipe.linesOut.bNoDate || recipe.linesOut.bNoValues)
{
    m_cells.SetDivider(recipe.cells.cDivider);
    if (recipe.order != Order::AsRead)
        m_sorter = std::make_unique<RowSorter>(m_makeStore);
    if (m_recipe.HasHeading()) {
        m_rows.MakeHeading({}, m_clean);
        m_clean.Add('\n');
        m_nBeforeRows = 1;
    }
}

void Intake::Work::Flush()
{
    if (m_clean.Size() > 0)
        m_output(m_clean.Text());
    m_clean.CutTo(0);
}

void Intake::Work::FlushIfFull()
{
    if (m_clean.Size() >= kOutputBlock)
        Flush();
}

// Sorted rows stand without blank lines between.
void Intake::Work::BlankLine()
{
    if (!m_sorter)
        m_clean.Add('\n');
    FlushIfFull();
}

void Intake::Work::LeaveOut()
{
    ++m_account.nLeftOut;
    BlankLine();
}

// Behind a line that is held back it waits as well.
void Intake::Work::TakeBlank()
{
    if (m_bHead)
        ++m_nBlankAfterHead;
    else
        BlankLine();
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
    if (m_cells.Divider() == 0)
        m_cells.SetDivider(DividerOf(line, m_recipe.cells.bQuotes));
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
    const std::size_t nStart = m_clean.Size();
    m_clean.Add(m_try.Text());
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
        m_rows.MakeHeading(cells, m_clean);
        m_clean.Add('\n');
        m_nBeforeRows = 1;
    } else if (bLast)
        BlankLine();
    else
        LeaveOut();
    for (; m_nBlankAfterHead > 0; --m_nBlankAfterHead)
        BlankLine();
}

void Intake::Work::TakeRow(std::uint64_t nLine)
{
    const std::size_t nStart = m_clean.Size();
    if (!m_bFilters) {
        GiveRow(m_rows.Make(m_cells.Cells(), nLine, m_clean), nStart, nLine);
        return;
    }
    const IntakeAccount before = m_account;
    FilterRow(m_rows.Make(m_cells.Cells(), nLine, m_clean), nStart, nLine, before);
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
    m_clean.CutTo(nStart);
    const std::uint64_t nLeftOut = m_account.nLeftOut;
    m_account = before;
    m_account.nLeftOut = nLeftOut;
    LeaveOut();
}

// A row without a moment stays behind the one that it came with.
void Intake::Work::GiveRow(const RowFacts& facts, std::size_t nStart, std::uint64_t nLine)
{
    ++m_account.nRows;
    if (m_sorter) {
        const std::string_view text = m_clean.From(nStart);
        const bool bSymbol = m_recipe.order == Order::SymbolAndMoment;
        m_nLastMoment = facts.nMoment.value_or(m_nLastMoment);
        m_sorter->Add(
            {m_nLastMoment, nLine - 1,
             static_cast<std::uint32_t>(bSymbol ? std::min(text.find(';'), text.size()) : 0),
             text});
        m_clean.CutTo(nStart);
        return;
    }
    m_clean.Add('\n');
    FlushIfFull();
}

void Intake::Work::GiveSorted()
{
    auto origins = std::make_shared<OriginList>(m_nBeforeRows, m_makeStore());
    std::uint64_t nLatest = 0;
    m_sorter->Give([&](const SortedRow& row) {
        m_clean.Add(row.text);
        m_clean.Add('\n');
        origins->Add(row.nOrigin);
        m_account.nMoved += row.nOrigin < nLatest ? 1 : 0;
        nLatest = std::max(nLatest, row.nOrigin);
        FlushIfFull();
    });
    origins->Finish();
    m_origins = std::move(origins);
}

void Intake::Work::Finish()
{
    m_lines.Finish();
    while (!m_open.empty())
        GiveUpJoining();
    GiveHead(true);
    if (m_sorter)
        GiveSorted();
    else
        m_origins = std::make_shared<OriginShift>(m_recipe.HasHeading() ? 1 : 0);
    Flush();
}

Intake::Intake(const Recipe& recipe, Output output, MakeStore makeStore)
    : m_work(std::make_unique<Work>(recipe, std::move(output), std::move(makeStore)))
{}

Intake::~Intake() = default;

void Intake::Feed(std::string_view text)
{
    m_work->Feed(text);
}

void Intake::Finish()
{
    m_work->Finish();
}

const IntakeAccount& Intake::Account() const
{
    return m_work->Account();
}

std::shared_ptr<const Origins> Intake::LineOrigins() const
{
    return m_work->LineOrigins();
}

std::string CleanText(const Recipe& recipe, std::string_view text, IntakeAccount* pAccount)
{
    std::string clean;
    Intake intake(recipe, [&clean](std::string_view block) { clean += block; });
    intake.Feed(text);
    intake.Finish();
    if (pAccount)
        *pAccount = intake.Account();
    return clean;
}

} // namespace tabulex::intake
