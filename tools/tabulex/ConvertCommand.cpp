#include <filesystem>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "tools/tabulex/Commands.h"
#include "tools/tabulex/Fault.h"
#include "tools/tabulex/Properties.h"
#include "tools/tabulex/SettingsCheck.h"
#include "tools/tabulex/Text.h"

namespace tabulex {

namespace {

// In the order of RunResult.
constexpr const char* kResultNames[] = {"commit", "rollback", "refused"};

OutputFormat FormatOf(const ConvertOptions& options)
{
    if (options.format)
        return *options.format;
    const auto ending =
        LowerCase(std::filesystem::path(options.conversion.sOutput).extension().string());
    return ending == ".jsonl" || ending == ".ndjson" ? OutputFormat::JsonLines : OutputFormat::Csv;
}

// Questions need someone to see them and someone to answer.
OnBadLine ActionOf(const ConvertOptions& options)
{
    const bool bTerminal = IsTerminal(Stream::Input) && IsTerminal(Stream::Error);
    return options.onError.value_or(bTerminal ? OnBadLine::Ask : OnBadLine::Skip);
}

ConversionOptions Complete(const ConvertOptions& options)
{
    ConversionOptions result = options.conversion;
    result.format = FormatOf(options);
    result.errors.action = ActionOf(options);
    result.errors.bRejects = !result.sRejects.empty() && !result.bDryRun;
    return result;
}

bool IsSameFile(const std::string& a, const std::string& b)
{
    std::error_code error;
    return a != "-" && !b.empty() && std::filesystem::equivalent(a, b, error) && !error;
}

void RequireDistinctFiles(const std::string& file, const ConversionOptions& options)
{
    if (IsSameFile(options.sOutput, file) || IsSameFile(options.sRejects, file))
        throw Fault{ExitStatus::Usage, "the output would replace the file that is read"};
}

// The check doesn't look for a date by itself; without one a run would end in the
// middle and say nothing.
void RequireRunnable(const Host& host, bool bCheck)
{
    if (const std::string fault = bCheck ? CheckSettings(host) : std::string(); !fault.empty())
        throw Fault{ExitStatus::Refused, fault};
    if (!host.HasColumn(kDateType))
        throw Fault{ExitStatus::Refused, "no column holds a date, so nothing can be converted"};
}

std::string DescribeColumns(const Host& host)
{
    std::vector<std::string> names;
    for (const Column& column : DeliveredColumns(host))
        names.push_back(column.sName);
    return fmt::format("columns {}", fmt::join(names, ", "));
}

std::string DescribeResolution(const Host& host)
{
    const auto* row = host.Offers().FindId(Get(host.Records(), &IRecordParser::get_Resolution));
    return fmt::format("resolution {}, size {}", row ? row->sName : "?",
                       Get(host.Records(), &IRecordParser::get_ResolutionSize));
}

Outcome RunFile(const Context& context, const std::string& file)
{
    const ConversionOptions options = Complete(context.options.convert);
    const Settings& settings = context.options.settings;
    RequireDistinctFiles(file, options);
    Host host(context.offers);
    OpenWithSettings(host, file, settings, context.console);
    context.console.Note(
        fmt::format("{}: {}; {}", file, DescribeResolution(host), DescribeColumns(host)));
    RequireRunnable(host, !context.options.convert.bNoCheck);
    return RunConversion(host, context.console, file, options, settings.portion);
}

std::string Summary(const Outcome& outcome)
{
    return fmt::format("batches={} delivered={} skipped={} result={}\n", outcome.counts.nBatches,
                       outcome.counts.nDelivered, outcome.counts.nSkipped,
                       kResultNames[static_cast<int>(outcome.result)]);
}

} // namespace

// Faults are told here, since the summary is the last line in any case.
ExitStatus Convert(const Context& context, const std::string& file)
{
    Outcome outcome;
    try {
        outcome = RunFile(context, file);
    } catch (const Fault& fault) {
        outcome.status = fault.status;
        context.console.Error(fmt::format("{}: {}", file, fault.sMessage));
    }
    if (!context.console.IsQuiet())
        context.console.Print(Summary(outcome));
    return outcome.status;
}

} // namespace tabulex
