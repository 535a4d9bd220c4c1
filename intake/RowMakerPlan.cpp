// A recipe as a list of columns.

#include <algorithm>

#include "intake/Headings.h"
#include "intake/RowMaker.h"

namespace tabulex::intake {

RowMaker::Column RowMaker::ColumnOf(const Take& take, const Recipe& recipe) const
{
    Column column{Kind::Any, take.from};
    if (take.sHeading == kSymbolHeading)
        column.kind = Kind::Symbol;
    else if (IsTextHeading(take.sHeading))
        column.kind = Kind::Text;
    else if (IsNumberHeading(take.sHeading))
        column.kind = Kind::Number;
    for (const Scale& scale : recipe.scales)
        if (scale.sHeading == take.sHeading) {
            column.kind = Kind::Number;
            column.nScale = static_cast<int>(scale.nDigits);
        }
    return column;
}

// In the order of HeadingOf.
void RowMaker::PlanTakes(const Recipe& recipe)
{
    for (const Take& take : recipe.takes)
        if (take.sHeading == kSymbolHeading)
            m_columns.push_back(ColumnOf(take, recipe));
    if (recipe.moment)
        m_columns.push_back({Kind::Moment, recipe.moment->from});
    for (const Take& take : recipe.takes)
        if (take.sHeading != kSymbolHeading)
            m_columns.push_back(ColumnOf(take, recipe));
}

// As far as something is done to a column; those behind are Any.
void RowMaker::PlanCells(const Recipe& recipe)
{
    const auto at = [this](std::uint32_t nColumn) -> Column& {
        while (m_columns.size() < nColumn)
            m_columns.push_back(
                {Kind::Any, {{static_cast<std::uint32_t>(m_columns.size() + 1), 0}}});
        return m_columns[nColumn - 1];
    };
    for (const std::uint32_t nColumn : recipe.drops)
        if (nColumn <= kMostCells)
            at(nColumn).kind = Kind::Dropped;
    if (!recipe.moment)
        return;
    for (const Source& source : recipe.moment->from)
        if (source.nColumn <= kMostCells)
            at(source.nColumn).kind = Kind::Dropped;
    const std::uint32_t nFirst = recipe.moment->from.front().nColumn;
    if (nFirst <= kMostCells)
        at(nFirst) = {Kind::Moment, recipe.moment->from};
}

void RowMaker::SetWanted()
{
    m_nWanted = m_bTakes ? 1 : kMostCells;
    for (const Column& column : m_columns)
        for (const Source& source : column.from)
            m_nWanted = std::max<std::size_t>(m_nWanted, source.nColumn);
    m_nWanted = std::min(m_nWanted, kMostCells);
}

} // namespace tabulex::intake
