#include "component/ObjectMap.h"
#include "interfaces/Module.h"
#include "src/data/SymbolEnumeratorHost.h"
#include "src/files/FilePool.h"

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
    using namespace Hesperon::specifics;
    if (ModuleLockCount() != 0)
        return S_FALSE;
    SymbolEnumeratorHost::EndThread();
    FilePool::AwaitThreads();
    return S_OK;
}
