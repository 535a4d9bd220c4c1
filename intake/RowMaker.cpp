// Each kind of column has a function that adds its cell and says whether the line goes on. A line
// ends where a value lacks; what stands behind is still read where a rule asks for it, and then
// cut off.

#include "intake/RowMaker.h"

#include <algorithm>
#include <cstring>

#include "intake/Headings.h"

namespace tabulex::intake {

struct RowMaker::Row
{
    CellList cells;
    std::uint64_t nLine;
    TextBuffer& out;
    RowFacts facts;
    int nNumbers = 0;     // columns of numbers that were looked at
    int nNumbersRead = 0; // of these
    bool bBegun = false;  // there is a cell ahead
    bool bOpen = true;    // the line goes on
    bool bAll = false;    // cells are looked at where it doesn't
};

namespace {

constexpr char kBetween = ';';
constexpr const char* kNoText = "?"; // where a line would begin with nothing
constexpr std::string_view kNoName = "Unnamed";
constexpr const char* kMomentHeading = "Date;Time";

void CountFirst(std::uint64_t& nCount, std::uint64_t& nFirst, std::uint64_t nLine)
{
    if (nCount++ == 0)
        nFirst = nLine;
}

// What would divide or end the clean line is replaced.
void AddText(std::string_view text, TextBuffer& out)
{
    char* p = out.Room(text.size());
    for (const char c : text)
        *p++ = c == kBetween ? ',' : static_cast<unsigned char>(c) < 0x20 ? ' ' : c;
    out.EndAt(p);
}

// Marks by which spreadsheets keep a symbol from being read as a number.
std::string_view BareSymbol(std::string_view cell)
{
    if (cell.starts_with("=\"") && cell.ends_with('"') && cell.size() > 3)
        return cell.substr(2, cell.size() - 3);
    if (cell.starts_with('\''))
        cell.remove_prefix(1);
    return cell;
}

bool IsMark(std::string_view cell)
{
    return cell.find_first_not_of("+-.,%") == std::string_view::npos;
}

} // namespace

RowMaker::RowMaker(const Recipe& recipe, IntakeAccount& account)
    : m_account(account), m_bTakes(!recipe.takes.empty()), m_bAllValues(recipe.linesOut.bNoValues),
      m_splits(recipe.cells.splits), m_sSymbol(recipe.sSymbol), m_heading(HeadingOf(recipe)),
      m_bClock(recipe.moment && recipe.moment->clock != ClockForm::None),
      m_numbers(recipe.numbers, recipe.missing)
{
    if (recipe.moment)
        m_moments.emplace(recipe, account);
    if (m_bTakes)
        PlanTakes(recipe);
    else
        PlanCells(recipe);
    SetWanted();
}

std::string_view RowMaker::CellOf(const Source& source, CellList cells) const
{
    if (source.nColumn > cells.size())
        return {};
    std::string_view cell = cells[source.nColumn - 1];
    if (source.nPiece == 0)
        return cell;
    const auto split = std::ranges::find(m_splits, source.nColumn, &Split::nColumn);
    for (std::uint32_t n = 1;; ++n) {
        const std::size_t nEnd = cell.find(split->sAt);
        if (n == source.nPiece)
            return cell.substr(0, nEnd);
        if (nEnd == std::string_view::npos)
            return {};
        cell.remove_prefix(nEnd + split->sAt.size());
    }
}

std::string_view RowMaker::TextOf(const Sources& sources, CellList cells)
{
    if (sources.size() == 1)
        return CellOf(sources.front(), cells);
    m_joined.clear();
    for (const Source& source : sources) {
        const std::string_view cell = CellOf(source, cells);
        if (!m_joined.empty() && !cell.empty())
            m_joined += ' ';
        m_joined += cell;
    }
    return m_joined;
}

bool RowMaker::MakeMoment(std::string_view text, Row& row)
{
    row.facts.nMoment = m_moments->Read(text);
    if (!row.facts.nMoment) {
        CountFirst(m_account.nBadMoments, m_account.nFirstBadMoment, row.nLine);
        AddText(text.empty() ? kNoText : text, row.out);
        return false;
    }
    row.facts.bMoment = true;
    ++m_account.nMoments;
    char* p = row.out.Room(MomentReader::kMostBytes);
    m_moments->Write(*row.facts.nMoment, p);
    row.out.EndAt(p);
    return true;
}

bool RowMaker::MakeNumber(std::string_view cell, int nScale, Row& row)
{
    ++row.nNumbers;
    char* p = row.out.Room(NumberReader::kMostBytes);
    const NumberText number = m_numbers.Read(cell, nScale, p);
    switch (number.state) {
    case NumberState::Missing:
        CountFirst(m_account.nMissing, m_account.nFirstMissing, row.nLine);
        return false;
    case NumberState::Bad:
        CountFirst(m_account.nBadNumbers, m_account.nFirstBadNumber, row.nLine);
        return false;
    case NumberState::Rewritten:
        ++m_account.nNumbers;
        break;
    case NumberState::Plain:
        break;
    }
    if (number.bRounded)
        CountFirst(m_account.nRounded, m_account.nFirstRounded, row.nLine);
    ++row.nNumbersRead;
    row.facts.bValue = true;
    row.out.EndAt(p);
    return true;
}

bool RowMaker::MakeAny(std::string_view cell, Row& row)
{
    char* p = row.out.Room(NumberReader::kMostBytes);
    const NumberText number = m_numbers.Read(cell, -1, p);
    if (number.state == NumberState::Missing && (IsMark(cell) || m_numbers.IsMissing(cell))) {
        CountFirst(m_account.nMissing, m_account.nFirstMissing, row.nLine);
        return false;
    }
    if (number.state == NumberState::Missing || number.state == NumberState::Bad) {
        AddText(cell, row.out);
        return true;
    }
    m_account.nNumbers += number.state == NumberState::Rewritten ? 1 : 0;
    row.facts.bValue = true;
    row.out.EndAt(p);
    return true;
}

bool RowMaker::MakeText(std::string_view cell, Row& row)
{
    AddText(cell, row.out);
    return !cell.empty();
}

bool RowMaker::MakeSymbol(std::string_view cell, Row& row)
{
    const std::string_view symbol = BareSymbol(cell);
    AddText(symbol.empty() ? kNoText : symbol, row.out);
    return !symbol.empty();
}

bool RowMaker::MakeCell(Kind kind, int nScale, std::string_view cell, Row& row)
{
    switch (kind) {
    case Kind::Constant:
    case Kind::Symbol:
        return MakeSymbol(cell, row);
    case Kind::Text:
        return MakeText(cell, row);
    case Kind::Number:
        return MakeNumber(cell, nScale, row);
    case Kind::Any:
        return MakeAny(cell, row);
    case Kind::Moment:
        return MakeMoment(cell, row);
    case Kind::Dropped:
        break;
    }
    return true;
}

// Adds the cell while the line goes on, and only looks at it afterwards.
void RowMaker::Step(Kind kind, int nScale, std::string_view cell, Row& row)
{
    const std::size_t nBefore = row.out.Size();
    if (row.bBegun)
        row.out.Add(kBetween);
    row.bBegun = true;
    const std::size_t nStart = row.out.Size();
    const bool bGoesOn = MakeCell(kind, nScale, cell, row);
    if (!row.bOpen || row.out.Size() == nStart)
        row.out.CutTo(nBefore);
    row.bOpen = row.bOpen && bGoesOn;
}

bool RowMaker::IsRow(const Row& row) const
{
    if (row.facts.bMoment)
        return true;
    if (m_bTakes)
        return row.nNumbers > 0 && row.nNumbers == row.nNumbersRead;
    return !m_moments && std::ranges::any_of(row.cells, [this](std::string_view cell) {
        return m_numbers.LooksLikeNumber(cell);
    });
}

void RowMaker::MakeCells(Row& row)
{
    const std::size_t nStart = row.out.Size();
    if (!m_sSymbol.empty())
        Step(Kind::Constant, -1, m_sSymbol, row);
    for (const Column& column : m_columns)
        if (column.kind != Kind::Dropped && (row.bOpen || row.bAll))
            Step(column.kind, column.nScale, TextOf(column.from, row.cells), row);
    if (!m_bTakes)
        for (std::size_t n = m_columns.size(); n < row.cells.size() && row.bOpen; ++n)
            Step(Kind::Any, -1, row.cells[n], row);
    if (row.out.Size() == nStart)
        row.out.Add(kNoText); // a blank line would be passed over
}

RowFacts RowMaker::Make(CellList cells, std::uint64_t nLine, TextBuffer& out)
{
    Row row{cells, nLine, out, {}};
    row.bAll = m_bAllValues;
    MakeCells(row);
    return row.facts;
}

RowFacts RowMaker::MakeFirst(CellList cells, std::uint64_t nLine, TextBuffer& out)
{
    Row row{cells, nLine, out, {}};
    row.bAll = true;
    MakeCells(row);
    row.facts.bRow = IsRow(row);
    return row.facts;
}

// A column without a name would shift those behind it.
void RowMaker::MakeCellHeading(CellList cells, TextBuffer& out) const
{
    bool bBegun = !m_sSymbol.empty();
    if (bBegun)
        out.Add(kSymbolHeading);
    for (std::size_t n = 0; n < cells.size(); ++n) {
        const Kind kind = n < m_columns.size() ? m_columns[n].kind : Kind::Any;
        if (kind == Kind::Dropped)
            continue;
        if (bBegun)
            out.Add(kBetween);
        bBegun = true;
        if (kind != Kind::Moment)
            AddText(cells[n].empty() ? kNoName : cells[n], out);
        else
            out.Add(m_bClock ? kMomentHeading : kDateHeading);
    }
}

void RowMaker::MakeHeading(CellList cells, TextBuffer& out) const
{
    if (!m_bTakes) {
        MakeCellHeading(cells, out);
        return;
    }
    for (std::size_t n = 0; n < m_heading.size(); ++n) {
        if (n > 0)
            out.Add(kBetween);
        AddText(m_heading[n], out);
    }
}

} // namespace tabulex::intake
