// ComObject: counting and QueryInterface for the classes of this library.
//
//   class CDataParser : public ComObject<CDataParser, Dual<IDataParser>, IAsyncTransaction>
//
// The bases are interfaces, or Dual<Interface> where dispatch by number is served;
// QueryInterface answers for each of them, for IUnknown, and for IDispatch with
// the first dual base. Every object counts in the module. Objects are made by
// CreateObject or CreateClass, which call FinalConstruct; the last Release calls
// FinalRelease and deletes. Counting is safe from any thread.
#pragma once

#include <atomic>
#include <new>

#include "module/Dispatch.h"
#include "module/Module.h"
#include "platform/com_ptr.h"

namespace frame_details {

template <class Base>
struct InterfaceOf
{
    using type = Base;
};
template <class Interface>
struct InterfaceOf<Dual<Interface>>
{
    using type = Interface;
};

template <class First, class...>
struct FirstOf
{
    using type = First;
};

} // namespace frame_details

// An object whose AddRef gives more than this has lost its last reference and is
// in its FinalRelease. Code that keeps uncounted pointers can find out by it.
inline constexpr ULONG kDyingRefs = 0x40000000;

template <class Derived, class... Bases>
class ComObject : public Bases...
{
public:
    ComObject() = default;
    virtual ~ComObject() = default;
    ComObject(const ComObject&) = delete;
    ComObject& operator=(const ComObject&) = delete;

    // Classes may replace these. A failure of FinalConstruct ends the creation.
    HRESULT FinalConstruct() { return S_OK; }
    void FinalRelease() {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** ppv) override
    {
        if (!ppv)
            return E_POINTER;
        *ppv = nullptr;
        if (riid == iid_of<IUnknown>)
            *ppv = Identity();
        else
            (void)(Offer<Bases>(riid, ppv) || ...);
        if (!*ppv)
            return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }

    ULONG STDMETHODCALLTYPE AddRef() override
    {
        return m_nRefs.fetch_add(1, std::memory_order_relaxed) + 1;
    }

    ULONG STDMETHODCALLTYPE Release() override
    {
        // References that come and go during FinalRelease must not delete again.
        ULONG nRefs = m_nRefs.load(std::memory_order_relaxed);
        while (!m_nRefs.compare_exchange_weak(nRefs, nRefs == 1 ? kDyingRefs : nRefs - 1,
                                              std::memory_order_acq_rel, std::memory_order_relaxed))
            continue;
        if (nRefs == 1) {
            static_cast<Derived*>(this)->FinalRelease();
            delete static_cast<Derived*>(this);
        }
        return nRefs - 1;
    }

    IUnknown* Identity()
    {
        using First = typename frame_details::FirstOf<Bases...>::type;
        return static_cast<typename frame_details::InterfaceOf<First>::type*>(
            static_cast<First*>(this));
    }

private:
    template <class Base>
    bool Offer(REFIID riid, void** ppv)
    {
        using Interface = typename frame_details::InterfaceOf<Base>::type;
        const bool bDispatch = std::is_base_of_v<IDispatch, Interface> && riid == iid_of<IDispatch>;
        if (!bDispatch && !(riid == iid_of<Interface>))
            return false;
        *ppv = static_cast<Interface*>(static_cast<Base*>(this));
        return true;
    }

    const ModuleLock m_moduleLock;
    std::atomic<ULONG> m_nRefs = 0;
};

// Makes an object of a class; on failure the reference is empty.
template <class Class>
HRESULT CreateObject(com_ptr<Class>& result)
{
    result = com_ptr<Class>(new (std::nothrow) Class);
    if (!result)
        return E_OUTOFMEMORY;
    const HRESULT hr = result->FinalConstruct();
    if (FAILED(hr))
        result.reset();
    return hr;
}

// The same, but gives an interface; the object map takes this form.
template <class Class>
HRESULT CreateClass(REFIID riid, void** ppv)
{
    com_ptr<Class> object;
    const HRESULT hr = CreateObject(object);
    return FAILED(hr) ? hr : object->QueryInterface(riid, ppv);
}
