// A map from numbers to plain pointers, under the proxy lock. Cancelling calls the object with that
// lock held. An object takes the same lock to unregister before it is destroyed, so what stands in
// the map exists for the length of the call.

#include "src/files/AsyncTransactionPool.h"

#include <algorithm>
#include <map>

#include "diagnostics/FaultmereClient.h"
#include "module/LiveReference.h"
#include "src/files/Proxies.h"

namespace Hesperon::specifics::AsyncTransactionPool {

using IQRL_TabulexConverter::IAsyncTransaction;

namespace {

using TransactionMap = std::map<ULONG_PTR, IAsyncTransaction*>;

// Guarded by ProxyLock. Never destroyed: objects may unregister after static objects
// are gone.
TransactionMap& Transactions()
{
    static TransactionMap& transactions = *new TransactionMap;
    return transactions;
}

} // namespace

ULONG_PTR RegisterTransaction(ULONG_PTR nNumber, IUnknown* pObject)
{
    com_ptr<IAsyncTransaction> pAsyncTrans; // released after the lock
    const ProxyLockGuard lock;
    if (Transactions().contains(nNumber))
        return 0;
    query(pObject, pAsyncTrans);
    if (!FaultmereUtil::Assert(static_cast<bool>(pAsyncTrans), "pAsyncTrans"))
        return 0;
    Transactions().emplace(nNumber, pAsyncTrans.get());
    return nNumber;
}

bool IsRegistered(ULONG_PTR nNumber)
{
    const ProxyLockGuard lock;
    return Transactions().contains(nNumber);
}

// For a pointer that isn't registered the last entry is removed instead.
void UnregisterTransaction(IAsyncTransaction* pTransaction)
{
    const com_ptr<IAsyncTransaction> pAsyncTrans(pTransaction);
    const ProxyLockGuard lock;
    if (!FaultmereUtil::Assert(static_cast<bool>(pAsyncTrans), "pAsyncTrans"))
        return;
    TransactionMap& transactions = Transactions();
    if (transactions.empty())
        return;
    auto it = std::ranges::find(transactions, pTransaction, &TransactionMap::value_type::second);
    if (it == transactions.end())
        --it;
    transactions.erase(it);
}

// All others may let go of the object while it is being cancelled. One that has lost its last
// reference before waits for the lock in its FinalRelease.
bool CancelTransaction(ULONG_PTR nNumber)
{
    com_ptr<IAsyncTransaction> pKept; // released after the lock
    const ProxyLockGuard lock;
    const auto it = Transactions().find(nNumber);
    if (it == Transactions().end())
        return false;
    IAsyncTransaction* pTransaction = it->second;
    pKept = LiveReference(pTransaction);
    pTransaction->Cancel();
    return true;
}

} // namespace Hesperon::specifics::AsyncTransactionPool
