// The component doesn't tell its reasons. They are worked out from what it decided and from the
// sampled lines: each column's cells are tried by every template, and as numbers, so that a column
// without a type has what failed first, and one with a type what else would read it. Cells that are
// empty count for neither. Of what failed, the best template of dates and that of times stand for
// their lists, since nobody wants to read them all.

#include "tools/tabulex/explain/Explanation.h"

#include <algorithm>
#include <cmath>
#include <map>

#include <fmt/format.h>

#include "tools/tabulex/explain/Cells.h"
#include "tools/tabulex/explain/Shown.h"
#include "tools/tabulex/explain/TemplateTrials.h"
#include "tools/tabulex/host/Properties.h"
#include "tools/tabulex/text/Formats.h"

namespace tabulex {

namespace {

using namespace IQRL_TabulexConverter;

constexpr std::size_t kDividedLines = 5;
constexpr std::size_t kShownLines = 8; // ahead of the data
constexpr std::size_t kShownSamples = 3;
constexpr std::size_t kShownSteps = 5;
constexpr std::size_t kShownOthers = 4;

// ---- dividers and header

std::vector<ExplainedDivider> ExplainDividers(const Sample& sample)
{
    std::vector<ExplainedDivider> dividers;
    for (const LONG nMask : {32, 16, 8, 4, 2, 1}) { // as the component prefers them
        ExplainedDivider divider{DividerNames(nMask), (sample.nDividers & nMask) != 0, {}};
        for (std::size_t i = 0; i < std::min(sample.lines.size(), kDividedLines); ++i)
            divider.cells.push_back(CountCells(sample.lines[i].sText, nMask));
        dividers.push_back(std::move(divider));
    }
    return dividers;
}

std::string DataReason(const std::vector<std::string>& cells)
{
    const auto at = std::ranges::find_if(cells, LooksLikeData);
    return at == cells.end() ? "no field looks like data"
                             : fmt::format("{} looks like data", Shown(*at));
}

std::vector<ExplainedLine> ExplainLines(const Sample& sample)
{
    std::vector<ExplainedLine> lines;
    const std::size_t nEnd = std::min(sample.lines.size(), sample.nFirstData + 1);
    for (std::size_t i = nEnd - std::min(nEnd, kShownLines); i < nEnd; ++i) {
        const SampleLine& line = sample.lines[i];
        const bool bHeading = &line == sample.Header();
        std::string sReason = DataReason(CellsOf(line.sText, sample.nDividers));
        sReason += bHeading                ? ", so it names the columns"
                   : i < sample.nFirstData ? ", and it stands ahead of the data: left out"
                                           : ": the first row";
        lines.push_back({line.Name(), line.sText, bHeading, std::move(sReason)});
    }
    return lines;
}

// ---- columns

// Lines that lack the cell say nothing about it.
ColumnCells FilledCells(const Sample& sample, std::size_t nColumn)
{
    ColumnCells all = CellsOfColumn(sample, nColumn), filled;
    for (std::size_t i = 0; i < all.texts.size(); ++i)
        if (!all.texts[i].empty()) {
            filled.texts.push_back(all.texts[i]);
            filled.lines.push_back(all.lines[i]);
        }
    return filled;
}

std::string FailureOf(const TemplateFit& fit, const ColumnCells& cells)
{
    return fit.nFirstFailure < cells.texts.size()
               ? fmt::format("{} has {}", cells.lines[fit.nFirstFailure]->Name(),
                             Shown(cells.texts[fit.nFirstFailure]))
               : std::string();
}

// Each way to read a column: its name for people, and how far it comes.
std::vector<std::pair<std::string, TemplateFit>> Readings(TemplateTrials& trials,
                                                          const ColumnCells& cells)
{
    std::vector<std::pair<std::string, TemplateFit>> readings;
    for (const auto& [uiType, pszName] : {std::pair(TypeDate, "Date"), std::pair(TypeTime, "Time")})
        for (TemplateFit& fit : trials.FitsOf(uiType, cells.texts))
            readings.emplace_back(fmt::format("{} by '{}'", pszName, fit.sTemplate),
                                  std::move(fit));
    readings.emplace_back("a whole number", trials.FitOf(TypeVolume, {}, cells.texts));
    readings.emplace_back("a number", trials.FitOf(TypeOpen, {}, cells.texts));
    return readings;
}

// "no date template reads it", or how far the best one comes.
std::string FailureText(const std::string& name, const TemplateFit& fit, const ColumnCells& cells)
{
    const std::size_t nBy = name.find(" by ");
    if (nBy == std::string::npos)
        return fmt::format("not {}: {}", name, FailureOf(fit, cells));
    return fit.nRead == 0 ? fmt::format("no template of {} reads it: {}", name.substr(0, nBy),
                                        FailureOf(fit, cells))
                          : fmt::format("{} reads {} of {} cells: {}", name, fit.nRead,
                                        cells.texts.size(), FailureOf(fit, cells));
}

// The best date template and the best time template stand for their lists.
void ExplainFailures(ExplainedColumn& column, const ColumnCells& cells,
                     const std::vector<std::pair<std::string, TemplateFit>>& readings)
{
    std::string last;
    bool bNumber = false;
    for (const auto& [name, fit] : readings) {
        const std::string kind = name.substr(0, name.find(" by "));
        if (kind != last && fit.nFirstFailure < cells.texts.size())
            column.failed.push_back(FailureText(name, fit, cells));
        bNumber = name == "a number" && fit.nRead == cells.texts.size();
        last = kind;
    }
    if (bNumber && !cells.texts.empty())
        column.failed.push_back(
            column.sHeading.empty()
                ? "no type of numbers was left for it"
                : fmt::format("its heading, {}, names no type that the others left free",
                              Shown(column.sHeading)));
}

// A number that is read as one says nothing new.
bool IsOther(const ExplainedColumn& column, const std::string& name)
{
    return name != fmt::format("{} by '{}'", column.sType, column.sTemplate) &&
           (column.sType.empty() || name.find(" by ") != std::string::npos);
}

ExplainedColumn ExplainColumn(const Host& host, const Sample& sample, TemplateTrials& trials,
                              std::size_t nColumn)
{
    const ColumnCells cells = FilledCells(sample, nColumn);
    const auto headings = sample.Headings();
    ExplainedColumn column;
    column.sHeading = nColumn < headings.size() ? headings[nColumn] : "";
    column.nSampled = cells.texts.size();
    column.samples.assign(cells.texts.begin(),
                          cells.texts.begin() + static_cast<std::ptrdiff_t>(
                                                    std::min(cells.texts.size(), kShownSamples)));
    const unsigned uiType = host.ColumnType(static_cast<ULONG>(nColumn));
    const auto readings = Readings(trials, cells);
    if (uiType != kNoType) {
        column.sType = sample.layout.columns[nColumn].sType;
        column.sTemplate = sample.layout.columns[nColumn].sTemplate;
        const TemplateFit fit = trials.FitOf(uiType, column.sTemplate, cells.texts);
        column.nRead = fit.nRead;
        column.sFirstFailure = FailureOf(fit, cells);
    } else {
        ExplainFailures(column, cells, readings);
    }
    for (const auto& [name, fit] : readings)
        if (column.nSampled > 0 && fit.nRead == column.nSampled && IsOther(column, name) &&
            column.others.size() < kShownOthers)
            column.others.push_back(name);
    return column;
}

// ---- resolution, direction, dates

std::string StepText(double dDays)
{
    const auto nSeconds = static_cast<LONGLONG>(std::llround(std::abs(dDays) * 86400));
    const auto text = [](LONGLONG n, const char* pszUnit) {
        return fmt::format("{} {}{}", n, pszUnit, n == 1 ? "" : "s");
    };
    if (nSeconds == 0)
        return "none";
    if (nSeconds % 86400 == 0)
        return text(nSeconds / 86400, "day");
    if (nSeconds % 60 == 0)
        return text(nSeconds / 60, "minute");
    return text(nSeconds, "second");
}

std::vector<std::pair<std::string, std::size_t>> ExplainSteps(const std::vector<DATE>& dates)
{
    std::map<std::string, std::size_t> counts;
    for (std::size_t i = 1; i < dates.size(); ++i)
        if (dates[i] != 0 && dates[i - 1] != 0)
            ++counts[StepText(dates[i] - dates[i - 1])];
    std::vector<std::pair<std::string, std::size_t>> steps(counts.begin(), counts.end());
    std::ranges::stable_sort(steps, std::ranges::greater(), [](const auto& s) { return s.second; });
    if (steps.size() > kShownSteps)
        steps.resize(kShownSteps);
    return steps;
}

// By the component's id.
constexpr const char* kResolutionReasons[RESOLUTIONS_COUNT] = {
    "no resolution that is offered has all the columns it needs and steps that fit",
    "there are Date, Time and Price, so each row is a trade",
    "the steps are no whole minutes or days, and there are Date, Time, Open, High, Low and Close",
    "there are Date, Time, Open, High, Low and Close",
    "it was chosen",
    "there are Date, Time, Open, High, Low and Close, and the size divides all sampled steps",
    "the steps are whole days, and there are Date, Open, High, Low and Close",
    "the smallest step is 7 days, and there are Date, Open, High, Low and Close",
};

std::string ResolutionReason(const FileLayout& layout)
{
    const bool bKnown = layout.nResolution >= 0 && layout.nResolution < RESOLUTIONS_COUNT;
    return kResolutionReasons[bKnown ? layout.nResolution : 0];
}

std::string DirectionReason(const FileLayout& layout)
{
    if (layout.dtStart == 0 || layout.dtEnd == 0)
        return "not known, since the dates of the first and the last line aren't read";
    return layout.bInverted ? "the first line is later than the last, so the file runs backwards"
                            : "the first line isn't later than the last, so the file runs forwards";
}

std::string DatesReason(const Sample& sample)
{
    const FileLayout& layout = sample.layout;
    if (layout.dtStart == 0 || sample.DataLines() == 0)
        return "no date is read in the first or the last line";
    return fmt::format("from {} and {}; rows are delivered that lie in this range",
                       sample.DataLine(0).Name(), sample.last.Name());
}

// ---- encoding

bool IsUtf8(std::string_view bytes)
{
    const string_t text = FromUtf8(bytes.substr(0, bytes.rfind('\n')));
    return text.find(char16_t(0xFFFD)) == string_t::npos;
}

std::string EncodingReason(const FileHead& head)
{
    const auto nBeyond = static_cast<std::size_t>(std::ranges::count_if(
        head.sBytes, [](char c) { return static_cast<unsigned char>(c) > 0x7F; }));
    if (nBeyond == 0)
        return "plain ASCII, so the encoding doesn't matter";
    return fmt::format(
        "{} of the first {} bytes are beyond ASCII, and they {} UTF-8; they are read "
        "in the encoding of --encoding",
        WithThousands(nBeyond), WithThousands(head.sBytes.size()),
        IsUtf8(head.sBytes) ? "are" : "aren't");
}

} // namespace

Explanation Explain(const Host& host, const Sample& sample)
{
    TemplateTrials trials(host);
    Explanation explanation;
    explanation.dividers = ExplainDividers(sample);
    explanation.lines = ExplainLines(sample);
    for (std::size_t i = 0; i < sample.layout.columns.size(); ++i)
        explanation.columns.push_back(ExplainColumn(host, sample, trials, i));
    if (host.HasColumn(TypeDate))
        explanation.steps = ExplainSteps(DatesOf(host, sample));
    explanation.sResolution = ResolutionReason(sample.layout);
    explanation.sDirection = DirectionReason(sample.layout);
    explanation.sDates = DatesReason(sample);
    explanation.sEncoding = EncodingReason(sample.head);
    return explanation;
}

} // namespace tabulex
