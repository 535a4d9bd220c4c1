// IBatchLock: lets a conversion hold a record parser's lock for a batch, so that
// the calls for each record and field find it held, and read plain records without them. Internal
// to the library; a record parser that doesn't offer it, or doesn't grant it, is locked call by
// call.
#pragma once

#include <span>

#include "platform/com_ptr.h"

namespace Hesperon::specifics {
class RowPlan;
}

struct IBatchLock : IUnknown
{
    // False, and the lock isn't held, while the layout is still to be found: that calls
    // the data parser, whose lock would have to be taken first.
    virtual bool STDMETHODCALLTYPE EnterBatch() = 0;
    virtual void STDMETHODCALLTYPE LeaveBatch() = 0;
    // With the lock held: what reads plain records into rows of these fields. Null where the layout
    // has to be parsed call by call. Good until the lock is left, or the layout changes.
    virtual Hesperon::specifics::RowPlan* STDMETHODCALLTYPE
    PlanRows(std::span<const ULONG> fields) = 0;
};

// {7E0C5C1B-9A0D-4B53-8E43-62C1D54D3B0F}
template <>
inline constexpr GUID iid_of<IBatchLock> = {
    0x7E0C5C1B, 0x9A0D, 0x4B53, {0x8E, 0x43, 0x62, 0xC1, 0xD5, 0x4D, 0x3B, 0x0F}};

// Holds the lock, where there is one, while it lives.
class BatchLockGuard
{
public:
    explicit BatchLockGuard(IUnknown* pRecordParser)
    {
        if (pRecordParser && SUCCEEDED(query(pRecordParser, m_p)) && !m_p->EnterBatch())
            m_p.reset();
    }
    ~BatchLockGuard()
    {
        if (m_p)
            m_p->LeaveBatch();
    }
    // Null without a lock, too.
    Hesperon::specifics::RowPlan* PlanRows(std::span<const ULONG> fields) const
    {
        return m_p ? m_p->PlanRows(fields) : nullptr;
    }
    BatchLockGuard(const BatchLockGuard&) = delete;
    BatchLockGuard& operator=(const BatchLockGuard&) = delete;

private:
    com_ptr<IBatchLock> m_p;
};
