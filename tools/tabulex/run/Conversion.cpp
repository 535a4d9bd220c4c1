// The outputs are opened before the run starts, so that a name that can't be written costs no
// conversion. While it runs an interrupt only sets a flag. The loop that dispatches messages sees
// it and has the component cancel the run, or the sink refuses the next batch; either way the run
// rolls back. Whether the outputs appear is decided last: a run may have been committed and still
// lack a part of the file.

#include "tools/tabulex/run/Conversion.h"

#include <algorithm>

#include <fmt/format.h>

#include "interfaces/NativeHost.h"
#include "tools/tabulex/host/Columns.h"
#include "tools/tabulex/host/FileVersion.h"
#include "tools/tabulex/host/Properties.h"
#include "tools/tabulex/host/ReadCheck.h"
#include "tools/tabulex/review/CellReview.h"
#include "tools/tabulex/run/ProgressView.h"
#include "tools/tabulex/system/Fault.h"
#include "tools/tabulex/system/Interrupt.h"
#include "tools/tabulex/system/Surroundings.h"
#include "tools/tabulex/text/Formats.h"

namespace tabulex {

namespace {

constexpr ULONGLONG kMostBadShare = 10; // one line in so many may be bad

// The cause of a result without rows; empty where none were asked for.
std::string WhyEmpty(const Account& account, const Settings& settings)
{
    const bool bNone = settings.portion && settings.portion->nCount == 0;
    if (bNone || (AsksForRange(settings) && account.nOutside > 0))
        return {};
    if (account.nBad > 0)
        return fmt::format("no row was delivered: all {} read {} bad; look at the layout with "
                           "'tabulex inspect'",
                           Counted(account.nBad, "line"), account.nBad == 1 ? "is" : "are");
    if (account.nOtherSymbol > 0)
        return fmt::format("no row has the symbol '{}'; 'tabulex symbols' lists those of the file",
                           *settings.sSymbol);
    if (settings.portion && settings.portion->nCount > 0 && account.nOutside > 0)
        return fmt::format("the portion begins behind the last record; the file has {}",
                           Counted(account.nOutside, "record"));
    if (account.nOutside > 0)
        return {};
    return "no row was delivered: the file has no data lines that can be read";
}

// Empty where the rows are what was asked for, as far as they could be read.
std::string WhyNotAllRight(const Account& account, const Settings& settings, bool bAnyErrors)
{
    const ULONGLONG nJudged = account.nDelivered + account.nBad;
    if (account.nDelivered == 0)
        return WhyEmpty(account, settings);
    if (!bAnyErrors && account.nBad * kMostBadShare > nJudged)
        return fmt::format("{} of {} lines are bad, more than one in {}; look at the layout with "
                           "'tabulex inspect', or allow them by --max-errors",
                           WithThousands(account.nBad), WithThousands(nJudged), kMostBadShare);
    return {};
}

// Then something was read that isn't the file, or the tool has a fault.
constexpr const char* kNoBalance =
    "the rows that came aren't those of its lines; nothing was written. Run the command again, and "
    "report this if it happens then too";

std::vector<intake::Scale> ScalesOf(const CleanFile* pClean)
{
    return pClean ? pClean->Recipe().scales : std::vector<intake::Scale>();
}

// The state of one conversion.
class Run
{
public:
    Run(Host& host, Console& console, const std::string& file, const ConversionOptions& options,
        const Settings& settings, Warnings& warnings)
        : m_host(host), m_console(console), m_sFile(file), m_options(options), m_settings(settings),
          m_portion(settings.portion), m_warnings(warnings), m_version(VersionOf(host)),
          m_lines(host.Path(), OpenedSize(host).value_or(0), host.Source()),
          m_errors(host, console, file, options.errors, m_lines, options.rejects, options.report),
          m_shape(host, options.name, ScalesOf(options.pClean)), m_bar(console, options.progress),
          m_views(m_bar, m_errors, options.pView)
    {}

