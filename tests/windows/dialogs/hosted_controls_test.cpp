// The three controls in a plain container: activation, places, and every way in which they end.

#include <thread>

#include <gtest/gtest.h>

#include "src/UIComponents/controls/FolderView.h"
#include "src/UIComponents/controls/QRLCommonCtrlContained.h"
#include "src/UIComponents/controls/QRLDataGridViewCtrl.h"
#include "tests/windows/SystemObjects.h"
#include "tests/windows/dialogs/Container.h"
#include "tests/windows/dialogs/ControlObjects.h"
#include "tests/windows/dialogs/ModalDriver.h"

#include <ocidl.h>

using Hesperon::specifics::UILayer::AskFor;

namespace {

constexpr RECT kPlace = {10, 20, 310, 220};
constexpr char kActivation[] = "CanInPlaceActivate OnInPlaceActivate ShowObject";

bool Same(const RECT& a, const RECT& b)
{
    return EqualRect(&a, &b);
}

// Counts the times that an object was closed.
class CloseListener final : public IAdviseSink
{
public:
    virtual ~CloseListener() = default;
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** ppv) override
    {
        const bool bOurs = riid == __uuidof(IUnknown) || riid == __uuidof(IAdviseSink);
        *ppv = bOurs ? this : nullptr;
        return bOurs ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    void STDMETHODCALLTYPE OnDataChange(FORMATETC*, STGMEDIUM*) override {}
    void STDMETHODCALLTYPE OnViewChange(DWORD, LONG) override {}
    void STDMETHODCALLTYPE OnRename(IMoniker*) override {}
    void STDMETHODCALLTYPE OnSave() override {}
    void STDMETHODCALLTYPE OnClose() override { ++nClosed; }

    int nClosed = 0;
};

class HostedControls : public testing::Test
{
protected:
    HostedControls() { EXPECT_TRUE(SUCCEEDED(OleInitialize(nullptr))); }
    ~HostedControls() override
    {
        EXPECT_EQ(m_nLocks, ModuleLockCount());
        OleUninitialize();
    }

    // Runs a test with a fresh control of each class.
    void ForEach(const std::function<void(IOleObject& object)>& test)
    {
        for (const ControlClass& row : kControlClasses) {
            SCOPED_TRACE(row.szName);
            const com_ptr<IOleObject> pObject = CreateOfClass<IOleObject>(row.clsid);
            ASSERT_TRUE(pObject);
            test(*pObject.get());
            pObject->Close(OLECLOSE_NOSAVE);
            pObject->SetClientSite(nullptr);
        }
        EXPECT_EQ(nullptr, m_host.FirstChild());
    }
    HRESULT Activate(IOleObject& object, LONG nVerb = OLEIVERB_INPLACEACTIVATE)
    {
        return object.DoVerb(nVerb, nullptr, nullptr, 0, m_host.get(), &kPlace);
    }
    static HWND WindowOf(IOleObject& object)
    {
        HWND hWnd = nullptr;
        const HRESULT hr = AskFor<IOleWindow>(&object)->GetWindow(&hWnd);
        EXPECT_EQ(hWnd ? S_OK : E_FAIL, hr);
        return hWnd;
    }

    enum class End
    {
        HostGoes,
        Closed,
        Released,
    };
    // The control of this class ends in the site's first call of this name.
    static void ActivateAndEndIn(const std::string& sCall, const ControlClass& row, End end)
    {
        HostWindow host;
        TestSite site(host.get(), kPlace);
        auto pObject = CreateOfClass<IOleObject>(row.clsid);
        IOleObject& object = *pObject.get(); // a caller's own reference may be the last
        object.SetClientSite(&site);
        bool bCalled = false;
        site.m_onCall = [&](const std::string& s) {
            if (s != sCall || std::exchange(bCalled, true))
                return;
            object.SetClientSite(nullptr);
            if (end == End::HostGoes)
                host.Destroy();
            else if (end == End::Closed)
                object.Close(OLECLOSE_NOSAVE);
            else
                pObject.reset();
        };
        object.DoVerb(OLEIVERB_UIACTIVATE, nullptr, nullptr, 0, nullptr, &kPlace);
        if (pObject)
            pObject->Close(OLECLOSE_NOSAVE);
        EXPECT_TRUE(PumpUntil([&] { return !host.get() || !host.FirstChild(); }));
        EXPECT_TRUE(bCalled);
        pObject.reset();
        EXPECT_EQ(0u, site.References());
    }

