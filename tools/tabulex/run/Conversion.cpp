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
#include "tools/tabulex/host/Properties.h"
#include "tools/tabulex/host/ReadCheck.h"
#include "tools/tabulex/run/ProgressView.h"
#include "tools/tabulex/system/Fault.h"
#include "tools/tabulex/system/Interrupt.h"

namespace tabulex {

namespace {

// The state of one conversion.
class Run
{
public:
    Run(Host& host, Console& console, const std::string& file, const ConversionOptions& options,
        const std::optional<Portion>& portion)
        : m_host(host), m_console(console), m_sFile(file), m_options(options), m_portion(portion),
          m_errors(host, console, file, options.errors,
                   options.bDryRun ? nullptr : options.rejects),
          m_bar(console, options.progress), m_views(m_bar, m_errors, options.pView)
    {}

    ~Run() { Stop(); }
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

    Outcome Execute();

private:
    void OpenOutputs(const std::vector<Column>& columns);
    void Start();
    void WaitForEnd();
    void Stop();
    Counts CountLines() const;
    ULONGLONG MostLinesRead() const;
    void Finish(Outcome& outcome);
    void RequireWholeFile(Outcome& outcome);
    void ReportRollback(Outcome& outcome);
    bool ReachesEnd() const;
    void FinishOutput(Outcome& outcome);
    void FinishRejects(Outcome& outcome);
    void Fail(const std::string& fault, ExitStatus status, Outcome& outcome);

    Host& m_host;
    Console& m_console;
    std::string m_sFile;
    const ConversionOptions& m_options;
    std::optional<Portion> m_portion;
    std::unique_ptr<RowOutput> m_output; // null for a dry run
    ErrorReporter m_errors;
    ProgressBar m_bar;
    ProgressViews m_views; // of a whole file; a portion has no box
    com_ptr<ConversionSink> m_sink;
};

Outcome Run::Execute()
{
    const Deferral deferral;
    const auto columns = DeliveredColumns(m_host);
    OpenOutputs(columns);
    m_sink = com_ptr<ConversionSink>(new ConversionSink(columns.size(), m_output.get(), m_errors));
    Start();
    WaitForEnd();
    Outcome outcome;
    Finish(outcome);
    return outcome;
}

void Run::OpenOutputs(const std::vector<Column>& columns)
{
    if (m_options.bDryRun) {
        CheckRowOutput(m_options.output, columns);
        return;
    }
    m_output = OpenRowOutput(m_options.output, columns);
    if (m_options.rejects)
        m_options.rejects->Open();
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

// The box closes by a message that is posted after the end, and its view goes with it.
void Run::WaitForEnd()
{
    PumpToTheEnd(m_host, *m_sink.get(), [this] { m_views.CancelIfWanted(); });
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
    ULONGLONG nLines = std::min(m_sink->Batches() * kBatchLines, MostLinesRead());
    if (m_portion)
        nLines = std::min(nLines, m_portion->nCount);
    nLines = std::max(nLines, m_sink->Rows());
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
    // The rejects come first: if they fail, the rows must not appear either.
    FinishRejects(outcome);
    FinishOutput(outcome);
    ReportRollback(outcome);
}

// Where nothing has been reported, the component has ended the run by itself: settings that
// it refuses, which aren't checked with --no-check.
void Run::ReportRollback(Outcome& outcome)
{
    if (outcome.result == RunResult::Commit)
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
    outcome.status =
        Worse(outcome.status, Interrupted() ? ExitStatus::Interrupted : ExitStatus::Refused);
}

// A reader that has gone got what it wanted.
void Run::RequireWholeFile(Outcome& outcome)
{
    if (m_output && m_output->IsReaderGone())
        return;
    auto fault = FindReadFault(m_host);
    if (!fault && outcome.result == RunResult::Commit) {
        fault = FindGrowth(m_host);
        if (fault && !ReachesEnd())
            return;
    }
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
    if (fault.empty() || m_output->IsReaderGone())
        return; // a reader may close its pipe: that is no fault
    const std::string& path = m_options.output.sPath;
    Fail(path == "-" ? fmt::format("standard output can't be written: {}", fault)
                     : fmt::format("'{}' can't be written: {}", path, fault),
         m_output->FaultStatus(), outcome);
}

void Run::FinishRejects(Outcome& outcome)
{
    if (m_options.bDryRun || !m_options.rejects)
        return;
    const bool bKeep = !Interrupted() || outcome.result == RunResult::Commit;
    if (!m_options.rejects->EndRun(bKeep))
        Fail(m_options.rejects->FaultText(), ExitStatus::FileFault, outcome);
}

void Run::Fail(const std::string& fault, ExitStatus status, Outcome& outcome)
{
    m_console.Error(fault);
    outcome.status = Worse(outcome.status, status);
    outcome.result = RunResult::Rollback;
}

} // namespace

Outcome RunConversion(Host& host, Console& console, const std::string& file,
                      const ConversionOptions& options, const std::optional<Portion>& portion)
{
    return Run(host, console, file, options, portion).Execute();
}

} // namespace tabulex