    ~Run() { Stop(); }
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

    Outcome Execute();

private:
    void OpenOutputs();
    void LayPath();
    void Start();
    void WaitForEnd();
    void Stop();
    Counts CountLines() const;
    ULONGLONG MostLinesRead() const;
    void Finish(Outcome& outcome);
    void TellNothingNew() const;
    void WarnOf(std::string_view code, const std::string& text);
    void RequireWholeFile(Outcome& outcome);
    void ReportRollback(Outcome& outcome);
    bool ReachesEnd() const;
    void FinishOutput(Outcome& outcome);
    void FinishRejects(Outcome& outcome);
    void TakeAccount(Outcome& outcome);
    void RequireWholeAccount(Outcome& outcome);
    void JudgeRows(Outcome& outcome);
    void RequireNoWarnings(Outcome& outcome);
    void Report(const Outcome& outcome);
    bool IsReaderGone() const { return m_output && m_output->IsReaderGone(); }
    void Fail(const std::string& fault, ExitStatus status, Outcome& outcome);

    Host& m_host;
    Console& m_console;
    std::string m_sFile;
    const ConversionOptions& m_options;
    const Settings& m_settings;
    std::optional<Portion> m_portion;
    Warnings& m_warnings;
    FileVersion m_version; // when the run began
    LineMap m_lines;
    std::optional<RowReview> m_review;
    std::optional<DeliveredReview> m_days;
    std::optional<RangeEnd> m_end;       // empty where the component keeps to the range
    std::unique_ptr<RowOutput> m_output; // null for a dry run
    ErrorReporter m_errors;
    RowShaping m_shape;
    ProgressBar m_bar;
    ProgressViews m_views; // of a whole file; a portion has no box
    std::optional<RowPath> m_path;
    std::optional<RowQueue> m_queue; // its thread ends before what the path leads to
    com_ptr<ConversionSink> m_sink;
    ULONGLONG m_nMostLines = 0; // that the run can have read
};

Outcome Run::Execute()
{
    const Deferral deferral;
    OpenOutputs();
    ExpectCells(m_host, m_lines);
    LayPath();
    m_sink = com_ptr<ConversionSink>(new ConversionSink(*m_path, *m_queue, m_errors));
    Start();
    WaitForEnd();
    Outcome outcome;
    Finish(outcome);
    return outcome;
}

void Run::OpenOutputs()
{
    if (m_options.bDryRun) {
        WarnOf("table-columns", CheckRowOutput(m_options.output, m_shape.Columns()));
    } else {
        m_output = OpenRowOutput(m_options.output, m_shape.Columns());
        WarnOf("table-columns", m_output->Remark());
    }
    if (m_options.rejects)
        m_options.rejects->Open();
}

// Where both are seen, lines about bad rows come after the rows of the batches before.
void Run::LayPath()
{
    m_review.emplace(m_host, DeliveredColumns(m_host));
    m_days.emplace(m_host, m_settings);
    if (m_settings.bWholeFile && m_settings.dtTo)
        m_end.emplace(m_host, DeliveredColumns(m_host), *m_settings.dtTo);
    m_path.emplace(m_shape.Rows(), m_output.get(), &*m_review, &*m_days, m_end ? &*m_end : nullptr);
    const bool bApart = m_output && ProcessorCount() > 1;
    m_queue.emplace(*m_path, bApart ? RowQueue::Threads::Two : RowQueue::Threads::One);
    if (m_path->ShowsAtOnce())
        m_errors.BeforeLines([this] { m_queue->Drain(); });
}

// The component checks the settings of a portion when it starts, whatever was checked
// before, and reports a fault to the sink.
void Run::Start()
{
    IqrlTabulexConvertor& front = m_host.Front();
    const HRESULT hr =
        m_portion ? front.DoConvertPortion(0, m_sink.get(), m_portion->nStart, m_portion->nCount)
                  : front.DoConvert(m_sink.get(), 0);
    if (FAILED(hr))
        throw Fault{ExitStatus::Refused,
                    m_sink->FaultText().empty()
                        ? fmt::format("the conversion can't start: {}", HexOf(hr))
                        : m_sink->FaultText()};
}

// The component goes on counting records after the run, so that is asked before the rows are waited
// for. The box closes by a message that is posted after the end, and its view goes with it.
void Run::WaitForEnd()
{
    PumpToTheEnd(m_host, *m_sink.get(), [this] { m_views.CancelIfWanted(); });
    m_nMostLines = MostLinesRead();
    m_sink->FinishRows();
    m_bar.ShowEnd(m_sink->Rows());
    while (m_views.IsOnShow())
        TabulexPumpMessages(kPumpMilliseconds);
}

void Run::Stop()
{
    if (m_sink && !m_sink->HasEnded())
        m_host.Front().Unadvise(m_sink.get());
}

// The sink is told of rows only. Each batch but the last of a run has kBatchLines lines.
Counts Run::CountLines() const
{
    ULONGLONG nLines = std::min(m_sink->Batches() * kBatchLines, m_nMostLines);
    if (m_portion)
        nLines = std::min(nLines, m_portion->nCount);
    nLines = std::max(nLines, m_sink->Rows() + (m_end ? m_end->LeftOut() : 0));
    return {m_sink->Batches(), m_sink->Rows(), nLines - m_sink->Rows()};
}

// The number of records from the run's start to the end of the file, or to the place where
// reading failed: no more lines than these have been read.
ULONGLONG Run::MostLinesRead() const
{
    ULONGLONG nRecords = 0;
    VARIANT_BOOL bComplete = VARIANT_FALSE;
    m_host.Data().GetCount(&nRecords, &bComplete);
    const ULONGLONG nEnd = std::min(nRecords, FaultPosition(m_host).value_or(nRecords));
    return nEnd - std::min(nEnd, m_portion ? m_portion->nStart : 0);
}

void Run::Finish(Outcome& outcome)
{
    m_errors.Flush();
    outcome.counts = CountLines();
    outcome.result = m_sink->IsCommitted() ? RunResult::Commit : RunResult::Rollback;
    RequireWholeFile(outcome);
    TakeAccount(outcome);
    JudgeRows(outcome);
    WarnOf("volume-cut", m_shape.VolumeLoss());
    RequireNoWarnings(outcome);
    // The rejects come first: if they fail, the rows must not appear either.
    FinishRejects(outcome);
    FinishOutput(outcome);
    ReportRollback(outcome);
    Report(outcome);
}

// ---- what became of the lines

void Run::TakeAccount(Outcome& outcome)
{
    RunFacts facts;
    facts.bCommitted = m_sink->IsCommitted();
    facts.nRead = outcome.counts.nDelivered + outcome.counts.nSkipped;
    facts.nDelivered = outcome.counts.nDelivered;
    facts.nBehindRange = m_end ? m_end->LeftOut() : 0;
    facts.nBad = m_errors.Reported();
    facts.nLastBatch = m_errors.LastBatchStart() + (m_portion ? m_portion->nStart : 0);
    facts.badInLastBatch = m_errors.LastBatch();
    outcome.account = MakeAccount(m_host, m_settings, facts, m_lines, m_warnings);
    m_review->End(m_warnings, m_console, m_sFile);
    ReviewCells(m_host, m_lines, m_warnings);
    if (m_sink->IsCommitted())
        m_days->End(m_lines, m_warnings);
    RequireWholeAccount(outcome);
    if (outcome.account && m_options.pClean)
        outcome.account = m_options.pClean->AccountOf(*outcome.account);
}

// The component read the file that it had open, whatever became of the name; and a portion ahead of
// a damaged end is whole.
void Run::RequireWholeAccount(Outcome& outcome)
{
    const std::string fault = !m_lines.FaultText().empty() ? m_lines.FaultText()
                              : outcome.account->AddsUp()  ? std::string()
                                                           : std::string(kNoBalance);
    if (fault.empty() || IsReaderGone())
        return;
    outcome.account.reset();
    if (!m_lines.FaultText().empty() && (m_portion || !m_lines.IsOpen()))
        WarnOf("no-account", fmt::format("its lines can't be counted: {}", fault));
    else if (outcome.result == RunResult::Commit)
        Fail(fmt::format("{}: {}", m_sFile, fault), ExitStatus::FileFault, outcome);
}

void Run::RequireNoWarnings(Outcome& outcome)
{
    if (m_options.bStrict && outcome.result == RunResult::Commit && !m_warnings.All().empty())
        Fail(fmt::format("{}: {}, which --strict doesn't allow; nothing was written", m_sFile,
                         Counted(m_warnings.All().size(), "warning")),
             ExitStatus::Refused, outcome);
}

// Rows that are there are kept, but a result with holes isn't all right, and that is said even
// where warnings aren't.
void Run::JudgeRows(Outcome& outcome)
{
    if (outcome.result != RunResult::Commit || IsReaderGone() || !outcome.account)
        return;
    const Account& account = *outcome.account;
    const std::string fault =
        WhyNotAllRight(account, m_settings, m_options.errors.nMost.has_value());
    if (!fault.empty()) {
        m_warnings.Add(account.nDelivered ? "many-bad-lines" : "empty-result", fault);
        if (m_console.IsQuiet())
            m_console.Error(fmt::format("{}: {}", m_sFile, fault));
        outcome.sError = fault;
    }
    outcome.bNothingNew = AsksForRange(m_settings) && account.nDelivered == 0 && fault.empty() &&
                          account.nUnread == 0;
    if (outcome.bNothingNew)
        TellNothingNew();
    const bool bZeroBytes = account.nDelivered > 0 && m_lines.Tally().nZeroContent > 0;
    if (!fault.empty() || account.nUnread > 0 || bZeroBytes)
        outcome.status = Worse(outcome.status, ExitStatus::Refused);
}

void Run::TellNothingNew() const
{
    const std::string& place = m_options.sRangeOutside;
    if (!m_console.IsQuiet())
        m_console.Print(fmt::format("{}: nothing new: {}\n", m_sFile,
                                    place.empty() ? "no record lies in the range" : place));
}

void Run::WarnOf(std::string_view code, const std::string& text)
{
    if (!text.empty())
        m_warnings.Add(code, text);
}

void Run::Report(const Outcome& outcome)
{
    if (m_options.report)
        m_options.report->End(outcome.account.value_or(Account()), m_warnings.All(),
                              NameOf(outcome.result), static_cast<int>(outcome.status),
                              outcome.sError);
}

// ---- how it ended

// A reader that has gone is told nothing. Where nothing has been reported, the component has ended
// the run by itself: settings that it refuses, which aren't checked with --no-check.
void Run::ReportRollback(Outcome& outcome)
{
    if (outcome.result == RunResult::Commit || outcome.bReaderGone)
        return;
    if (m_errors.HasTooMany())
        m_console.Error(fmt::format("{}: more bad lines than --max-errors {} allows; nothing was "
                                    "written",
                                    m_sFile, *m_options.errors.nMost));
    else if (m_sink->IsOutOfMemory())
        Fail(fmt::format("{}: {}", m_sFile, kOutOfMemory), ExitStatus::FileFault, outcome);
    else if (outcome.status == ExitStatus::Done && !Interrupted() && !m_errors.HasStopped())
        m_console.Note(fmt::format("{}: the component ended the conversion without a reason; "
                                   "'tabulex check' may know one",
                                   m_sFile));
    outcome.status = Worse(outcome.status, Interrupted() ? InterruptStatus() : ExitStatus::Refused);
}

// A reader that has gone got what it wanted.
void Run::RequireWholeFile(Outcome& outcome)
{
    if (IsReaderGone())
        return;
    auto fault = FindReadFault(m_host);
    if (!fault && outcome.result == RunResult::Commit) {
        fault = FindGrowth(m_host);
        if (fault && !ReachesEnd())
            return;
    }
    if (!fault && outcome.result == RunResult::Commit)
        fault = FindChange(m_host, m_version);
    if (fault)
        Fail(fmt::format("{}: {}", m_sFile, fault->sMessage), fault->status, outcome);
}

// Whether the run would have gone on with what was added to the file.
bool Run::ReachesEnd() const
{
    IDataParser& data = m_host.Data();
    ULONGLONG nRecords = 0;
    VARIANT_BOOL bComplete = VARIANT_FALSE;
    data.GetCount(&nRecords, &bComplete);
    if (bComplete == VARIANT_FALSE)
        return false; // it ended by itself before
    if (m_portion)
        return m_portion->nCount > nRecords - std::min(nRecords, m_portion->nStart);
    if (GetFlag(data, &IDataParser::get_InvertedDirection))
        return GetDate(data, &IDataParser::get_StartDateTime) <=
               GetDate(data, &IDataParser::GetMinDateTime);
    return GetDate(data, &IDataParser::get_EndDateTime) >=
           GetDate(data, &IDataParser::GetMaxDateTime);
}

void Run::FinishOutput(Outcome& outcome)
{
    if (!m_output)
        return;
    if (outcome.result == RunResult::Commit)
        m_output->Commit();
    else
        m_output->Discard();
    const std::string fault = m_output->FaultText();
    if (m_output->IsReaderGone()) { // that is no fault, but the rows aren't all there
        outcome.bReaderGone = true;
        outcome.result = RunResult::Rollback;
    }
    if (fault.empty() || outcome.bReaderGone)
        return;
    const std::string& path = m_options.output.sPath;
    Fail(path == "-" ? fmt::format("standard output can't be written: {}", fault)
                     : fmt::format("'{}' can't be written: {}", path, fault),
         m_output->FaultStatus(), outcome);
}

void Run::FinishRejects(Outcome& outcome)
{
    if (!m_options.rejects)
        return;
    const bool bKeep = !Interrupted() || outcome.result == RunResult::Commit;
    if (!m_options.rejects->EndRun(bKeep))
        Fail(m_options.rejects->FaultText(), ExitStatus::FileFault, outcome);
}

void Run::Fail(const std::string& fault, ExitStatus status, Outcome& outcome)
{
    m_console.Error(fault);
    outcome.sError = fault;
    outcome.status = Worse(outcome.status, status);
    outcome.result = RunResult::Rollback;
}

} // namespace

Counts& Counts::operator+=(const Counts& other)
{
    nBatches += other.nBatches;
    nDelivered += other.nDelivered;
    nSkipped += other.nSkipped;
    return *this;
}

const char* NameOf(RunResult result)
{
    switch (result) {
    case RunResult::Commit:
        return "commit";
    case RunResult::Rollback:
        return "rollback";
    default:
        return "refused";
    }
}

Outcome RunConversion(Host& host, Console& console, const std::string& file,
                      const ConversionOptions& options, const Settings& settings,
                      Warnings& warnings)
{
    return Run(host, console, file, options, settings, warnings).Execute();
}

std::optional<Account> AccountOfUnread(const Host& host, const Settings& settings,
                                       Warnings& warnings)
{
    const auto nSize = OpenedSize(host);
    if (!nSize)
        return std::nullopt;
    LineMap lines(host.Path(), *nSize, host.Source());
    Account account = MakeAccount(host, settings, {.bRun = false}, lines, warnings);
    return lines.FaultText().empty() ? std::optional(account) : std::nullopt;
}

} // namespace tabulex
