#include <atomic>

#include "platform/component.h"

namespace {

constexpr ULONG kMostLocks = 65535;

} // namespace

// The count may be changed from several threads that read one array.
extern "C" {

HRESULT SafeArrayLock(SAFEARRAY* array)
{
    if (!array)
        return E_INVALIDARG;
    std::atomic_ref<ULONG> nLocks(array->cLocks);
    if (nLocks.fetch_add(1) < kMostLocks)
        return S_OK;
    nLocks.fetch_sub(1);
    return E_UNEXPECTED;
}

HRESULT SafeArrayUnlock(SAFEARRAY* array)
{
    if (!array)
        return E_INVALIDARG;
    std::atomic_ref<ULONG> nLocks(array->cLocks);
    if (nLocks.fetch_sub(1) != 0)
        return S_OK;
    nLocks.fetch_add(1);
    return E_UNEXPECTED;
}

HRESULT SafeArrayAccessData(SAFEARRAY* array, void** data)
{
    if (!array || !data)
        return E_INVALIDARG;
    const HRESULT hr = SafeArrayLock(array);
    *data = SUCCEEDED(hr) ? array->pvData : nullptr;
    return hr;
}

HRESULT SafeArrayUnaccessData(SAFEARRAY* array)
{
    return SafeArrayUnlock(array);
}
}
