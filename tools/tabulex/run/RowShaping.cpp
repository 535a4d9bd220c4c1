// The component's multipliers are taken out before the columns are asked for, so that the rows of
// the run come unscaled; they are scaled in decimals, which loses fractions of whole numbers and
// what doesn't fit, and nothing else. What was lost is counted by rows, and an overflow is told
// ahead of a cut fraction, being plainly wrong.

#include "tools/tabulex/run/RowShaping.h"

#include <algorithm>

#include <fmt/format.h>

#include "tools/tabulex/host/Columns.h"
#include "tools/tabulex/host/Properties.h"

namespace tabulex {

namespace {

// In the order of the delivered columns.
std::vector<int> ExponentsOf(const Host& host, const Multipliers& multipliers)
{
    std::vector<int> exponents;
    const ULONG nCount = Get(host.Records(), &IRecordParser::get_FieldCount);
    for (ULONG n = 0; n < nCount; ++n)
        if (const unsigned uiType = host.ColumnType(n); uiType != kNoType)
            exponents.push_back(multipliers.ExponentOf(uiType));
    return exponents;
}

int DecimalsOf(const std::string& column, const std::vector<intake::Scale>& scales)
{
    const auto scale = std::ranges::find(scales, column, &intake::Scale::sHeading);
    return scale == scales.end() ? 0 : static_cast<int>(scale->nDigits);
}

// In the same order.
std::vector<int> DecimalsOf(const Host& host, const std::vector<intake::Scale>& scales)
{
    std::vector<int> decimals;
    for (const Column& column : DeliveredColumns(host))
        decimals.push_back(DecimalsOf(column.sName, scales));
    return decimals;
}

std::optional<std::string> TextOfName(const std::optional<NameColumn>& name)
{
    return name ? std::optional(name->sText) : std::nullopt;
}

} // namespace

RowShaping::RowShaping(const Host& host, const std::optional<NameColumn>& name,
                       const std::vector<intake::Scale>& scales)
    : m_multipliers(host), m_columns(DeliveredColumns(host)),
      m_rows(ExponentsOf(host, m_multipliers), DecimalsOf(host, scales), TextOfName(name))
{
    for (Column& column : m_columns)
        if (column.kind == ColumnKind::Whole && DecimalsOf(column.sName, scales) != 0)
            column.kind = ColumnKind::Price;
    if (name)
        m_columns.insert(m_columns.begin(), {name->sColumn, ColumnKind::Symbol});
}

std::string RowShaping::VolumeLoss() const
{
    if (m_rows.OverflowRows() > 0)
        return fmt::format("{} rows have a volume that is too large for the multiplier {}, and was "
                           "cut to the largest number; use a smaller one",
                           m_rows.OverflowRows(), m_multipliers.VolumeName());
    if (m_rows.CutRows() > 0)
        return fmt::format("{} rows lost a fraction of a volume to the multiplier {}; use a larger "
                           "one to keep it",
                           m_rows.CutRows(), m_multipliers.VolumeName());
    return {};
}

} // namespace tabulex