    const LONG m_nLocks = ModuleLockCount();
    WithHostedControls m_hosted;
    HostWindow m_host;
};

// ---- what they offer

TEST_F(HostedControls, AreOneObjectWithAllInterfaces)
{
    ForEach([](IOleObject& object) {
        const com_ptr<IUnknown> pIdentity = AskFor<IUnknown>(&object);
        for (const IID& iid :
             {__uuidof(IDispatch), __uuidof(IOleObject), __uuidof(IOleWindow),
              __uuidof(IOleInPlaceObject), __uuidof(IOleInPlaceActiveObject), __uuidof(IOleControl),
              __uuidof(IPersist), __uuidof(IPersistStreamInit), __uuidof(IProvideClassInfo)}) {
            com_ptr<IUnknown> pFound;
            ASSERT_EQ(S_OK, object.QueryInterface(iid, pFound.put_void()));
            EXPECT_EQ(pIdentity, AskFor<IUnknown>(pFound.get()));
        }
        for (const IID& iid : {__uuidof(IConnectionPointContainer), __uuidof(IDataObject),
                               __uuidof(ISpecifyPropertyPages), __uuidof(IPersistStorage)}) {
            com_ptr<IUnknown> pFound;
            EXPECT_EQ(E_NOINTERFACE, object.QueryInterface(iid, pFound.put_void()));
            EXPECT_FALSE(pFound);
        }
    });
}

TEST_F(HostedControls, ThePlainClassesOfferNone)
{
    using namespace Hesperon::specifics;
    const ControlMaker kMakers[] = {&CreateClass<CQRLDataGridViewCtrl>,
                                    &CreateClass<CFolderViewCtrl>,
                                    &CreateClass<CQRLCommonCtrlContained>};
    for (const ControlMaker pfnMake : kMakers) {
        com_ptr<IUnknown> pObject;
        EXPECT_EQ(S_OK, pfnMake(iid_of<IUnknown>, pObject.put_void()));
        EXPECT_FALSE(AskFor<IOleObject>(pObject.get()));
    }
}

TEST_F(HostedControls, TellWhatTheyAre)
{
    for (const ControlClass& row : kControlClasses) {
        SCOPED_TRACE(row.szName);
        const auto pObject = CreateOfClass<IOleObject>(row.clsid);
        CLSID clsid{};
        EXPECT_EQ(S_OK, pObject->GetUserClassID(&clsid));
        EXPECT_TRUE(clsid == row.clsid);
        clsid = {};
        EXPECT_EQ(S_OK, AskFor<IPersist>(pObject.get())->GetClassID(&clsid));
        EXPECT_TRUE(clsid == row.clsid);
        DWORD nStatus = 0;
        EXPECT_EQ(S_OK, pObject->GetMiscStatus(DVASPECT_CONTENT, &nStatus));
        EXPECT_EQ(401u, nStatus);
    }
}

TEST_F(HostedControls, KeepTheirSize)
{
    ForEach([](IOleObject& object) {
        SIZEL size{};
        EXPECT_EQ(S_OK, object.GetExtent(DVASPECT_CONTENT, &size));
        EXPECT_GT(size.cx, 0);
        SIZEL other = {4000, 3000};
        EXPECT_EQ(S_OK, object.SetExtent(DVASPECT_CONTENT, &other));
        EXPECT_EQ(S_OK, object.GetExtent(DVASPECT_CONTENT, &size));
        EXPECT_EQ(4000, size.cx);
        EXPECT_EQ(3000, size.cy);
        EXPECT_EQ(DV_E_DVASPECT, object.SetExtent(DVASPECT_ICON, &other));
        EXPECT_EQ(E_POINTER, object.GetExtent(DVASPECT_CONTENT, nullptr));
    });
}

TEST_F(HostedControls, HaveNothingToSave)
{
    ForEach([](IOleObject& object) {
        const auto pPersist = AskFor<IPersistStreamInit>(&object);
        com_ptr<IStream> pStream;
        ASSERT_EQ(S_OK, CreateStreamOnHGlobal(nullptr, TRUE, pStream.put()));
        EXPECT_EQ(S_OK, pPersist->InitNew());
        EXPECT_EQ(S_FALSE, pPersist->IsDirty());
        EXPECT_EQ(S_OK, pPersist->Save(pStream.get(), TRUE));
        ULARGE_INTEGER nSize{};
        EXPECT_EQ(S_OK, pPersist->GetSizeMax(&nSize));
        EXPECT_EQ(0u, nSize.QuadPart);
        STATSTG status{};
        EXPECT_EQ(S_OK, pStream->Stat(&status, STATFLAG_NONAME));
        EXPECT_EQ(0u, status.cbSize.QuadPart);
        EXPECT_EQ(S_OK, pPersist->Load(pStream.get()));
    });
}

TEST_F(HostedControls, RefuseWhatTheyLack)
{
    ForEach([](IOleObject& object) {
        com_ptr<IMoniker> pMoniker;
        EXPECT_EQ(E_NOTIMPL, object.GetMoniker(1, 1, pMoniker.put()));
        com_ptr<IEnumOLEVERB> pVerbs;
        EXPECT_EQ(OLEOBJ_E_NOVERBS, object.EnumVerbs(pVerbs.put()));
        for (const LONG nVerb : {OLEIVERB_OPEN, OLEIVERB_DISCARDUNDOSTATE, -7L})
            EXPECT_EQ(E_NOTIMPL, object.DoVerb(nVerb, nullptr, nullptr, 0, nullptr, nullptr));
        EXPECT_EQ(DV_E_LINDEX, object.DoVerb(OLEIVERB_SHOW, nullptr, nullptr, 1, nullptr, nullptr));
        CONTROLINFO info{};
        EXPECT_EQ(E_NOTIMPL, AskFor<IOleControl>(&object)->GetControlInfo(&info));
        com_ptr<ITypeInfo> pInfo; // a program has no type library
        EXPECT_EQ(TYPE_E_CANTLOADLIBRARY,
                  AskFor<IProvideClassInfo>(&object)->GetClassInfo(pInfo.put()));
    });
}

// ---- activation

TEST_F(HostedControls, GetAWindowWhereTheSiteSays)
{
    ForEach([&](IOleObject& object) {
        TestSite site(m_host.get(), kPlace);
        EXPECT_EQ(S_OK, object.SetClientSite(&site));
        EXPECT_EQ(nullptr, WindowOf(object));
        EXPECT_EQ(S_OK,
                  object.DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, &site, 0, nullptr, nullptr));
        EXPECT_EQ(kActivation, site.Calls());
        const HWND hWnd = WindowOf(object);
        EXPECT_EQ(m_host.get(), GetParent(hWnd));
        EXPECT_TRUE(IsWindowVisible(hWnd));
        EXPECT_TRUE(Same(kPlace, m_host.PlaceOf(hWnd)));
        EXPECT_EQ(S_OK, Activate(object, OLEIVERB_SHOW)); // again: nothing new
        EXPECT_EQ(hWnd, WindowOf(object));
        EXPECT_EQ("", site.Calls());

        EXPECT_EQ(S_OK, AskFor<IOleInPlaceObject>(&object)->InPlaceDeactivate());
        EXPECT_EQ("OnInPlaceDeactivate", site.Calls());
        EXPECT_FALSE(IsWindow(hWnd));
        EXPECT_EQ(S_OK, Activate(object));
        EXPECT_EQ(kActivation, site.Calls());
        EXPECT_NE(nullptr, WindowOf(object));
        object.Close(OLECLOSE_NOSAVE);
        object.SetClientSite(nullptr);
        EXPECT_EQ(0u, site.References());
    });
}

