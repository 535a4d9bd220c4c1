// The engine is held against a candidate in turn: whether enough lines come out, whether a type or
// a symbol lacks, whether a column has a type that its heading denies, and at last row by row.
// Where the candidate itself rests on values alone, it doesn't outweigh the engine, which has
// looked at the same values.
#include "advice/OwnReading.h"

#include <algorithm>
#include <optional>

#include <fmt/format.h>

#include "advice/Score.h"
#include "advice/Steps.h"

namespace tabulex::advice {

namespace {

using namespace IQRL_TabulexConverter;

unsigned TypeOf(std::string_view name)
{
    for (unsigned uiType = 0; uiType < TYPES_COUNT; ++uiType)
        if (std::ranges::equal(name, kFieldTypes[uiType].sName,
                               [](char a, auto b) { return static_cast<unsigned>(a) == b; }))
            return uiType;
    return kNoType;
}

// The engine calls a price a close, unless rows are trades.
bool IsLike(const std::string& a, const std::string& b)
{
    const auto close = [](const std::string& name) { return name == "Price" ? "Close" : name; };
    return close(a) == close(b);
}

// Where the engine cuts cells otherwise, as a moment into date and time, columns can't be held
// against headings one by one.
std::string TypeFault(const Table& table, const Candidate& candidate,
                      const std::vector<std::string>& types)
{
    for (const std::string& type : types) {
        const bool bKnown = type.empty() || TypeOf(type) <= TypeTime ||
                            std::ranges::any_of(candidate.expected.columns, [&](const auto& name) {
                                return IsLike(name, type);
                            });
        if (!bKnown && table.bHeading)
            return fmt::format("it delivers {}, which no heading says", type);
    }
    return {};
}

std::string ColumnFault(const Table& table, const Candidate& candidate,
                        const std::vector<std::string>& types)
{
    if (types.size() != table.columns.size())
        return TypeFault(table, candidate, types);
    for (std::size_t i = 0; i < std::min(types.size(), table.columns.size()); ++i) {
        const unsigned uiType = TypeOf(types[i]);
        if (types[i].empty() || uiType <= TypeTime)
            continue;
        const std::string& heading = table.columns[i].sHeading;
        if (!heading.empty() && !Agrees(MeaningOf(heading), uiType))
            return fmt::format("it takes column {}, '{}', for {}", i + 1, heading, types[i]);
        for (const Role& role : candidate.roles)
            if (IsLike(TypeNameOf(role.meaning), types[i]) && role.nColumn != i)
                return fmt::format("it takes column {} for {}", i + 1, types[i]);
    }
    return {};
}

std::string MissingType(const Candidate& candidate, const TrialResult& own)
{
    for (const std::string& name : candidate.expected.columns)
        if (std::ranges::none_of(own.types, [&](const auto& type) { return IsLike(name, type); }))
            return fmt::format("it leaves out {}", name);
    const auto& taken = own.rows.rows;
    const bool bInvented = own.rows.bSymbols && !candidate.expected.bSymbols &&
                           std::ranges::any_of(taken, [&](const ReadRow& row) {
                               return row.sSymbol != taken.front().sSymbol;
                           });
    if (bInvented)
        return "it takes a column for the symbol that is none";
    const auto& rows = candidate.expected.rows;
    const bool bSeveral = std::ranges::any_of(
        rows, [&](const ReadRow& row) { return row.sSymbol != rows.front().sSymbol; });
    return bSeveral && !own.rows.bSymbols ? "it leaves out the symbol" : std::string();
}

bool IsInOrder(const std::vector<ReadRow>& rows)
{
    const StepFacts steps = FindSteps(rows);
    return steps.bForwards || steps.bBackwards;
}

// Price and Close have one place.
ReadRows WithClose(ReadRows rows)
{
    std::ranges::replace(rows.columns, std::string("Price"), std::string("Close"));
    return rows;
}

} // namespace

std::string WhyOwnIsWrong(const Table& table, const Roles& roles, const Candidate& candidate,
                          const TrialResult& own)
{
    const std::size_t nOwn = own.rows.rows.size(), nExpected = candidate.expected.rows.size();
    if (!own.bRan || nOwn == 0)
        return own.sRefusal.empty() ? "it delivers no row" : own.sRefusal;
    if (own.rows.nBad * 10 > nOwn + own.rows.nBad)
        return fmt::format("it delivers {} of {} lines", nOwn, nOwn + own.rows.nBad);
    if (nOwn < nExpected)
        return fmt::format("it delivers {} of {} rows", nOwn, nExpected);
    // A single price that no heading names doesn't outweigh what the engine made of the columns.
    if (!roles.bByHeadings && !roles.HasBars())
        return {};
    if (const auto missing = MissingType(candidate, own); !missing.empty())
        return missing;
    const std::string fault = ColumnFault(table, candidate, own.types);
    const Agreement agreement = Compare(WithClose(candidate.expected), WithClose(own.rows));
    if (agreement.nOther == 0 && (fault.empty() || !roles.bByHeadings))
        return {};
    // What has to be sorted doesn't outweigh what is in order.
    const bool bSorted = candidate.reading.recipe.order == intake::Order::Moment;
    if (bSorted && fault.empty() && IsInOrder(own.rows.rows))
        return {};
    return fault.empty() ? fmt::format("{} of its {} rows differ from what stands in the file",
                                       agreement.nOther, nOwn)
                         : fault;
}

} // namespace tabulex::advice
