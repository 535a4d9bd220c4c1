// The component's controls, by their ProgIDs, in a host that has nothing of the component but the
// register. Everything goes by names: properties and methods through IDispatch.

#include <gtest/gtest.h>

#include <filesystem>

#include "interfaces/Module.h"
#include "platform/values.h"
#include "tests/windows/dialogs/Container.h"
#include "tests/windows/dialogs/ModalDriver.h"
#include "tests/windows/dialogs/SystemContainer.h"

#include <commctrl.h>
#include <ocidl.h>

namespace {

constexpr const wchar_t* kGrid = L"TabulexConverter.QRLDataGridViewCtrl";
constexpr const wchar_t* kFolder = L"TabulexConverter.FolderViewCtrl";
constexpr const wchar_t* kContained = L"TabulexConverter.QRLCommonCtrlContained";

template <class Interface>
com_ptr<Interface> As(const com_ptr<IUnknown>& pObject)
{
    com_ptr<Interface> pResult;
    pObject->QueryInterface(__uuidof(Interface), pResult.put_void());
    return pResult;
}

// A member of an object, by its name.
class Member
{
public:
    Member(const com_ptr<IUnknown>& pObject, const wchar_t* pszName)
        : m_pObject(As<IDispatch>(pObject))
    {
        auto* pszCopy = const_cast<wchar_t*>(pszName);
        EXPECT_EQ(S_OK, m_pObject->GetIDsOfNames(IID_NULL, &pszCopy, 1, 0, &m_id));
    }

    HRESULT Call()
    {
        DISPPARAMS none{};
        return Invoke(DISPATCH_METHOD, none, nullptr);
    }
    HRESULT Get(Variant& value)
    {
        DISPPARAMS none{};
        return Invoke(DISPATCH_PROPERTYGET, none, &value);
    }
    HRESULT Put(VARIANT value)
    {
        DISPID idPut = DISPID_PROPERTYPUT;
        DISPPARAMS params = {&value, &idPut, 1, 1};
        return Invoke(DISPATCH_PROPERTYPUT, params, nullptr);
    }
    HRESULT Put(IDispatch* pValue)
    {
        VARIANT value{};
        value.vt = VT_DISPATCH;
        value.pdispVal = pValue;
        return Put(value);
    }
    HRESULT Put(const std::wstring& sValue)
    {
        const Bstr text(sValue);
        VARIANT value{};
        value.vt = VT_BSTR;
        value.bstrVal = text.get();
        return Put(value);
    }

private:
    HRESULT Invoke(WORD nFlags, DISPPARAMS& params, VARIANT* pResult)
    {
        return m_pObject->Invoke(m_id, IID_NULL, 0, nFlags, &params, pResult, nullptr, nullptr);
    }

    const com_ptr<IDispatch> m_pObject;
    DISPID m_id = DISPID_UNKNOWN;
};

std::wstring Sample()
{
    const std::filesystem::path samples = std::filesystem::absolute(SAMPLES).make_preferred();
    return (samples / "day-no-header.csv").wstring();
}

class Hosting : public testing::Test
{
protected:
    Hosting() { EXPECT_TRUE(SUCCEEDED(OleInitialize(nullptr))); }
    ~Hosting() override { OleUninitialize(); }

    com_ptr<IUnknown> Create(const wchar_t* pszName)
    {
        com_ptr<IUnknown> pContainer;
        com_ptr<IUnknown> pControl;
        EXPECT_EQ(S_OK, m_system.Create(pszName, m_host.get(), pContainer));
        EXPECT_EQ(S_OK, m_system.Control(m_host.get(), pControl));
        return pControl;
    }

