// The controls in the system's own container of controls, which a host uses without code of its
// own: it makes a control by its ProgID, in a window of the host's.

#include <filesystem>

#include <gtest/gtest.h>

#include "interfaces/IDataParser.h"
#include "interfaces/IFolderViewCtrl.h"
#include "interfaces/IQRLCommonCtrlContained.h"
#include "interfaces/IQRLDataGridViewCtrl.h"
#include "platform/values.h"
#include "tests/support/TempFile.h"
#include "tests/windows/SystemObjects.h"
#include "tests/windows/dialogs/Container.h"
#include "tests/windows/dialogs/ControlObjects.h"
#include "tests/windows/dialogs/ModalDriver.h"
#include "tests/windows/dialogs/SystemContainer.h"

#include <commctrl.h>

using namespace IQRL_TabulexConverter;
using Hesperon::specifics::UILayer::AskFor;

namespace {

// Classes of this program, as if they were registered.
class ClassForHosts
{
public:
    explicit ClassForHosts(const CLSID& clsid)
    {
        com_ptr<IUnknown> pFactory;
        EXPECT_EQ(S_OK, DllGetClassObject(clsid, iid_of<IUnknown>, pFactory.put_void()));
        EXPECT_EQ(S_OK, CoRegisterClassObject(clsid, pFactory.get(), CLSCTX_INPROC_SERVER,
                                              REGCLS_MULTIPLEUSE, &m_nCookie));
    }
    ~ClassForHosts() { CoRevokeClassObject(m_nCookie); }
    ClassForHosts(const ClassForHosts&) = delete;
    ClassForHosts& operator=(const ClassForHosts&) = delete;

private:
    DWORD m_nCookie = 0;
};

std::wstring ByClass(const CLSID& clsid)
{
    wchar_t szClass[39];
    StringFromGUID2(clsid, szClass, 39);
    return szClass;
}

std::wstring CellText(HWND hList, int nRow, int nColumn)
{
    wchar_t szText[64] = L"";
    LVITEMW item{};
    item.iSubItem = nColumn;
    item.pszText = szText;
    item.cchTextMax = 64;
    SendMessageW(hList, LVM_GETITEMTEXTW, static_cast<WPARAM>(nRow),
                 reinterpret_cast<LPARAM>(&item));
    return szText;
}

// Counts the calls of its default member.
class ChangeListener final : public IDispatch
{
public:
    virtual ~ChangeListener() = default;
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** ppv) override
    {
        const bool bOurs = riid == iid_of<IUnknown> || riid == iid_of<IDispatch>;
        *ppv = bOurs ? this : nullptr;
        return bOurs ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*,
                                     EXCEPINFO*, UINT*) override
    {
        nCalls += id == DISPID_VALUE;
        return S_OK;
    }

    int nCalls = 0;
};