TEST_F(HostedControls, MoveAsTheContainerSays)
{
    ForEach([&](IOleObject& object) {
        const auto pInPlace = AskFor<IOleInPlaceObject>(&object);
        EXPECT_EQ(S_OK, pInPlace->SetObjectRects(&kPlace, &kPlace)); // no window yet
        EXPECT_EQ(S_OK, Activate(object));
        const HWND hWnd = WindowOf(object);
        const RECT place = {40, 50, 140, 90};
        EXPECT_EQ(S_OK, pInPlace->SetObjectRects(&place, &place));
        EXPECT_TRUE(Same(place, m_host.PlaceOf(hWnd)));
        RECT box{};
        EXPECT_EQ(ERROR, GetWindowRgnBox(hWnd, &box)); // has none
        const RECT clip = {0, 0, 100, 80};
        EXPECT_EQ(S_OK, pInPlace->SetObjectRects(&place, &clip));
        EXPECT_EQ(SIMPLEREGION, GetWindowRgnBox(hWnd, &box));
        EXPECT_TRUE(Same({0, 0, 60, 30}, box));
        const RECT all = {0, 0, 32000, 32000};
        EXPECT_EQ(S_OK, pInPlace->SetObjectRects(&place, &all));
        EXPECT_EQ(ERROR, GetWindowRgnBox(hWnd, &box));
        EXPECT_EQ(E_POINTER, pInPlace->SetObjectRects(nullptr, &clip));
    });
}

