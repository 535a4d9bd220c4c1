// The component library as a host sees it: its entries and its classes.

#include <gtest/gtest.h>

#include <algorithm>

#include "component/ObjectMap.h"
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
#include "interfaces/Module.h"
#include "platform/com_ptr.h"
#include "platform/values.h"

using namespace IQRL_TabulexConverter;

namespace {

struct ClassRow
{
    const char* szClass;
    CLSID clsid;
    string_view_t sProgId;
    GUID iid;
};

const ClassRow kClasses[] = {
    {"record parser",
     {0x40F34F54, 0x56A2, 0x4480, {0xA1, 0x40, 0x42, 0x92, 0xA2, 0x73, 0xF7, 0xC2}},
     OLESTR("TabulexConverter.RecordParser"),
     iid_of<IRecordParser>},
    {"data parser",
     {0x74D8EF1E, 0x2860, 0x400A, {0xBC, 0x14, 0x48, 0x00, 0x10, 0x88, 0xD6, 0xD2}},
     OLESTR("TabulexConverter.DataParser"),
     iid_of<IDataParser>},
    {"value multiplier",
     {0x14F2854F, 0x6B57, 0x495D, {0x93, 0xD3, 0xFF, 0xF2, 0x73, 0x53, 0xA6, 0xA9}},
     OLESTR("CqrlValueMultiplier.CqrlValueMultiplier"),
     iid_of<IValueMultiplier>},
    {"fake record parser",
     {0xD5DBF451, 0x08DC, 0x46A5, {0xB8, 0x04, 0x80, 0x8A, 0xE6, 0x63, 0xE4, 0x14}},
     OLESTR("TabulexConverter.FakeRecordParser"),
     iid_of<IRecordParser>},
    {"symbol enumerator",
     {0xA6F381E9, 0xEF47, 0x4696, {0xA6, 0x24, 0xE3, 0x5C, 0xCC, 0xBF, 0x31, 0x94}},
     OLESTR("TabulexConverter.SymbolEnumerator"),
     iid_of<ISymbolEnumerator>},
    {"data parser's events proxy",
     {0x2629FD59, 0x8E26, 0x41F3, {0xB6, 0xBE, 0x8A, 0x15, 0x61, 0x74, 0xD5, 0x2D}},
     OLESTR("CqrlDataParserEventsProxy.CqrlDataParse"),
     iid_of<IDataParserEvents>},
    {"progress box",
     {0x80E5F78A, 0x3001, 0x46CA, {0x94, 0x65, 0x26, 0x38, 0x64, 0x08, 0x02, 0xBE}},
     OLESTR("CProgressDlgNoHTML.CProgressDlgNoHTML"),
     iid_of<IProgressBox>},
    {"data grid",
     {0x15863D31, 0x7437, 0x4F5B, {0x85, 0xAE, 0x75, 0x5F, 0xAB, 0xC2, 0x96, 0x0B}},
     OLESTR("TabulexConverter.QRLDataGridViewCtrl"),
     iid_of<IQRLDataGridViewCtrl>},
    {"folder view",
     {0xE458A594, 0xBF8A, 0x4E1D, {0xB9, 0x26, 0xBF, 0x1B, 0xD4, 0x4A, 0x3D, 0x57}},
     OLESTR("TabulexConverter.FolderViewCtrl"),
     iid_of<IFolderViewCtrl>},
    {"contained control",
     {0x9350074B, 0x42E9, 0x44E0, {0x92, 0x8A, 0x46, 0x42, 0x2D, 0x94, 0x71, 0x90}},
     OLESTR("TabulexConverter.QRLCommonCtrlContained"),
     iid_of<IQRLCommonCtrlContained>},
    {"host's object",
     {0xCB33C95B, 0x48D2, 0x4735, {0xA3, 0xC5, 0x0B, 0x0F, 0x43, 0x0D, 0xA0, 0x46}},
     OLESTR("TabulexConverter.qrlTabulexConvertor"),
     iid_of<IqrlTabulexConvertor>},
};

constexpr CLSID kUnknownClass = {0x40F34F54, 0x56A2, 0x4480, {0, 0, 0, 0, 0, 0, 0, 0}};

TEST(Component, OffersItsClasses)
{
    EXPECT_EQ(std::size(kClasses), ObjectMap().size());
    for (const ClassRow& row : kClasses) {
        SCOPED_TRACE(row.szClass);
        const ObjectMapEntry* entry = FindClass(ObjectMap(), row.clsid);
        ASSERT_TRUE(entry);
        EXPECT_EQ(row.sProgId, entry->sProgId);
    }
}

TEST(Component, DescribesTheFakeRecordParserByAText)
{
    for (const ObjectMapEntry& entry : ObjectMap())
        EXPECT_EQ(entry.clsid == CLSID_CFakeRecordParser ? OLESTR("CFakeRecordParser Object")
                                                         : OLESTR(""),
                  entry.sDescription);
}

TEST(Component, CreatesObjectsThroughTheirFactories)
{
    for (const ClassRow& row : kClasses) {
        SCOPED_TRACE(row.szClass);
        com_ptr<IClassFactory> factory;
        ASSERT_EQ(S_OK, DllGetClassObject(row.clsid, iid_of<IClassFactory>, factory.put_void()));
        com_ptr<IDispatch> object;
        EXPECT_EQ(S_OK, factory->CreateInstance(nullptr, iid_of<IDispatch>, object.put_void()));
        ASSERT_TRUE(object);
        com_ptr<IUnknown> named;
        EXPECT_EQ(S_OK, object->QueryInterface(row.iid, named.put_void()));
    }
}

TEST(Component, CreatesObjectsByTheirIdentifiers)
{
    for (const ClassRow& row : kClasses) {
        SCOPED_TRACE(row.szClass);
        com_ptr<IUnknown> object;
        EXPECT_EQ(S_OK, CoCreateInstance(row.clsid, nullptr, CLSCTX_INPROC_SERVER, row.iid,
                                         object.put_void()));
        EXPECT_TRUE(object);
        void* p = &object;
        EXPECT_EQ(E_NOINTERFACE, CoCreateInstance(row.clsid, nullptr, CLSCTX_INPROC_SERVER,
                                                  iid_of<IClassFactory>, &p));
        EXPECT_EQ(nullptr, p);
        p = &object;
        EXPECT_EQ(CLASS_E_NOAGGREGATION,
                  CoCreateInstance(row.clsid, object.get(), CLSCTX_INPROC_SERVER, row.iid, &p));
        EXPECT_EQ(nullptr, p);
    }
}

TEST(Component, RefusesOtherClassesAndInterfaces)
{
    void* p = &p;
    EXPECT_EQ(CLASS_E_CLASSNOTAVAILABLE,
              DllGetClassObject(kUnknownClass, iid_of<IClassFactory>, &p));
    EXPECT_EQ(nullptr, p);
    p = &p;
    EXPECT_EQ(E_NOINTERFACE, DllGetClassObject(CLSID_CDataParser, iid_of<IDataParser>, &p));
    EXPECT_EQ(nullptr, p);
    p = &p;
    EXPECT_EQ(REGDB_E_CLASSNOTREG,
              CoCreateInstance(kUnknownClass, nullptr, CLSCTX_INPROC_SERVER, iid_of<IUnknown>, &p));
    EXPECT_EQ(nullptr, p);
    EXPECT_EQ(E_POINTER, DllGetClassObject(CLSID_CDataParser, iid_of<IClassFactory>, nullptr));
    EXPECT_EQ(E_POINTER, CoCreateInstance(CLSID_CDataParser, nullptr, CLSCTX_INPROC_SERVER,
                                          iid_of<IUnknown>, nullptr));
}

TEST(Component, CanBeUnloadedWhenNothingOfItLives)
{
    ASSERT_EQ(S_OK, DllCanUnloadNow());
    com_ptr<IUnknown> object;
    for (const ClassRow& row : kClasses) {
        SCOPED_TRACE(row.szClass);
        ASSERT_EQ(S_OK, CoCreateInstance(row.clsid, nullptr, CLSCTX_INPROC_SERVER, row.iid,
                                         object.put_void()));
        EXPECT_EQ(S_FALSE, DllCanUnloadNow());
        object.reset();
        EXPECT_EQ(S_OK, DllCanUnloadNow());
    }
}

TEST(Component, CanNotBeUnloadedWhileAFactoryIsLocked)
{
    com_ptr<IClassFactory> factory;
    ASSERT_EQ(S_OK, DllGetClassObject(CLSID_CqrlValueMultiplier, iid_of<IClassFactory>,
                                      factory.put_void()));
    EXPECT_EQ(S_OK, DllCanUnloadNow()); // a factory alone doesn't keep it
    EXPECT_EQ(S_OK, factory->LockServer(true));
    EXPECT_EQ(S_FALSE, DllCanUnloadNow());
    EXPECT_EQ(S_OK, factory->LockServer(false));
    EXPECT_EQ(S_OK, DllCanUnloadNow());
}

} // namespace
