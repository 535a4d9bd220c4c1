// What the library's own entries write into the register of classes, and take out of it.

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <thread>

#include "component/ObjectMap.h"
#include "component/windows/Registration.h"
#include "interfaces/ClassIds.h"
#include "tests/windows/ComponentLibrary.h"
#include "tests/windows/registration/Registry.h"
#include "tests/windows/typelib/Library.h"

namespace {

constexpr CLSID kRegistrar = { // of the system's template library
    0x44EC053A,
    0x400F,
    0x11D0,
    {0x9D, 0xCD, 0x00, 0xA0, 0xC9, 0x03, 0x91, 0xD3}};
constexpr const OLECHAR* kAny = L"(any)"; // the system may write anything
constexpr LCID kGerman = 0x0407;

string_t TextOf(const GUID& id)
{
    OLECHAR text[39];
    StringFromGUID2(id, text, static_cast<int>(std::size(text)));
    return text;
}

// The system writes some paths in the long form, with a prefix.
string_t Plain(const string_t& path)
{
    return path.starts_with(L"\\\\?\\") ? path.substr(4) : path;
}

// ---- what is to be there

// The default value of a class's own key.
string_t DescriptionOf(const ObjectMapEntry& entry)
{
    return entry.clsid == IQRL_TabulexConverter::CLSID_CFakeRecordParser
               ? L"CFakeRecordParser Object"
               : string_t(entry.sProgId);
}

bool IsControl(const ObjectMapEntry& entry)
{
    using namespace IQRL_TabulexConverter;
    return entry.clsid == CLSID_CQRLDataGridViewCtrl || entry.clsid == CLSID_CFolderViewCtrl ||
           entry.clsid == CLSID_CQRLCommonCtrlContained;
}

// By which containers know a class as a control.
Values OfControl(const string_t& key)
{
    return {
        {key + L"\\Control", L""},
        {key + L"\\Programmable", L""},
        {key + L"\\MiscStatus", L"0"},
        {key + L"\\MiscStatus\\1", L"401"}, // see OLEMISC: in place, when in sight
    };
}

Values OfClass(const ObjectMapEntry& entry, const string_t& module)
{
    const string_t id = TextOf(entry.clsid);
    const string_t key = L"CLSID\\" + id;
    const string_t name(entry.sProgId);
    Values values = {
        {key, DescriptionOf(entry)},
        {key + L":AppID", TextOf(kApplicationId)},
        {key + L"\\InprocServer32", module},
        {key + L"\\InprocServer32:ThreadingModel", L"Apartment"},
        {key + L"\\ProgID", name + L".1"},
        {key + L"\\VersionIndependentProgID", name},
        {key + L"\\TypeLib", TextOf(kTypeLibraryId)},
        {key + L"\\Version", L"1.0"},
        {name, name},
        {name + L"\\CLSID", id},
        {name + L"\\CurVer", name + L".1"},
        {name + L".1", name},
        {name + L".1\\CLSID", id},
    };
    if (IsControl(entry))
        values.merge(OfControl(key));
    return values;
}

Values OfApplication()
{
    const string_t id = TextOf(kApplicationId);
    return {
        {L"AppID\\" + id, L"TabulexConverter"},
        {L"AppID\\TabulexConverter.DLL", L""},
        {L"AppID\\TabulexConverter.DLL:AppID", id},
    };
}

Values OfTypeLibrary(const string_t& module)
{
    const string_t key = L"TypeLib\\" + TextOf(kTypeLibraryId);
    return {
        {key, L""},
        {key + L"\\1.0", L"TabulexConverterLib"},
        {key + L"\\1.0\\0", L""},
        {key + L"\\1.0\\0\\win64", module},
        {key + L"\\1.0\\FLAGS", kAny},
        {key + L"\\1.0\\HELPDIR", kAny},
    };
}

// The system calls all dual interfaces from other apartments by their descriptions.
Values OfInterface(ITypeInfo& info)
{
    const string_t key = L"Interface\\" + TextOf(AttributesOf(info).guid);
    const string_t byDescription = L"{00020424-0000-0000-C000-000000000046}";
    return {
        {key, NameOf(info)},
        {key + L"\\ProxyStubClsid", byDescription},
        {key + L"\\ProxyStubClsid32", byDescription},
        {key + L"\\TypeLib", TextOf(kTypeLibraryId)},
        {key + L"\\TypeLib:Version", L"1.0"},
    };
}

Values OfInterfaces()
{
    Values values;
    const com_ptr<ITypeLib> library = OpenLibrary();
    const UINT nTypes = library->GetTypeInfoCount();
    for (UINT i = 0; i < nTypes; ++i) {
        com_ptr<ITypeInfo> info;
        EXPECT_EQ(S_OK, library->GetTypeInfo(i, info.put()));
        if (AttributesOf(*info.get()).typekind == TKIND_DISPATCH)
            values.merge(OfInterface(*info.get()));
    }
    return values;
}

Values OfComponent(const string_t& module)
{
    Values values = OfApplication();
    for (const ObjectMapEntry& entry : ObjectMap())
        values.merge(OfClass(entry, module));
    values.merge(OfTypeLibrary(module));
    values.merge(OfInterfaces());
    return values;
}

std::set<string_t> Without(const std::set<string_t>& all, const std::set<string_t>& some)
{
    std::set<string_t> left;
    std::ranges::set_difference(all, some, std::inserter(left, left.end()));
    return left;
}

// ---- a registrar that isn't there

class MissingClass final : public IClassFactory
{
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** ppv) override
    {
        *ppv = this;
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID, void**) override
    {
        m_locale = GetThreadLocale();
        return REGDB_E_CLASSNOTREG;
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

    LCID m_locale = 0; // in which it was asked for
};

// As long as this lives, in this process; the thread has to be in an apartment.
class WithoutRegistrar
{
public:
    WithoutRegistrar()
    {
        EXPECT_EQ(S_OK, CoRegisterClassObject(kRegistrar, &m_missing, CLSCTX_INPROC_SERVER,
                                              REGCLS_MULTIPLEUSE, &m_nCookie));
    }
    ~WithoutRegistrar() { CoRevokeClassObject(m_nCookie); }
    WithoutRegistrar(const WithoutRegistrar&) = delete;
    WithoutRegistrar& operator=(const WithoutRegistrar&) = delete;