TEST_F(HostedControls, BecomeActiveForTheUser)
{
    ForEach([&](IOleObject& object) {
        TestSite site(m_host.get(), kPlace);
        object.SetClientSite(&site);
        EXPECT_EQ(S_OK, Activate(object, OLEIVERB_UIACTIVATE));
        EXPECT_EQ(std::string(kActivation) + " OnUIActivate", site.Calls());
        EXPECT_EQ(S_OK, Activate(object, OLEIVERB_UIACTIVATE));
        EXPECT_EQ("", site.Calls());
        const auto pInPlace = AskFor<IOleInPlaceObject>(&object);
        EXPECT_EQ(S_OK, pInPlace->UIDeactivate());
        EXPECT_EQ(S_OK, pInPlace->UIDeactivate());
        EXPECT_EQ("OnUIDeactivate", site.Calls());
        EXPECT_EQ(OLEOBJ_S_INVALIDVERB, Activate(object, 1)); // as the primary one
        EXPECT_EQ("OnUIActivate", site.Calls());
        EXPECT_EQ(S_OK, pInPlace->InPlaceDeactivate());
        EXPECT_EQ("OnUIDeactivate OnInPlaceDeactivate", site.Calls());
        object.SetClientSite(nullptr);
    });
}

TEST_F(HostedControls, AMousePressMakesThemActiveForTheUser)
{
    ForEach([&](IOleObject& object) {
        TestSite site(m_host.get(), kPlace);
        object.SetClientSite(&site);
        EXPECT_EQ(S_OK, Activate(object));
        site.Calls();
        SendMessageW(WindowOf(object), WM_MOUSEACTIVATE, reinterpret_cast<WPARAM>(m_host.get()),
                     MAKELPARAM(HTCLIENT, WM_LBUTTONDOWN));
        EXPECT_EQ("OnUIActivate", site.Calls());
        object.Close(OLECLOSE_NOSAVE);
        object.SetClientSite(nullptr);
    });
}

TEST_F(HostedControls, AreHiddenAndShown)
{
    ForEach([&](IOleObject& object) {
        EXPECT_EQ(S_OK, Activate(object));
        EXPECT_EQ(S_OK, Activate(object, OLEIVERB_HIDE));
        EXPECT_FALSE(IsWindowVisible(WindowOf(object)));
        EXPECT_EQ(S_OK, Activate(object, OLEIVERB_SHOW));
        EXPECT_TRUE(IsWindowVisible(WindowOf(object)));
    });
}

