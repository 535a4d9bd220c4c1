#include <nlohmann/json.hpp>

#include "tools/tabulex/commands/Commands.h"
#include "tools/tabulex/commands/InspectReport.h"
#include "tools/tabulex/host/Environment.h"
#include "tools/tabulex/host/FileLayout.h"
#include "tools/tabulex/host/ReadCheck.h"
#include "tools/tabulex/output/Results.h"
#include "tools/tabulex/text/Formats.h"

namespace tabulex {

namespace {

using nlohmann::ordered_json;

template <class T>
ordered_json OrNull(const std::optional<T>& value)
{
    return value ? ordered_json(*value) : ordered_json();
}

ordered_json DateOrNull(DATE date)
{
    return date != 0 ? ordered_json(DateTimeText(date)) : ordered_json();
}

ordered_json ColumnsOf(const FileLayout& layout)
{
    ordered_json columns = ordered_json::array();
    for (const LayoutColumn& column : layout.columns)
        columns.push_back(
            {{"type", column.sType.empty() ? ordered_json() : ordered_json(column.sType)},
             {"template", column.sTemplate}});
    return columns;
}

ordered_json JsonOf(const FileLayout& layout, const std::optional<ULONGLONG>& nRecords)
{
    return {
        {"dividers", OrNull(layout.nDividers)},
        {"has_header", layout.bHasHeader},
        {"header_offset", layout.nHeaderOffset},
        {"header", OrNull(layout.sHeader)},
        {"inverted", layout.bInverted},
        {"resolution", layout.nResolution},
        {"resolution_size", layout.nResolutionSize},
        {"valid_resolution", layout.bValidResolution},
        {"lacked_fields", layout.lackedFields},
        {"duplicated_field", layout.sDuplicatedField},
        {"start", DateOrNull(layout.dtStart)},
        {"end", DateOrNull(layout.dtEnd)},
        {"records", OrNull(nRecords)},
        {"columns", ColumnsOf(layout)},
        {"first_record", OrNull(layout.sFirstRecord)},
        {"last_record", OrNull(layout.sLastRecord)},
    };
}

} // namespace

// The checks come around the last piece of output: a failed read spoils all that was found out, a
// file that has grown only the count.
ExitStatus Inspect(const Context& context, Host& host, const std::string& file)
{
    if (const std::string& path = context.options.settings.sEnvironment; !path.empty())
        ReadEnvironment(host, path);
    host.Open(file);
    const FileLayout layout = ReadLayout(host);
    Results results;
    if (!context.options.bJson) {
        WriteReport(host, file, layout, context, results);
    } else {
        std::optional<ULONGLONG> nRecords;
        if (!context.options.inspect.bNoCount)
            nRecords = host.CountRecords();
        results.Add(JsonOf(layout, nRecords).dump(1) + '\n');
    }
    RequireRead(host);
    results.Finish();
    if (!context.options.inspect.bNoCount)
        RequireNoGrowth(host);
    return ExitStatus::Done;
}

} // namespace tabulex
