#include "tools/tabulex/run/RangeEnd.h"

#include <cmath>

#include "tools/tabulex/host/Columns.h"

namespace tabulex {

using namespace IQRL_TabulexConverter;

namespace {

constexpr LONGLONG kDayMilliseconds = 86'400'000;

} // namespace

RangeEnd::RangeEnd(const Host& host, const std::vector<Column>& columns, DATE dtTo)
    : m_date(PlaceOf(host, columns, TypeDate)), m_time(PlaceOf(host, columns, TypeTime)),
      m_nColumns(columns.size()),
      m_nLast(std::llround(dtTo * static_cast<double>(kDayMilliseconds)))
{}

bool RangeEnd::IsBehind(const VARIANT* cells) const
{
    const LONGLONG nDay = m_date == kNoPlace ? 0 : static_cast<USHORT>(cells[m_date].iVal);
    const LONGLONG nTime = m_time == kNoPlace ? 0 : cells[m_time].lVal;
    return nDay * kDayMilliseconds + nTime > m_nLast;
}

RangeEnd::Rows RangeEnd::Of(const VARIANT* cells, ULONGLONG nRows)
{
    m_kept.clear();
    for (ULONGLONG i = 0; i < nRows; ++i, cells += m_nColumns)
        if (IsBehind(cells))
            ++m_nLeftOut;
        else
            m_kept.insert(m_kept.end(), cells, cells + m_nColumns);
    return {m_kept.data(), m_kept.size() / m_nColumns};
}

} // namespace tabulex