    LCID LocaleOfCaller() const { return m_missing.m_locale; }

private:
    MissingClass m_missing;
    DWORD m_nCookie = 0;
};

class Registration : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_component);
        ASSERT_EQ(S_OK, CoInitialize(nullptr));
        ASSERT_EQ(S_OK, Register()); // so that nothing is left of an earlier one
        ASSERT_EQ(S_OK, Unregister());
        m_before = KeysOfComponents();
        SetThreadLocale(kGerman);
    }
    void TearDown() override
    {
        EXPECT_EQ(kGerman, GetThreadLocale());
        EXPECT_EQ(S_OK, Unregister());
        ExpectNothingOfOurs();
        CoUninitialize();
    }

    HRESULT Register() { return m_component.Entry<HRESULT WINAPI()>("DllRegisterServer")(); }
    HRESULT Unregister() { return m_component.Entry<HRESULT WINAPI()>("DllUnregisterServer")(); }
    static string_t Module() { return PathOf(GetModuleHandleW(ComponentLibrary::Path().c_str())); }

    // The key AppID is never removed, even if this registration made it.
    std::set<string_t> NewKeys() const
    {
        std::set<string_t> keys = Without(KeysOfComponents(), m_before);
        keys.erase(L"AppID");
        return keys;
    }
    std::set<string_t> LostKeys() const { return Without(m_before, KeysOfComponents()); }
    void ExpectNothingOfOurs() const
    {
        EXPECT_EQ(std::set<string_t>(), NewKeys());
        EXPECT_EQ(std::set<string_t>(), LostKeys());
        EXPECT_EQ(1u, KeysOfComponents().count(L"AppID"));
    }
    Values NewValues() const
    {
        Values values;
        for (const string_t& key : NewKeys())
            values.merge(ValuesUnder(key));
        return values;
    }

    ComponentLibrary m_component;
    std::set<string_t> m_before;
};

TEST_F(Registration, WritesClassesApplicationAndTypeLibrary)
{
    ASSERT_EQ(S_OK, Register());
    Values found = NewValues();
    for (const auto& [path, text] : OfComponent(Module())) {
        SCOPED_TRACE(Narrow(path));
        EXPECT_EQ(1u, found.count(path));
        if (text != kAny) {
            EXPECT_EQ(text, Plain(found[path]));
        }
        found.erase(path);
    }
    EXPECT_EQ(Values(), found) << "nobody knows these";
}

