#include <fmt/format.h>
#include <fmt/ranges.h>
#include <nlohmann/json.hpp>

#include "tools/tabulex/commands/InspectReport.h"
#include "tools/tabulex/explain/Shown.h"

namespace tabulex {

namespace {

using nlohmann::ordered_json;

void AddHeading(Results& results, std::string_view title)
{
    results.Add(fmt::format("\n  {}\n", title));
}

void AddPoint(Results& results, std::string_view text)
{
    results.Add(fmt::format("    {}\n", text));
}

void AddDividers(const Explanation& explanation, Results& results)
{
    AddHeading(
        results,
        "Dividers: the first of these that occurs cuts the lines into fields; a tab always does");
    for (const ExplainedDivider& divider : explanation.dividers)
        AddPoint(results,
                 fmt::format("{:<10}fields of the first lines: {}{}", divider.sName,
                             fmt::join(divider.cells, ", "), divider.bUsed ? "  (used)" : ""));
}

void AddLines(const Explanation& explanation, Results& results)
{
    AddHeading(results, "Header: a line of which no field looks like a number, a date or a time");
    for (const ExplainedLine& line : explanation.lines)
        AddPoint(results, fmt::format("{} {}: {}", line.sLine, Shown(line.sText), line.sReason));
}

std::vector<std::string> AllShown(const std::vector<std::string>& texts)
{
    std::vector<std::string> shown;
    for (const std::string& text : texts)
        shown.push_back(Shown(text));
    return shown;
}

std::string TypeText(const ExplainedColumn& column)
{
    if (column.sType.empty())
        return "left out";
    const bool bDated = column.sType == "Date" || column.sType == "Time";
    return bDated ? fmt::format("{} by '{}'", column.sType, column.sTemplate) : column.sType;
}

void AddColumn(const ExplainedColumn& column, std::size_t nColumn, Results& results)
{
    const std::string heading = column.sHeading.empty() ? "" : ' ' + Shown(column.sHeading);
    AddPoint(results, fmt::format("{}{}: {}", nColumn + 1, heading, TypeText(column)));
    const auto detail = [&](std::string_view text) {
        results.Add(fmt::format("        {}\n", text));
    };
    if (column.nSampled == 0)
        detail("no sampled line has a cell here");
    else
        detail(fmt::format("such as {}", fmt::join(AllShown(column.samples), ", ")));
    if (!column.sType.empty() && column.nSampled > 0)
        detail(fmt::format("{} of {} sampled cells are read{}", column.nRead, column.nSampled,
                           column.sFirstFailure.empty()
                               ? ""
                               : fmt::format("; {}, which isn't", column.sFirstFailure)));
    if (!column.others.empty())
        detail(fmt::format("{}read as {}", column.sType.empty() ? "can be " : "could also be ",
                           fmt::join(column.others, ", ")));
    for (const std::string& failed : column.failed)
        detail(failed);
}

std::string StepsText(const Explanation& explanation)
{
    std::vector<std::string> steps;
    for (const auto& [text, nCount] : explanation.steps)
        steps.push_back(fmt::format("{} ({} times)", text, nCount));
    return steps.empty() ? "none, since dates aren't read"
                         : fmt::format("{}", fmt::join(steps, ", "));
}

ordered_json DividersJson(const Explanation& explanation)
{
    ordered_json dividers = ordered_json::array();
    for (const ExplainedDivider& divider : explanation.dividers)
        dividers.push_back(
            {{"name", divider.sName}, {"used", divider.bUsed}, {"fields", divider.cells}});
    return dividers;
}

ordered_json LinesJson(const Explanation& explanation)
{
    ordered_json lines = ordered_json::array();
    for (const ExplainedLine& line : explanation.lines)
        lines.push_back({{"line", line.sLine},
                         {"text", line.sText},
                         {"heading", line.bHeading},
                         {"reason", line.sReason}});
    return lines;
}

ordered_json ColumnsJson(const Explanation& explanation)
{
    ordered_json columns = ordered_json::array();
    for (const ExplainedColumn& column : explanation.columns)
        columns.push_back(
            {{"heading", column.sHeading},
             {"type", column.sType.empty() ? ordered_json() : ordered_json(column.sType)},
             {"template", column.sTemplate},
             {"read", column.nRead},
             {"sampled", column.nSampled},
             {"samples", column.samples},
             {"first_failure", column.sFirstFailure},
             {"others", column.others},
             {"failed", column.failed}});
    return columns;
}

ordered_json StepsJson(const Explanation& explanation)
{
    ordered_json steps = ordered_json::array();
    for (const auto& [text, nCount] : explanation.steps)
        steps.push_back({{"step", text}, {"count", nCount}});
    return steps;
}

} // namespace

void WriteExplanation(const Explanation& explanation, Results& results)
{
    AddDividers(explanation, results);
    AddLines(explanation, results);
    AddHeading(results, "Columns: what each was taken for, from its heading or its first cells");
    for (std::size_t i = 0; i < explanation.columns.size(); ++i)
        AddColumn(explanation.columns[i], i, results);
    if (explanation.columns.empty())
        AddPoint(results, "none");
    AddHeading(results, "Resolution: what a row stands for");
    AddPoint(results, explanation.sResolution);
    AddPoint(results, fmt::format("steps from row to row: {}", StepsText(explanation)));
    AddHeading(results, "Direction, dates and encoding");
    AddPoint(results, explanation.sDirection);
    AddPoint(results, explanation.sDates);
    AddPoint(results, explanation.sEncoding);
}

ordered_json JsonOf(const Explanation& explanation)
{
    return {
        {"dividers", DividersJson(explanation)}, {"lines", LinesJson(explanation)},
        {"columns", ColumnsJson(explanation)},   {"resolution", explanation.sResolution},
        {"steps", StepsJson(explanation)},       {"direction", explanation.sDirection},
        {"dates", explanation.sDates},           {"encoding", explanation.sEncoding},
    };
}

} // namespace tabulex
