// The link is guarded by the record parser's lock, which is the second of the two. So the link is
// read under that lock alone, both locks are taken in their order, and the link is read again. If
// it has changed meanwhile, both are left and it begins anew.

#include "src/parsing/LinkLock.h"

#include "module/LiveReference.h"

namespace Hesperon::specifics {

LinkLock::LinkLock(CriticalSection& cs, IQRL_TabulexConverter::IDataParser*& pLink)
    : m_cs(cs), m_pLink(pLink), m_pLinked(Linked())
{
    for (;;) {
        EnterLinked();
        m_cs.lock();
        com_ptr<IDataParserLock> pNow = Linked();
        if (pNow == m_pLinked)
            return;
        m_cs.unlock();
        LeaveLinked();
        m_pLinked = std::move(pNow);
    }
}

LinkLock::~LinkLock()
{
    m_cs.unlock();
    LeaveLinked();
}

// Null for a data parser without such a lock. What the link points at is there for as
// long as the record parser's lock is held, but one whose last reference has gone can't
// be brought back to life.
com_ptr<IDataParserLock> LinkLock::Linked()
{
    LockGuard lock(m_cs);
    com_ptr<IDataParserLock> pLinked;
    if (FAILED(query(m_pLink, pLinked)))
        return {};
    if (LiveReference(pLinked.get()))
        return pLinked;
    m_pLink = nullptr;
    pLinked.reset();
    return {};
}

void LinkLock::EnterLinked()
{
    if (m_pLinked)
        m_pLinked->EnterParser();
}

void LinkLock::LeaveLinked()
{
    if (m_pLinked)
        m_pLinked->LeaveParser();
}

} // namespace Hesperon::specifics
