// Each column that can be read as dates in nine of ten cells gets points: for its heading, for
// signs between the parts, and for its place. Digits alone are weak, as volumes look alike, so they
// must run in one direction. A date without a time then looks for a column of times, and three
// columns of year, month and day stand for a date where no other is found.
#include "advice/MomentColumns.h"

#include <algorithm>

#include "advice/DayOrder.h"
#include "advice/headings/HeadingWords.h"
#include "advice/headings/Utf8.h"

namespace tabulex::advice {

namespace {

using intake::ClockForm;
using intake::DateForm;

constexpr int kLeastPoints = 3;
constexpr std::size_t kNone = ~std::size_t(0);

bool ReadsColumn(const Column& column, std::size_t nRead)
{
    return nRead > 0 && nRead * 10 >= column.nCells * 9;
}

bool HasSigns(std::string_view cell)
{
    return cell.find_first_not_of("0123456789") != std::string_view::npos;
}

// The forms with a date that read the column, those that read most.
std::vector<MomentForm> DateFormsOf(const Column& column)
{
    std::size_t nMost = 0;
    for (const FormCount& count : column.forms)
        if (count.form.date != DateForm::None)
            nMost = std::max(nMost, count.nRead);
    std::vector<MomentForm> forms;
    for (const FormCount& count : column.forms)
        if (count.form.date != DateForm::None && count.nRead == nMost && ReadsColumn(column, nMost))
            forms.push_back(count.form);
    return forms;
}

int HeadingPoints(const Table& table, const Column& column)
{
    if (!table.bHeading || column.sHeading.empty())
        return 1;
    switch (MeaningOf(column.sHeading)) {
    case Meaning::Date:
    case Meaning::Moment:
        return 5;
    case Meaning::Time:
        return 3;
    case Meaning::Unknown:
        return 0;
    default:
        return HasSigns(column.sFirst) && !column.IsNumeric() ? -1 : -8;
    }
}

// How much of the rows goes on in the direction that most go.
double ShareInOrder(const Table& table, const MomentChoice& choice)
{
    std::size_t nUp = 0, nDown = 0;
    std::optional<std::int64_t> last;
    for (const TableRow& row : table.rows) {
        const auto moment = choice.Of(row);
        if (moment && last) {
            nUp += *moment > *last ? 1 : 0;
            nDown += *moment < *last ? 1 : 0;
        }
        last = moment ? moment : last;
    }
    const double dAll = static_cast<double>(nUp + nDown);
    return dAll == 0 ? 1 : static_cast<double>(std::max(nUp, nDown)) / dAll;
}

int DatePoints(const Table& table, std::size_t nColumn, const MomentForm& form)
{
    const Column& column = table.columns[nColumn];
    int nPoints = HeadingPoints(table, column) + (nColumn == 0 ? 1 : 0);
    if (HasSigns(column.sFirst) && !column.IsNumeric())
        return nPoints + 4 + (column.nCells * 2 >= table.rows.size() ? 1 : 0);
    const bool bOrdered = ShareInOrder(table, {{nColumn}, form, {}}) >= 0.9;
    nPoints += bOrdered ? 2 : -2;
    return nPoints + (column.sFirst.size() == 8 ? 2 : column.sFirst.size() == 6 ? -1 : 1);
}

struct DateColumn
{
    std::size_t nColumn = kNone;
    std::vector<MomentForm> forms;
    int nPoints = kLeastPoints - 1;
};

DateColumn BestDate(const Table& table)
{
    DateColumn best;
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        const auto forms = DateFormsOf(table.columns[i]);
        if (forms.empty())
            continue;
        const int nPoints = DatePoints(table, i, forms.front());
        if (nPoints > best.nPoints)
            best = {i, forms, nPoints};
    }
    return best;
}

// Year, month and day in three columns, by their headings.
std::vector<std::size_t> DateParts(const Table& table)
{
    constexpr std::string_view kWords[3] = {
        " year yr yyyy jahr annee ano anno rok jaar год yil 年 ",
        " month mon mm monat mois mes mese miesiac maand ay 月 ",
        " day dd dom dayofmonth tag jour dia giorno dzien dag gun 日 "};
    constexpr double kLimits[3][2] = {{1800, 2100}, {1, 12}, {1, 31}};
    std::vector<std::size_t> parts;
    for (std::size_t nPart = 0; nPart < 3; ++nPart)
        for (std::size_t i = 0; i < table.columns.size(); ++i) {
            const Column& column = table.columns[i];
            const auto tokens = HeadingTokens(column.sHeading);
            if (tokens.size() == 1 && column.IsWhole() && column.dLeast >= kLimits[nPart][0] &&
                column.dMost <= kLimits[nPart][1] &&
                kWords[nPart].find(' ' + tokens.front() + ' ') != std::string_view::npos) {
                parts.push_back(i);
                break;
            }
        }
    return parts.size() == 3 ? parts : std::vector<std::size_t>();
}

// ---- times of day

std::size_t LongestCell(const Table& table, std::size_t nColumn)
{
    std::size_t nLongest = 0;
    for (const TableRow& row : table.rows)
        nLongest = std::max(nLongest, row.Cell(nColumn).size());
    return nLongest;
}

// Of digits alone, the clock that is written with as many.
ClockForm CompactClock(std::size_t nDigits)
{
    return nDigits <= 4   ? ClockForm::HoursMinutes
           : nDigits <= 6 ? ClockForm::HoursMinutesSeconds
                          : ClockForm::HoursMinutesMilliseconds;
}

bool IsClock(const Column& column, ClockForm clock)
{
    return ReadsColumn(column, column.ReadBy({DateForm::None, clock}));
}

ClockForm ClockOf(const Table& table, std::size_t nColumn)
{
    const Column& column = table.columns[nColumn];
    if (IsClock(column, ClockForm::Any))
        return ClockForm::Any;
    const ClockForm clock = CompactClock(LongestCell(table, nColumn));
    return column.IsWhole() && IsClock(column, clock) ? clock : ClockForm::None;
}

// Digits alone are times only by their heading, or next to the date where nothing has one.
bool MayBeTimes(const Table& table, std::size_t nColumn, std::size_t nDate, ClockForm clock)
{
    const Column& column = table.columns[nColumn];
    const Meaning meaning = MeaningOf(column.sHeading);
    if (meaning == Meaning::Time || meaning == Meaning::Moment)
        return true;
    if (clock == ClockForm::Any)
        return column.sHeading.empty() || meaning == Meaning::Unknown || table.bShifted;
    const bool bBeside = nColumn == nDate + 1 || nColumn + 1 == nDate;
    return bBeside && (!table.bHeading || column.sHeading.empty()) &&
           (column.dMost == 0 || column.sFirst.size() >= 3);
}

struct TimeColumn
{
    std::size_t nColumn = kNone;
    ClockForm clock = ClockForm::None;
};

TimeColumn FindTimes(const Table& table, std::size_t nDate)
{
    TimeColumn best;
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        if (i == nDate)
            continue;
        const ClockForm clock = ClockOf(table, i);
        if (clock == ClockForm::None || !MayBeTimes(table, i, nDate, clock))
            continue;
        if (best.nColumn == kNone || (clock == ClockForm::Any && best.clock != ClockForm::Any))
            best = {i, clock};
    }
    return best;
}

