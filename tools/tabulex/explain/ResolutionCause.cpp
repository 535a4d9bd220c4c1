// Dates are read here. What lacks is told for the resolution that was chosen, or where none fits
// for bars, or for ticks if the file has a single price.
#include <algorithm>
#include <cstdlib>
#include <optional>
#include <regex>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "tools/tabulex/explain/Causes.h"
#include "tools/tabulex/explain/Cells.h"
#include "tools/tabulex/explain/HeadingColumns.h"
#include "tools/tabulex/explain/Shown.h"
#include "tools/tabulex/host/Properties.h"
#include "tools/tabulex/text/Formats.h"

namespace tabulex {

namespace {

using namespace IQRL_TabulexConverter;

constexpr unsigned kBarPrices[] = {TypeOpen, TypeHigh, TypeLow, TypeClose};

// Columns whose heading names the type, and that it wasn't given to.
std::optional<std::size_t> ColumnHeaded(const Case& theCase, const std::string& sType)
{
    const auto headings = theCase.sample.Headings();
    for (std::size_t i = 0; i < headings.size(); ++i)
        if (TypeOfHeading(theCase.host, headings[i]) == sType)
            return i;
    return std::nullopt;
}

// Whether a heading names one of the types.
bool HeadedOf(const Case& theCase, const std::vector<std::string>& types)
{
    return std::ranges::any_of(
        types, [&](const std::string& sType) { return ColumnHeaded(theCase, sType).has_value(); });
}

// What the column of that heading failed at.
std::string WhyHeadedFailed(const Case& theCase, unsigned uiType, std::size_t nColumn)
{
    const ColumnCells cells = CellsOfColumn(theCase.sample, nColumn);
    const bool bDated = uiType == TypeDate || uiType == TypeTime;
    TemplateFit fit = theCase.trials.FitOf(uiType, {}, cells.texts);
    if (bDated)
        if (const auto fits = theCase.trials.FitsOf(uiType, cells.texts); !fits.empty())
            fit = fits.front();
    if (fit.nFirstFailure >= cells.texts.size())
        return {};
    return fmt::format(
        "; {} has {} in {}, which isn't read as {}", ColumnName(theCase.sample.Headings(), nColumn),
        ShownCell(cells.texts[fit.nFirstFailure]), cells.lines[fit.nFirstFailure]->Name(),
        bDated                ? "a time"
        : IsWholeType(uiType) ? "a whole number"
                              : "a number");
}

// Columns of numbers that were left out, or taken for something that bars don't need.
std::vector<ULONG> FreeNumbers(const Case& theCase)
{
    std::vector<ULONG> free;
    for (ULONG i = 0; i < theCase.sample.layout.columns.size(); ++i) {
        const unsigned uiType = theCase.host.ColumnType(i);
        const ColumnCells cells = CellsOfColumn(theCase.sample, i);
        const auto fit = theCase.trials.FitOf(TypeOpen, {}, cells.texts);
        if (uiType != TypeDate && uiType != TypeTime && uiType != TypeSymbol &&
            fit.nRead * 10 > cells.texts.size() * 9)
            free.push_back(i);
    }
    return free;
}

// The orders in which the four prices stand in most files.
constexpr unsigned kPriceOrders[][4] = {
    {TypeOpen, TypeHigh, TypeLow, TypeClose}, {TypeClose, TypeOpen, TypeHigh, TypeLow},
    {TypeOpen, TypeClose, TypeHigh, TypeLow}, {TypeClose, TypeHigh, TypeLow, TypeOpen},
    {TypeHigh, TypeLow, TypeOpen, TypeClose},
};

std::string HeadingAt(const Case& theCase, std::size_t nColumn)
{
    const auto headings = theCase.sample.Headings();
    return nColumn < headings.size() ? headings[nColumn] : std::string();
}

// Columns of numbers that may be prices of bars for all that their headings say.
std::vector<ULONG> FreePrices(const Case& theCase)
{
    auto numbers = FreeNumbers(theCase);
    std::erase_if(numbers, [&](ULONG nColumn) {
        const std::string heading = HeadingAt(theCase, nColumn);
        return std::ranges::none_of(kBarPrices,
                                    [&](unsigned uiType) { return MayBe(heading, uiType); });
    });
    return numbers;
}

bool ContradictsHeadings(const Case& theCase, const std::vector<ULONG>& numbers,
                         const unsigned (&order)[4])
{
    for (std::size_t i = 0; i < std::size(order); ++i)
        if (!MayBe(HeadingAt(theCase, numbers[i]), order[i]))
            return true;
    return false;
}

// The first four columns in that order; others that have such a type lose it.
Correction PricesInOrder(const Case& theCase, const std::vector<ULONG>& prices,
                         const unsigned (&order)[4])
{
    Correction correction{theCase.settings, {}};
    correction.bGuess = true;
    const auto headings = theCase.sample.Headings();
    for (const ULONG nColumn : FreeNumbers(theCase)) {
        const auto at =
            static_cast<std::size_t>(std::ranges::find(prices, nColumn) - prices.begin());
        const unsigned uiType = theCase.host.ColumnType(nColumn);
        if (at >= std::size(order) && IsPriceType(uiType))
            LeaveOut(correction, nColumn, ColumnName(headings, nColumn));
        if (at < std::size(order) &&
            (uiType != order[at] || MeaningOf(HeadingAt(theCase, nColumn)) == Meaning::Unknown))
            AddColumnSetting(correction, {nColumn, theCase.host.TypeNames()[order[at]], {}});
    }
    return correction;
}

std::size_t DateColumnOf(const Case& theCase)
{
    ULONG nDate = 0;
    theCase.host.Records().GetFieldIndex(static_cast<LONG>(TypeDate), &nDate);
    return nDate;
}

// First what the headings say, then what they leave open: a guess that the values can refute, and
// the message says that it is one.
std::string BarStep(const Case& theCase)
{
    std::vector<Correction> corrections;
    const std::size_t nDate = DateColumnOf(theCase);
    AddWithHeadings(theCase, nDate, Correction{theCase.settings, {}}, corrections);
    const auto prices = FreePrices(theCase);
    if (prices.size() >= std::size(kBarPrices))
        for (const auto& order : kPriceOrders)
            if (!ContradictsHeadings(theCase, prices, order))
                AddWithHeadings(theCase, nDate, PricesInOrder(theCase, prices, order), corrections);
    return StepOf(theCase, corrections);
}

// The number of a cell, however it is written; empty for none, or for one with two points.
std::optional<double> NumberOf(std::string text)
{
    std::ranges::replace(text, ',', '.');
    char* end = nullptr;
    const double d = std::strtod(text.c_str(), &end);
    return text.empty() || *end != 0 ? std::nullopt : std::optional(d);
}

// What the headings call High is below another price of its bar, or Low above, in most rows.
std::string DisagreementCause(const Case& theCase)
{
    const auto headings = theCase.sample.Headings();
    for (const unsigned uiEnd : {TypeHigh, TypeLow}) {
        const auto nEnd = ColumnHeaded(theCase, theCase.host.TypeNames()[uiEnd]);
        for (const unsigned uiOther : kBarPrices) {
            const auto nOther = ColumnHeaded(theCase, theCase.host.TypeNames()[uiOther]);
            if (!nEnd || !nOther || uiEnd == uiOther)
                continue;
            const ColumnCells ends = CellsOfColumn(theCase.sample, *nEnd);
            const ColumnCells others = CellsOfColumn(theCase.sample, *nOther);
            std::vector<std::size_t> wrong;
            for (std::size_t i = 0; i < ends.texts.size(); ++i) {
                const auto end = NumberOf(ends.texts[i]), other = NumberOf(others.texts[i]);
                if (end && other && (uiEnd == TypeHigh ? *end < *other : *end > *other))
                    wrong.push_back(i);
            }
            if (wrong.size() * 2 > ends.texts.size())
                return fmt::format(
                    "The headings and the values disagree: {} has {} in {}, and {} has {}. Correct "
                    "the headings, or name the columns by --column 'N=TYPE'.",
                    ColumnName(headings, *nEnd), Shown(ends.texts[wrong.front()]),
                    ends.lines[wrong.front()]->Name(), ColumnName(headings, *nOther),
                    Shown(others.texts[wrong.front()]));
        }
    }
    return {};
}

std::string Quoted(const std::vector<std::string>& names)
{
    return fmt::format("{}", fmt::join(names, ", "));
}

std::string LackCause(const Case& theCase, const std::vector<std::string>& lacked)
{
    std::string failures;
    for (const std::string& sType : lacked)
        if (const auto nColumn = ColumnHeaded(theCase, sType); nColumn && failures.empty())
            failures = WhyHeadedFailed(theCase, theCase.host.TypeOf(sType), *nColumn);
    const std::string step = failures.empty() ? BarStep(theCase) : std::string();
    if (step.empty())
        if (std::string cause = DisagreementCause(theCase); !cause.empty())
            return cause;
    return fmt::format(
        "No column was taken for {}{}{}", Quoted(lacked), failures,
        !step.empty()       ? fmt::format("; if these columns hold what it says, {}.", step)
        : !failures.empty() ? ": mend or remove what can't be read."
                            : fmt::format(": name {} by --column 'N=TYPE', N being the "
                                          "number of the column.",
                                          lacked.size() == 1 ? "it" : "them"));
}

// ---- no resolution fits

std::vector<std::string> LackedForBars(const Case& theCase)
{
    std::vector<std::string> lacked;
    for (const unsigned uiType : kBarPrices)
        if (!theCase.host.HasColumn(uiType))
            lacked.push_back(theCase.host.TypeNames()[uiType]);
    return lacked;
}

// Texts that are neither numbers nor times, under a heading that allows for it.
bool MayBeSymbol(const Case& theCase, ULONG nColumn)
{
    const ColumnCells cells = CellsOfColumn(theCase.sample, nColumn);
    const auto reads = [&](unsigned uiType) {
        const auto fits = theCase.trials.FitsOf(uiType, cells.texts);
        return !fits.empty() && fits.front().nRead > 0;
    };
    return theCase.host.ColumnType(nColumn) == kNoType &&
           MayBe(HeadingAt(theCase, nColumn), TypeSymbol) &&
           theCase.trials.FitOf(TypeOpen, {}, cells.texts).nRead == 0 && !reads(TypeTime) &&
           !reads(TypeDate);
}

// A column of texts may be a symbol, by which dates may repeat.
std::string SymbolStep(const Case& theCase)
{
    std::vector<Correction> corrections;
    for (ULONG i = 0; i < theCase.sample.layout.columns.size(); ++i) {
        if (!MayBeSymbol(theCase, i))
            continue;
        Correction correction{theCase.settings, {}};
        correction.settings.sResolution = "Days";
        correction.sOptions = "--resolution Days";
        AddColumnSetting(correction, {i, "Symbol", {}});
        AddWithHeadings(theCase, DateColumnOf(theCase), correction, corrections);
    }
    corrections.push_back({theCase.settings, {}});
    return StepOf(theCase, corrections);
}

// ---- times

// Forms that no default template reads and a template of one's own can.
constexpr const char* kTimeTemplates[] = {"*h.*m", "*h.*m.*s", "*h-*m", "*h-*m-*s"};

// Times with a point between the parts are written with a zero in front, which no price has.
bool LookLikeTimes(const std::vector<std::string>& texts)
{
    static const std::regex clock("[0-9]{1,2}:[0-9]{2}.*|(?:[01][0-9]|2[0-3])[.][0-5][0-9]"
                                  "(?:[.][0-5][0-9])?");
    return std::ranges::all_of(
               texts, [](const std::string& text) { return std::regex_match(text, clock); }) &&
           std::ranges::any_of(texts, [](const std::string& text) {
               return text.starts_with('0') || text.find(':') != std::string::npos;
           });
}

bool IsTimeColumn(const Case& theCase, std::size_t nColumn, const std::vector<std::string>& texts)
{
    const Meaning meaning = MeaningOf(HeadingAt(theCase, nColumn));
    return meaning == Meaning::Time ||
           (meaning == Meaning::Unknown && !texts.empty() && LookLikeTimes(texts));
}

// By a template that reads nearly all times; empty for none.
std::string TimeStep(const Case& theCase, std::size_t nColumn,
                     const std::vector<std::string>& texts)
{
    auto fits = theCase.trials.FitsOf(TypeTime, texts);
    for (const char* pszTemplate : kTimeTemplates)
        fits.push_back(theCase.trials.FitOf(TypeTime, pszTemplate, texts));
    std::ranges::stable_sort(fits, std::ranges::greater(), &TemplateFit::nRead);
    if (fits.empty() || fits.front().nRead * 10 <= texts.size() * 9)
        return {};
    Correction correction{theCase.settings, {}};
    AddColumnSetting(correction, {static_cast<ULONG>(nColumn), "Time", fits.front().sTemplate});
    std::vector<Correction> corrections;
    AddWithHeadings(theCase, DateColumnOf(theCase), correction, corrections);
    return StepOf(theCase, corrections);
}

std::string CauseOfTimes(const Case& theCase, std::size_t nColumn, const ColumnCells& cells)
{
    static const std::regex runTogether("(?:[01]?[0-9]|2[0-3])[0-5][0-9][0-5][0-9][0-9]{3}");
    const auto name = ColumnName(theCase.sample.Headings(), nColumn);
    if (std::ranges::all_of(cells.texts, [](const std::string& text) {
            return std::regex_match(text, runTogether);
        }))
        return fmt::format("{}: {} in {} looks like hours, minutes, seconds and thousandths run "
                           "together, which no template reads: write times as 09:30:15.005 "
                           "before converting.",
                           cells.lines.front()->Name(), Shown(cells.texts.front()), name);
    if (!IsTimeColumn(theCase, nColumn, cells.texts))
        return {};
    if (const std::string step = TimeStep(theCase, nColumn, cells.texts); !step.empty())
        return fmt::format("No column was taken for Time, and {} has {} in {}; {}.", name,
                           Shown(cells.texts.front()), cells.lines.front()->Name(), step);
    if (const std::string failure = WhyHeadedFailed(theCase, TypeTime, nColumn); !failure.empty())
        return fmt::format("No column was taken for Time{}: write times as 09:30:15 before "
                           "converting.",
                           failure);
    return {};
}

// A column of times that wasn't taken for one; empty if there is none.
std::string TimeCause(const Case& theCase)
{
    for (std::size_t i = 0; i < theCase.sample.layout.columns.size(); ++i) {
        if (theCase.host.ColumnType(static_cast<ULONG>(i)) == TypeDate)
            continue;
        std::string cause = CauseOfTimes(theCase, i, CellsOfColumn(theCase.sample, i));
        if (!cause.empty())
            return cause;
    }
    return {};
}

// ---- rows that make no days

std::string SameDateCause(const Case& theCase, std::size_t i, DATE date)
{
    const Sample& sample = theCase.sample;
    const std::string same =
        fmt::format("{} and {} have the same date, {} ({})", sample.DataLine(i - 1).Name(),
                    sample.DataLine(i).Name(), DateTimeText(date).substr(0, 10),
                    Shown(sample.DataLine(i).sText));
    const std::string step = SymbolStep(theCase);
    if (!step.empty())
        return fmt::format("{}, so the dates don't show what the rows are; {}.", same, step);
    if (std::string cause = DisagreementCause(theCase); !cause.empty())
        return cause;
    return same + ", and no column is read as times by which they follow each other: add one.";
}

// Why dates with all prices of bars make no days.
std::string StepCause(const Case& theCase)
{
    const Sample& sample = theCase.sample;
    const std::vector<DATE> dates = DatesOf(theCase.host, sample);
    const bool bTime = theCase.host.HasColumn(TypeTime);
    for (std::size_t i = 0; i < dates.size(); ++i) {
        if (dates[i] == 0)
            return fmt::format(
                "{} has no date that is read ({}), so the steps from bar to bar aren't "
                "known{}",
                sample.DataLine(i).Name(), Shown(sample.DataLine(i).sText),
                NextStep(SymbolStep(theCase), "mend or remove that line"));
        if (!bTime && i > 0 && dates[i] == dates[i - 1])
            return SameDateCause(theCase, i, dates[i]);
    }
    return dates.size() == 1
               ? fmt::format("The file has a single row, so no step from bar to bar shows what it "
                             "is{}",
                             NextStep(SymbolStep(theCase), "name it by --resolution"))
               : std::string();
}

// Ticks by their headings; empty if they aren't that either.
std::string TickStep(const Case& theCase)
{
    if (!theCase.host.HasColumn(TypeTime))
        return {};
    std::vector<Correction> corrections;
    AddWithHeadings(theCase, DateColumnOf(theCase), Correction{theCase.settings, {}}, corrections);
    return StepOf(theCase, corrections);
}

std::string PriceCause(const Case& theCase, const std::vector<std::string>& lacked)
{
    const SampleLine& line = theCase.sample.DataLine(0);
    const auto nNumbers = FreeNumbers(theCase).size();
    if (nNumbers >= std::size(kBarPrices) || HeadedOf(theCase, lacked))
        return LackCause(theCase, lacked);
    if (const std::string step = TickStep(theCase); !step.empty())
        return fmt::format("No column was taken for Price, which ticks need; {}.", step);
    return fmt::format(
        "{} has {} column{} of numbers beside the date{} ({}): bars need Open, High, "
        "Low and Close, and ticks need Time and Price. Add what is missing.",
        line.Name(), nNumbers, nNumbers == 1 ? "" : "s",
        theCase.host.HasColumn(TypeTime) ? "" : ", and no time", Shown(line.sText));
}

std::string NoneFits(const Case& theCase)
{
    if (theCase.host.Offers().Offered().empty())
        return "No resolution is offered: leave --offer out.";
    if (std::string cause = theCase.host.HasColumn(TypeTime) ? "" : TimeCause(theCase);
        !cause.empty())
        return cause;
    const auto lacked = LackedForBars(theCase);
    return lacked.empty() ? StepCause(theCase) : PriceCause(theCase, lacked);
}

std::string DuplicateCause(const Case& theCase, const std::string& sType)
{
    std::vector<std::string> columns;
    ULONG nLast = 0;
    for (ULONG i = 0; i < theCase.sample.layout.columns.size(); ++i)
        if (theCase.host.ColumnName(i) == sType) {
            columns.push_back(ColumnName(theCase.sample.Headings(), i));
            nLast = i;
        }
    return fmt::format("{} are all {}: leave out what isn't it, for example by --column {}=none.",
                       fmt::join(columns, " and "), sType, nLast + 1);
}

} // namespace

std::string ResolutionCause(const Case& theCase)
{
    const FileLayout& layout = theCase.sample.layout;
    if (theCase.sample.DataLines() == 0)
        return {};
    if (layout.nResolution == ResolutionNone)
        return NoneFits(theCase);
    if (layout.nResolution == ResolutionMinutes && layout.nResolutionSize == 0)
        return "The steps from bar to bar don't show how many minutes a bar has: give them by "
               "--size, "
               "such as --size 5.";
    if (!layout.lackedFields.empty())
        return LackCause(theCase, layout.lackedFields);
    if (!layout.sDuplicatedField.empty())
        return DuplicateCause(theCase, layout.sDuplicatedField);
    return {};
}

} // namespace tabulex
