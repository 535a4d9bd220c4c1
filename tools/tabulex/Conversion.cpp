#include "tools/tabulex/Conversion.h"

#include <fmt/format.h>

#include "tools/tabulex/Fault.h"
#include "tools/tabulex/Interrupt.h"
#include "tools/tabulex/Properties.h"
#include "tools/tabulex/RunWatch.h"

namespace tabulex {

namespace {

using namespace std::chrono_literals;

// The tool runs one conversion at a time, so any number tells it apart.
constexpr ULONG_PTR kTransaction = 1;
// How soon an interrupt is heard; the end of the run wakes the wait at once.
constexpr auto kWaitInterval = 50ms;

// The state of one conversion. Outputs and the reporter are the worker's from Start to
// Stop, and this thread's before and after.
class Run
{
public:
    Run(Host& host, Console& console, const std::string& file, const ConversionOptions& options,
        const std::optional<Portion>& portion)
        : m_host(host), m_console(console), m_sFile(file), m_options(options), m_portion(portion),
          m_errors(host, console, file, options.errors, portion)
    {}

    ~Run() { Stop(); }
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

    Outcome Execute();

private:
    void OpenOutputs();
    void OpenOutput(OutputFile& output, const std::string& path);
    void Start();
    void Wait(RunWatch& watch);
    void Stop();
    void Finish(Outcome& outcome);
    void FinishOutput(Outcome& outcome);
    void FinishRejects(Outcome& outcome);
    void CheckFault(const OutputFile& output, const std::string& path, Outcome& outcome);

    Host& m_host;
    Console& m_console;
    std::string m_sFile;
    const ConversionOptions& m_options;
    std::optional<Portion> m_portion;
    OutputFile m_output;
    OutputFile m_rejects;
    ErrorReporter m_errors;
    com_ptr<ConversionSink> m_sink;
};

Outcome Run::Execute()
{
    const Deferral deferral;
    OpenOutputs();
    auto columns = DeliveredColumns(m_host);
    const std::size_t nColumns = columns.size();
    m_sink = com_ptr<ConversionSink>(
        new ConversionSink(m_host.Offers(), MakeRowWriter(m_options.format, std::move(columns)),
                           nColumns, m_options.bDryRun ? nullptr : &m_output, m_errors));
    // What may fail stands before the start: behind it the worker uses this object.
    RunWatch watch(m_host.LineReader(), *m_sink.get());
    Start();
    Wait(watch);
    Stop();
    Outcome outcome;
    Finish(outcome);
    return outcome;
}

void Run::OpenOutputs()
{
    if (m_options.bDryRun)
        return;
    OpenOutput(m_output, m_options.sOutput);
    if (m_options.sRejects.empty())
        return;
    OpenOutput(m_rejects, m_options.sRejects);
    m_errors.WriteRejectsTo(&m_rejects);
}

void Run::OpenOutput(OutputFile& output, const std::string& path)
{
    if (!output.Open(path))
        throw Fault{ExitStatus::FileFault,
                    fmt::format("'{}' can't be written: {}", path, output.FaultText())};
}

// A portion is checked by the component as it starts, whatever was checked before; its
// finding comes through the sink.
void Run::Start()
{
    IDataParser& data = m_host.Data();
    const HRESULT hr = m_portion ? data.StartConvertPortion(0, m_sink.get(), m_portion->nStart,
                                                            m_portion->nCount, kTransaction)
                                 : data.StartConversion(m_sink.get(), kTransaction);
    if (FAILED(hr))
        throw Fault{ExitStatus::Refused, m_sink->FaultText().empty()
                                             ? fmt::format("the run can't start: {}", HexOf(hr))
                                             : m_sink->FaultText()};
}

void Run::Wait(RunWatch& watch)
{
    ProgressBar bar(m_console, m_options.progress);
    const auto draw = [&] {
        if (bar.IsDue())
            bar.Draw({m_sink->LinesDone(), m_portion ? 0 : watch.TotalLines()});
    };
    while (!m_sink->WaitForEnd(kWaitInterval)) {
        if (Interrupted())
            break;
        if (watch.IsDead()) {
            m_console.Error(fmt::format("{}: the run ended without a result", m_sFile));
            break;
        }
        draw();
    }
    draw(); // also where the run was over before the first look
}

// Needed also where the sink ended the run itself: the parser holds the sink until it
// is told. After a run that ended by itself it does nothing.
void Run::Stop()
{
    if (!m_sink)
        return;
    m_host.Data().AbortConversion();
    m_sink->Close();
}

void Run::Finish(Outcome& outcome)
{
    m_errors.Flush();
    outcome.counts = m_sink->Totals();
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

// What went to a stream has gone; a file that isn't committed leaves nothing.
void Run::FinishOutput(Outcome& outcome)
{
    if (m_options.bDryRun)
        return;
    if (outcome.result != RunResult::Commit && m_output.HidesUntilCommit()) {
        m_output.Discard();
    } else {
        m_sink->WriteRest();
        m_output.Commit();
    }
    CheckFault(m_output, m_options.sOutput, outcome);
}

// The bad lines are what a user looks at after a rollback, so they stay then.
void Run::FinishRejects(Outcome& outcome)
{
    if (m_options.bDryRun || m_options.sRejects.empty())
        return;
    if (Interrupted() && outcome.result == RunResult::Rollback)
        m_rejects.Discard();
    else
        m_rejects.Commit();
    CheckFault(m_rejects, m_options.sRejects, outcome);
}

// A closed pipe is the reader's choice and no fault.
void Run::CheckFault(const OutputFile& output, const std::string& path, Outcome& outcome)
{
    const std::string fault = output.FaultText();
    if (fault.empty() || output.IsReaderGone())
        return;
    m_console.Error(
        fmt::format("'{}' can't be written: {}", path == "-" ? "standard output" : path, fault));
    outcome.status = ExitStatus::FileFault;
    outcome.result = RunResult::Rollback;
}

} // namespace

Outcome RunConversion(Host& host, Console& console, const std::string& file,
                      const ConversionOptions& options, const std::optional<Portion>& portion)
{
    return Run(host, console, file, options, portion).Execute();
}

} // namespace tabulex