// So many that counting them takes longer than a window's life.
std::string ManyLines()
{
    std::string lines;
    for (int i = 0; i < 400'000; ++i)
        lines += "2003/01/13,98.05,98.78,97.65,98.36,358127\n";
    return lines;
}

class ForeignContainer : public testing::Test
{
protected:
    ForeignContainer() { EXPECT_TRUE(SUCCEEDED(OleInitialize(nullptr))); }
    ~ForeignContainer() override
    {
        m_host.Destroy();
        EXPECT_TRUE(PumpUntil([this] { return ModuleLockCount() == m_nLocks; }));
        OleUninitialize();
    }

    template <class Interface>
    com_ptr<Interface> Create(const CLSID& clsid)
    {
        const ClassForHosts registered(clsid);
        com_ptr<IUnknown> pContainer;
        com_ptr<IUnknown> pControl;
        EXPECT_EQ(S_OK, m_system.Create(ByClass(clsid).c_str(), m_host.get(), pContainer));
        EXPECT_EQ(S_OK, m_system.Control(m_host.get(), pControl));
        com_ptr<Interface> pResult;
        query(pControl.get(), pResult);
        return pResult;
    }
    // The control's window, which the container may have put into one of its own.
    HWND WindowOf(IUnknown* pControl)
    {
        HWND hWnd = nullptr;
        EXPECT_EQ(S_OK, AskFor<IOleWindow>(pControl)->GetWindow(&hWnd));
        EXPECT_TRUE(IsChild(m_host.get(), hWnd));
        return hWnd;
    }

    const LONG m_nLocks = ModuleLockCount();
    WithHostedControls m_hosted;
    SystemContainer m_system;
    HostWindow m_host;
};

TEST_F(ForeignContainer, ShowsEachControl)
{
    for (const ControlClass& row : kControlClasses) {
        SCOPED_TRACE(row.szName);
        m_host.Renew();
        const auto pControl = Create<IDispatch>(row.clsid);
        ASSERT_TRUE(pControl);
        const HWND hWnd = WindowOf(pControl.get());
        EXPECT_TRUE(IsWindowVisible(hWnd));
        RECT host{};
        RECT own{};
        GetClientRect(m_host.get(), &host);
        GetClientRect(hWnd, &own);
        EXPECT_TRUE(EqualRect(&host, &own)); // the whole of it
        AskFor<IOleObject>(pControl.get())->Close(OLECLOSE_NOSAVE);
        EXPECT_FALSE(IsWindow(hWnd));
    }
}

TEST_F(ForeignContainer, AContainedEditTakesText)
{
    const auto pControl = Create<IQRLCommonCtrlContained>(CLSID_CQRLCommonCtrlContained);
    ASSERT_TRUE(pControl);
    WNDCLASSW edit{};
    ASSERT_TRUE(GetClassInfoW(nullptr, L"EDIT", &edit));
    EXPECT_EQ(S_OK,
              pControl->CreateControl(Bstr(L"EDIT").get(), Bstr(L"given").get(), WS_VISIBLE, 0, 0,
                                      reinterpret_cast<std::uintptr_t>(edit.lpfnWndProc)));
    ULONGLONG nWindow = 0;
    EXPECT_EQ(S_OK, pControl->get_ControlHWND(&nWindow));
    const auto hEdit = reinterpret_cast<HWND>(static_cast<std::uintptr_t>(nWindow));
    EXPECT_EQ(WindowOf(pControl.get()), GetParent(hEdit));
    EXPECT_EQ(L"given", TextOf(hEdit));
    SendMessageW(hEdit, EM_SETSEL, 0, -1);
    for (const wchar_t c : std::wstring(L"typed"))
        SendMessageW(hEdit, WM_CHAR, c, 1);
    EXPECT_EQ(L"typed", TextOf(hEdit));
    m_host.Destroy();
    EXPECT_FALSE(IsWindow(hEdit));
}

TEST_F(ForeignContainer, AGridShowsAFile)
{
    const auto pGrid = Create<IQRLDataGridViewCtrl>(CLSID_CQRLDataGridViewCtrl);
    ASSERT_TRUE(pGrid);
    const auto pParser = CreateOfClass(CLSID_CDataParser);
    com_ptr<IDataParser> pData;
    ASSERT_EQ(S_OK, query(pParser.get(), pData));
    const auto path = std::filesystem::path(SAMPLES) / "day-no-header.csv";
    EXPECT_EQ(S_OK, pData->put_FileName(Bstr(path.wstring()).get()));
    EXPECT_EQ(S_OK, pGrid->put_DataParser(pData.get()));
    EXPECT_EQ(S_OK, pGrid->CreateFields());
    const HWND hList = DescendantOfClass(m_host.get(), WC_LISTVIEWW);
    ASSERT_TRUE(hList);
    EXPECT_TRUE(PumpUntil([hList] { return ListView_GetItemCount(hList) == 20; }));
    UpdateWindow(hList);
    EXPECT_EQ(6, Header_GetItemCount(ListView_GetHeader(hList)));
    EXPECT_EQ(L"98.05", CellText(hList, 0, 1));
    m_host.Destroy();
    com_ptr<IDispatch> pHeld;
    EXPECT_EQ(E_POINTER, pGrid->get_DataParser(pHeld.put())); // the window took it along
}

std::wstring FileOf(IFolderViewCtrl& folderView)
{
    Bstr sFile;
    EXPECT_EQ(S_OK, folderView.get_FileName(sFile.put()));
    return sFile.str();
}

TEST_F(ForeignContainer, AFolderViewShowsAFolder)
{
    const auto pFolder = Create<IFolderViewCtrl>(CLSID_CFolderViewCtrl);
    ASSERT_TRUE(pFolder);
    ChangeListener listener;
    VARIANT onchange{};
    onchange.vt = VT_DISPATCH;
    onchange.pdispVal = &listener;
    EXPECT_EQ(S_OK, pFolder->put_onchange(onchange));
    const std::filesystem::path samples = std::filesystem::absolute(SAMPLES).make_preferred();
    const std::wstring sFile = (samples / "day-no-header.csv").wstring();
    EXPECT_EQ(S_OK, pFolder->put_FileName(Bstr(sFile).get()));
    const HWND hList = DescendantOfClass(m_host.get(), WC_LISTVIEWW);
    ASSERT_TRUE(hList);
    EXPECT_TRUE(PumpUntil([hList] { return ListView_GetSelectedCount(hList) == 1; }));
    EXPECT_EQ(0, listener.nCalls); // it was the program
    EXPECT_EQ(sFile, FileOf(*pFolder.get()));

    const int nSelected = ListView_GetNextItem(hList, -1, LVNI_SELECTED);
    const int nOther = nSelected == 0 ? 1 : nSelected - 1;
    ListView_SetItemState(hList, nOther, LVIS_SELECTED | LVIS_FOCUSED,
                          LVIS_SELECTED | LVIS_FOCUSED);
    EXPECT_TRUE(PumpUntil([&] { return listener.nCalls > 0; }));
    EXPECT_EQ(1, listener.nCalls);
    EXPECT_NE(sFile, FileOf(*pFolder.get()));
    EXPECT_EQ(S_OK, pFolder->put_onchange(VARIANT{}));
}

TEST_F(ForeignContainer, MayLetGoOfAGridWithAFile)
{
    auto pGrid = Create<IQRLDataGridViewCtrl>(CLSID_CQRLDataGridViewCtrl);
    const auto pParser = CreateOfClass(CLSID_CDataParser);
    com_ptr<IDataParser> pData;
    ASSERT_EQ(S_OK, query(pParser.get(), pData));
    const auto path = std::filesystem::path(SAMPLES) / "day-no-header.csv";
    EXPECT_EQ(S_OK, pData->put_FileName(Bstr(path.wstring()).get()));
    EXPECT_EQ(S_OK, pGrid->put_DataParser(pData.get()));
    pGrid.reset(); // the parser and the window hold it
    m_host.Destroy();
}

// The worker reports the count of lines while the window goes, and may be the last to let go.
TEST_F(ForeignContainer, AGridMayGoWhileItsFileIsCounted)
{
    const TempFile file(ManyLines());
    for (int i = 0; i < 30; ++i) {
        SCOPED_TRACE(i);
        m_host.Renew();
        auto pGrid = Create<IQRLDataGridViewCtrl>(CLSID_CQRLDataGridViewCtrl);
        ASSERT_TRUE(pGrid);
        com_ptr<IDataParser> pData;
        ASSERT_EQ(S_OK, query(CreateOfClass(CLSID_CDataParser).get(), pData));
        EXPECT_EQ(S_OK, pGrid->put_DataParser(pData.get()));
        EXPECT_EQ(S_OK, pData->put_FileName(Bstr(file.Name()).get()));
        EXPECT_EQ(S_OK, pGrid->CreateFields());
        if (i % 2)
            pGrid.reset(); // before its window
        m_host.Destroy();
        pGrid.reset();
        pData.reset();
    }
    EXPECT_TRUE(PumpUntil([this] { return ModuleLockCount() == m_nLocks; }));
    EXPECT_EQ(S_OK, DllCanUnloadNow());
}

TEST_F(ForeignContainer, LeavesNothingAfterManyRounds)
{
    const auto round = [this](const ControlClass& row) {
        m_host.Renew();
        const auto pControl = Create<IDispatch>(row.clsid);
        UpdateWindow(WindowOf(pControl.get()));
        m_host.Destroy();
    };
    for (const ControlClass& row : kControlClasses) {
        SCOPED_TRACE(row.szName);
        round(row);
        const DWORD nObjects = CountGdiObjects();
        for (int i = 0; i < 50; ++i)
            round(row);
        EXPECT_EQ(nObjects, CountGdiObjects());
        EXPECT_TRUE(PumpUntil([this] { return ModuleLockCount() == m_nLocks; }));
    }
    EXPECT_EQ(S_OK, DllCanUnloadNow());
}

} // namespace
