// Three parts, in this order: the script among the resources, a table of keys for each class, and
// the type library. Registering stops at the first failure. Unregistering takes the parts in
// reverse, goes on after a failure, and reports the first one.

#include "component/windows/Registration.h"

#include "component/ObjectMap.h"
#include "platform/Module_win32.h"
#include "platform/com_ptr.h"
#include "platform/values.h"
#include "src/UIComponents/windows/ole/ControlStatus.h"

// The registrar of the system's template library, which runs registry scripts.
struct IRegistrar : IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE AddReplacement(LPCOLESTR key, LPCOLESTR item) = 0;
    virtual HRESULT STDMETHODCALLTYPE ClearReplacements() = 0;
    virtual HRESULT STDMETHODCALLTYPE ResourceRegisterSz(LPCOLESTR file, LPCOLESTR id,
                                                         LPCOLESTR type) = 0;
    virtual HRESULT STDMETHODCALLTYPE ResourceUnregisterSz(LPCOLESTR file, LPCOLESTR id,
                                                           LPCOLESTR type) = 0;
    virtual HRESULT STDMETHODCALLTYPE FileRegister(LPCOLESTR file) = 0;
    virtual HRESULT STDMETHODCALLTYPE FileUnregister(LPCOLESTR file) = 0;
    virtual HRESULT STDMETHODCALLTYPE StringRegister(LPCOLESTR data) = 0;
    virtual HRESULT STDMETHODCALLTYPE StringUnregister(LPCOLESTR data) = 0;
    virtual HRESULT STDMETHODCALLTYPE ResourceRegister(LPCOLESTR file, UINT id, LPCOLESTR type) = 0;
    virtual HRESULT STDMETHODCALLTYPE ResourceUnregister(LPCOLESTR file, UINT id,
                                                         LPCOLESTR type) = 0;
};

template <>
inline constexpr GUID iid_of<IRegistrar> = {
    0x44EC053B, 0x400F, 0x11D0, {0x9D, 0xCD, 0x00, 0xA0, 0xC9, 0x03, 0x91, 0xD3}};

namespace {

constexpr CLSID kRegistrar = {
    0x44EC053A, 0x400F, 0x11D0, {0x9D, 0xCD, 0x00, 0xA0, 0xC9, 0x03, 0x91, 0xD3}};
constexpr UINT kScript = 101; // resource of kind REGISTRY

HRESULT ToResult(LONG nError)
{
    return nError == ERROR_SUCCESS ? S_OK : HRESULT_FROM_WIN32(static_cast<DWORD>(nError));
}

void Note(HRESULT& first, HRESULT hr)
{
    if (SUCCEEDED(first))
        first = hr;
}

string_t TextOf(const GUID& id)
{
    OLECHAR text[39];
    StringFromGUID2(id, text, static_cast<int>(std::size(text)));
    return text;
}

// A key's default value, or a named one.
HRESULT Put(const string_t& key, const OLECHAR* name, const string_t& value)
{
    HKEY hKey = nullptr;
    LONG nError = RegCreateKeyExW(HKEY_CLASSES_ROOT, key.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr,
                                  &hKey, nullptr);
    if (nError != ERROR_SUCCESS)
        return ToResult(nError);
    nError = RegSetValueExW(hKey, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()),
                            static_cast<DWORD>((value.size() + 1) * sizeof(OLECHAR)));
    RegCloseKey(hKey);
    return ToResult(nError);
}

HRESULT Remove(const string_t& key)
{
    const LONG nError = RegDeleteTreeW(HKEY_CLASSES_ROOT, key.c_str());
    return nError == ERROR_FILE_NOT_FOUND ? S_OK : ToResult(nError);
}

struct Row
{
    string_t key;
    const OLECHAR* name; // null for the key's default value
    string_t value;
};

HRESULT Put(std::span<const Row> rows)
{
    for (const Row& row : rows)
        if (const HRESULT hr = Put(row.key, row.name, row.value); FAILED(hr))
            return hr;
    return S_OK;
}

// By these a container lists the class among the controls, and knows how to treat it before it
// has made one. 1 is the number of the aspect that is the content.
HRESULT RegisterControl(const string_t& key)
{
    const Row rows[] = {
        {key + L"\\Control", nullptr, L""},
        {key + L"\\Programmable", nullptr, L""},
        {key + L"\\MiscStatus", nullptr, L"0"},
        {key + L"\\MiscStatus\\1", nullptr,
         std::to_wstring(Hesperon::specifics::UILayer::kControlStatus)},
    };
    return Put(rows);
}

