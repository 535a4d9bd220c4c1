// FileRequests: what consumers of a file have asked its worker for, by owner.
//
// Not synchronised but for IsEmpty: the file handler's lock guards it. References of
// requests that end are handed out, since releasing the last one may run any code: do so
// without the lock.
#pragma once

#include <atomic>
#include <vector>

#include "platform/com_ptr.h"

namespace Hesperon::specifics {

struct PendingRequest
{
    enum class Kind
    {
        FirstRecord, // an IRecordParser wants line 0
        CountEvents, // an IFileHandlerEvents wants to hear of the count
        Conversion   // an IFileHandlerEvents wants one record after the other
    };
    Kind kind;
    com_ptr<IUnknown> pObject;
};

class FileRequests
{
public:
    using List = std::vector<PendingRequest>;

    // May be called from any thread; a request that is being added may be missed.
    bool IsEmpty() const { return m_nCount.load(std::memory_order_acquire) == 0; }

    void Add(ULONGLONG nKey, PendingRequest::Kind kind, com_ptr<IUnknown> pObject);
    // Takes the requests of one owner away.
    List Take(ULONGLONG nKey);
    List TakeAll();
    // Appends all requests, in the order in which they came. Count events stay for
    // the next time where bKeepCounting is set; all others are taken away.
    void Collect(bool bKeepCounting, List& list);

private:
    struct KeyedRequest
    {
        ULONGLONG nKey;
        PendingRequest request;
    };
    template <class Pick>
    List TakeWhere(Pick pick);
    void Recount() { m_nCount.store(m_requests.size(), std::memory_order_release); }

    std::vector<KeyedRequest> m_requests;
    std::atomic<std::size_t> m_nCount = 0; // of m_requests
};

} // namespace Hesperon::specifics
