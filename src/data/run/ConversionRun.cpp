// The header has the states of a run and who changes them. A step that finds the state "running"
// works with the worker's own members only, so it takes no lock but the file's. All else happens
// under the parser's lock: taking over what the parser has, parsing a batch, and taking the sink at
// the end. PutRecords and EndTransaction are called without it: they wait for the host's thread,
// which may be waiting for that lock.
//
// The way of a line, from a page of the file to the sink:
//
// CDataArray, FileLinesOf    the page with its bytes, and where the line begins and ends in it
// LineIndexOf                its bytes, at most 512 of them
// ReadLines                  bytes, or text where they aren't ASCII, kept until the batch is full
// RecordBatch::ParseLine     the checks of date, symbol, order and range
// RowPlan                    a plain line's fields, and their values in one row of the array; or
// CRecordParser::Parse       the fields of any text, each given to its column, and
// RecordBatch::FillRow       the values of the delivered columns
// ConversionSession          dates and times in the host's form
// SinkLink, CqrlSinkWindow   the array as a message to the host's thread, where the sink gets it

#include "src/data/run/ConversionRun.h"

#include "diagnostics/FaultmereClient.h"
#include "module/Guarded.h"
#include "module/OpenQuestion.h"
#include "platform/threads/MessageWindow.h"
#include "src/data/run/RecordBatch.h"

using FaultmereUtil::Assert;

