// A type stands once in a file, so who may have it is settled in turn. Columns that aren't in doubt
// keep theirs. Doubtful ones get what their headings say, if the resolution admits it and nobody
// has it, and are freed otherwise. What is left over goes to columns that were left out. A heading
// that says nothing leaves the type to the user, since its values fit several types.

#include "tools/tabulex/review/Corrections.h"

#include <algorithm>
#include <set>

#include <fmt/format.h>

#include "advice/headings/HeadingWords.h"
#include "tools/tabulex/text/Text.h"

namespace tabulex {

using IQRL_TabulexConverter::kFieldTypes;

namespace {

// Whether a column was taken for what another one says more plainly.
bool IsSecondBest(const LayoutFacts& facts, const ReviewedColumn& column, Meaning meaning)
{
    return IsAdjusted(column.sHeading) &&
           std::ranges::any_of(facts.columns, [&](const ReviewedColumn& other) {
               return other.uiType != column.uiType && !IsAdjusted(other.sHeading) &&
                      MeaningOf(other.sHeading) == meaning;
           });
}

bool IsDoubtful(const LayoutFacts& facts, const ReviewedColumn& column)
{
    if (column.uiType == kNoType || column.bByUser)
        return false;
    const Meaning meaning = MeaningOf(column.sHeading);
    if (meaning == Meaning::Unknown)
        return column.uiType > TypeTime;
    return !Agrees(meaning, column.uiType) || IsSecondBest(facts, column, meaning);
}

bool HasText(const LayoutFacts& facts, std::size_t nColumn)
{
    return std::ranges::any_of(facts.rows,
                               [&](const SampledRow& row) { return !row.cells[nColumn].empty(); });
}

template <class Test>
std::vector<std::size_t> ColumnsWhere(const LayoutFacts& facts, Test test)
{
    std::vector<std::size_t> columns;
    for (std::size_t i = 0; i < facts.columns.size(); ++i)
        if (test(i))
            columns.push_back(i);
    return columns;
}

// The type that a heading means, under the name that the resolution admits: a close is a price
// where single trades are read. Empty for none.
std::string AdmittedType(const Host& host, const LayoutFacts& facts, Meaning meaning)
{
    using IQRL_TabulexConverter::TypeClose;
    using IQRL_TabulexConverter::TypePrice;
    const unsigned uiType = TypeOfMeaning(meaning);
    if (uiType == kNoType)
        return {};
    for (const unsigned uiName : {uiType, uiType == TypeClose ? unsigned(TypePrice) : uiType})
        if (facts.Admits(host.TypeNames()[uiName]))
            return host.TypeNames()[uiName];
    return {};
}

std::string Setting(std::size_t nColumn, const std::string& type)
{
    const bool bQuote = type.find(' ') != std::string::npos;
    return fmt::format(" --column {0}{1}={2}{0}", bQuote ? "\"" : "", nColumn + 1, type);
}

// Of several columns that mean one type the plainest comes first: "Close" ahead of "Last", and
// both ahead of "Adj Close".
std::vector<std::size_t> PlainestFirst(const LayoutFacts& facts, std::vector<std::size_t> columns)
{
    const auto rank = [&](std::size_t i) {
        const std::string& heading = facts.columns[i].sHeading;
        const unsigned uiType = TypeOfMeaning(MeaningOf(heading));
        const auto tokens = HeadingTokens(heading);
        const bool bOwnName = uiType != kNoType && tokens.size() == 1 &&
                              tokens.front() == LowerCase(ToUtf8(kFieldTypes[uiType].sName));
        return IsAdjusted(heading) ? 2 : bOwnName ? 0 : 1;
    };
    std::ranges::stable_sort(columns, {}, rank);
    return columns;
}

} // namespace

std::vector<std::size_t> DoubtfulColumns(const LayoutFacts& facts)
{
    if (facts.headings.empty())
        return {};
    return ColumnsWhere(facts, [&](std::size_t i) { return IsDoubtful(facts, facts.columns[i]); });
}

std::vector<std::size_t> LeftOutColumns(const LayoutFacts& facts)
{
    return ColumnsWhere(facts, [&](std::size_t i) {
        return facts.columns[i].uiType == kNoType && !facts.columns[i].bByUser && HasText(facts, i);
    });
}

// A column that must be there is left to the user where its heading says nothing.
Corrections::Corrections(const Host& host, const LayoutFacts& facts)
{
    const auto doubtful = DoubtfulColumns(facts);
    std::set<std::string> taken;
    for (std::size_t i = 0; i < facts.columns.size(); ++i)
        if (std::ranges::find(doubtful, i) == doubtful.end())
            taken.insert(facts.columns[i].sType);
    for (const std::size_t nColumn : PlainestFirst(facts, doubtful)) {
        const Meaning meaning = MeaningOf(facts.columns[nColumn].sHeading);
        const std::string type = AdmittedType(host, facts, meaning);
        if (meaning == Meaning::Unknown)
            m_sSet += Setting(nColumn, "TYPE");
        else if (type.empty() || !taken.insert(type).second)
            m_sFreed += Setting(nColumn, "none");
        else
            m_sSet += Setting(nColumn, type);
    }
    for (const std::size_t nColumn : PlainestFirst(facts, LeftOutColumns(facts))) {
        const Meaning meaning = MeaningOf(facts.columns[nColumn].sHeading);
        const std::string type = AdmittedType(host, facts, meaning);
        if (!type.empty() && taken.insert(type).second)
            m_sAdded += Setting(nColumn, type);
    }
}

} // namespace tabulex
