// CFileHandler: the life of one open file, shared by all consumers of its name.
//
// A worker thread runs Execute: it indexes the file in the background for as long
// as that is cheap, reports the growing count to consumers, and drives each running
// conversion one record at a time. Consumers hold a CProxy and call on their own
// threads; they and the worker meet at m_lock only. The worker holds m_lock for
// one stride of the scan or one look at the requests, never while it calls a
// consumer. Under m_lock only the file's own lock is taken.
//
//   state       left by
//   scanning    the end of the file, or kScanLimit records known
//   converting  the end of the last conversion; the scan is suspended
//   idle        a request, or the last reference gone
#pragma once

#include <functional>
#include <memory>

#include "interfaces/IReadState.h"
#include "platform/text/CodePage.h"
#include "platform/threads/CriticalSection.h"
#include "platform/threads/WorkerWait.h"
#include "src/files/FileConversions.h"
#include "src/files/FileRequests.h"
#include "src/files/IFileHandler.h"
#include "src/files/ILineReader.h"
#include "src/files/LineIndex.h"

namespace Hesperon::specifics {

// How a worker adds its file to the pool and, after the last reference, takes it out.
using FileHandlerCall = std::function<void(const string_t& sName, IFileHandler* pHandler)>;

// What a worker starts with.
struct SOpenRequest
{
    string_t sFileName;
    std::shared_ptr<SharedFile> pFile;
    FileHandlerCall AddFileHandler;
    FileHandlerCall RemoveFileHandler;
};

class CFileHandler : public std::enable_shared_from_this<CFileHandler>
{
public:
    class CProxy;
    class CReader;

    // Runs on the calling thread until the last reference to the proxy is gone or
    // Stop() is called; then closes the file. The handler must be held by a shared_ptr.
    void Execute(std::unique_ptr<SOpenRequest> request);

    // Makes Execute return at its next wait, whoever holds the proxy; calls to the proxy
    // stay safe. From any thread.
    void Stop() { m_hStop.Set(); }

    // Execute has called AddFileHandler. For the thread that runs it.
    bool IsRegistered() const { return m_bRegistered; }
    // Once Execute has begun.
    const string_t& FileName() const { return m_sFileName; }

private:
    static constexpr ULONGLONG kStride = 64;       // records scanned while the lock is held
    static constexpr ULONGLONG kScanLimit = 32767; // records that the scan is content with
    // Records known before consumers come, so that the detection of a layout doesn't
    // depend on how far the scan happens to be.
    static constexpr ULONGLONG kFirstRecords = 1024;
    // The count is reported when these bits are clear: once in 4096 records.
    static constexpr ULONGLONG kProgressMask = 0xFC0;
    // Steps of a conversion in one turn of the loop, where nobody hears of each.
    static constexpr ULONGLONG kUnheardSteps = 1024;
    static constexpr Event::Timeout kStridePause = std::chrono::milliseconds(1);

    void Open(SOpenRequest& request);
    void Register(const FileHandlerCall& addFileHandler);
    void Run();
    void CloseAll();

    bool WaitForWork();
    void ScanStride();
    void ScanFirstRecords();
    void ServeRequests();
    bool Collect(bool& bComplete);
    void Dispatch(const PendingRequest& request, bool bComplete);
    void GiveFirstRecord(IUnknown* pObject);
    void TellCount(IUnknown* pObject, bool bComplete);
    void StartConversion(IUnknown* pObject);

    ULONGLONG CountLocked();
    void Queue(PendingRequest::Kind kind, IUnknown* pObject, ULONGLONG nKey);
    // Runs a call that reads the file for a consumer. What it throws goes on, and is noted
    // with the line that it was about, for which `line` is asked then: the consumer may take it
    // for the end of the file. The background scan isn't run by this, as nobody misses what it
    // doesn't reach.
    template <class Line, class Call>
    auto ReadingLines(Line line, Call call)
    try {
        return call();
    } catch (const std::bad_alloc&) {
        NoteFault({IQRL_TabulexConverter::ReadFaultMemory, 0}, line());
        throw;
    } catch (const std::invalid_argument&) {
        NoteFault(m_pFile->LastFault(), line());
        throw;
    }
    template <class Call>
    auto Reading(ULONGLONG nLine, Call call)
    {
        return ReadingLines([nLine] { return nLine; }, call);
    }
    void NoteFault(const FailedRead& fault, ULONGLONG nLine);

