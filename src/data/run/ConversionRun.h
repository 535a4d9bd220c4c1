// ConversionRun: a conversion from its start to its end.
//
// A data parser has one such object for all its runs, one after the other. The file's worker
// calls Step() for position after position. A step reads one line and keeps its text. After
// every thousandth line, and at the end, RecordBatch makes an array of the lines that were
// kept, and the sink gets it.
//
//   state     meaning                         left by, under which lock          to
//   idle      no run, no sink                 Begin, parser's lock               queued
//                                             Cancel, no lock                    aborting
//   queued    a sink; the worker has still    the worker's step, parser's lock   running
//             to take over file, record       Cancel, no lock                    aborting
//             parser and settings             LetGoOfSink, parser's lock         idle
//   running   a sink; the worker steps        Replaced, parser's lock            queued
//             without a lock                  Cancel, no lock                    aborting
//                                             the worker's End, parser's lock    idle
//                                             LetGoOfSink, parser's lock         idle
//   aborting  cancelled; a sink until the     the worker's End, parser's lock    idle
//             cancelling thread has taken it  Begin, parser's lock               queued
//
// Whoever takes the sink, with the parser's lock held, calls its EndTransaction afterwards,
// without the lock. So the sink hears the end once. It doesn't hear it if its own answer to a
// bad line has ended the run, if the file or the record parser is gone, or if another start
// failed and took the sink away. But a cancel that marks the run before it has ended in one of
// these ways takes the sink and reports the end. A cancel that comes later finds no sink.
//
// The worker takes the parser's lock for each batch, at the end, and for a step in any state
// but "running". All other steps take no lock.
#pragma once

#include <atomic>
#include <optional>

#include "interfaces/IDataParserEvents.h"
#include "interfaces/IRecordParser.h"
#include "platform/com_ptr.h"
#include "platform/threads/CriticalSection.h"
#include "src/data/run/BatchMemory.h"
#include "src/data/run/RunSettings.h"
#include "src/files/IFileHandler.h"
#include "src/files/ILineReader.h"
#include "src/files/TransactionEntry.h"

namespace Hesperon::specifics {

class ConversionRun
{
public:
    using IDataParserEvents = IQRL_TabulexConverter::IDataParserEvents;
    using IRecordParser = IQRL_TabulexConverter::IRecordParser;

    // Records a batch.
    static constexpr std::size_t kBatchSize = 1000;

    // The data parser, as far as a run knows it.
    struct IOwner
    {
        // What stands at the moment; null for none. Called with the parser's lock held.
        virtual com_ptr<IFileHandler> RunFile() = 0;
        virtual com_ptr<IRecordParser> RunRecordParser() = 0;

    protected:
        ~IOwner() = default;
    };

    // `lock` is the parser's; `bSilent` says whether bad lines are skipped without a word, and
    // may change during a run.
    ConversionRun(IOwner& owner, IQRL_TabulexConverter::IAsyncTransaction& transaction,
                  CriticalSection& lock, const std::atomic<bool>& bSilent)
        : m_owner(owner), m_lock(lock), m_bSilent(bSilent), m_entry(transaction)
    {}

    // ---- with the parser's lock held

    bool HasSink() { return static_cast<bool>(Sink()); }
    // From now on the worker may step. The mark of an earlier cancel is removed.
    void Begin(com_ptr<IDataParserEvents> pSink, RunSettings settings);
    // The parser has another file or another record parser, or none.
    void Replaced();

    RunPortion& Portion() { return m_portion; }
    const RunPortion& Portion() const { return m_portion; }

    // ---- without any lock

    // Lets the run be cancelled by a number.
    void Register(ULONG_PTR nTranId) { m_entry.Register(nTranId); }
    void Unregister() { m_entry.Unregister(); }
    // Takes the sink away from the run without a call.
    void LetGoOfSink();
    // Ends the run, from any thread. The sink has heard the end when this returns, unless the
    // run had ended before. The parser may be gone afterwards: hold a reference.
    void Cancel();
    // The step of one position, on the file's worker. Anything but S_OK: the run has ended; S_FALSE
    // well.
    HRESULT Step(ULONGLONG nIndex)
    {
        ULONGLONG nTaken = 0;
        return Steps(nIndex, 1, nTaken);
    }
    // Steps of positions from nIndex on, nMost of them and one batch at most. The same, and nTaken
    // is the number of steps.
    HRESULT Steps(ULONGLONG nIndex, ULONGLONG nMost, ULONGLONG& nTaken);
    // For the parser's last moments.
    void Close();

    // ---- for a batch, with the parser's lock held; the memory is the worker's

    const RunSettings& Settings() const { return m_settings; }
    RunOrder& Order() { return m_order; }
    BatchMemory& Memory() { return m_memory; }
    bool IsSilent() const { return m_bSilent; }
    bool IsCancelled() const { return m_state == State::Aborting; }

private:
    friend struct DataParserTestAccess;

    enum class State
    {
        Idle,
        Queued,
        Running,
        Aborting
    };

    // How a batch or a run went.
    struct Outcome
    {
        HRESULT hr;
        bool bUnheard; // EndTransaction isn't called
    };

    com_ptr<IDataParserEvents> Sink();
    com_ptr<IDataParserEvents> TakeSink();
    // Takes over what the parser has. Gives an outcome if the run is to end instead.
    std::optional<Outcome> TakeOver();
    Outcome Interruption() const;
    ULONGLONG StepsFrom(ULONGLONG nIndex, ULONGLONG nMost) const;
    HRESULT ReadLines(ULONGLONG nIndex, ULONGLONG nCount);
    Outcome LastStep(ULONGLONG nIndex);
    // Parses the lines that were kept, of which the last is the record at nLast, and delivers
    // those that pass.
    Outcome ProcessLines(ULONGLONG nLast);
    HRESULT End(Outcome outcome);
    com_ptr<IDataParserEvents> TakeSinkAtEnd(bool bUnheard);

    IOwner& m_owner;
    CriticalSection& m_lock;
    const std::atomic<bool>& m_bSilent;
    TransactionEntry m_entry;
    std::atomic<State> m_state = State::Idle;

    // Guarded by the parser's lock.
    RunSettings m_settings;
    RunPortion m_portion;
    RunOrder m_order; // of the records so far

    // Put and taken with the parser's lock held; guarded by m_sinkLock, which is a leaf, so
    // that a cancel reaches the sink while a batch holds the parser's lock.
    CriticalSection m_sinkLock;
    com_ptr<IDataParserEvents> m_pSink;

    // The worker's; no lock.
    struct WorkerSide
    {
        com_ptr<ILineReader> pLines;
        com_ptr<IRecordParser> pRecordParser;
        LineRule lines;
        ULONG nLocale = 0;
        RunPortion portion;
    };
    WorkerSide m_worker;
    BatchMemory m_memory;
};

} // namespace Hesperon::specifics