TEST_F(HostedControls, StayWithoutAWindowIfTheSiteRefuses)
{
    ForEach([&](IOleObject& object) {
        TestSite site(m_host.get(), kPlace);
        site.Refuse();
        object.SetClientSite(&site);
        EXPECT_EQ(E_FAIL, Activate(object));
        EXPECT_EQ("CanInPlaceActivate", site.Calls());
        EXPECT_EQ(nullptr, m_host.FirstChild());
        object.SetClientSite(nullptr);
        EXPECT_EQ(0u, site.References());
    });
}

TEST_F(HostedControls, NeedASiteOrAWindow)
{
    ForEach([&](IOleObject& object) {
        EXPECT_EQ(E_UNEXPECTED,
                  object.DoVerb(OLEIVERB_SHOW, nullptr, nullptr, 0, nullptr, &kPlace));
        EXPECT_EQ(S_OK, Activate(object));
        EXPECT_TRUE(Same(kPlace, m_host.PlaceOf(WindowOf(object))));
    });
}

TEST_F(HostedControls, TellTheSiteThatTheWindowCannotBeMade)
{
    ForEach([&](IOleObject& object) {
        TestSite site(reinterpret_cast<HWND>(1), kPlace);
        object.SetClientSite(&site);
        EXPECT_EQ(E_FAIL, Activate(object));
        EXPECT_EQ("CanInPlaceActivate OnInPlaceActivate OnInPlaceDeactivate", site.Calls());
        object.SetClientSite(nullptr);
        EXPECT_EQ(0u, site.References());
    });
}

// ---- the end

TEST_F(HostedControls, CloseOnceAndTellIt)
{
    ForEach([&](IOleObject& object) {
        CloseListener listener;
        DWORD nConnection = 0;
        EXPECT_EQ(OLE_E_NOCONNECTION, object.Unadvise(1));
        EXPECT_EQ(S_OK, object.Advise(&listener, &nConnection));
        EXPECT_EQ(S_OK, Activate(object));
        EXPECT_EQ(S_OK, object.Close(OLECLOSE_SAVEIFDIRTY));
        EXPECT_EQ(1, listener.nClosed);
        EXPECT_EQ(nullptr, m_host.FirstChild());
        EXPECT_EQ(S_OK, object.Unadvise(nConnection));
        EXPECT_EQ(S_OK, object.Close(OLECLOSE_NOSAVE));
        EXPECT_EQ(1, listener.nClosed);
    });
}

TEST_F(HostedControls, OutliveTheContainersWindow)
{
    ForEach([&](IOleObject& object) {
        HostWindow host;
        TestSite site(host.get(), kPlace);
        object.SetClientSite(&site);
        EXPECT_EQ(S_OK, Activate(object, OLEIVERB_UIACTIVATE));
        site.Calls();
        host.Destroy();
        EXPECT_EQ("OnUIDeactivate OnInPlaceDeactivate", site.Calls());
        EXPECT_EQ(nullptr, WindowOf(object));
        EXPECT_EQ(S_OK, AskFor<IOleInPlaceObject>(&object)->InPlaceDeactivate());
        object.SetClientSite(nullptr);
        EXPECT_EQ(S_OK, Activate(object)); // elsewhere
        EXPECT_NE(nullptr, WindowOf(object));
    });
}

TEST_F(HostedControls, GoWithTheirWindowIfNothingElseHoldsThem)
{
    for (const ControlClass& row : kControlClasses) {
        SCOPED_TRACE(row.szName);
        auto pObject = CreateOfClass<IOleObject>(row.clsid);
        EXPECT_EQ(S_OK, Activate(*pObject.get()));
        const HWND hWnd = WindowOf(*pObject.get());
        pObject.reset();
        EXPECT_TRUE(PumpUntil([hWnd] { return !IsWindow(hWnd); }));
        EXPECT_EQ(m_nLocks, ModuleLockCount());
    }
}

