#include "module/Module.h"

#include <algorithm>
#include <atomic>

#include "platform/com_ptr.h"

namespace {

// Not counted as an object: a host that wants the library to stay while it holds a
// factory calls LockServer.
class ClassFactory final : public IClassFactory
{
public:
    explicit ClassFactory(const ObjectMapEntry& entry) : m_entry(entry) {}
    virtual ~ClassFactory() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** ppv) override
    {
        if (!ppv)
            return E_POINTER;
        *ppv = nullptr;
        if (!(riid == iid_of<IUnknown>)&&!(riid == iid_of<IClassFactory>))
            return E_NOINTERFACE;
        *ppv = static_cast<IClassFactory*>(this);
        AddRef();
        return S_OK;
    }

    ULONG STDMETHODCALLTYPE AddRef() override { return ++m_nRefs; }

    ULONG STDMETHODCALLTYPE Release() override
    {
        const ULONG nLeft = --m_nRefs;
        if (nLeft == 0)
            delete this;
        return nLeft;
    }

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* pOuter, REFIID riid, void** ppv) override
    {
        if (!ppv)
            return E_POINTER;
        *ppv = nullptr;
        return pOuter ? CLASS_E_NOAGGREGATION : m_entry.pfnCreate(riid, ppv);
    }

    HRESULT STDMETHODCALLTYPE LockServer(BOOL bLock) override
    {
        bLock ? LockModule() : UnlockModule();
        return S_OK;
    }

private:
    const ObjectMapEntry& m_entry;
    std::atomic<ULONG> m_nRefs = 0;
};

} // namespace

const ObjectMapEntry* FindClass(std::span<const ObjectMapEntry> map, REFCLSID rclsid)
{
    const auto entry = std::ranges::find(map, rclsid, &ObjectMapEntry::clsid);
    return entry == map.end() ? nullptr : &*entry;
}

HRESULT CreateClassFactory(const ObjectMapEntry& entry, REFIID riid, void** ppv)
{
    com_ptr<ClassFactory> factory(new (std::nothrow) ClassFactory(entry));
    return factory ? factory->QueryInterface(riid, ppv) : E_OUTOFMEMORY;
}