TEST_F(Registration, LetsTheSystemFindTheClasses)
{
    ASSERT_EQ(S_OK, Register());
    for (const ObjectMapEntry& entry : ObjectMap()) {
        SCOPED_TRACE(Narrow(entry.sProgId));
        for (const string_t& name : {string_t(entry.sProgId), string_t(entry.sProgId) + L".1"}) {
            CLSID clsid{};
            EXPECT_EQ(S_OK, CLSIDFromProgID(name.c_str(), &clsid));
            EXPECT_TRUE(clsid == entry.clsid);
        }
        com_ptr<IUnknown> object;
        EXPECT_EQ(S_OK, CoCreateInstance(entry.clsid, nullptr, CLSCTX_INPROC_SERVER,
                                         iid_of<IUnknown>, object.put_void()));
    }
}

TEST_F(Registration, CanBeRepeated)
{
    ASSERT_EQ(S_OK, Register());
    const Values once = NewValues();
    EXPECT_EQ(S_OK, Register());
    EXPECT_EQ(once, NewValues());
    EXPECT_EQ(S_OK, Unregister());
    ExpectNothingOfOurs();
    EXPECT_EQ(S_OK, Unregister());
    ExpectNothingOfOurs();
}

TEST_F(Registration, LeavesWhatIsOthers)
{
    const string_t foreign = L"{0D6B3F4E-64C3-4B1C-9E5D-3B6D0E6B8A11}";
    const string_t keys[] = {
        L"CLSID\\" + foreign,
        L"AppID\\" + foreign,
        L"TypeLib\\" + foreign,
        L"TypeLib\\" + TextOf(kTypeLibraryId) + L"\\2.0", // another version
        L"Interface\\" + foreign,
        L"TabulexConverter.Other",
    };
    for (const string_t& key : keys)
        WriteKey(key, L"foreign");
    EXPECT_EQ(S_OK, Register());
    EXPECT_EQ(S_OK, Unregister());
    for (const string_t& key : keys) {
        SCOPED_TRACE(Narrow(key));
        EXPECT_EQ(Values({{key, L"foreign"}}), ValuesUnder(key));
        DeleteKey(key);
    }
    DeleteKey(L"TypeLib\\" + TextOf(kTypeLibraryId));
}

TEST_F(Registration, WorksInAnyApartment)
{
    struct Row
    {
        const char* szApartment;
        HRESULT hrEntered;
        DWORD model;
    };
    const Row kRows[] = {
        {"none", S_FALSE, 0},
        {"one thread", S_OK, COINIT_APARTMENTTHREADED},
        {"many threads", S_OK, COINIT_MULTITHREADED},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.szApartment);
        std::thread([&] {
            if (row.hrEntered == S_OK)
                CoInitializeEx(nullptr, row.model);
            EXPECT_EQ(S_OK, Register());
            EXPECT_EQ(S_OK, Unregister());
            // The call has left the apartment that it entered.
            EXPECT_EQ(row.hrEntered == S_OK ? S_FALSE : S_OK, CoInitializeEx(nullptr, row.model));
            CoUninitialize();
            if (row.hrEntered == S_OK)
                CoUninitialize();
        }).join();
    }
}

// ---- failures

TEST_F(Registration, FailsWithoutTheSystemsRegistrar)
{
    const WithoutRegistrar none;
    EXPECT_EQ(REGDB_E_CLASSNOTREG, Register());
    EXPECT_EQ(std::set<string_t>(), NewKeys());
    EXPECT_EQ(GetSystemDefaultLCID(), none.LocaleOfCaller());
}

TEST_F(Registration, IsTakenOutAsFarAsItCanBe)
{
    ASSERT_EQ(S_OK, Register());
    const WithoutRegistrar none;
    EXPECT_EQ(REGDB_E_CLASSNOTREG, Unregister());
    EXPECT_EQ(OfApplication(), NewValues()); // what the registrar would take out
}

TEST_F(Registration, FailsIfAClassCannotBeWritten)
{
    const string_t name(ObjectMap().back().sProgId);
    WriteVolatileKey(name);
    EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_CHILD_MUST_BE_VOLATILE), Register());
    EXPECT_EQ(0u, NewKeys().count(L"TypeLib\\" + TextOf(kTypeLibraryId)));
    DeleteKey(name);
}

TEST_F(Registration, FailsIfTheTypeLibraryCannotBeWritten)
{
    const string_t key = L"TypeLib\\" + TextOf(kTypeLibraryId);
    WriteVolatileKey(key);
    EXPECT_TRUE(FAILED(Register()));
    DeleteKey(key);
    EXPECT_EQ(S_OK, Register()); // so that all can be taken out
}

} // namespace
