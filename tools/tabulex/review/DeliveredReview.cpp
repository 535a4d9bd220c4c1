// Another order of dates is ruled out by one day that it can't read, or by going back where the
// order in use goes on. The latter counts only in files without symbols; with them dates begin anew
// with each. If nothing rules it out and some day would be another one, the order is open. If one
// or two days alone rule it out, among at least ten times as many, they may be slips, which is said
// too. Only days not seen before are judged. An unlikely day is one before 1900 or after tomorrow:
// today's rows of a market ahead of UTC may be of tomorrow.

#include "tools/tabulex/review/DeliveredReview.h"

#include <algorithm>
#include <chrono>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "tools/tabulex/host/Columns.h"
#include "tools/tabulex/host/Properties.h"
#include "tools/tabulex/review/RecordFinder.h"
#include "tools/tabulex/text/Formats.h"

namespace tabulex {

namespace {

constexpr LONG kFirstLikelyDay = 2;     // 1900-01-01
constexpr LONG kUnixDay = 25569;        // of a DATE
constexpr std::size_t kFewDays = 2;     // that decide between two orders
constexpr std::size_t kManyPerDay = 10; // days of a file for each that decides, if they are few

LONG Today()
{
    using namespace std::chrono;
    return static_cast<LONG>(floor<days>(system_clock::now()).time_since_epoch().count()) +
           kUnixDay;
}

std::string DayText(LONG nDay)
{
    DateText dates;
    return std::string(dates.Of(nDay));
}

bool IsOpen(const DateOrderReview::Evidence& evidence)
{
    return evidence.nDeciding == 0 && evidence.nBack == 0 && evidence.firstOpen;
}

// The days that decide are so few that a slip of the file may have made them.
bool IsByFew(const DateOrderReview::Evidence& evidence)
{
    return evidence.nDeciding > 0 && evidence.nDeciding <= kFewDays && evidence.nBack == 0 &&
           evidence.nDays >= evidence.nDeciding * kManyPerDay;
}

std::string PlaceText(const RecordFinder::Found& found)
{
    return fmt::format(" (line {}: \"{}\")", found.nLine, found.sCell);
}

} // namespace

// ---- DateOrderReview

DateOrderReview::DateOrderReview(DateOrder order, bool bRunsOn)
    : m_order(std::move(order)), m_bRunsOn(bRunsOn)
{
    for (const std::string& sTemplate : m_order.Others())
        m_others.push_back({Evidence{sTemplate, 0, 0, 0, {}, {}}, {}});
}

void DateOrderReview::TakeNewDay(const Place& place)
{
    const auto nBit = static_cast<std::size_t>(place.nDay) & 0xFFFF;
    const bool bNew = !m_seen[nBit];
    m_seen.set(nBit);
    m_nDays += bNew;
    for (std::size_t n = 0; n < m_others.size(); ++n)
        Judge(n, place, bNew);
    m_nBefore = place.nDay;
}

// An order in which days go back while they go on in the one in use isn't that of a file whose
// days run on.
void DateOrderReview::Judge(std::size_t n, const Place& place, bool bNew)
{
    Other& other = m_others[n];
    Evidence& evidence = other.evidence;
    const auto nDay = m_order.Reread(n, place.nDay);
    const bool bGoesBack =
        m_bRunsOn && nDay && other.nBefore && place.nDay > m_nBefore && *nDay < *other.nBefore;
    if (nDay)
        other.nBefore = nDay;
    if (!bNew)
        return;
    evidence.nBack += bGoesBack;
    if (!nDay) {
        ++evidence.nDeciding;
        if (!evidence.firstClear)
            evidence.firstClear = place;
    } else if (*nDay != place.nDay && !evidence.firstOpen) {
        evidence.firstOpen = place;
    }
}

std::vector<DateOrderReview::Evidence> DateOrderReview::Result() const
{
    std::vector<Evidence> result;
    for (const Other& other : m_others) {
        result.push_back(other.evidence);
        result.back().nDays = m_nDays;
    }
    return result;
}

// ---- DeliveredReview

DeliveredReview::DeliveredReview(const Host& host, const Settings& settings)
    : m_host(host), m_nFirst(settings.portion ? settings.portion->nStart : 0), m_nToday(Today())
{
    const auto columns = DeliveredColumns(host);
    const auto date = std::ranges::find(columns, ColumnKind::Date, &Column::kind);
    if (date == columns.end() || host.Records().GetFieldIndex(TypeDate, &m_nDateField) != S_OK)
        return;
    m_nColumns = columns.size();
    m_nDateCell = static_cast<std::size_t>(date - columns.begin());
    Bstr text;
    host.Records().GetFieldTemplate(text.put(), m_nDateField);
    m_sTemplate = ToUtf8(text.view());
    m_bShortYear = HasShortYear(m_sTemplate, RecordFinder(host, nullptr).CellAt(0, m_nDateField));
    DateOrder order(m_sTemplate, m_bShortYear);
    const bool bGiven = std::ranges::any_of(settings.columns, [&](const ColumnSetting& column) {
        return column.nField == m_nDateField && !column.sTemplate.empty();
    });
    if (!bGiven && !order.Others().empty())
        m_order.emplace(std::move(order), !host.HasColumn(TypeSymbol));
}

void DeliveredReview::Take(const VARIANT* cells, ULONGLONG nRows, ULONGLONG nBatchStart)
{
    if (m_nColumns == 0)
        return;
    const VARIANT* pCell = cells + m_nDateCell;
    for (ULONGLONG nRow = 0; nRow < nRows; ++nRow, pCell += m_nColumns) {
        const LONG nDay = static_cast<USHORT>(pCell->iVal);
        if (nDay < kFirstLikelyDay || nDay > m_nToday || nDay != m_nBefore)
            TakeDay(nDay, {m_nFirst + nBatchStart, nRow, nDay});
    }
}

void DeliveredReview::TakeDay(LONG nDay, const DateOrderReview::Place& place)
{
    if (m_order && nDay != m_nBefore)
        m_order->TakeNewDay(place);
    m_nBefore = nDay;
    const bool bEarly = nDay < kFirstLikelyDay;
    if (!bEarly && nDay <= m_nToday + 1)
        return;
    Days& days = bEarly ? m_early : m_late;
    ++days.nRows;
    if (!days.first)
        days.first = place;
}

void DeliveredReview::End(LineMap& lines, Warnings& warnings)
{
    const auto orders = m_order ? m_order->Result() : std::vector<DateOrderReview::Evidence>();
    std::vector<std::size_t> open;
    for (std::size_t n = 0; n < orders.size(); ++n) {
        if (IsOpen(orders[n]))
            open.push_back(n);
        else if (IsByFew(orders[n]))
            WarnOfFewDays(orders[n], lines, warnings);
    }
    if (!open.empty())
        WarnOfOpenOrder(orders, open, lines, warnings);
    WarnOfDays(m_early, "before 1900", lines, warnings);
    WarnOfDays(m_late, "in the future", lines, warnings);
}

std::string DeliveredReview::SettingOf(const std::string& sTemplate) const
{
    const char* pszQuote = sTemplate.find(' ') == std::string::npos ? "'" : "\"";
    return fmt::format("--column {0}{1}=Date:{2}{0}", pszQuote, m_nDateField + 1, sTemplate);
}

void DeliveredReview::WarnOfOpenOrder(const std::vector<DateOrderReview::Evidence>& orders,
                                      const std::vector<std::size_t>& open, LineMap& lines,
                                      Warnings& warnings) const
{
    const DateOrderReview::Place& place = *orders[open.front()].firstOpen;
    const auto at = RecordFinder(m_host, &lines).Find(place, m_nDateField);
    std::vector<std::string> others;
    std::vector<std::string> settings;
    for (const std::size_t n : open) {
        const LONG nDay = m_order->Order().Reread(n, place.nDay).value_or(place.nDay);
        others.push_back(fmt::format("{} ({})", orders[n].sTemplate, DayText(nDay)));
        settings.push_back(SettingOf(orders[n].sTemplate));
    }
    warnings.Add("date-order-open",
                 fmt::format("no row decides how dates are written: {} was read by {} as {}, but "
                             "all rows can also be read by {}; if that is meant, give {}",
                             at ? fmt::format("\"{}\"", at->sCell) : "a date", m_sTemplate,
                             DayText(place.nDay), fmt::join(others, " or by "),
                             fmt::join(settings, " or ")),
                 at ? std::optional(at->nLine) : std::nullopt);
}

void DeliveredReview::WarnOfFewDays(const DateOrderReview::Evidence& evidence, LineMap& lines,
                                    Warnings& warnings) const
{
    const auto at = RecordFinder(m_host, &lines).Find(*evidence.firstClear, m_nDateField);
    warnings.Add("date-order-by-few",
                 fmt::format("only {} of {} days {} that dates are read by {} and not by {}{}; if "
                             "that is wrong, give {}",
                             evidence.nDeciding, evidence.nDays,
                             evidence.nDeciding == 1 ? "shows" : "show", m_sTemplate,
                             evidence.sTemplate, at ? PlaceText(*at) : "",
                             SettingOf(evidence.sTemplate)),
                 at ? std::optional(at->nLine) : std::nullopt);
}

void DeliveredReview::WarnOfDays(const Days& days, std::string_view when, LineMap& lines,
                                 Warnings& warnings) const
{
    if (!days.first)
        return;
    const auto at = RecordFinder(m_host, &lines).Find(*days.first, m_nDateField);
    warnings.Add("date-unlikely",
                 fmt::format("{} {} {}, first {}{}{}; if dates are written otherwise, give "
                             "--column {}=Date:TEMPLATE",
                             WithThousands(days.nRows), days.nRows == 1 ? "row is" : "rows are",
                             when, DayText(days.first->nDay), at ? PlaceText(*at) : "",
                             m_bShortYear ? ", and years are written in two digits" : "",
                             m_nDateField + 1),
                 at ? std::optional(at->nLine) : std::nullopt);
}

} // namespace tabulex
