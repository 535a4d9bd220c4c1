// Each row is held against itself and the row before, so that nothing has to be kept. A row of
// another symbol follows none. Moments are judged only where a row is a span of time, since several
// trades may share one; a gap counts within a day only, as markets close at night. A price of 0 is
// told if other rows have none: where all have it the column is simply unused. Nearly all rows have
// values of which there is nothing to tell. A block of rows shows that by its bits, which are
// looked at without a branch; only the rows of another block are looked at one by one.

#include "tools/tabulex/review/RowReview.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <iterator>
#include <limits>

#include <fmt/format.h>

#include "tools/tabulex/host/Columns.h"
#include "tools/tabulex/host/Properties.h"
#include "tools/tabulex/text/Formats.h"

namespace tabulex {

using namespace IQRL_TabulexConverter;

namespace {

constexpr LONGLONG kSecond = 1000, kDay = 86'400'000;
constexpr ULONGLONG kBlockRows = 64;
constexpr auto kInfinite = std::bit_cast<ULONGLONG>(std::numeric_limits<double>::infinity());
constexpr ULONGLONG kMostWhole = std::numeric_limits<LONGLONG>::max();

ULONGLONG BitsOf(const VARIANT& number)
{
    return static_cast<ULONGLONG>(number.llVal);
}

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
    return nResolution == ResolutionMinutes ? LONGLONG{nSize} * 60 * kSecond : 0;
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
    m_bBars = m_bar[1] != kNoPlace && m_bar[2] != kNoPlace;
    std::ranges::copy_if(m_prices, std::back_inserter(m_others), [this](Place place) {
        return !m_bBars || std::ranges::find(m_bar, place) == m_bar.end();
    });
    const LONG nResolution = Get(host.Records(), &IRecordParser::get_Resolution);
    m_bMoments = nResolution >= ResolutionSeconds;
    m_nStep = StepOf(nResolution, Get(host.Records(), &IRecordParser::get_ResolutionSize));
}

// Values stay near while a block is gone through column by column.
void RowReview::Take(const VARIANT* cells, ULONGLONG nRows)
{
    m_nRows += nRows;
    while (nRows > 0) {
        const ULONGLONG nBlock = std::min(nRows, kBlockRows);
        TakeMoments(cells, nBlock);
        if (!AreUsual(cells, nBlock))
            for (ULONGLONG i = 0; i < nBlock; ++i) {
                const VARIANT* row = cells + i * m_nColumns;
                TakeBar(row);
                TakePrices(row);
                TakeNumbers(row);
            }
        cells += nBlock * m_nColumns;
        nRows -= nBlock;
    }
}

void RowReview::Found(What what, LONGLONG nMoment)
{
    if (++m_findings[what].nRows == 1)
        m_findings[what].nMoment = nMoment;
}

// ---- moments

LONGLONG RowReview::MomentOf(const VARIANT* cells) const
{
    const LONGLONG nDay = m_date == kNoPlace ? 0 : static_cast<USHORT>(cells[m_date].iVal);
    return nDay * kDay + (m_time == kNoPlace ? 0 : cells[m_time].lVal);
}

bool RowReview::HasOtherSymbol(const VARIANT* cells) const
{
    return m_symbol != kNoPlace && cells[m_symbol].vt == VT_BSTR &&
           TextOf(cells[m_symbol].bstrVal) != m_sSymbol;
}

void RowReview::TakeMoments(const VARIANT* cells, ULONGLONG nRows)
{
    for (ULONGLONG i = 0; i < nRows; ++i, cells += m_nColumns) {
        const LONGLONG nMoment = MomentOf(cells);
        if (HasOtherSymbol(cells))
            m_sSymbol = TextOf(cells[m_symbol].bstrVal);
        else if (m_bMoments && m_nMoment >= 0 && nMoment != m_nMoment + m_nStep)
            TakeMoment(nMoment);
        m_nMoment = nMoment;
    }
}

// One that doesn't follow by a step, if there are steps.
void RowReview::TakeMoment(LONGLONG nMoment)
{
    const LONGLONG nSince = nMoment - m_nMoment;
    if (nSince == 0)
        Found(Twice, nMoment);
    else if (m_nStep > 0 && nSince % m_nStep != 0)
        Found(NoStep, nMoment);
    else if (m_nStep > 0 && nSince > m_nStep && nMoment / kDay == m_nMoment / kDay)
        Found(Gap, nMoment);
}

// ---- usual values

// False where there may be something to tell of a value.
bool RowReview::AreUsual(const VARIANT* cells, ULONGLONG nRows) const
{
    bool bUsual = !m_bBars || AreUsualBars(cells, nRows);
    const auto takeAll = [&](const std::vector<Place>& places, auto isUsual) {
        for (const Place place : places)
            for (ULONGLONG i = 0; i < nRows; ++i)
                bUsual &= isUsual(BitsOf(cells[place + i * m_nColumns]));
    };
    takeAll(m_others, [](ULONGLONG bits) { return bits * 2 - 1 < kInfinite * 2 - 1; });
    takeAll(m_wholes, [](ULONGLONG bits) { return bits - kMostWhole > 1; }); // nor the least
    return bUsual;
}

// Bits of numbers that aren't negative are in the order of the numbers; a difference below 0 has
// the highest bit.
bool RowReview::AreUsualBars(const VARIANT* cells, ULONGLONG nRows) const
{
    const auto [nOpen, nHigh, nLow, nClose] = m_bar;
    ULONGLONG odd = 0;
    for (ULONGLONG i = 0; i < nRows; ++i, cells += m_nColumns) {
        const ULONGLONG high = BitsOf(cells[nHigh]), low = BitsOf(cells[nLow]);
        const ULONGLONG open = nOpen == kNoPlace ? low : BitsOf(cells[nOpen]);
        const ULONGLONG close = nClose == kNoPlace ? low : BitsOf(cells[nClose]);
        odd |= open | high | low | close | (low - 1) | (open - low) | (high - open) |
               (close - low) | (high - close) | (kInfinite - 1 - high);
    }
    return odd >> 63 == 0;
}

// ---- values

void RowReview::TakeBar(const VARIANT* cells)
{
    if (!m_bBars)
        return;
    const double high = cells[m_bar[1]].dblVal, low = cells[m_bar[2]].dblVal;
    const auto isOutside = [&](Place place) {
        return place != kNoPlace && (cells[place].dblVal > high || cells[place].dblVal < low);
    };
    if (high < low || isOutside(m_bar[0]) || isOutside(m_bar[3]))
        Found(ImpossibleBar, MomentOf(cells));
}

void RowReview::TakePrices(const VARIANT* cells)
{
    const auto isZero = [&](Place place) { return cells[place].dblVal == 0; };
    if (std::ranges::any_of(m_prices, isZero))
        Found(ZeroPrice, MomentOf(cells));
}

void RowReview::TakeNumbers(const VARIANT* cells)
{
    using Limits = std::numeric_limits<LONGLONG>;
    for (const Place place : m_prices)
        if (!std::isfinite(cells[place].dblVal))
            Found(NoNumber, MomentOf(cells));
    for (const Place place : m_wholes)
        if (cells[place].llVal == Limits::max() || cells[place].llVal == Limits::min())
            Found(Saturated, MomentOf(cells));
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
