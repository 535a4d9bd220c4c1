// ConversionSink: receives a conversion and writes its rows.
//
// The component calls it on the file's worker thread; Start and the waiting side call
// it from the thread that runs the conversion. The end is told once: by the
// component, or by the sink itself where its own answer ends the run, since the
// component is silent then.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>

#include "tools/tabulex/ErrorReporter.h"
#include "tools/tabulex/EventSink.h"
#include "tools/tabulex/OutputFile.h"
#include "tools/tabulex/RowWriter.h"

namespace tabulex {

struct Counts
{
    ULONGLONG nBatches = 0;
    ULONGLONG nDelivered = 0; // rows
    ULONGLONG nSkipped = 0;   // lines counted but not delivered
};

class ConversionSink : public EventSink
{
public:
    // `output` is null for a dry run. `nColumns` is the number of columns that the
    // writer expects of each batch. All must outlive the run.
    ConversionSink(const ResolutionOffers& offers, std::unique_ptr<RowWriter> writer,
                   std::size_t nColumns, OutputFile* output, ErrorReporter& errors);

    // Waits for the end of the run, at most so long; true if it has come.
    bool WaitForEnd(std::chrono::milliseconds nMost);

    // How often the component has called or held this object: a sign of life.
    ULONGLONG Pulse() const { return m_nPulse; }
    // A call is on, however long it takes: a question, or a slow reader.
    bool IsBusy() const { return m_bBusy; }
    // Lines delivered and skipped so far.
    ULONGLONG LinesDone() const { return m_nLines; }

    // Waits until no call is on and refuses later ones. A run that hasn't ended is
    // rolled back.
    void Close();

    // ---- after Close
    // The component said that all went well.
    bool IsCommitted() const { return m_bCommit; }
    // What isn't handed to the output yet goes there. False: see the output.
    bool WriteRest();
    // Of all batches that came, whatever the end.
    const Counts& Totals() const { return m_counts; }

    // ---- IDataParserEvents
    ULONG STDMETHODCALLTYPE AddRef() override;
    HRESULT STDMETHODCALLTYPE PutRecords(VARIANT vRecords, ULONGLONG nRecCountWithSkeeped) override;
    HRESULT STDMETHODCALLTYPE EndTransaction(VARIANT_BOOL bResult) override;
    HRESULT STDMETHODCALLTYPE OnError2(LONG_PTR lptrLineNum, LONG lptrFieldNum,
                                       BSTR bsDescription) override;

private:
    class Call;

    void End(bool bCommit);
    HRESULT TakeBatch(SAFEARRAY* records, ULONGLONG nLines);
    HRESULT WriteRows(SAFEARRAY* records, ULONGLONG& nRows);
    HRESULT WriteWhenFull();

    std::unique_ptr<RowWriter> m_writer;
    std::size_t m_nColumns;
    OutputFile* m_output; // null for a dry run
    ErrorReporter& m_errors;
    std::string m_buffer; // UTF-8, not yet with the output
    Counts m_counts;
    std::atomic<ULONGLONG> m_nPulse = 0;
    std::atomic<ULONGLONG> m_nLines = 0;
    std::atomic<bool> m_bBusy = false;

    std::mutex m_calls; // held during a call that brings records or errors
    bool m_bClosed = false;

    std::mutex m_lock; // taken last; guards the two below
    std::condition_variable m_ended;
    bool m_bEnded = false;
    bool m_bCommit = false;
};

} // namespace tabulex
