// The registry of running conversions and enumerations by number, so that work
// started through one object can be cancelled through another.
//
// Holds plain pointers: an object unregisters what it registered, and nothing else,
// before it is destroyed (TransactionEntry keeps count). All calls take the process-wide
// proxy lock (see Proxies.h).
#pragma once

#include "interfaces/IAsyncTransaction.h"

namespace Hesperon::specifics::AsyncTransactionPool {

// Returns the number, or 0 if it is taken or the object can't be cancelled.
ULONG_PTR RegisterTransaction(ULONG_PTR nNumber, IUnknown* pObject);
bool IsRegistered(ULONG_PTR nNumber);
void UnregisterTransaction(IQRL_TabulexConverter::IAsyncTransaction* pTransaction);
// Cancels under the proxy lock; false for an unknown number.
bool CancelTransaction(ULONG_PTR nNumber);

} // namespace Hesperon::specifics::AsyncTransactionPool
