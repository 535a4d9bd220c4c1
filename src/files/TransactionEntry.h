// TransactionEntry: what an object has among the running transactions (AsyncTransactionPool.h).
//
// Entries and their count change together, under the pool's lock. Unregister() takes that lock
// whether there is an entry or not: a Cancel runs under it, so an object that unregisters in
// its FinalRelease doesn't go while it is being cancelled. Safe from any thread; call it
// without a lock that Cancel takes.
#pragma once

#include "interfaces/IAsyncTransaction.h"

namespace Hesperon::specifics {

class TransactionEntry
{
public:
    // The object must outlive the entry.
    explicit TransactionEntry(IQRL_TabulexConverter::IAsyncTransaction& object) : m_object(object)
    {}

    // The object can be cancelled by this number from now on, unless another has it.
    void Register(ULONG_PTR nNumber);
    // No number stands for the object any more.
    void Unregister();

private:
    IQRL_TabulexConverter::IAsyncTransaction& m_object;
    int m_nEntries = 0; // guarded by ProxyLock
};

} // namespace Hesperon::specifics
