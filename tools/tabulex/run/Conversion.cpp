#include "tools/tabulex/run/Conversion.h"

#include <algorithm>

#include <fmt/format.h>

#include "interfaces/NativeHost.h"
#include "tools/tabulex/host/Columns.h"
#include "tools/tabulex/host/Properties.h"
#include "tools/tabulex/run/ProgressView.h"
#include "tools/tabulex/system/Fault.h"
#include "tools/tabulex/system/Interrupt.h"

namespace tabulex {

namespace {

// How soon an interrupt is heard; whatever comes of the session wakes the wait at once.
constexpr unsigned kPumpMilliseconds = 50;

// The state of one conversion.
class Run
{
public:
    Run(Host& host, Console& console, const std::string& file, const ConversionOptions& options,
        const std::optional<Portion>& portion)
        : m_host(host), m_console(console), m_sFile(file), m_options(options), m_portion(portion),
          m_errors(host, console, file, options.errors,
                   options.bDryRun ? nullptr : options.rejects),
          m_bar(console, options.progress), m_views(m_bar, m_errors)
    {}

    ~Run() { Stop(); }
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

    Outcome Execute();

private:
    void OpenOutputs(const std::vector<Column>& columns);
    void Start();
    void PumpToTheEnd();
    void Stop();
    Counts CountLines() const;
    void Finish(Outcome& outcome);
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
    PumpToTheEnd();
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

// A portion is checked by the component as it starts, whatever was checked before; its
// finding comes through the sink.
void Run::Start()
{
    IqrlTabulexConvertor& front = m_host.Front();
    const HRESULT hr =
        m_portion ? front.DoConvertPortion(0, m_sink.get(), m_portion->nStart, m_portion->nCount)
                  : front.DoConvert(m_sink.get(), 0);
    if (FAILED(hr))
        throw Fault{ExitStatus::Refused, m_sink->FaultText().empty()
                                             ? fmt::format("the run can't start: {}", HexOf(hr))
                                             : m_sink->FaultText()};
}

// A session that nobody holds any more, and that hasn't told its end, never will.
void Run::PumpToTheEnd()
{
    while (!m_sink->HasEnded() && !m_sink->IsLetGoOf()) {
        if (Interrupted())
            m_host.Front().Unadvise(m_sink.get());
        TabulexPumpMessages(kPumpMilliseconds);
    }
    m_bar.ShowEnd(m_sink->Rows());
    while (m_views.IsOnShow())
        TabulexPumpMessages(kPumpMilliseconds);
    if (!m_sink->HasEnded())
        m_console.Error(fmt::format("{}: the run ended without a result", m_sFile));
}

void Run::Stop()
{
    if (m_sink && !m_sink->HasEnded())
        m_host.Front().Unadvise(m_sink.get());
}

// The sink hears of rows only. All batches but a run's last are full.
Counts Run::CountLines() const
{
    ULONGLONG nRecords = 0;
    VARIANT_BOOL bComplete = VARIANT_FALSE;
    m_host.Data().GetCount(&nRecords, &bComplete);
    ULONGLONG nLines = m_sink->Batches() * kBatchLines;
    if (m_portion) {
        nLines = std::min(nLines, m_portion->nCount);
        nRecords -= std::min(nRecords, m_portion->nStart);
    }
    if (bComplete != VARIANT_FALSE)
        nLines = std::min(nLines, nRecords);
    return {m_sink->Batches(), m_sink->Rows(), nLines - m_sink->Rows()};
}

void Run::Finish(Outcome& outcome)
{
    m_errors.Flush();
    outcome.counts = CountLines();
    outcome.result = m_sink->IsCommitted() ? RunResult::Commit : RunResult::Rollback;
    // The rejects first: where they fail, the rows must not appear either.
    FinishRejects(outcome);
    FinishOutput(outcome);
    if (outcome.result == RunResult::Rollback)
        outcome.status =
            Worse(outcome.status, Interrupted() ? ExitStatus::Interrupted : ExitStatus::Refused);
    if (m_errors.HasTooMany())
        m_console.Error(fmt::format("{}: more bad lines than --max-errors {} allows", m_sFile,
                                    *m_options.errors.nMost));
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
        return; // a closed pipe is the reader's choice and no fault
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