    SystemContainer m_system;
    HostWindow m_host;
};

TEST_F(Hosting, EachControlIsDescribed)
{
    for (const wchar_t* pszName : {kGrid, kFolder, kContained}) {
        const com_ptr<IUnknown> pControl = Create(pszName);
        ASSERT_TRUE(pControl);
        CLSID clsid{};
        EXPECT_EQ(S_OK, CLSIDFromProgID(pszName, &clsid));
        com_ptr<ITypeInfo> pInfo;
        ASSERT_EQ(S_OK, As<IProvideClassInfo>(pControl)->GetClassInfo(pInfo.put()));
        TYPEATTR* pAttributes = nullptr;
        ASSERT_EQ(S_OK, pInfo->GetTypeAttr(&pAttributes));
        EXPECT_TRUE(pAttributes->guid == clsid);
        EXPECT_EQ(TKIND_COCLASS, pAttributes->typekind);
        pInfo->ReleaseTypeAttr(pAttributes);

        LPOLESTR pszType = nullptr;
        ASSERT_EQ(S_OK, As<IOleObject>(pControl)->GetUserType(USERCLASSTYPE_FULL, &pszType));
        EXPECT_STREQ(pszName, pszType);
        CoTaskMemFree(pszType);
        DWORD nOwn = 0;
        DWORD nRegistered = 1;
        EXPECT_EQ(S_OK, As<IOleObject>(pControl)->GetMiscStatus(DVASPECT_CONTENT, &nOwn));
        EXPECT_EQ(S_OK, OleRegGetMiscStatus(clsid, DVASPECT_CONTENT, &nRegistered));
        EXPECT_EQ(nOwn, nRegistered);
        m_host.Renew();
    }
}

TEST_F(Hosting, AGridShowsAFile)
{
    const com_ptr<IUnknown> pGrid = Create(kGrid);
    ASSERT_TRUE(pGrid);
    CLSID clsid{};
    EXPECT_EQ(S_OK, CLSIDFromProgID(L"TabulexConverter.DataParser", &clsid));
    com_ptr<IUnknown> pParser;
    ASSERT_EQ(S_OK, CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, iid_of<IUnknown>,
                                     pParser.put_void()));
    EXPECT_EQ(S_OK, Member(pParser, L"FileName").Put(Sample()));
    EXPECT_EQ(S_OK, Member(pGrid, L"DataParser").Put(As<IDispatch>(pParser).get()));
    EXPECT_EQ(S_OK, Member(pGrid, L"CreateFields").Call());
    const HWND hList = DescendantOfClass(m_host.get(), WC_LISTVIEWW);
    ASSERT_TRUE(hList);
    EXPECT_TRUE(PumpUntil([hList] { return ListView_GetItemCount(hList) == 20; }));
    UpdateWindow(hList);
}

TEST_F(Hosting, AFolderViewShowsAFile)
{
    const com_ptr<IUnknown> pFolder = Create(kFolder);
    ASSERT_TRUE(pFolder);
    EXPECT_EQ(S_OK, Member(pFolder, L"FileName").Put(Sample()));
    const HWND hList = DescendantOfClass(m_host.get(), WC_LISTVIEWW);
    ASSERT_TRUE(hList);
    EXPECT_TRUE(PumpUntil([hList] { return ListView_GetSelectedCount(hList) == 1; }));
    Variant file;
    EXPECT_EQ(S_OK, Member(pFolder, L"FileName").Get(file));
    EXPECT_EQ(Sample(), file.bstrVal);
}

TEST_F(Hosting, TheLibraryMayGoWhenTheControlsHaveGone)
{
    for (const wchar_t* pszName : {kGrid, kFolder, kContained})
        for (int i = 0; i < 10; ++i) {
            m_host.Renew();
            EXPECT_TRUE(Create(pszName));
        }
    const HMODULE hLibrary = GetModuleHandleW(L"TabulexConverter.dll");
    ASSERT_TRUE(hLibrary);
    const auto pfnCanUnload = reinterpret_cast<decltype(&DllCanUnloadNow)>(
        reinterpret_cast<void*>(GetProcAddress(hLibrary, "DllCanUnloadNow")));
    EXPECT_EQ(S_FALSE, pfnCanUnload()); // the last one's window is there
    m_host.Destroy();
    EXPECT_TRUE(PumpUntil([&] { return pfnCanUnload() == S_OK; }));
}

} // namespace