TEST_F(HostedControls, MayBeReleasedBeforeTheContainersWindowGoes)
{
    for (const ControlClass& row : kControlClasses) {
        SCOPED_TRACE(row.szName);
        HostWindow host;
        auto pObject = CreateOfClass<IOleObject>(row.clsid);
        EXPECT_EQ(S_OK, pObject->DoVerb(OLEIVERB_SHOW, nullptr, nullptr, 0, host.get(), &kPlace));
        pObject.reset();
        EXPECT_LT(m_nLocks, ModuleLockCount()); // its window holds it
        host.Destroy();                         // without a message in between
        EXPECT_EQ(m_nLocks, ModuleLockCount());
    }
}

TEST_F(HostedControls, MayBeReleasedOnAnotherThread)
{
    for (const ControlClass& row : kControlClasses) {
        SCOPED_TRACE(row.szName);
        auto pObject = CreateOfClass<IOleObject>(row.clsid);
        EXPECT_EQ(S_OK, Activate(*pObject.get()));
        const HWND hWnd = WindowOf(*pObject.get());
        std::thread([&] { pObject.reset(); }).join();
        EXPECT_TRUE(PumpUntil([hWnd] { return !IsWindow(hWnd); }));
        EXPECT_EQ(m_nLocks, ModuleLockCount());
    }
}

// In each call of the site, in each way.
TEST_F(HostedControls, MayEndInTheMiddleOfACallToTheSite)
{
    constexpr const char* kCalls[] = {"CanInPlaceActivate", "OnInPlaceActivate",  "GetWindow",
                                      "GetWindowContext",   "ShowObject",         "OnUIActivate",
                                      "OnUIDeactivate",     "OnInPlaceDeactivate"};
    for (const ControlClass& row : kControlClasses)
        for (const char* pszCall : kCalls)
            for (const End end : {End::HostGoes, End::Closed, End::Released}) {
                SCOPED_TRACE(std::string(row.szName) + " in " + pszCall);
                ActivateAndEndIn(pszCall, row, end);
                EXPECT_EQ(m_nLocks, ModuleLockCount());
            }
}

TEST_F(HostedControls, MayEndInTheMiddleOfAMousePress)
{
    ForEach([&](IOleObject& object) {
        HostWindow host;
        TestSite site(host.get(), kPlace);
        object.SetClientSite(&site);
        EXPECT_EQ(S_OK, Activate(object));
        site.m_onCall = [&](const std::string& sCall) {
            if (sCall == "OnUIActivate")
                host.Destroy();
        };
        SendMessageW(WindowOf(object), WM_MOUSEACTIVATE, reinterpret_cast<WPARAM>(host.get()),
                     MAKELPARAM(HTCLIENT, WM_LBUTTONDOWN));
        EXPECT_EQ(nullptr, WindowOf(object));
    });
}

TEST_F(HostedControls, LeaveNothingAfterManyRounds)
{
    constexpr int kRounds = 50;
    const auto round = [&](const ControlClass& row) {
        TestSite site(m_host.get(), kPlace);
        const auto pObject = CreateOfClass<IOleObject>(row.clsid);
        pObject->SetClientSite(&site);
        EXPECT_EQ(S_OK, Activate(*pObject.get(), OLEIVERB_UIACTIVATE));
        UpdateWindow(WindowOf(*pObject.get()));
        pObject->Close(OLECLOSE_NOSAVE);
        pObject->SetClientSite(nullptr);
    };
    for (const ControlClass& row : kControlClasses) {
        SCOPED_TRACE(row.szName);
        round(row); // what the system makes once
        const DWORD nObjects = CountGdiObjects();
        ASSERT_GT(nObjects, 0u);
        for (int i = 0; i < kRounds; ++i)
            round(row);
        EXPECT_EQ(nObjects, CountGdiObjects());
        EXPECT_EQ(nullptr, m_host.FirstChild());
        EXPECT_EQ(m_nLocks, ModuleLockCount());
    }
}

} // namespace