    // Hands over the bytes of the line, under the lock; false: there is no such line. Goes
    // on from the caller's cursor, or without one from the cursor that others share.
    template <class Take, class... Cursor>
    bool ReadBytes(ULONGLONG nIndex, Take take, Cursor&... cursor)
    {
        LockGuard lock(m_lock);
        return Reading(nIndex, [&] {
            std::string_view bytes;
            if (!m_index.GetRecord(bytes, nIndex, cursor...))
                return false;
            take(bytes);
            return true;
        });
    }
    // Adds the first records of the range to the lines, as far as they are plain lines; gives
    // their number.
    ULONGLONG AppendPlainRecords(const LineRange& range, LineCursor& cursor, LineBuffer& lines)
    {
        LockGuard lock(m_lock);
        const std::size_t nBefore = lines.size();
        return ReadingLines([&] { return range.At(lines.size() - nBefore); },
                            [&] { return m_index.AppendPlain(range, cursor, lines); });
    }
    // The same with the text in the ANSI code page.
    template <class Take>
    bool ReadRecord(ULONGLONG nIndex, Take take)
    {
        return ReadBytes(nIndex, [&](std::string_view bytes) {
            m_sText.clear();
            DecodeBytes(kAnsiCodePage, bytes, m_sText);
            take(string_view_t(m_sText));
        });
    }

    string_t m_sFileName;                // set before the proxy is there
    FileHandlerCall m_RemoveFileHandler; // likewise
    std::shared_ptr<SharedFile> m_pFile;
    Event m_hStop{Event::Kind::AutoReset};
    Event m_hRequest{Event::Kind::AutoReset};

    CriticalSection m_lock;  // guards what follows
    LineIndex m_index;       // but for what it offers to any thread
    FileRequests m_requests; // but for IsEmpty
    string_t m_sText;        // of the record being read; kept for its memory
    FailedRead m_firstFault; // that a consumer has met
    ULONGLONG m_nFaultLine = IQRL_TabulexConverter::kNoFaultLine;

    // The worker's own.
    WorkerWait m_wait;
    FileConversions m_conversions;
    FileRequests::List m_collected; // conversions among them that memory was short for stay
    bool m_bScanDone = false;
    bool m_bCountHeard = false; // somebody may hear of the counts that are told
    bool m_bServeAgain = false; // memory was short for requests: they are tried again soon
    bool m_bRegistered = false;
};

// What consumers hold. It answers for IFileHandler, and for what the library's own
// objects ask for beside it.
//
// It begins unreferenced. Its last Release stops the worker, takes the name out of
// the pool and deletes the proxy; from then on AddRef refuses with 0.
class CFileHandler::CProxy final : public IFileHandler,
                                   public ILineSource,
                                   public IQRL_TabulexConverter::IReadState
{
public:
    explicit CProxy(std::shared_ptr<CFileHandler> pHandler) : m_pHandler(std::move(pHandler)) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** ppvObject) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;

    HRESULT STDMETHODCALLTYPE GetFileName(BSTR* bsName) override;
    HRESULT STDMETHODCALLTYPE GetCount(ULONGLONG* nCount, VARIANT_BOOL* bComplete) override;
    HRESULT STDMETHODCALLTYPE GetRecord(ULONGLONG nIndex, ULONG nLocale, BSTR* bsRecord) override;
    HRESULT STDMETHODCALLTYPE SeekRecord(ULONGLONG nIndex) override;
    HRESULT STDMETHODCALLTYPE QueueFirstRecord(IUnknown* pObject, ULONGLONG nKey) override;
    HRESULT STDMETHODCALLTYPE CancelRequests(ULONGLONG nKey) override;
    HRESULT STDMETHODCALLTYPE QueueCountEvents(IUnknown* pObject, ULONGLONG nKey) override;
    HRESULT STDMETHODCALLTYPE QueueConversion(IUnknown* pObject, ULONGLONG nKey) override;
    HRESULT STDMETHODCALLTYPE GetRelativePos(ULONGLONG nIndex, FLOAT* fRelative) override;
    HRESULT STDMETHODCALLTYPE GetLastRecord(ULONG nLocale, BSTR* bsRecord) override;
    HRESULT STDMETHODCALLTYPE RefreshFileSize() override;
    HRESULT STDMETHODCALLTYPE Invalidate(VARIANT_BOOL bErase) override;
    HRESULT STDMETHODCALLTYPE GetApproxCount(ULONGLONG* nCount) override;

    HRESULT STDMETHODCALLTYPE OpenLines(ILineReader** ppLines) override;
    HRESULT STDMETHODCALLTYPE GetLastRecordHead(ULONG nLocale, BSTR* bsRecord) override;

    HRESULT STDMETHODCALLTYPE GetReadState(IQRL_TabulexConverter::ReadState* pState) override;

private:
    static constexpr ULONG kGone = 0x80000000;

    ~CProxy() = default;
    void EndOfUse();
    template <class Read>
    HRESULT GiveLastRecord(BSTR* bsRecord, Read read);

    std::shared_ptr<CFileHandler> m_pHandler;
    std::atomic<ULONG> m_nRefs = 0; // kGone once the last reference has gone
};

} // namespace Hesperon::specifics
