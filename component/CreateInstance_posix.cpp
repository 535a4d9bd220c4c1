// The system's own call for new objects, where there is no register of classes.

#include "module/Module.h"

HRESULT CoCreateInstance(REFCLSID rclsid, IUnknown* pUnkOuter, DWORD, REFIID riid, void** ppv)
{
    if (!ppv)
        return E_POINTER;
    *ppv = nullptr;
    return pUnkOuter ? CLASS_E_NOAGGREGATION : CreateOwnInstance(rclsid, riid, ppv);
}
