#include "tools/tabulex/commands/InspectReport.h"

#include <fmt/format.h>

#include "tools/tabulex/advise/AdviceText.h"
#include "tools/tabulex/commands/RecordTable.h"
#include "tools/tabulex/explain/Cells.h"
#include "tools/tabulex/text/Formats.h"
#include "tools/tabulex/text/Text.h"

namespace tabulex {

namespace {

constexpr ULONGLONG kFirstRows = 5;
constexpr std::size_t kHeaderWidth = 100; // characters of the header line that are shown

constexpr std::string_view kGiven = "  (given)"; // behind what a setting has decided

// A setting for each column that has one.
bool IsGiven(const Settings& settings, ULONG nField)
{
    return std::ranges::any_of(
        settings.columns, [&](const ColumnSetting& column) { return column.nField == nField; });
}

std::string HeaderText(const Sample& sample)
{
    const SampleLine* header = sample.Header();
    if (!header && !sample.layout.bHasHeader)
        return "none";
    const string_t text = FromUtf8(sample.layout.sHeader.value_or(""));
    const ULONGLONG nLine = header ? header->nNumber : sample.layout.nHeaderOffset + 1;
    return fmt::format("{}: {}{}", nLine == 0 ? "as taken" : fmt::format("line {}", nLine),
                       ToUtf8(string_view_t(text).substr(0, kHeaderWidth)),
                       text.size() > kHeaderWidth ? "..." : "");
}

std::string ResolutionText(const FileLayout& layout, const ResolutionOffers& offers)
{
    const auto* row = offers.FindId(layout.nResolution);
    const std::string name(row ? WithoutSize(row->sName) : "?");
    return layout.nResolutionSize ? fmt::format("{}, size {}", name, layout.nResolutionSize) : name;
}

std::string DatesText(const FileLayout& layout)
{
    if (layout.dtStart == 0)
        return "unknown";
    return fmt::format("{} to {}", DateTimeText(layout.dtStart, ' '),
                       DateTimeText(layout.dtEnd, ' '));
}

void AddRow(Results& results, std::string_view label, std::string_view text, bool bGiven = false)
{
    results.Add(fmt::format("  {:<12}{}{}\n", label, text, bGiven ? kGiven : ""));
}

// Settings that no row of what was found shows.
void AddFurtherSettings(const Settings& settings, Results& results)
{
    if (settings.sSymbol)
        AddRow(results, "symbol", *settings.sSymbol, true);
    if (settings.sPriceMultiplier)
        AddRow(results, "prices", "times " + *settings.sPriceMultiplier, true);
    if (settings.sVolumeMultiplier)
        AddRow(results, "volumes", "times " + *settings.sVolumeMultiplier, true);
    if (settings.bBarEndTime)
        AddRow(results, "times", "moved to the end of the bar", true);
}

void AddColumns(const FileLayout& layout, const Settings& settings, bool bColour, Results& results)
{
    TextTable table({{"column", true}, {"type", false}, {"template", false}}, bColour);
    for (std::size_t i = 0; i < layout.columns.size(); ++i) {
        const LayoutColumn& column = layout.columns[i];
        table.Add({std::to_string(i + 1),
                   (column.sType.empty() ? "-" : column.sType) +
                       (IsGiven(settings, static_cast<ULONG>(i)) ? std::string(kGiven) : ""),
                   column.sTemplate});
    }
    if (!layout.columns.empty())
        results.Add('\n' + table.Take("  "));
}

void AddFirstRows(const Host& host, bool bColour, Results& results)
{
    RecordTable table(host, bColour);
    ULONGLONG nRows = 0;
    while (nRows < kFirstRows && table.Add(nRows))
        ++nRows;
    if (nRows > 0)
        results.Add('\n' + table.Take("  "));
}

// The component subtracts the lines before the data without a guard: a file that has fewer
// gives a number below zero, wrapped.
void AddCount(const Host& host, Results& results)
{
    const ULONGLONG nCount = host.CountRecords();
    results.Add("\n");
    const bool bWrapped = nCount > ~0ULL / 2;
    AddRow(results, "records", WithThousands(bWrapped ? 0 : nCount));
}

} // namespace

void WriteReport(const Host& host, const std::string& file, const Inspection& inspection,
                 const Context& context, Results& results)
{
    const FileLayout& layout = inspection.sample.layout;
    const Settings& settings = context.options.settings;
    results.Add(Bold(file, context.bColour) + '\n');
    AddRow(results, "delimiters", DividerNames(layout.nDividers.value_or(0)),
           settings.nDividers.has_value());
    AddRow(results, "header", HeaderText(inspection.sample),
           settings.nLinesToSkip || settings.header != HeaderChoice::Auto);
    AddRow(results, "resolution", ResolutionText(layout, host.Offers()),
           settings.sResolution || settings.nSize);
    AddRow(results, "direction",
           layout.bInverted ? "latest record first" : "earliest record first");
    AddRow(results, "dates", DatesText(layout), AsksForRange(settings) || settings.bWholeFile);
    AddFurtherSettings(settings, results);
    AddRow(results, "convertible",
           inspection.sReason.empty() ? "yes" : "no: " + inspection.sReason);
    AddColumns(layout, settings, context.bColour, results);
    AddFirstRows(host, context.bColour, results);
    if (inspection.explanation)
        WriteExplanation(*inspection.explanation, results);
    if (!context.options.inspect.bNoCount) {
        results.Show();
        AddCount(host, results);
    }
    if (inspection.advice)
        results.Add(AdviceReport(*inspection.advice, file, host.Offers()));
}

} // namespace tabulex
