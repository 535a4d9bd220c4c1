#include "tools/tabulex/commands/InspectReport.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "tools/tabulex/commands/RecordTable.h"
#include "tools/tabulex/host/SettingsCheck.h"
#include "tools/tabulex/system/Fault.h"
#include "tools/tabulex/text/Formats.h"
#include "tools/tabulex/text/Text.h"

namespace tabulex {

namespace {

constexpr ULONGLONG kFirstRows = 5;
constexpr std::size_t kHeaderWidth = 100; // characters of the header line that are shown

// In the order of the bits.
constexpr const char* kDividerNames[] = {"colon", "blank", "comma", "semicolon", "bar", "tab"};

std::string DividersText(const std::optional<LONG>& nMask)
{
    std::vector<std::string> names;
    for (std::size_t i = 0; nMask && i < std::size(kDividerNames); ++i)
        if (*nMask & (1 << i))
            names.push_back(kDividerNames[i]);
    return names.empty() ? "none" : fmt::format("{}", fmt::join(names, ", "));
}

std::string HeaderText(const FileLayout& layout)
{
    if (!layout.bHasHeader)
        return "none";
    const string_t text = FromUtf8(layout.sHeader.value_or(""));
    return fmt::format("line {}: {}{}", layout.nHeaderOffset + 1,
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

// What a conversion with these settings would say.
std::string ReadinessText(const Host& host)
{
    std::string fault = WhyNotConvertible(host);
    if (!fault.empty())
        return fault;
    return host.HasColumn(TypeDate) ? "yes" : "no column holds a date";
}

void AddRow(Results& results, std::string_view label, std::string_view text)
{
    results.Add(fmt::format("  {:<12}{}\n", label, text));
}

void AddColumns(const FileLayout& layout, bool bColour, Results& results)
{
    TextTable table({{"column", true}, {"type", false}, {"template", false}}, bColour);
    for (std::size_t i = 0; i < layout.columns.size(); ++i) {
        const LayoutColumn& column = layout.columns[i];
        table.Add(
            {std::to_string(i + 1), column.sType.empty() ? "-" : column.sType, column.sTemplate});
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

void WriteReport(const Host& host, const std::string& file, const FileLayout& layout,
                 const Context& context, Results& results)
{
    results.Add(Bold(file, context.bColour) + '\n');
    AddRow(results, "delimiters", DividersText(layout.nDividers));
    AddRow(results, "header", HeaderText(layout));
    AddRow(results, "resolution", ResolutionText(layout, host.Offers()));
    AddRow(results, "direction",
           layout.bInverted ? "latest record first" : "earliest record first");
    AddRow(results, "dates", DatesText(layout));
    AddRow(results, "convertible", ReadinessText(host));
    AddColumns(layout, context.bColour, results);
    AddFirstRows(host, context.bColour, results);
    if (context.options.inspect.bNoCount)
        return;
    results.Show();
    AddCount(host, results);
}

} // namespace tabulex
