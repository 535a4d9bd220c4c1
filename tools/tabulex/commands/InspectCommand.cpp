#include <nlohmann/json.hpp>

#include "tools/tabulex/advise/AdviceText.h"
#include "tools/tabulex/advise/FileAdvice.h"
#include "tools/tabulex/commands/Commands.h"
#include "tools/tabulex/commands/InspectReport.h"
#include "tools/tabulex/explain/Refusal.h"
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

ordered_json JsonOf(const Inspection& inspection, const std::optional<ULONGLONG>& nRecords,
                    const std::string& file, const ResolutionOffers& offers)
{
    const FileLayout& layout = inspection.sample.layout;
    ordered_json json = {
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
        {"convertible", inspection.sReason.empty()},
        {"reason", inspection.sReason.empty() ? ordered_json() : ordered_json(inspection.sReason)},
    };
    if (inspection.explanation)
        json["explain"] = JsonOf(*inspection.explanation);
    if (inspection.advice)
        json["advice"] = JsonOf(*inspection.advice, file, offers);
    return json;
}

// Objects of several files are told apart by their first key.
ordered_json Named(const std::string& file, const ordered_json& json)
{
    ordered_json named = {{"file", file}};
    named.update(json);
    return named;
}

Inspection InspectionOf(const Context& context, const Host& host, const CleanFile& input)
{
    Inspection inspection{TakeSample(host), WhyRefused(host, context.options.settings), {}, {}};
    if (context.options.inspect.bExplain)
        inspection.explanation = Explain(host, inspection.sample);
    if (input.Recipe().IsEmpty())
        inspection.advice = AdviseFile(input.Path(), context.options.settings, context.offers);
    host.Data().put_Position(0);
    return inspection;
}

} // namespace

// The checks come around the last piece of output: a failed read spoils all that was found out, a
// file that has grown only the count. A file that can't be converted is reported all the same.
ExitStatus Inspect(const Context& context, Host& host, const CleanFile& input)
{
    OpenAsSet(context, host, input);
    const Inspection inspection = InspectionOf(context, host, input);
    Results results;
    if (!context.options.bJson) {
        WriteReport(host, input.Name(), inspection, context, results);
    } else {
        std::optional<ULONGLONG> nRecords;
        if (!context.options.inspect.bNoCount)
            nRecords = host.CountRecords();
        ordered_json json = JsonOf(inspection, nRecords, input.Name(), context.offers);
        if (context.options.files.size() > 1)
            json = Named(input.Name(), json);
        results.Add(json.dump(1) + '\n');
    }
    RequireRead(host);
    results.Finish();
    if (!context.options.inspect.bNoCount)
        RequireNoGrowth(host);
    return inspection.sReason.empty() ? ExitStatus::Done : ExitStatus::Refused;
}

} // namespace tabulex
