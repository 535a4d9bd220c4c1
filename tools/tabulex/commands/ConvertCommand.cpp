#include <algorithm>
#include <optional>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "tools/tabulex/commands/Commands.h"
#include "tools/tabulex/commands/ConvertSteps.h"
#include "tools/tabulex/commands/FileReading.h"
#include "tools/tabulex/explain/Refusal.h"
#include "tools/tabulex/host/Columns.h"
#include "tools/tabulex/host/Environment.h"
#include "tools/tabulex/host/Properties.h"
#include "tools/tabulex/host/ReadCheck.h"
#include "tools/tabulex/options/OutputTargets.h"
#include "tools/tabulex/output/SqliteOutput.h"
#include "tools/tabulex/review/LayoutReview.h"
#include "tools/tabulex/system/Fault.h"
#include "tools/tabulex/system/Interrupt.h"
#include "tools/tabulex/system/Paths.h"

namespace tabulex {

namespace {

void RequireRunnable(const Host& host, const Settings& settings, bool bCheck)
{
    const std::string fault = WhyRefused(host, settings, bCheck);
    if (!fault.empty())
        throw Fault{ExitStatus::Refused, fault};
}

void RequireUnnamed(const Host& host, const std::optional<NameColumn>& name)
{
    if (name && name->sColumn == "Symbol" && host.HasColumn(TypeSymbol))
        throw Fault{ExitStatus::Refused,
                    "--symbol-from-name: the file has a Symbol column of its own; leave the option "
                    "out, or that column by --column N=none"};
}

std::string RequireSymbol(const NamePattern& pattern, const std::string& file)
{
    const auto symbol = pattern.PartOf(Utf8Of(PathOf(file).filename()));
    if (!symbol)
        throw Fault{ExitStatus::Refused,
                    "--symbol-from-name: the name of the file doesn't match the pattern"};
    return *symbol;
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
    {
        if (!m_convert.sReport.empty())
            m_report.emplace(m_convert.sReport);
        else if (context.options.bJson)
            m_report.emplace(context.console);
    }

    ExitStatus Run();

private:
    Outcome RunOne(std::size_t nFile);
    Outcome Convert(const std::string& file, ConversionOptions options);
    Outcome ConvertClean(const CleanFile& clean, const Settings& settings,
                         ConversionOptions options, Warnings& warnings);
    Outcome ConvertOpened(Host& host, const Settings& settings, const ConversionOptions& options,
                          Warnings& warnings);
    std::string Prepare(Host& host, const CleanFile& input, const Settings& settings,
                        Warnings& warnings) const;
    std::optional<NameColumn> NameInFront(std::size_t nFile) const;
    bool HasSeveral() const { return m_files.size() > 1; }
    ConversionOptions OptionsOf(std::size_t nFile);
    Outcome Refused(const std::string& file, const Fault& fault, std::optional<Account> account,
                    const Warnings& warnings);
    void SaveAfterCommit(Host& host, EnvironmentFile& environment, Outcome& outcome);
    void FinishRejects(Outcome& outcome);
    void PrintEnd(const std::string& file, const Outcome& outcome) const;

    const Context& m_context;
    const ConvertOptions& m_convert;
    const std::vector<std::string>& m_files;
    std::vector<OutputOptions> m_outputs; // one a file
    RejectsFile m_rejects;
    SharedHeader m_header; // of standard output
    std::optional<RunReport> m_report;
    bool m_bCommitted = false; // any of the files
};

// Prints the summary here, since it is the last line of a file in any case.
ExitStatus ConversionSeries::Run()
{
    ExitStatus status = ExitStatus::Done;
    Outcome total;
    total.result = RunResult::Commit;
    bool bInterrupted = false;
    bool bReaderGone = false;
    for (std::size_t i = 0; i < m_files.size() && !bInterrupted && !bReaderGone; ++i) {
        Outcome outcome = RunOne(i);
        bReaderGone = outcome.bReaderGone;
        const bool bLast = i + 1 == m_files.size() || bReaderGone;
        bInterrupted = !bLast && Interrupted();
        if (bLast || bInterrupted)
            FinishRejects(outcome);
        PrintEnd(m_files[i], outcome);
        total.result = std::max(total.result, outcome.result);
        total.counts += outcome.counts;
        m_bCommitted = m_bCommitted || outcome.result == RunResult::Commit;
        status = Worse(status, outcome.status);
    }
    if (HasSeveral() && !m_context.console.IsQuiet())
        m_context.console.Print(Summary(total));
    return bInterrupted ? InterruptStatus() : status;
}

// Of several files each has its name ahead of its lines, and the last line is the total.
void ConversionSeries::PrintEnd(const std::string& file, const Outcome& outcome) const
{
    Console& console = m_context.console;
    if (console.IsQuiet())
        return;
    const std::string name = HasSeveral() ? file + ": " : std::string();
    if (outcome.account)
        console.Print(name + outcome.account->Text(console.IsVerbose()) + '\n');
    console.Print(name + Summary(outcome));
}

// After a file that fails the others are still converted.
Outcome ConversionSeries::RunOne(std::size_t nFile)
{
    const std::string& file = m_files[nFile];
    try {
        if (m_report)
            m_report->Begin(file);
        return Convert(file, OptionsOf(nFile));
    } catch (const Fault& fault) {
        return Refused(file, fault, std::nullopt, Warnings(m_context.console, file));
    }
}

Outcome ConversionSeries::Refused(const std::string& file, const Fault& fault,
                                  std::optional<Account> account, const Warnings& warnings)
{
    m_context.console.Error(fmt::format("{}: {}", file, fault.sMessage));
    Outcome outcome;
    outcome.status = fault.status;
    outcome.account = account;
    if (m_report)
        m_report->End(account.value_or(Account()), warnings.All(), NameOf(outcome.result),
                      static_cast<int>(fault.status), fault.sMessage);
    return outcome;
}

Outcome ConversionSeries::Convert(const std::string& file, ConversionOptions options)
{
    RequireDistinctFiles(m_convert, m_files, options.output);
    Warnings warnings(m_context.console, file);
    const InputFile input(file, m_context.options.general.sEncoding, warnings);
    const FileReading reading = ReadingOf(m_context, input, warnings);
    const CleanFile clean(input, reading.recipe, warnings);
    return ConvertClean(clean, reading.settings, options, warnings);
}

Outcome ConversionSeries::ConvertClean(const CleanFile& clean, const Settings& settings,
                                       ConversionOptions options, Warnings& warnings)
{
    Host host(m_context.offers);
    try {
        OnReadFile(host, [&] { options.sRangeOutside = Prepare(host, clean, settings, warnings); });
        RequireUnnamed(host, options.name);
        options.pClean = &clean;
        return ConvertOpened(host, settings, options, warnings);
    } catch (const Fault& fault) {
        auto account = AccountOfUnread(host, settings, warnings);
        if (account)
            account = clean.AccountOf(*account);
        return Refused(clean.Name(), fault, account, warnings);
    }
}

Outcome ConversionSeries::ConvertOpened(Host& host, const Settings& settings,
                                        const ConversionOptions& options, Warnings& warnings)
{
    OnReadFile(host, [&] { ReviewLayout(host, settings.columns, warnings); });
    const auto run = [&] {
        return RunConversion(host, m_context.console, options.pClean->Name(), options, settings,
                             warnings);
    };
    if (!m_convert.bSaveEnvironment)
        return run();
    const Deferral deferral; // what is begun below is ended, too
    EnvironmentFile environment(settings.sEnvironment);
    Outcome outcome = run();
    if (outcome.result == RunResult::Commit && !m_convert.bDryRun)
        SaveAfterCommit(host, environment, outcome);
    return outcome;
}

// The rows are there, whatever becomes of the templates.
void ConversionSeries::SaveAfterCommit(Host& host, EnvironmentFile& environment, Outcome& outcome)
{
    try {
        environment.Save(host);
    } catch (const Fault& fault) {
        m_context.console.Error(fault.sMessage);
        outcome.status = Worse(outcome.status, fault.status);
    }
}

// Opens the file and makes sure that it can be converted. Gives the place of a range without
// records.
std::string ConversionSeries::Prepare(Host& host, const CleanFile& input, const Settings& settings,
                                      Warnings& warnings) const
{
    host.SetSource(input.Source());
    const Opening opening = OpenWithSettings(host, input.Path(), input.SettingsOf(settings));
    for (const std::string& warning : opening.warnings)
        warnings.Add("settings", warning);
    m_context.console.Note(
        fmt::format("{}: {}; {}", input.Name(), DescribeResolution(host), DescribeColumns(host)));
    try {
        RequireRunnable(host, settings, !m_convert.bNoCheck);
    } catch (const Fault& fault) {
        throw Fault{fault.status, fault.sMessage + AdvisedInstead(m_context, input.Input())};
    }
    return opening.sRangeOutside;
}

// Rows of several files in one place are told apart by the names of the files, unless these give
// the symbol. So are the rows of one file that join others in a table.
std::optional<NameColumn> ConversionSeries::NameInFront(std::size_t nFile) const
{
    constexpr const char* kFile = "File";
    const std::string& file = m_files[nFile];
    if (m_convert.symbolFromName)
        return NameColumn{"Symbol", RequireSymbol(*m_convert.symbolFromName, file)};
    const OutputOptions& output = m_outputs[nFile];
    const bool bMixed = HasSeveral() && m_outputs.front().sPath == m_outputs.back().sPath;
    return bMixed || AppendsToColumn(output, kFile) ? std::optional(NameColumn{kFile, file})
                                                    : std::nullopt;
}

// The rows of further files go to the table that this call has made for the first.
ConversionOptions ConversionSeries::OptionsOf(std::size_t nFile)
{
    ConversionOptions options;
    options.output = m_outputs[nFile];
    if (m_bCommitted && !m_convert.bDryRun && m_outputs[nFile].sPath == m_outputs[nFile - 1].sPath)
        options.output.oldTable = OldTable::Append;
    if (HasSeveral() && options.output.sPath == "-")
        options.output.pHeader = &m_header;
    options.output.bHoldBack = m_convert.bStrict || m_convert.nMaxErrors;
    options.name = NameInFront(nFile);
    options.rejects = m_convert.sRejects.empty() ? nullptr : &m_rejects;
    options.report = m_report ? &*m_report : nullptr;
    options.bDryRun = m_convert.bDryRun;
    options.bStrict = m_convert.bStrict;
    options.errors = {ActionOn(m_convert), m_convert.lineNumbers, m_convert.nMaxErrors};
    options.progress = m_convert.progress;
    return options;
}

void ConversionSeries::FinishRejects(Outcome& outcome)
{
    for (const std::string& fault : {m_rejects.Finish() ? "" : m_rejects.FaultText(),
                                     !m_report || m_report->Finish() ? "" : m_report->FaultText()})
        if (!fault.empty()) {
            m_context.console.Error(fault);
            outcome.status = Worse(outcome.status, ExitStatus::FileFault);
        }
}

} // namespace

ExitStatus Convert(const Context& context)
{
    const Options& options = context.options;
    const bool bFolder = IsFolder(options.convert.sOutput);
    // An interrupt must not leave an empty folder, rejects between two files, or half a report; and
    // how the command ended is said whenever it comes.
    const Deferral deferral;
    std::optional<OutputFolder> folder;
    if (bFolder && !options.convert.bDryRun)
        folder.emplace(options.convert.sOutput);
    const ExitStatus status = ConversionSeries(context).Run();
    PutOffInterrupts();
    return status;
}

} // namespace tabulex
