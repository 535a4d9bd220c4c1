#include <optional>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "tools/tabulex/commands/Commands.h"
#include "tools/tabulex/commands/ConvertSteps.h"
#include "tools/tabulex/host/Columns.h"
#include "tools/tabulex/host/Environment.h"
#include "tools/tabulex/host/Properties.h"
#include "tools/tabulex/host/ReadCheck.h"
#include "tools/tabulex/host/SettingsCheck.h"
#include "tools/tabulex/options/OutputTargets.h"
#include "tools/tabulex/system/Fault.h"
#include "tools/tabulex/system/Interrupt.h"

namespace tabulex {

namespace {

void RequireRunnable(const Host& host, bool bCheck)
{
    const std::string fault = bCheck ? WhyNotConvertible(host) : WhyNotRunnable(host);
    if (!fault.empty())
        throw Fault{ExitStatus::Refused, fault};
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

// The conversions of one call: a file after the other, and what they share.
class ConversionSeries
{
public:
    explicit ConversionSeries(const Context& context)
        : m_context(context), m_convert(context.options.convert), m_files(context.options.files),
          m_outputs(OutputsOf(m_convert, m_files)), m_rejects(m_convert.sRejects)
    {}

    ExitStatus Run();

private:
    Outcome RunOne(std::size_t nFile);
    Outcome Convert(const std::string& file, const ConversionOptions& options);
    void Prepare(Host& host, const std::string& file) const;
    ConversionOptions OptionsOf(std::size_t nFile);
    void FinishRejects(Outcome& outcome);

    const Context& m_context;
    const ConvertOptions& m_convert;
    const std::vector<std::string>& m_files;
    std::vector<OutputOptions> m_outputs; // one a file
    RejectsFile m_rejects;
    bool m_bCommitted = false; // any of the files
};

// Prints the summary here, since it is the last line of a file in any case.
ExitStatus ConversionSeries::Run()
{
    ExitStatus status = ExitStatus::Done;
    bool bInterrupted = false;
    for (std::size_t i = 0; i < m_files.size() && !bInterrupted; ++i) {
        Outcome outcome = RunOne(i);
        const bool bLast = i + 1 == m_files.size();
        bInterrupted = !bLast && Interrupted();
        if (bLast || bInterrupted)
            FinishRejects(outcome);
        if (!m_context.console.IsQuiet())
            m_context.console.Print(Summary(outcome));
        m_bCommitted = m_bCommitted || outcome.result == RunResult::Commit;
        status = Worse(status, outcome.status);
    }
    return bInterrupted ? ExitStatus::Interrupted : status;
}

// After a file that fails the others are still converted.
Outcome ConversionSeries::RunOne(std::size_t nFile)
{
    try {
        return Convert(m_files[nFile], OptionsOf(nFile));
    } catch (const Fault& fault) {
        m_context.console.Error(fmt::format("{}: {}", m_files[nFile], fault.sMessage));
        Outcome outcome;
        outcome.status = fault.status;
        return outcome;
    }
}

Outcome ConversionSeries::Convert(const std::string& file, const ConversionOptions& options)
{
    RequireDistinctFiles(m_convert, m_files, options.output);
    Host host(m_context.offers);
    OnReadFile(host, [&] { Prepare(host, file); });
    const Outcome outcome =
        RunConversion(host, m_context.console, file, options, m_context.options.settings.portion);
    if (m_convert.bSaveEnvironment && outcome.result == RunResult::Commit && !m_convert.bDryRun)
        SaveEnvironment(host, m_context.options.settings.sEnvironment);
    return outcome;
}

// Opens the file and makes sure that it can be converted.
void ConversionSeries::Prepare(Host& host, const std::string& file) const
{
    OpenWithSettings(host, file, m_context.options.settings, m_context.console);
    m_context.console.Note(
        fmt::format("{}: {}; {}", file, DescribeResolution(host), DescribeColumns(host)));
    RequireRunnable(host, !m_convert.bNoCheck);
}

// The rows of further files go to the table that this call has made for the first.
ConversionOptions ConversionSeries::OptionsOf(std::size_t nFile)
{
    ConversionOptions options;
    options.output = m_outputs[nFile];
    if (m_bCommitted && !m_convert.bDryRun && m_outputs[nFile].sPath == m_outputs[nFile - 1].sPath)
        options.output.oldTable = OldTable::Append;
    options.rejects = m_convert.sRejects.empty() ? nullptr : &m_rejects;
    options.bDryRun = m_convert.bDryRun;
    options.errors = {ActionOn(m_convert), m_convert.nMaxErrors};
    options.progress = m_convert.progress;
    return options;
}

void ConversionSeries::FinishRejects(Outcome& outcome)
{
    if (m_rejects.Finish())
        return;
    m_context.console.Error(m_rejects.FaultText());
    outcome.status = Worse(outcome.status, ExitStatus::FileFault);
}

} // namespace

ExitStatus Convert(const Context& context)
{
    const Options& options = context.options;
    const bool bFolder = IsFolder(options.convert.sOutput);
    // An interrupt must not leave an empty folder, nor rejects between two files.
    std::optional<Deferral> deferral;
    if (options.files.size() > 1 || bFolder)
        deferral.emplace();
    std::optional<OutputFolder> folder;
    if (bFolder && !options.convert.bDryRun)
        folder.emplace(options.convert.sOutput);
    return ConversionSeries(context).Run();
}

} // namespace tabulex