bool IsMidnightAlways(const Table& table, const MomentChoice& choice)
{
    return std::ranges::all_of(table.rows, [&](const TableRow& row) {
        const auto moment = choice.Of(row);
        return !moment || *moment % 86400000 == 0;
    });
}

// Within one cell the clock's digits tell its form as well.
void KeepLikelyClocks(const Column& column, std::vector<MomentForm>& forms)
{
    const std::string_view cell = column.sFirst;
    const std::size_t nFrom = cell.find_last_not_of("0123456789");
    const ClockForm clock =
        CompactClock(nFrom == std::string_view::npos ? 0 : cell.size() - nFrom - 1);
    std::erase_if(forms, [&](const MomentForm& form) {
        return form.clock != ClockForm::None && form.clock != ClockForm::Any && form.clock != clock;
    });
}

MomentColumns WithTimes(const Table& table, std::vector<std::size_t> columns,
                        std::vector<MomentForm> forms)
{
    MomentColumns result;
    KeepLikelyClocks(table.columns[columns.front()], forms);
    if (forms.empty())
        return result;
    if (forms.front().clock == ClockForm::None) {
        const TimeColumn times = FindTimes(table, columns.front());
        if (times.nColumn != kNone) {
            columns.push_back(times.nColumn);
            for (MomentForm& form : forms)
                form.clock = times.clock;
        }
    }
    for (const MomentForm& form : forms)
        result.choices.push_back({columns, form, {}});
    result.bTimes = forms.front().clock != ClockForm::None;
    if (result.bTimes && IsMidnightAlways(table, result.choices.front())) {
        result.bZeroTimes = true;
        result.bTimes = false;
        for (MomentChoice& choice : result.choices) {
            if (!IsEpoch(choice.form.date))
                choice.form.clock = ClockForm::None;
            if (columns.size() == 2)
                choice.columns.pop_back();
        }
    }
    return result;
}

