// The component's library beside the test program, loaded as a host without registration
// does it.
#pragma once

#include <utility>

#include "interfaces/Module.h"
#include "platform/Module_win32.h"
#include "platform/com_ptr.h"

class ComponentLibrary
{
public:
    static string_t Path() { return PathBeside(nullptr, L"TabulexConverter.dll"); }

    explicit ComponentLibrary(const string_t& path = Path()) : m_hModule(LoadLibraryW(path.c_str()))
    {}
    ~ComponentLibrary() { Free(); }
    ComponentLibrary(const ComponentLibrary&) = delete;
    ComponentLibrary& operator=(const ComponentLibrary&) = delete;

    explicit operator bool() const { return m_hModule != nullptr; }

    void Free()
    {
        if (m_hModule)
            FreeLibrary(std::exchange(m_hModule, nullptr));
    }

    // An exported entry, as in Entry<decltype(DllGetClassObject)>("DllGetClassObject").
    template <class Function>
    Function* Entry(const char* pszName) const
    {
        return reinterpret_cast<Function*>(
            reinterpret_cast<void*>(GetProcAddress(m_hModule, pszName)));
    }

    // Not counted as an object of the module.
    HRESULT CreateFactory(REFCLSID clsid, com_ptr<IClassFactory>& factory) const
    {
        return Entry<decltype(DllGetClassObject)>("DllGetClassObject")(clsid, iid_of<IClassFactory>,
                                                                       factory.put_void());
    }

    template <class Interface>
    HRESULT Create(REFCLSID clsid, com_ptr<Interface>& object) const
    {
        com_ptr<IClassFactory> factory;
        const HRESULT hr = CreateFactory(clsid, factory);
        return FAILED(hr) ? hr
                          : factory->CreateInstance(nullptr, iid_of<Interface>, object.put_void());
    }

private:
    HMODULE m_hModule;
};
