// Checks stand in a table, each with the sentence that it gives.

#include "intake/Recipe.h"

#include <algorithm>
#include <set>

#include "intake/Headings.h"
#include "intake/moments/Words.h"
#include "intake/moments/ZoneClock.h"

namespace tabulex::intake {

namespace {

bool IsEpoch(DateForm form)
{
    return form >= DateForm::EpochSeconds;
}

bool TakesSymbol(const Recipe& recipe)
{
    return std::ranges::any_of(recipe.takes,
                               [](const Take& take) { return take.sHeading == kSymbolHeading; });
}

std::string MomentFault(const Recipe& recipe)
{
    if (!recipe.moment)
        return recipe.zones                    ? "--time-zone needs --moment"
               : recipe.date                   ? "--date needs --moment"
               : recipe.linesOut.bNoDate       ? "--leave-out no-date needs --moment"
               : recipe.order != Order::AsRead ? "--sort needs --moment"
                                               : "";
    const Moment& moment = *recipe.moment;
    const bool bNone = moment.date == DateForm::None;
    if (moment.from.empty() || (bNone && moment.clock == ClockForm::None))
        return "--moment has nothing to read";
    if (bNone && !recipe.date)
        return "--moment has a time alone: give its day by --date";
    if (!bNone && recipe.date)
        return "--date is for a file that has times alone";
    if (IsEpoch(moment.date) && moment.clock > ClockForm::Any)
        return "--moment: this form has the time in it, which is read by +time";
    return {};
}

std::string HeadingFault(const Recipe& recipe)
{
    std::set<std::string> seen;
    for (const std::string& heading : HeadingOf(recipe)) {
        if (heading.empty())
            return "--take needs a heading";
        if (!seen.insert(heading).second)
            return "the heading " + heading + " is given twice";
    }
    if (!recipe.takes.empty() && !recipe.drops.empty())
        return "--drop has no use beside --take, which leaves out everything else";
    if (recipe.order == Order::SymbolAndMoment && recipe.sSymbol.empty() && !TakesSymbol(recipe))
        return "--sort symbol needs a symbol, by --take or --symbol-name";
    return {};
}

std::string ScaleFault(const Recipe& recipe)
{
    const std::vector<std::string> headings = HeadingOf(recipe);
    for (const Scale& scale : recipe.scales) {
        if (scale.nDigits > kMostScale)
            return "--scale goes to " + std::to_string(kMostScale) + " digits";
        if (std::ranges::find(headings, scale.sHeading) == headings.end())
            return "--scale needs a column that --take gives the heading " + scale.sHeading;
    }
    return {};
}

// 0 stands for no mark.
char MarkOf(Thousands thousands)
{
    return thousands == Thousands::Comma ? ',' : thousands == Thousands::Point ? '.' : 0;
}

std::string NumberFault(const Recipe& recipe)
{
    const char cDecimal = recipe.numbers.decimal == Decimal::Comma ? ',' : '.';
    if (MarkOf(recipe.numbers.thousands) == cDecimal)
        return "--decimal and --thousands name one mark";
    return {};
}

// Pieces are of columns that are split.
std::string SourceFault(const Recipe& recipe)
{
    std::vector<Source> all = recipe.moment ? recipe.moment->from : Sources();
    for (const Take& take : recipe.takes) {
        if (take.from.empty())
            return "--take needs a column";
        all.insert(all.end(), take.from.begin(), take.from.end());
    }
    for (const Source& source : all) {
        if (source.nColumn == 0)
            return "columns count from 1";
        const bool bSplit = std::ranges::any_of(
            recipe.cells.splits, [&](const Split& s) { return s.nColumn == source.nColumn; });
        if (source.nPiece != 0 && !bSplit)
            return "column " + std::to_string(source.nColumn) + " isn't split: give --split";
    }
    return {};
}

std::string NameFault(const Recipe& recipe)
{
    if (!recipe.sLanguage.empty() && !KnowsLanguage(recipe.sLanguage))
        return "--month-names: the language '" + recipe.sLanguage + "' isn't known";
    return recipe.zones ? ZoneFault(*recipe.zones) : std::string();
}

bool IsDropped(const Recipe& recipe, std::uint32_t nColumn)
{
    const auto isOf = [nColumn](const Source& source) { return source.nColumn == nColumn; };
    return std::ranges::find(recipe.drops, nColumn) != recipe.drops.end() ||
           (recipe.moment && std::ranges::any_of(recipe.moment->from, isOf));
}

// Of clean lines without takes: what is left of the columns, with the moment in the place of its
// first one.
std::uint32_t ColumnLeft(const Recipe& recipe, std::uint32_t nCell)
{
    const std::uint32_t nMoment = recipe.moment ? recipe.moment->from.front().nColumn : 0;
    const std::uint32_t nMomentCells =
        recipe.moment && recipe.moment->clock != ClockForm::None ? 2 : 1;
    std::uint32_t nAt = recipe.sSymbol.empty() ? 0 : 1;
    if (nCell <= nAt)
        return 0;
    for (std::uint32_t nColumn = 1;; ++nColumn) {
        nAt += nColumn == nMoment ? nMomentCells : IsDropped(recipe, nColumn) ? 0 : 1;
        if (nAt >= nCell)
            return nColumn;
    }
}

std::uint32_t ColumnTaken(const Recipe& recipe, const std::string& heading)
{
    for (const Take& take : recipe.takes)
        if (take.sHeading == heading)
            return take.from.front().nColumn;
    const bool bMoment = heading == kDateHeading || heading == kTimeHeading;
    return bMoment && recipe.moment ? recipe.moment->from.front().nColumn : 0;
}

} // namespace

std::string FaultIn(const Recipe& recipe)
{
    for (const auto check :
         {MomentFault, HeadingFault, ScaleFault, NumberFault, SourceFault, NameFault})
        if (std::string fault = check(recipe); !fault.empty())
            return fault;
    return {};
}

std::vector<std::string> HeadingOf(const Recipe& recipe)
{
    std::vector<std::string> words;
    if (!recipe.HasHeading())
        return words;
    if (!recipe.sSymbol.empty())
        words.push_back(kSymbolHeading);
    for (const Take& take : recipe.takes)
        if (take.sHeading == kSymbolHeading)
            words.push_back(take.sHeading);
    if (recipe.moment)
        words.push_back(kDateHeading);
    if (recipe.moment && recipe.moment->clock != ClockForm::None)
        words.push_back(kTimeHeading);
    for (const Take& take : recipe.takes)
        if (take.sHeading != kSymbolHeading)
            words.push_back(take.sHeading);
    return words;
}

std::uint32_t ColumnBehind(const Recipe& recipe, std::uint32_t nCell)
{
    if (nCell == 0 || !recipe.HasHeading())
        return nCell == 0 ? 0 : ColumnLeft(recipe, nCell);
    const std::vector<std::string> headings = HeadingOf(recipe);
    return nCell <= headings.size() ? ColumnTaken(recipe, headings[nCell - 1]) : 0;
}

} // namespace tabulex::intake
