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

// A host that hears S_OK unloads the library, and threads that are idle would then run code that is
// gone. They can't be waited for later, when the library goes: the loader keeps a thread from
// ending then.
HRESULT STDAPICALLTYPE DllCanUnloadNow()
{
    using namespace Hesperon::specifics;
    if (ModuleLockCount() != 0)
        return S_FALSE;
    SymbolEnumeratorHost::EndThread();
    FilePool::AwaitThreads();
    return S_OK;
}