// Years of two digits under Chinese headings may count from 1912.
bool MayCountOtherwise(const Table& table, const MomentColumns& found)
{
    const auto isChinese = [](const Column& column) {
        std::string_view text = column.sHeading;
        while (!text.empty())
            if (const char32_t c = TakeCharacter(text); c >= 0x4E00 && c <= 0x9FFF)
                return true;
        return false;
    };
    if (found.choices.empty() || !std::ranges::any_of(table.columns, isChinese))
        return false;
    const auto readings =
        ReadingsOfMoment(table.columns[found.choices.front().columns.front()].sFirst);
    return !readings.empty() && readings.front().read.bShortYear;
}

// Times that run from the first row to the last, where no column has dates.
bool HasTimesAlone(const Table& table)
{
    constexpr ClockForm kClocks[] = {ClockForm::Any, ClockForm::HoursMinutesSeconds,
                                     ClockForm::HoursMinutes, ClockForm::SecondsOfDay,
                                     ClockForm::MillisecondsOfDay};
    for (std::size_t i = 0; i < table.columns.size(); ++i)
        for (const ClockForm clock : kClocks)
            if (IsClock(table.columns[i], clock) && !table.columns[i].bConstant &&
                ShareInOrder(table, {{i}, {DateForm::None, clock}, {}}) == 1)
                return true;
    return false;
}

} // namespace

std::string MomentChoice::TextOf(const TableRow& row) const
{
    std::string text(row.Cell(columns.front()));
    for (std::size_t i = 1; i < columns.size(); ++i)
        text += ' ' + std::string(row.Cell(columns[i]));
    return text;
}

// A form without a clock reads cells that have one too.
std::optional<std::int64_t> MomentChoice::Of(const TableRow& row) const
{
    const std::string text = TextOf(row);
    for (const MomentReading& reading : ReadingsOfMoment(text))
        if (reading.form == form)
            return reading.read.Milliseconds();
        else if (form.clock == intake::ClockForm::None && reading.form.date == form.date)
            return reading.read.nDay * 86400000;
    return std::nullopt;
}

MomentColumns FindMoments(const Table& table)
{
    const DateColumn date = BestDate(table);
    const auto parts = DateParts(table);
    if (!parts.empty() && date.nPoints < 9)
        return {
            .choices = {{parts, {intake::DateForm::YearMonthDay, intake::ClockForm::None}, {}}}};
    if (date.nColumn == kNone) {
        MomentColumns none;
        none.bTimeAlone = HasTimesAlone(table);
        return none;
    }
    MomentColumns found = WithTimes(table, {date.nColumn}, date.forms);
    DecideDayOrder(table, found);
    found.bOtherYears = MayCountOtherwise(table, found);
    return found;
}

} // namespace tabulex::advice
