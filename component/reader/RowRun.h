// RowRun: one reading of a file's rows.
//
// The component's worker parses and calls the sink, which puts batches in a queue; the program's
// thread takes them out. The worker waits while the queue is full, so memory is bounded; it is the
// file's own (OpenedFile.h), so nobody else waits for it. No messages are pumped: the parsers
// below the converter need none, and tell bad lines to their sink, with or without a view.
//
//   program's thread            worker
//   Next   waits for a batch    PutRecords   puts one, waits while there are kAhead
//   Cancel wakes both           PutRecords   fails from then on, which ends the run
//   ~RowRun                     the sink and its queue live until both have let go
#pragma once

#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>

#include "component/reader/RowBatch.h"
#include "component/reader/SettingsSink.h"

namespace Hesperon::reader {

// What the two threads share. Its lock guards all of it.
struct RowQueue
{
    static constexpr std::size_t kAhead = 4; // batches

    std::mutex lock;
    std::condition_variable changed;
    std::deque<std::unique_ptr<RowBatch>> batches;
    bool bEnded = false;
    bool bWell = false; // the end, that is
    bool bCancelled = false;
    bool bOutOfMemory = false;
};

class RowSink final : public ParserSink
{
public:
    // Copies what it needs of the file.
    RowSink(std::shared_ptr<RowQueue> queue, const OpenedFile& file);

    HRESULT STDMETHODCALLTYPE PutRecords(VARIANT vRecords, ULONGLONG nLines) override;
    HRESULT STDMETHODCALLTYPE EndTransaction(VARIANT_BOOL bResult) override;
    HRESULT STDMETHODCALLTYPE OnError2(LONG_PTR nLine, LONG nField, BSTR bsText) override;
    ULONG STDMETHODCALLTYPE Release() override;

private:
    HRESULT Deliver(std::unique_ptr<RowBatch> batch);
    HRESULT FailForMemory();

    std::shared_ptr<RowQueue> m_queue;
    RowRules m_rules;
    std::vector<LONG> m_types;
    bool m_bBackwards;
    std::unique_ptr<RowBatch> m_batch; // the worker's
};

class RowRun
{
public:
    // The file outlives the run. Throws ReadFailure, also while another run of it goes on.
    explicit RowRun(OpenedFile& file);
    // Ends a run that is under way.
    ~RowRun();
    RowRun(const RowRun&) = delete;
    RowRun& operator=(const RowRun&) = delete;

    // Waits for the next batch. Throws ReadFailure where the run has failed.
    tabulex::detail::Step Next(std::unique_ptr<RowBatch>& batch);
    // From any thread.
    void Cancel();
    // Of the batches that Next gave out.
    const tabulex::detail::CountsRow& Counts() const { return m_counts; }

private:
    void Count(const tabulex::detail::CountsRow& batch);

    OpenedFile& m_file;
    std::shared_ptr<RowQueue> m_queue = std::make_shared<RowQueue>();
    com_ptr<RowSink> m_sink;
    com_ptr<IDataParser> m_parser;
    tabulex::detail::CountsRow m_counts{};
};

} // namespace Hesperon::reader
