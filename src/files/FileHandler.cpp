// The worker's loop. Each turn makes one stride of the scan unless a conversion runs, one
// record of one conversion, or a batch of it where nobody could tell, and one look at the requests,
// in this order; then it waits for as long as nothing of that is due. The lock is held for the
// stride and for the look.
#include "src/files/FileHandler.h"

#include <algorithm>

#include "diagnostics/FaultmereClient.h"
#include "interfaces/IRecordParser.h"
#include "platform/threads/Apartment.h"
#include "platform/values.h"

namespace Hesperon::specifics {

using namespace IQRL_TabulexConverter;

void CFileHandler::Execute(std::unique_ptr<SOpenRequest> request)
{
    if (!FaultmereUtil::Assert(request != nullptr, "((HANDLE)(LONG_PTR)-1) != request"))
        return;
    const ThreadApartment apartment;
    Open(*request);
    const FileHandlerCall addFileHandler = std::move(request->AddFileHandler);
    m_RemoveFileHandler = std::move(request->RemoveFileHandler);
    request.reset();
    ScanFirstRecords();
    Register(addFileHandler);
    Run();
    CloseAll();
}

// A file that can't be read is opened all the same: its consumers get the failure.
void CFileHandler::Open(SOpenRequest& request)
try {
    m_sFileName = std::move(request.sFileName);
    m_pFile = std::move(request.pFile);
    const auto nSize = m_pFile->Size();
    if (!m_index.Attach(m_pFile) && nSize != 0) // not an empty file, but it is taken for one
        NoteFault({nSize ? ReadFaultMemory : ReadFaultSystem, 0}, 0);
    Reading(0, [&] { m_index.DetectUnicode(); });
} catch (const std::invalid_argument&) {
    m_bScanDone = true;
}

void CFileHandler::Register(const FileHandlerCall& addFileHandler)
{
    addFileHandler(m_sFileName, new CProxy(shared_from_this()));
    m_bRegistered = true;
}

void CFileHandler::Run()
{
    while (WaitForWork()) {
        ScanStride();
        m_conversions.StepNext(m_index.IsComplete(), m_bCountHeard ? 1 : kUnheardSteps);
        ServeRequests();
    }
}

// Consumers are released without the lock, since the last reference to one may run any code.
// Whoever still holds the proxy, after a stop by the pool, finds a closed file from here on.
void CFileHandler::CloseAll()
{
    m_conversions.Clear();
    FileRequests::List ended;
    {
        LockGuard lock(m_lock);
        ended = m_requests.TakeAll();
        m_pFile->Close();
    }
}

// ---- the loop's steps -------------------------------------------------------

// False once Stop() was called. While a conversion runs this doesn't wait.
bool CFileHandler::WaitForWork()
{
    constexpr int kStop = 0;
    Event::Timeout timeout; // without end
    if (m_conversions.IsActive())
        timeout = std::chrono::milliseconds(0);
    else if (!m_bScanDone || m_bServeAgain)
        timeout = kStridePause;
    return m_wait.WaitAny(m_hStop, m_hRequest, timeout) != kStop;
}

// One stride, which ends on a multiple of kStride. The scan gives up on a file that
// can't be read; a consumer's own read tries again.
void CFileHandler::ScanStride()
try {
    if (m_bScanDone || m_conversions.IsActive())
        return;
    LockGuard lock(m_lock);
    m_index.SeekRecord(m_index.RecordCount() / kStride * kStride + kStride);
    m_bScanDone = m_index.IsComplete() || m_index.RecordCount() >= kScanLimit;
} catch (const std::exception&) {
    m_bScanDone = true;
}

void CFileHandler::ScanFirstRecords()
{
    while (!m_bScanDone && m_index.RecordCount() < kFirstRecords)
        ScanStride();
}

// A request that fails doesn't keep the others from being served.
void CFileHandler::ServeRequests()
{
    m_bCountHeard = false;
    if (m_requests.IsEmpty() && !m_bServeAgain)
        return;
    bool bComplete = false;
    m_bServeAgain = !Collect(bComplete);
    std::erase_if(m_collected, [&](const PendingRequest& request) {
        try {
            Dispatch(request, bComplete);
        } catch (const std::bad_alloc&) {
            // A conversion that doesn't begin would never end: its consumer waits for that.
            if (request.kind == PendingRequest::Kind::Conversion) {
                m_bServeAgain = true;
                return false;
            }
        } catch (const std::exception&) {
            // The consumer's own fault.
        }
        return true;
    });
}

// False if there was no memory to collect them; they are still there then.
bool CFileHandler::Collect(bool& bComplete)
try {
    LockGuard lock(m_lock);
    bComplete = m_index.IsComplete();
    m_requests.Collect(!bComplete, m_collected);
    return true;
} catch (const std::bad_alloc&) {
    return false;
}

void CFileHandler::Dispatch(const PendingRequest& request, bool bComplete)
{
    switch (request.kind) {
    case PendingRequest::Kind::FirstRecord:
        return GiveFirstRecord(request.pObject.get());
    case PendingRequest::Kind::CountEvents:
        return TellCount(request.pObject.get(), bComplete);
    case PendingRequest::Kind::Conversion:
        return StartConversion(request.pObject.get());
    }
}

void CFileHandler::GiveFirstRecord(IUnknown* pObject)
try {
    com_ptr<IRecordParser> pParser;
    if (FAILED(query(pObject, pParser)))
        return;
    Bstr bsRecord;
    ReadRecord(0, [&](string_view_t text) { bsRecord = Bstr(text); });
    pParser->Parse(bsRecord.get());
} catch (const std::invalid_argument&) {
    // The parser meets the failure when it reads the file itself.
}

// During the scan once in 4096 records, since the scan stops at multiples of kStride;
// afterwards at each turn of the loop. Who isn't told of this count may have to hear of one that
// a conversion would skip in a turn of many records.
void CFileHandler::TellCount(IUnknown* pObject, bool bComplete)
{
    com_ptr<ICountHearer> pHearer;
    m_bCountHeard |= FAILED(query(pObject, pHearer)) || pHearer->HearsCounts();
    const ULONGLONG nCount = CountLocked();
    if (!bComplete && !m_bScanDone && (nCount & kProgressMask) != 0)
        return;
    com_ptr<IFileHandlerEvents> pEvents;
    if (SUCCEEDED(query(pObject, pEvents)))
        pEvents->RecordCountChange(nCount, bComplete);
}

void CFileHandler::StartConversion(IUnknown* pObject)
{
    com_ptr<IFileHandlerEvents> pEvents;
    query(pObject, pEvents);
    if (FaultmereUtil::Assert(static_cast<bool>(pEvents), "pEvents"))
        m_conversions.Start(std::move(pEvents));
}

// ---- for the proxy and the loop ---------------------------------------------

ULONGLONG CFileHandler::CountLocked()
{
    LockGuard lock(m_lock);
    return m_index.RecordCount();
}

// The walk to a line that isn't known yet has failed after the last known one. Reads of a
// closed file fail without a fault of their own.
void CFileHandler::NoteFault(const FailedRead& fault, ULONGLONG nLine)
{
    LockGuard lock(m_lock);
    if (m_firstFault.kind != ReadFaultNone || fault.kind == ReadFaultNone)
        return;
    m_firstFault = fault;
    m_nFaultLine = nLine == kNoFaultLine ? nLine : std::min(nLine, m_index.RecordCount());
}

void CFileHandler::Queue(PendingRequest::Kind kind, IUnknown* pObject, ULONGLONG nKey)
{
    {
        LockGuard lock(m_lock);
        m_requests.Add(nKey, kind, pObject);
    }
    m_hRequest.Set();
}

} // namespace Hesperon::specifics
