// The likeliest choices of moments and roles make the first candidate, each order of day and month
// that isn't decided another, and so does each other group of columns. Those that give the same
// rows are one.
#include "advice/Candidates.h"

#include <algorithm>
#include <utility>

#include <fmt/format.h>

#include "advice/CandidateMaker.h"

namespace tabulex::advice {

namespace {

constexpr std::size_t kMostCandidates = 8;
constexpr std::int64_t kFirstMoment = -2208988800000; // 1900-01-01, in milliseconds since 1970
constexpr std::int64_t kLastMoment = 3453062400000;   // 2079-06-04 is over

DayMonth DayMonthOf(intake::DateForm form)
{
    return form == intake::DateForm::DayMonthYear   ? DayMonth::DayFirst
           : form == intake::DateForm::MonthDayYear ? DayMonth::MonthFirst
                                                    : DayMonth::YearFirst;
}

constexpr const char* kOrderNames[] = {"", "day first", "month first", "year first"};

// Two candidates that give the same rows are one to the user.
bool DiffersInRows(const Candidate& a, const Candidate& b)
{
    return a.expected.columns != b.expected.columns ||
           !std::ranges::equal(
               a.expected.rows, b.expected.rows, [](const ReadRow& one, const ReadRow& other) {
                   return one.nMoment == other.nMoment && one.values == other.values;
               });
}

void AddOrders(const Table& table, const MomentColumns& moments, const Roles& roles,
               Candidates& found)
{
    for (const MomentChoice& choice : moments.choices) {
        Candidate candidate = CandidateMaker(table, choice, roles, moments.bTimes).Make();
        if (!moments.IsDecided()) {
            candidate.reading.dayMonth = DayMonthOf(choice.form.date);
            candidate.reading.sWhat = kOrderNames[static_cast<int>(candidate.reading.dayMonth)];
        }
        if (!choice.sReason.empty())
            candidate.reading.steps.push_back(fmt::format(
                "dates are read {}: {}",
                kOrderNames[static_cast<int>(DayMonthOf(choice.form.date))], choice.sReason));
        found.list.push_back(std::move(candidate));
    }
    if (found.list.size() < 2 || !DiffersInRows(found.list[0], found.list[1]))
        return;
    const TableRow& row = table.rows[std::min(moments.nTellingRow, table.rows.size() - 1)];
    found.bUndecided = true;
    found.sUndecided = fmt::format(
        "no line tells the day from the month: '{}' in line {} may be either; one with a day "
        "above 12 would decide, and so does --prefer",
        moments.choices.front().TextOf(row), row.nLine);
}

// What a file has and the engine can't take, or what is too rare in it.
void AddDoubts(const Table& table, const Roles& roles, Candidates& found)
{
    if (table.bMarksUnclear)
        found.doubts.push_back(
            "commas are read as marks between thousands; by --decimal comma they "
            "are decimal marks");
    for (const Role& role : roles.roles) {
        const Column& column = table.columns[role.nColumn];
        if (role.meaning == Meaning::Volume && IsRare(column))
            found.doubts.push_back(
                fmt::format("column {} has a volume in {} of {} rows only, and is left out",
                            role.nColumn + 1, column.nCells, column.nCells + column.nMissing));
    }
    if (found.list.empty())
        return;
    const auto& rows = found.list.front().expected.rows;
    const auto nOutside = std::ranges::count_if(rows, [](const ReadRow& row) {
        return row.nMoment < kFirstMoment || row.nMoment >= kLastMoment;
    });
    if (nOutside > 0)
        found.doubts.push_back(fmt::format("{} of {} rows are before 1900 or after 2079-06-04, and "
                                           "can't be delivered",
                                           nOutside, rows.size()));
}

Roles WithOther(Roles roles, const OtherRoles& other)
{
    for (const Role& role : other.roles) {
        std::erase_if(roles.roles, [&](const Role& old) { return old.meaning == role.meaning; });
        roles.roles.push_back(role);
    }
    roles.sSymbol = other.sSymbol;
    return roles;
}

} // namespace

Candidates FindCandidates(const Table& table, const MomentColumns& moments, const Roles& roles,
                          bool bWholeSample)
{
    Candidates found;
    found.doubts = roles.doubts;
    const bool bPrice = roles.HasBars() || roles.ColumnOf(Meaning::Price);
    if (moments.choices.empty() || !bPrice)
        return found;
    if (table.bMarksUnclear)
        found.doubts.push_back(
            "commas are read as marks between thousands; by --decimal comma they "
            "are decimal marks");
    if (moments.bOtherYears)
        found.doubts.push_back(
            "years of two digits are read as of 19.. and 20..; under headings in "
            "Chinese they may count from 1912");
    AddOrders(table, moments, roles, found);
    AddDoubts(table, roles, found);
    for (const OtherRoles& other : roles.others) {
        if (found.list.size() == kMostCandidates)
            break;
        const Roles changed = WithOther(roles, other);
        Candidate candidate =
            CandidateMaker(table, moments.choices.front(), changed, moments.bTimes).Make();
        candidate.reading.sWhat = other.sWhat;
        if (!DiffersInRows(candidate, found.list.front()))
            continue;
        if (roles.bUndecided && !found.bUndecided) {
            found.bUndecided = true;
            found.sUndecided =
                fmt::format("nothing tells which is right, the first or {}", other.sWhat);
        }
        found.list.push_back(std::move(candidate));
    }
    if (!bWholeSample && !found.list.empty())
        found.list.front().reading.steps.push_back("a sample of the lines was looked at");
    return found;
}

} // namespace tabulex::advice
