// Each row is held against itself and the row before, so that nothing has to be kept. A row of
// another symbol follows none. Moments are judged only where a row is a span of time, since several
// trades may share one; a gap counts within a day only, as markets close at night. A price of 0 is
// told if other rows have none: where all have it the column is simply unused.

#include "tools/tabulex/review/RowReview.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <fmt/format.h>

#include "tools/tabulex/host/Columns.h"
#include "tools/tabulex/host/Properties.h"
#include "tools/tabulex/text/Formats.h"

namespace tabulex {

using namespace IQRL_TabulexConverter;

namespace {

constexpr LONGLONG kSecond = 1000, kDay = 86'400'000;

std::vector<std::size_t> PlacesOf(const std::vector<Column>& columns, ColumnKind kind)
{
    std::vector<std::size_t> places;
    for (std::size_t i = 0; i < columns.size(); ++i)
        if (columns[i].kind == kind)
            places.push_back(i);
    return places;
}

LONGLONG StepOf(LONG nResolution, LONG nSize)
{
    if (nResolution == ResolutionSeconds)
        return nSize * kSecond;
    return nResolution == ResolutionMinutes ? nSize * 60 * kSecond : 0;
}

std::string MomentText(LONGLONG nMoment)
{
    return DateTimeText(static_cast<DATE>(nMoment) / kDay, ' ');
}

// " (12 %)"; nothing for less than one in a hundred.
std::string ShareText(ULONGLONG nPart, ULONGLONG nAll)
{
    const ULONGLONG nPercent = nPart * 100 / nAll;
    return nPercent ? fmt::format(" ({} %)", nPercent) : std::string();
}

} // namespace

RowReview::RowReview(const Host& host, const std::vector<Column>& columns)
    : m_prices(PlacesOf(columns, ColumnKind::Price)),
      m_wholes(PlacesOf(columns, ColumnKind::Whole)), m_date(PlaceOf(host, columns, TypeDate)),
      m_time(PlaceOf(host, columns, TypeTime)), m_symbol(PlaceOf(host, columns, TypeSymbol)),
      m_nColumns(columns.size())
{
    for (unsigned i = 0; i < m_bar.size(); ++i)
        m_bar[i] = PlaceOf(host, columns, TypeOpen + i);
    const LONG nResolution = Get(host.Records(), &IRecordParser::get_Resolution);
    m_bMoments = nResolution >= ResolutionSeconds;
    m_nStep = StepOf(nResolution, Get(host.Records(), &IRecordParser::get_ResolutionSize));
}

void RowReview::Take(const VARIANT* cells, ULONGLONG nRows)
{
    for (ULONGLONG i = 0; i < nRows; ++i, cells += m_nColumns)
        TakeRow(cells);
}

void RowReview::Found(What what)
{
    if (++m_findings[what].nRows == 1)
        m_findings[what].nMoment = m_nMoment;
}

void RowReview::TakeRow(const VARIANT* cells)
{
    ++m_nRows;
    TakeMoment(cells);
    TakeBar(cells);
    TakePrices(cells);
    TakeNumbers(cells);
}

// ---- moments

bool RowReview::IsOtherSymbol(const VARIANT* cells)
{
    if (m_symbol == kNoPlace || cells[m_symbol].vt != VT_BSTR)
        return false;
    std::string symbol = ToUtf8(TextOf(cells[m_symbol].bstrVal));
    if (symbol == m_sSymbol)
        return false;
    m_sSymbol = std::move(symbol);
    return true;
}

void RowReview::TakeMoment(const VARIANT* cells)
{
    const LONGLONG nBefore = m_nMoment;
    const LONGLONG nDay = m_date == kNoPlace ? 0 : static_cast<USHORT>(cells[m_date].iVal);
    m_nMoment = nDay * kDay + (m_time == kNoPlace ? 0 : cells[m_time].lVal);
    if (IsOtherSymbol(cells) || nBefore < 0 || !m_bMoments)
        return;
    const LONGLONG nSince = m_nMoment - nBefore;
    if (nSince == 0)
        Found(Twice);
    else if (m_nStep > 0 && nSince % m_nStep != 0)
        Found(NoStep);
    else if (m_nStep > 0 && nSince > m_nStep && m_nMoment / kDay == nBefore / kDay)
        Found(Gap);
}

// ---- values

void RowReview::TakeBar(const VARIANT* cells)
{
    if (m_bar[1] == kNoPlace || m_bar[2] == kNoPlace)
        return;
    const double high = cells[m_bar[1]].dblVal, low = cells[m_bar[2]].dblVal;
    const auto isOutside = [&](Place place) {
        return place != kNoPlace && (cells[place].dblVal > high || cells[place].dblVal < low);
    };
    if (high < low || isOutside(m_bar[0]) || isOutside(m_bar[3]))
        Found(ImpossibleBar);
}

void RowReview::TakePrices(const VARIANT* cells)
{
    const auto isZero = [&](Place place) { return cells[place].dblVal == 0; };
    if (std::ranges::any_of(m_prices, isZero))
        Found(ZeroPrice);
}

void RowReview::TakeNumbers(const VARIANT* cells)
{
    using Limits = std::numeric_limits<LONGLONG>;
    for (const Place place : m_prices)
        if (!std::isfinite(cells[place].dblVal))
            Found(NoNumber);
    for (const Place place : m_wholes)
        if (cells[place].llVal == Limits::max() || cells[place].llVal == Limits::min())
            Found(Saturated);
}

// ---- the end

void RowReview::Say(What what, std::string_view code, std::string_view text,
                    Warnings& warnings) const
{
    const Finding& finding = m_findings[what];
    if (finding.nRows > 0)
        warnings.Add(code, fmt::format("{} of {}{}: {}; the first is that of {}",
                                       WithThousands(finding.nRows), Counted(m_nRows, "row"),
                                       ShareText(finding.nRows, m_nRows), text,
                                       MomentText(finding.nMoment)));
}

void RowReview::End(Warnings& warnings, Console& console, const std::string& file) const
{
    Say(ImpossibleBar, "impossible-bar",
        "the high is below the low, or open or close lie outside of them. See with 'tabulex "
        "inspect' whether each column is what it was taken for",
        warnings);
    if (m_findings[ZeroPrice].nRows < m_nRows)
        Say(ZeroPrice, "zero-price", "a price is 0 where others aren't", warnings);
    Say(NoNumber, "price-too-large", "a price is too large for a number and is left empty",
        warnings);
    Say(Saturated, "whole-too-large",
        "a whole number has more than 64 bits and was cut to the largest", warnings);
    Say(Twice, "moment-twice", "the moment is that of the row before", warnings);
    Say(NoStep, "no-step",
        "the time since the row before is no multiple of the bars' size. See with 'tabulex "
        "inspect' what size was found, and set it by --resolution",
        warnings);
    if (const Finding& gap = m_findings[Gap]; gap.nRows > 0)
        console.Note(fmt::format("{}: {} within a day; the first ends at {}", file,
                                 Counted(gap.nRows, "gap"), MomentText(gap.nMoment)));
}

} // namespace tabulex
