// Requests stand in the order in which they came, whoever owns them. There are few at a time,
// so each operation walks over all of them.
#include "src/files/FileRequests.h"

namespace Hesperon::specifics {

void CFileRequests::Add(ULONGLONG nKey, SPendingRequest::Kind kind, com_ptr<IUnknown> pObject)
{
    m_requests.push_back({nKey, {kind, std::move(pObject)}});
    Recount();
}

template <class Pick>
CFileRequests::List CFileRequests::TakeWhere(Pick pick)
{
    List taken;
    taken.reserve(m_requests.size());
    std::erase_if(m_requests, [&](SKeyed& keyed) {
        if (!pick(keyed))
            return false;
        taken.push_back(std::move(keyed.request));
        return true;
    });
    Recount();
    return taken;
}

CFileRequests::List CFileRequests::Take(ULONGLONG nKey)
{
    return TakeWhere([=](const SKeyed& keyed) { return keyed.nKey == nKey; });
}

CFileRequests::List CFileRequests::TakeAll()
{
    return TakeWhere([](const SKeyed&) { return true; });
}

void CFileRequests::Collect(bool bKeepCounting, List& list)
{
    list.reserve(list.size() + m_requests.size());
    std::erase_if(m_requests, [&](SKeyed& keyed) {
        const bool bKeep =
            bKeepCounting && keyed.request.kind == SPendingRequest::Kind::CountEvents;
        if (bKeep)
            list.push_back(keyed.request);
        else
            list.push_back(std::move(keyed.request));
        return !bKeep;
    });
    Recount();
}

} // namespace Hesperon::specifics
