// Four questions, asked in turn. Does an order fail on a cell? Do the dates run in one direction?
// Are the steps those of a market, a day or a few, where the other order gives months? And at last
// what is said beside the dates: dots, a decimal comma, a language or a heading such as dd/mm.
#include "advice/DayOrder.h"

#include <algorithm>
#include <map>
#include <set>
#include <string>

#include "advice/headings/HeadingWords.h"

namespace tabulex::advice {

namespace {

using intake::DateForm;

constexpr std::int64_t kDay = 86400000; // milliseconds
constexpr std::size_t kLeastSteps = 4;

// Words for a date where nobody writes the month first.
constexpr std::string_view kDayFirstWords =
    " datum data fecha dia jour giorno dzien tarih дата день date heure zeit uhrzeit hora godzina ";

struct OrderFacts
{
    std::size_t nRead = 0;
    std::size_t nFirstFailed = 0; // of the rows; as many as there are for none
    std::size_t nUp = 0, nDown = 0;
    std::size_t nDays = 0;     // different ones
    std::size_t nNear = 0;     // steps of at most five days between them
    std::size_t nMonthly = 0;  // of 28 to 31
    bool bSeveralADay = false; // rows
    std::set<std::int64_t> days = {};

    double Backwards() const
    {
        const double dAll = static_cast<double>(nUp + nDown);
        return dAll == 0 ? 0 : static_cast<double>(std::min(nUp, nDown)) / dAll;
    }
    double Near() const
    {
        return nDays < 2 ? 0 : static_cast<double>(nNear) / static_cast<double>(nDays - 1);
    }
};

// One walk over all rows; days are counted once each, as a day may have many rows.
OrderFacts FactsOf(const Table& table, const MomentChoice& choice)
{
    OrderFacts facts;
    facts.nFirstFailed = table.rows.size();
    std::optional<std::int64_t> last;
    for (std::size_t i = 0; i < table.rows.size(); ++i) {
        const auto moment = choice.Of(table.rows[i]);
        if (!moment) {
            facts.nFirstFailed = std::min(facts.nFirstFailed, i);
            continue;
        }
        ++facts.nRead;
        const std::int64_t nDay = *moment / kDay - (*moment % kDay < 0 ? 1 : 0);
        facts.bSeveralADay =
            facts.bSeveralADay || (last && *last / kDay == nDay && *last != *moment);
        if (last && *last / kDay != nDay)
            ++(*moment > *last ? facts.nUp : facts.nDown);
        facts.days.insert(nDay);
        last = moment;
    }
    facts.nDays = facts.days.size();
    std::optional<std::int64_t> before;
    for (const std::int64_t nDay : facts.days) {
        if (before) {
            facts.nNear += nDay - *before <= 5 ? 1 : 0;
            facts.nMonthly += nDay - *before >= 28 && nDay - *before <= 31 ? 1 : 0;
        }
        before = nDay;
    }
    return facts;
}

// The dates of one order run on, and those of the other don't.
bool RunsBetter(const OrderFacts& a, const OrderFacts& b)
{
    return a.nDays >= 3 && a.Backwards() <= 0.02 && b.Backwards() >= 0.1;
}

// Steps of days against leaps of months. A file of months is one in which every step is a month.
bool StepsBetter(const OrderFacts& a, const OrderFacts& b)
{
    if (a.nDays <= kLeastSteps || a.Near() < 0.8 || b.Near() > 0.4)
        return false;
    const bool bMonths = b.nDays > 1 && b.nMonthly == b.nDays - 1;
    return !bMonths || a.bSeveralADay;
}

// An order of two digits a year that gives one day a month or year only.
bool IsBeaten(const OrderFacts& a, const OrderFacts& by)
{
    return by.nRead > a.nRead || RunsBetter(by, a) || StepsBetter(by, a);
}

std::string ReasonAgainst(const OrderFacts& winner, const OrderFacts& loser)
{
    if (winner.nRead > loser.nRead)
        return "the other order has no such day";
    if (RunsBetter(winner, loser))
        return "in the other order the dates run to and fro";
    return "in the other order the dates leap from month to month";
}

// What is said beside the dates. None of it is proof, but nobody is known who writes otherwise.
bool SaysDayFirst(const Table& table, const MomentChoice& choice, std::string& reason)
{
    const std::string_view cell = table.columns[choice.columns.front()].sFirst;
    if (cell.substr(0, 6).find('.') != std::string_view::npos) {
        reason = "with dots the day stands first";
        return true;
    }
    if (table.style.cDecimal == ',') {
        reason = "where a comma is the decimal mark the day stands first";
        return true;
    }
    for (const Column& column : table.columns)
        for (const std::string& token : HeadingTokens(column.sHeading))
            if (token != "date" && kDayFirstWords.find(' ' + token + ' ') != std::string::npos &&
                (token != "data" || table.columns.size() > 2)) {
                reason = "the headings are in a language that writes the day first";
                return true;
            }
    return false;
}

// "Date (dd/mm/yyyy)": the order of the letters.
std::optional<DateForm> OrderInHeading(const Table& table, const MomentChoice& choice)
{
    std::string small = table.columns[choice.columns.front()].sHeading;
    for (char& c : small)
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c;
    const std::size_t nDay = small.find("dd"), nMonth = small.find("mm"), nYear = small.find("yy");
    if (nDay == std::string::npos || nMonth == std::string::npos || nYear == std::string::npos)
        return std::nullopt;
    return nYear < nMonth  ? DateForm::YearMonthDay
           : nDay < nMonth ? DateForm::DayMonthYear
                           : DateForm::MonthDayYear;
}

void KeepOnly(MomentColumns& found, DateForm date, const std::string& reason)
{
    const auto at =
        std::ranges::find(found.choices, date, [](const MomentChoice& c) { return c.form.date; });
    if (at == found.choices.end())
        return;
    MomentChoice kept = *at;
    kept.sReason = reason;
    found.choices = {kept};
}

} // namespace

void DecideDayOrder(const Table& table, MomentColumns& found)
{
    if (found.choices.size() < 2)
        return;
    std::vector<OrderFacts> facts;
    for (const MomentChoice& choice : found.choices)
        facts.push_back(FactsOf(table, choice));
    std::vector<MomentChoice> kept;
    std::string reason;
    for (std::size_t i = 0; i < facts.size(); ++i) {
        const auto by = std::ranges::find_if(
            facts, [&](const OrderFacts& other) { return IsBeaten(facts[i], other); });
        if (by == facts.end()) {
            kept.push_back(found.choices[i]);
            continue;
        }
        reason = ReasonAgainst(*by, facts[i]);
        if (by->nRead > facts[i].nRead)
            found.nTellingRow = facts[i].nFirstFailed;
    }
    if (kept.empty())
        return;
    found.choices = kept;
    if (kept.size() == 1) {
        found.choices.front().sReason = reason;
        return;
    }
    if (const auto order = OrderInHeading(table, kept.front()))
        KeepOnly(found, *order, "its heading says so");
    else if (SaysDayFirst(table, kept.front(), reason))
        KeepOnly(found, DateForm::DayMonthYear, reason);
}

} // namespace tabulex::advice
