// The type library as a whole, and its classes against the component's own map.

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "component/ObjectMap.h"
#include "component/windows/Registration.h"
#include "interfaces/ClassIds.h"
#include "interfaces/IDataParser.h"
#include "interfaces/IDataParserEvents.h"
#include "interfaces/IFolderViewCtrl.h"
#include "interfaces/IProgressBox.h"
#include "interfaces/IQRLCommonCtrlContained.h"
#include "interfaces/IQRLDataGridViewCtrl.h"
#include "interfaces/IRecordParser.h"
#include "interfaces/ISymbolEnumerator.h"
#include "interfaces/IValueMultiplier.h"
#include "interfaces/IqrlTabulexConvertor.h"
#include "tests/windows/ComponentLibrary.h"
#include "tests/windows/typelib/Headers.h"
#include "tests/windows/typelib/Library.h"

using namespace IQRL_TabulexConverter;

namespace {

struct ClassRow
{
    string_view_t sName;
    CLSID clsid;
    GUID standard; // the interface that is called without being asked for
};

#define CLASS_ROW(Class, Interface)                                                                \
    {                                                                                              \
        OLESTR(#Class), CLSID_##Class, iid_of<Interface>                                           \
    }

const ClassRow kClasses[] = {
    CLASS_ROW(CRecordParser, IRecordParser),
    CLASS_ROW(CDataParser, IDataParser),
    CLASS_ROW(CqrlValueMultiplier, IValueMultiplier),
    CLASS_ROW(CqrlTabulexConvertor, IqrlTabulexConvertor),
    CLASS_ROW(CqrlDataParserEventsProxy, IDataParserEvents),
    CLASS_ROW(CProgressDlgNoHTML, IProgressDlg),
    CLASS_ROW(CSymbolEnumerator, ISymbolEnumerator),
    CLASS_ROW(CFakeRecordParser, IRecordParser),
    CLASS_ROW(CQRLDataGridViewCtrl, IQRLDataGridViewCtrl),
    CLASS_ROW(CFolderViewCtrl, IFolderViewCtrl),
    CLASS_ROW(CQRLCommonCtrlContained, IQRLCommonCtrlContained),
};

// How many descriptions of a kind the library has.
std::map<TYPEKIND, std::size_t> KindCounts(ITypeLib& library)
{
    std::map<TYPEKIND, std::size_t> counts;
    const UINT nTypes = library.GetTypeInfoCount();
    for (UINT i = 0; i < nTypes; ++i) {
        TYPEKIND kind = TKIND_MAX;
        EXPECT_EQ(S_OK, library.GetTypeInfoType(i, &kind));
        ++counts[kind];
    }
    return counts;
}

// The interfaces that a class is described with: name and flags of each.
std::map<string_t, int> InterfacesOf(ITypeInfo& coclass)
{
    std::map<string_t, int> interfaces;
    const UINT nInterfaces = AttributesOf(coclass).cImplTypes;
    for (UINT i = 0; i < nInterfaces; ++i) {
        HREFTYPE hType = 0;
        com_ptr<ITypeInfo> info;
        EXPECT_EQ(S_OK, coclass.GetRefTypeOfImplType(i, &hType));
        EXPECT_EQ(S_OK, coclass.GetRefTypeInfo(hType, info.put()));
        EXPECT_EQ(S_OK, coclass.GetImplTypeFlags(i, &interfaces[NameOf(*info.get())]));
    }
    return interfaces;
}

// Those of the dual interfaces that an object answers to.
std::map<string_t, int> InterfacesOf(IUnknown& object, const GUID& standard)
{
    std::map<string_t, int> interfaces;
    for (const Description& description : Descriptions()) {
        com_ptr<IUnknown> found;
        if (SUCCEEDED(object.QueryInterface(description.iid, found.put_void())))
            interfaces[string_t(description.sName)] =
                description.iid == standard ? IMPLTYPEFLAG_FDEFAULT : 0;
    }
    return interfaces;
}

TEST(TypeLibrary, HasItsIdentifierVersionAndLocale)
{
    const com_ptr<ITypeLib> library = OpenLibrary();
    TLIBATTR* attributes = nullptr;
    ASSERT_EQ(S_OK, library->GetLibAttr(&attributes));
    EXPECT_TRUE(attributes->guid == kTypeLibraryId);
    EXPECT_EQ(1, attributes->wMajorVerNum);
    EXPECT_EQ(0, attributes->wMinorVerNum);
    EXPECT_EQ(DWORD{LOCALE_NEUTRAL}, attributes->lcid);
    EXPECT_EQ(SYS_WIN64, attributes->syskind);
    library->ReleaseTLibAttr(attributes);

    Bstr name;
    ASSERT_EQ(S_OK, library->GetDocumentation(-1, name.put(), nullptr, nullptr, nullptr));
    EXPECT_EQ(OLESTR("TabulexConverterLib"), name.view());
}

TEST(TypeLibrary, HasTheDualInterfacesAndTheClassesAlone)
{
    const std::map<TYPEKIND, std::size_t> expected = {{TKIND_DISPATCH, Descriptions().size()},
                                                      {TKIND_COCLASS, ObjectMap().size()}};
    EXPECT_EQ(expected, KindCounts(*OpenLibrary().get()));
}

TEST(TypeLibrary, HasTheClassesOfTheObjectMap)
{
    EXPECT_EQ(std::size(kClasses), ObjectMap().size());
    const com_ptr<ITypeLib> library = OpenLibrary();
    for (const ClassRow& row : kClasses) {
        SCOPED_TRACE(Narrow(row.sName));
        const ObjectMapEntry* pEntry = FindClass(ObjectMap(), row.clsid);
        ASSERT_TRUE(pEntry);
        com_ptr<ITypeInfo> coclass;
        ASSERT_EQ(S_OK, library->GetTypeInfoOfGuid(row.clsid, coclass.put()));
        EXPECT_EQ(row.sName, NameOf(*coclass.get()));
        const TYPEATTR attributes = AttributesOf(*coclass.get());
        EXPECT_EQ(TKIND_COCLASS, attributes.typekind);
        EXPECT_EQ(TYPEFLAG_FCANCREATE | (pEntry->bControl ? TYPEFLAG_FCONTROL : 0),
                  attributes.wTypeFlags);
    }
}

TEST(TypeLibrary, DescribesClassesByWhatTheirObjectsAnswerTo)
{
    const ComponentLibrary component;
    ASSERT_TRUE(component);
    const com_ptr<ITypeLib> library = OpenLibrary();
    for (const ClassRow& row : kClasses) {
        SCOPED_TRACE(Narrow(row.sName));
        com_ptr<ITypeInfo> coclass;
        ASSERT_EQ(S_OK, library->GetTypeInfoOfGuid(row.clsid, coclass.put()));
        com_ptr<IUnknown> object;
        ASSERT_EQ(S_OK, component.Create(row.clsid, object));
        EXPECT_EQ(InterfacesOf(*object.get(), row.standard), InterfacesOf(*coclass.get()));
    }
}

// ---- what objects say of themselves

TEST(TypeInfoOfAnObject, IsThatOfTheInterfaceThatIsAsked)
{
    const ComponentLibrary component;
    ASSERT_TRUE(component);
    for (const ClassRow& row : kClasses) {
        SCOPED_TRACE(Narrow(row.sName));
        com_ptr<IUnknown> object;
        ASSERT_EQ(S_OK, component.Create(row.clsid, object));
        for (const Description& description : Descriptions()) {
            com_ptr<IDispatch> dual;
            if (FAILED(object->QueryInterface(description.iid, dual.put_void())))
                continue;
            SCOPED_TRACE(Narrow(description.sName));
            UINT nCount = 0;
            EXPECT_EQ(S_OK, dual->GetTypeInfoCount(&nCount));
            EXPECT_EQ(1u, nCount);
            com_ptr<ITypeInfo> info;
            ASSERT_EQ(S_OK, dual->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.put()));
            EXPECT_TRUE(AttributesOf(*info.get()).guid == description.iid);
            EXPECT_EQ(DISP_E_BADINDEX, dual->GetTypeInfo(1, LOCALE_USER_DEFAULT, info.put()));
            EXPECT_FALSE(info);
            EXPECT_EQ(E_POINTER, dual->GetTypeInfo(0, LOCALE_USER_DEFAULT, nullptr));
            EXPECT_EQ(E_POINTER, dual->GetTypeInfoCount(nullptr));
        }
    }
}

TEST(TypeInfoOfAnObject, DoesNotHoldTheModule)
{
    ComponentLibrary component;
    ASSERT_TRUE(component);
    com_ptr<ITypeInfo> info;
    {
        com_ptr<IDispatch> converter;
        ASSERT_EQ(S_OK, component.Create(CLSID_CqrlTabulexConvertor, converter));
        ASSERT_EQ(S_OK, converter->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.put()));
    }
    EXPECT_EQ(S_OK, component.Entry<decltype(DllCanUnloadNow)>("DllCanUnloadNow")());
    component.Free();
    EXPECT_EQ(nullptr, GetModuleHandleW(ComponentLibrary::Path().c_str()));
    EXPECT_EQ(OLESTR("IqrlTabulexConvertor"), NameOf(*info.get())); // it is the system's own
}

} // namespace
