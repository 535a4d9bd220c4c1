// Requests stand in the order in which they came, whoever owns them. There are few at a time,
// so each operation walks over all of them.
#include "src/files/FileRequests.h"

namespace Hesperon::specifics {

void FileRequests::Add(ULONGLONG nKey, PendingRequest::Kind kind, com_ptr<IUnknown> pObject)
{
    m_requests.push_back({nKey, {kind, std::move(pObject)}});
    Recount();
}

// Room is made first: once a request has left the list, running out of memory would lose it.
template <class Pick>
FileRequests::List FileRequests::TakeWhere(Pick pick)
{
    List taken;
    taken.reserve(m_requests.size());
    std::erase_if(m_requests, [&](KeyedRequest& keyed) {
        if (!pick(keyed))
            return false;
        taken.push_back(std::move(keyed.request));
        return true;
    });
    Recount();
    return taken;
}

FileRequests::List FileRequests::Take(ULONGLONG nKey)
{
    return TakeWhere([=](const KeyedRequest& keyed) { return keyed.nKey == nKey; });
}

FileRequests::List FileRequests::TakeAll()
{
    return TakeWhere([](const KeyedRequest&) { return true; });
}

void FileRequests::Collect(bool bKeepCounting, List& list)
{
    list.reserve(list.size() + m_requests.size());
    std::erase_if(m_requests, [&](KeyedRequest& keyed) {
        const bool bKeep = bKeepCounting && keyed.request.kind == PendingRequest::Kind::CountEvents;
        if (bKeep)
            list.push_back(keyed.request);
        else
            list.push_back(std::move(keyed.request));
        return !bKeep;
    });
    Recount();
}

} // namespace Hesperon::specifics