HRESULT RegisterClass(const ObjectMapEntry& entry, const string_t& module)
{
    const string_t id = TextOf(entry.clsid);
    const string_t name(entry.sProgId);
    const string_t versioned = name + L".1";
    const string_t key = L"CLSID\\" + id;
    const string_t description(entry.sDescription.empty() ? entry.sProgId : entry.sDescription);
    const Row rows[] = {
        {key, nullptr, description},
        {key, L"AppID", TextOf(kApplicationId)},
        {key + L"\\InprocServer32", nullptr, module},
        {key + L"\\InprocServer32", L"ThreadingModel", L"Apartment"},
        {key + L"\\ProgID", nullptr, versioned},
        {key + L"\\VersionIndependentProgID", nullptr, name},
        {key + L"\\TypeLib", nullptr, TextOf(kTypeLibraryId)},
        {key + L"\\Version", nullptr, L"1.0"},
        {name, nullptr, name},
        {name + L"\\CLSID", nullptr, id},
        {name + L"\\CurVer", nullptr, versioned},
        {versioned, nullptr, name},
        {versioned + L"\\CLSID", nullptr, id},
    };
    const HRESULT hr = Put(rows);
    return FAILED(hr) || !entry.bControl ? hr : RegisterControl(key);
}

HRESULT UnregisterClass(const ObjectMapEntry& entry)
{
    const string_t name(entry.sProgId);
    HRESULT hr = S_OK;
    Note(hr, Remove(L"CLSID\\" + TextOf(entry.clsid)));
    Note(hr, Remove(name));
    Note(hr, Remove(name + L".1"));
    return hr;
}

HRESULT RunScript(const string_t& module, bool bRegister)
{
    com_ptr<IRegistrar> registrar;
    HRESULT hr = CoCreateInstance(kRegistrar, nullptr, CLSCTX_INPROC_SERVER, iid_of<IRegistrar>,
                                  registrar.put_void());
    if (SUCCEEDED(hr))
        hr = registrar->AddReplacement(L"APPID", TextOf(kApplicationId).c_str());
    if (FAILED(hr))
        return hr;
    return bRegister ? registrar->ResourceRegister(module.c_str(), kScript, L"REGISTRY")
                     : registrar->ResourceUnregister(module.c_str(), kScript, L"REGISTRY");
}

HRESULT RegisterTypeLibrary(const string_t& module)
{
    com_ptr<ITypeLib> library;
    return LoadTypeLibEx(module.c_str(), REGKIND_REGISTER, library.put());
}

HRESULT UnregisterTypeLibrary()
{
    Bstr path;
    if (FAILED(QueryPathOfRegTypeLib(kTypeLibraryId, 1, 0, LOCALE_NEUTRAL, path.put())))
        return S_OK; // it isn't there
    return UnRegisterTypeLib(kTypeLibraryId, 1, 0, LOCALE_NEUTRAL, SYS_WIN64);
}

// Runs a call with the thread's locale switched to the system's default, and with the
// component runtime ready.
template <class Call>
HRESULT InSystemLocale(Call call)
{
    const LCID locale = GetThreadLocale();
    SetThreadLocale(LOCALE_SYSTEM_DEFAULT);
    const HRESULT hrRuntime = CoInitialize(nullptr);
    const HRESULT hr = call();
    if (SUCCEEDED(hrRuntime))
        CoUninitialize();
    SetThreadLocale(locale);
    return hr;
}

} // namespace

HRESULT RegisterComponent(HMODULE hModule)
{
    return InSystemLocale([hModule] {
        const string_t module = PathOf(hModule);
        HRESULT hr = RunScript(module, true);
        for (const ObjectMapEntry& entry : ObjectMap())
            if (SUCCEEDED(hr))
                hr = RegisterClass(entry, module);
        return FAILED(hr) ? hr : RegisterTypeLibrary(module);
    });
}

HRESULT UnregisterComponent(HMODULE hModule)
{
    return InSystemLocale([hModule] {
        HRESULT hr = UnregisterTypeLibrary();
        for (const ObjectMapEntry& entry : ObjectMap())
            Note(hr, UnregisterClass(entry));
        Note(hr, RunScript(PathOf(hModule), false));
        return hr;
    });
}
