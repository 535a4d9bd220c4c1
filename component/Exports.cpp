#include "component/ObjectMap.h"
#include "interfaces/Module.h"

HRESULT STDAPICALLTYPE DllGetClassObject(REFCLSID rclsid, REFIID riid, void** ppv)
{
    if (!ppv)
        return E_POINTER;
    *ppv = nullptr;
    const ObjectMapEntry* entry = FindClass(ObjectMap(), rclsid);
    return entry ? CreateClassFactory(*entry, riid, ppv) : CLASS_E_CLASSNOTAVAILABLE;
}

HRESULT STDAPICALLTYPE DllCanUnloadNow()
{
    return ModuleLockCount() == 0 ? S_OK : S_FALSE;
}