namespace Hesperon::specifics {

// ---- sink

com_ptr<ConversionRun::IDataParserEvents> ConversionRun::Sink()
{
    LockGuard lock(m_sinkLock);
    return m_pSink;
}

// The worker holds the parser's lock while it waits for an answer about a bad line, which may
// have to come from the calling thread.
com_ptr<ConversionRun::IDataParserEvents> ConversionRun::TakeSink()
{
    LockPumping(m_lock);
    LockGuard lock(m_lock, std::adopt_lock);
    LockGuard sinkLock(m_sinkLock);
    return std::exchange(m_pSink, nullptr);
}

void ConversionRun::LetGoOfSink()
{
    com_ptr<IDataParserEvents> pSink; // let go of without the lock
    LockPumping(m_lock);
    LockGuard lock(m_lock, std::adopt_lock);
    if (!IsCancelled())
        m_state = State::Idle;
    pSink = TakeSink();
}

// ---- start

void ConversionRun::Begin(com_ptr<IDataParserEvents> pSink, RunSettings settings)
{
    m_settings = std::move(settings);
    m_order = {};
    LockGuard lock(m_sinkLock);
    std::swap(m_pSink, pSink);
    m_state = State::Queued;
}

// The next step takes over what the parser has then. Nothing is changed in any other state: a run
// that is queued does so anyway.
void ConversionRun::Replaced()
{
    State running = State::Running;
    m_state.compare_exchange_strong(running, State::Queued);
}

void ConversionRun::Close()
{
    m_entry.Unregister();
    m_worker = {};
}

// ---- steps

// The file is at its end when a read fails, so a whole file that runs forwards takes one step more
// than it has records. The step that fails also delivers the lines that are left.
//
// A batch ends with the steps, so what an outsider can see happens after the same records,
// however many steps are taken in one call.
HRESULT ConversionRun::Steps(ULONGLONG nIndex, ULONGLONG nMost, ULONGLONG& nTaken)
{
    nTaken = 1;
    if (m_state != State::Running)
        if (const std::optional<Outcome> outcome = TakeOver())
            return End(*outcome);

    const std::size_t nBefore = m_memory.lines.size();
    const HRESULT hrRead = ReadLines(nIndex, StepsFrom(nIndex, nMost));
    const std::size_t nLines = m_memory.lines.size();
    nTaken = nLines - nBefore + (FAILED(hrRead) ? 1 : 0);
    const ULONGLONG nLast = nIndex + nTaken - 1;
    const bool bLast = FAILED(hrRead) || m_worker.portion.EndsAt(nLast, m_worker.lines);
    if (nLines != 0 && nLines % kBatchSize == 0) {
        const Outcome outcome = ProcessLines(nLast);
        if (outcome.hr != S_OK)
            return End(outcome);
    }
    return bLast ? End(LastStep(nLast)) : hrRead;
}

// Up to the end of the batch and of the portion.
ULONGLONG ConversionRun::StepsFrom(ULONGLONG nIndex, ULONGLONG nMost) const
{
    const ULONGLONG nRoom = kBatchSize - m_memory.lines.size() % kBatchSize;
    return std::min({nMost, nRoom, m_worker.portion.StepsLeft(nIndex, m_worker.lines)});
}

// A run keeps what it has taken over until the parser says that it has been replaced. The last
// exchange fails if a cancel has marked the run meanwhile; the mark must not be lost.
std::optional<ConversionRun::Outcome> ConversionRun::TakeOver()
{
    WorkerSide old; // let go of without the lock
    LockGuard lock(m_lock);
    if (m_state != State::Queued || !Sink())
        return Interruption();
    WorkerSide now{OpenLines(m_owner.RunFile()), m_owner.RunRecordParser(), m_settings.lines,
                   m_settings.nLocale, m_portion};
    old = std::exchange(m_worker, std::move(now));
    if (!m_worker.pLines || !m_worker.pRecordParser)
        return Outcome{E_INVALIDARG, true};
    State queued = State::Queued;
    if (!m_state.compare_exchange_strong(queued, State::Running))
        return Interruption();
    return {};
}

// How a run ends that was cancelled or whose sink was taken.
ConversionRun::Outcome ConversionRun::Interruption() const
{
    return IsCancelled() ? Outcome{E_FAIL, false} : Outcome{E_INVALIDARG, true};
}

// At the end of the file the read fails.
HRESULT ConversionRun::ReadLines(ULONGLONG nIndex, ULONGLONG nCount)
try {
    LineBuffer& lines = m_memory.lines;
    const std::size_t nBefore = lines.size();
    const HRESULT hr = m_worker.pLines->AppendRecords(m_worker.lines.LinesOf(nIndex, nCount),
                                                      m_worker.nLocale, lines);
    for (std::size_t n = nBefore; n < lines.size(); ++n) {
        const bool bHasText = lines.Length(n) != 0;
        Assert(bHasText, "*bsRecord");
        Assert(bHasText, "!m_sTempRecords[ m_sTempRecords.GetCount() - 1 ].IsEmpty()");
    }
    return hr;
} catch (...) {
    return E_FAIL;
}

// The batch is taken to end with the record before nIndex, whose read has failed. Where it
// ends with that of nIndex instead, in an inverted file and in a portion, line numbers of
// errors in this batch are those of the position before.
ConversionRun::Outcome ConversionRun::LastStep(ULONGLONG nIndex)
{
    com_ptr<IFileHandler> pFile;
    {
        LockGuard lock(m_lock);
        pFile = m_owner.RunFile();
    }
    // The call belongs to the last step; its figures aren't used.
    ULONGLONG nCount = 0;
    VARIANT_BOOL bComplete = VARIANT_FALSE;
    if (pFile)
        pFile->GetCount(&nCount, &bComplete);
    return ProcessLines(nIndex - 1);
}

// Parses with the lock held and delivers without it: a sink may take its time, and may use the
// parser on another thread.
ConversionRun::Outcome ConversionRun::ProcessLines(ULONGLONG nLast)
{
    std::unique_lock<CriticalSection> lock(m_lock);
    if (m_memory.lines.empty())
        return {S_OK, false};
    const com_ptr<IDataParserEvents> pSink = Sink();
    if (!pSink || IsCancelled())
        return Interruption();
    RecordBatch batch(*this, nLast, m_worker.pRecordParser.get(), pSink.get());
    const HRESULT hr = Guarded([&] { return batch.Parse(); });
    m_memory.lines.clear();
    lock.unlock();
    if (FAILED(hr))
        return {hr, hr == E_INVALIDARG};
    return {batch.Deliver(), false};
}

// ---- end

// The worker stops for any result but S_OK, so an end that went well is S_FALSE.
HRESULT ConversionRun::End(Outcome outcome)
{
    // All is let go of before the sink hears of the end: it may start the next run in that
    // call, under this number and on another file's worker.
    m_memory.Release();
    m_worker = {};
    // Before the sink is taken: a cancel that still finds the number is to find the sink.
    m_entry.Unregister();
    const com_ptr<IDataParserEvents> pSink = TakeSinkAtEnd(outcome.bUnheard);
    if (pSink && !outcome.bUnheard)
        pSink->EndTransaction(SUCCEEDED(outcome.hr) ? VARIANT_TRUE : VARIANT_FALSE);
    return outcome.hr == S_OK ? S_FALSE : outcome.hr;
}

// An end that the sink isn't to hear leaves it to a cancel that is under way.
com_ptr<ConversionRun::IDataParserEvents> ConversionRun::TakeSinkAtEnd(bool bUnheard)
{
    LockPumping(m_lock);
    LockGuard lock(m_lock, std::adopt_lock);
    State now = m_state;
    if (bUnheard && (now == State::Aborting || !m_state.compare_exchange_strong(now, State::Idle)))
        return {};
    m_state = State::Idle;
    return TakeSink();
}

// The mark comes first. It stops the worker at its next line, and keeps it from asking about
// bad lines while this thread waits for the parser's lock.
void ConversionRun::Cancel()
{
    m_state = State::Aborting;
    if (const com_ptr<IDataParserEvents> pSink = Sink())
        if (const auto pQuestions = pSink.as<IOpenQuestion>())
            pQuestions->EndQuestions();
    const com_ptr<IDataParserEvents> pSink = TakeSink();
    m_entry.Unregister(); // before the end is reported, as in End
    if (pSink)
        pSink->EndTransaction(VARIANT_FALSE);
}

} // namespace Hesperon::specifics
