#include "src/files/TransactionEntry.h"

#include "src/files/AsyncTransactionPool.h"
#include "src/files/Proxies.h"

namespace Hesperon::specifics {

// A number that is taken gives no entry: to take one out for it would take another's.
void TransactionEntry::Register(ULONG_PTR nNumber)
{
    const ProxyLockGuard lock;
    if (AsyncTransactionPool::IsRegistered(nNumber))
        return;
    AsyncTransactionPool::RegisterTransaction(nNumber, &m_object);
    m_nEntries += AsyncTransactionPool::IsRegistered(nNumber);
}

void TransactionEntry::Unregister()
{
    const ProxyLockGuard lock;
    for (; m_nEntries > 0; --m_nEntries)
        AsyncTransactionPool::UnregisterTransaction(&m_object);
}

} // namespace Hesperon::specifics
