// A statement costs as much to begin and to end as a row does, so most rows go in by one that takes
// a group of them. Those of a call that are left over go in one by one: after each call all its
// rows are in the table.

#include "tools/tabulex/output/SqliteInsertion.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "tools/tabulex/output/CellText.h"

namespace tabulex {

namespace {

// Rows that go in together; twice as many gain little.
constexpr std::size_t kGroup = 16;
// Parameters that every version of SQLite takes.
constexpr std::size_t kMostParameters = 999;

std::string InsertionOf(const std::string& table, const std::vector<Column>& columns,
                        std::size_t nRows)
{
    std::vector<std::string> names(columns.size());
    std::ranges::transform(columns, names.begin(),
                           [](const Column& column) { return QuotedName(column.sName); });
    const std::string row =
        fmt::format("({})", fmt::join(std::vector<std::string>(columns.size(), "?"), ", "));
    return fmt::format("INSERT INTO {} ({}) VALUES {}", QuotedName(table), fmt::join(names, ", "),
                       fmt::join(std::vector<std::string>(nRows, row), ", "));
}

} // namespace

void SqliteInsertion::Prepare(SqliteDatabase& database, const std::string& table,
                              const std::vector<Column>& columns)
{
    m_kinds.resize(columns.size());
    std::ranges::transform(columns, m_kinds.begin(), &Column::kind);
    m_nGroup = std::clamp<std::size_t>(kMostParameters / columns.size(), 1, kGroup);
    m_texts.resize(m_nGroup * columns.size());
    m_single = database.Prepare(InsertionOf(table, columns, 1));
    m_group = database.Prepare(InsertionOf(table, columns, m_nGroup));
}

bool SqliteInsertion::Insert(const VARIANT* cells, ULONGLONG nRows)
{
    const std::size_t nRow = m_kinds.size();
    for (; nRows >= m_nGroup; nRows -= m_nGroup, cells += m_texts.size())
        if (!Run(m_group, cells, m_texts.size()))
            return false;
    for (; nRows > 0; --nRows, cells += nRow)
        if (!Run(m_single, cells, nRow))
            return false;
    return true;
}

bool SqliteInsertion::Run(SqliteStatement& statement, const VARIANT* cells, std::size_t nCells)
{
    for (std::size_t n = 0; n < nCells; ++n)
        Bind(statement, n, cells[n]);
    return statement.Run();
}

// Each cell has a text of its own, as all of them have to stay until the statement has run.
void SqliteInsertion::Bind(SqliteStatement& statement, std::size_t nCell, const VARIANT& cell)
{
    const int nParameter = static_cast<int>(nCell) + 1;
    switch (cell.vt) {
    case VT_R8:
        if (std::isfinite(cell.dblVal))
            statement.Bind(nParameter, cell.dblVal);
        else
            statement.BindNull(nParameter);
        break;
    case VT_I8:
        statement.Bind(nParameter, sqlite3_int64(cell.llVal));
        break;
    case VT_EMPTY:
        statement.BindNull(nParameter);
        break;
    default:
        m_texts[nCell].clear();
        AppendCell(m_texts[nCell], m_kinds[nCell % m_kinds.size()], cell, m_dates);
        statement.Bind(nParameter, m_texts[nCell]);
    }
}

void SqliteInsertion::Release()
{
    m_single = {};
    m_group = {};
}

} // namespace tabulex
