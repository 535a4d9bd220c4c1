// The grid of records and lines, with its presenter and the real parsers, in a window: what the
// parsers give stands in the list, the rows that an import takes are tinted, and a heading's menu
// changes its column.

#include <algorithm>

#include "src/UIComponents/controls/GridCell.h"
#include "src/UIComponents/controls/QRLDataGridViewCtrl.h"
#include "src/data/DataParser.h"
#include "src/data/FakeRecordParser.h"
#include "tests/support/OfferAllResolutions.h"
#include "tests/support/Text.h"
#include "tests/windows/dialogs/GridFixture.h"
#include "tests/windows/dialogs/MenuSteps.h"
#include "tests/windows/dialogs/Pictures.h"

using namespace grid_test;
using namespace Hesperon::specifics;

namespace {

constexpr wchar_t kSample[] = L"Z:" SAMPLES "/day-no-header.csv";

// A pane of 620 by 250 pixels with a grid over the whole of it.
class GridOfRecords : public testing::Test
{
protected:
    GridOfRecords()
    {
        m_hPane = CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN, 40,
                                  40, 620, 250, nullptr, nullptr, nullptr, nullptr);
        m_hFont = CreateFontW(-12, 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0, 0,
                              L"MS Shell Dlg");
        SendMessageW(m_hPane, WM_SETFONT, reinterpret_cast<WPARAM>(m_hFont), FALSE);
        EXPECT_EQ(S_OK, CreateObject(m_pData));
        EXPECT_EQ(S_OK, CreateObject(m_pGrid));
    }
    ~GridOfRecords() override
    {
        DestroyWindow(m_hPane);
        DeleteObject(m_hFont);
    }

    void ShowRecords()
    {
        com_ptr<IDispatch> pObject;
        ASSERT_EQ(S_OK, m_pData->get_RecordParser(pObject.put()));
        ASSERT_EQ(S_OK, query(pObject.get(), m_pRecords));
        ASSERT_EQ(S_OK, OfferAllResolutions(*m_pRecords.get()));
        ShowSample();
    }
    void ShowLines()
    {
        com_ptr<CFakeRecordParser> pNone;
        ASSERT_EQ(S_OK, CreateObject(pNone));
        ASSERT_EQ(S_OK, m_pData->put_RecordParser(pNone.get()));
        ASSERT_EQ(S_OK, m_pGrid->put_TextMode(VARIANT_TRUE));
        ShowSample();
    }

    LRESULT Send(UINT nMessage, WPARAM wParam = 0, LPARAM lParam = 0) const
    {
        return SendMessageW(m_hList, nMessage, wParam, lParam);
    }
    string_t Cell(LONG nRow, int nColumn) const
    {
        wchar_t szText[512] = L"";
        LVITEMW item{};
        item.iSubItem = nColumn;
        item.pszText = szText;
        item.cchTextMax = 512;
        Send(LVM_GETITEMTEXTW, static_cast<WPARAM>(nRow), reinterpret_cast<LPARAM>(&item));
        return szText;
    }
    string_t Heading(WPARAM nColumn) const
    {
        wchar_t szText[64] = L"";
        HDITEMW item{};
        item.mask = HDI_TEXT;
        item.pszText = szText;
        item.cchTextMax = 64;
        SendMessageW(m_hHeader, HDM_GETITEMW, nColumn, reinterpret_cast<LPARAM>(&item));
        return szText;
    }
    // The background of a row's second cell.
    COLORREF RowColour(const Print& picture, LONG nRow) const
    {
        RECT row{};
        row.left = LVIR_BOUNDS;
        Send(LVM_GETITEMRECT, static_cast<WPARAM>(nRow), reinterpret_cast<LPARAM>(&row));
        return picture.At(static_cast<LONG>(Send(LVM_GETCOLUMNWIDTH)) + 1, row.top + 1);
    }
    DATE DateOf(ULONGLONG nRow) const
    {
        Bstr sRecord;
        Variant date;
        EXPECT_EQ(S_OK, m_pData->put_Position(nRow));
        EXPECT_EQ(S_OK, m_pData->get_CurrentRecord(sRecord.put()));
        EXPECT_EQ(S_OK, m_pRecords->Parse(sRecord.get()));
        EXPECT_EQ(S_OK, m_pRecords->get_CurrentDateTime(&date));
        return date.date;
    }
    // The third to the sixth record.
    void ImportSome() const
    {
        EXPECT_EQ(S_OK, m_pData->put_StartDateTime(Variant::FromDate(DateOf(2))));
        EXPECT_EQ(S_OK, m_pData->put_EndDateTime(Variant::FromDate(DateOf(5))));
        EXPECT_EQ(S_OK, m_pGrid->Refresh());
    }
    void Choose(LONG nRow) const
    {
        LVITEMW item{};
        item.state = item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
        Send(LVM_SETITEMSTATE, static_cast<WPARAM>(nRow), reinterpret_cast<LPARAM>(&item));
    }

    HWND m_hPane = nullptr;
    HFONT m_hFont = nullptr;
    com_ptr<CDataParser> m_pData;
    com_ptr<IRecordParser> m_pRecords;
    com_ptr<CQRLDataGridViewCtrl> m_pGrid;
    HWND m_hGrid = nullptr;
    HWND m_hList = nullptr;
    HWND m_hHeader = nullptr;

private:
    // Its records are counted when this returns.
    void ShowSample()
    {
        GridWindow* const pView = GridWindow::Create(m_hPane, m_pGrid->Events());
        ASSERT_TRUE(pView);
        m_hGrid = pView->Window();
        m_hList = pView->List();
        m_hHeader = reinterpret_cast<HWND>(Send(LVM_GETHEADER));
        m_pGrid->Attach(pView);
        m_pGrid->Move({0, 0, 620, 250});
        ASSERT_EQ(S_OK, m_pGrid->put_DataParser(static_cast<IDataParser*>(m_pData.get())));
        ASSERT_EQ(S_OK, m_pData->put_FileName(Bstr(kSample).get()));
        ASSERT_TRUE(PumpUntil([this] { return Send(LVM_GETITEMCOUNT) > 0; }));
        ASSERT_EQ(S_OK, m_pGrid->CreateFields());
    }
};

} // namespace

TEST_F(GridOfRecords, ShowsTheFieldsOfTheFile)
{
    ShowRecords();
    ULONG nFields = 0;
    ASSERT_EQ(S_OK, m_pRecords->get_FieldCount(&nFields));
    ASSERT_GT(nFields, 3u);
    EXPECT_EQ(static_cast<LRESULT>(nFields), SendMessageW(m_hHeader, HDM_GETITEMCOUNT, 0, 0));
    {
        const Print picture(m_hList);
    }
    Variant block;
    ASSERT_EQ(S_OK, m_pData->ParseRecords(&block, 0, 5));
    for (LONG nRow = 0; nRow < 5; ++nRow)
        for (LONG n = 0; n < static_cast<LONG>(nFields); ++n) {
            Variant value;
            LONG indices[] = {nRow, n};
            ASSERT_EQ(S_OK, SafeArrayGetElement(block.parray, indices, &value));
            OLECHAR szExpected[259];
            WriteValue(value, szExpected);
            EXPECT_EQ(szExpected, Cell(nRow, n)) << nRow << ',' << n;
            EXPECT_NE(L"", Cell(nRow, n)) << nRow << ',' << n;
        }
}

// A third of the way from the window's colour to that of a selection.
TEST_F(GridOfRecords, TintsTheRowsThatAnImportTakes)
{
    ShowRecords();
    ImportSome();
    const COLORREF nWindow = GetSysColor(COLOR_WINDOW), nHigh = GetSysColor(COLOR_HIGHLIGHT);
    const auto blend = [=](BYTE nFrom, BYTE nTo) {
        return static_cast<BYTE>(static_cast<int>(nFrom + (nTo - nFrom) * 0.3));
    };
    const COLORREF nTint = RGB(blend(GetRValue(nWindow), GetRValue(nHigh)),
                               blend(GetGValue(nWindow), GetGValue(nHigh)),
                               blend(GetBValue(nWindow), GetBValue(nHigh)));
    ASSERT_NE(nWindow, nTint);
    const Print picture(m_hList);
    for (LONG nRow = 0; nRow < 8; ++nRow)
        EXPECT_EQ(nRow >= 2 && nRow <= 5 ? nTint : nWindow, RowColour(picture, nRow)) << nRow;
}

TEST_F(GridOfRecords, AHeadingsMenuChangesItsColumn)
{
    ShowRecords();
    ImportSome();
    Choose(3);
    const string_t sBefore = Heading(1);
    const MenuSteps steps({[this] {
                               return MenuWindows().size() == 1 &&
                                      (!HasScreen() || TakePicture(m_hPane, L"grid-menu"));
                           },
                           MenuKeys(m_hGrid, {VK_DOWN, VK_RETURN})});
    const LPARAM at = MAKELPARAM(Send(LVM_GETCOLUMNWIDTH) + 10, 5);
    SendMessageW(m_hHeader, WM_LBUTTONDOWN, MK_LBUTTON, at);
    EXPECT_TRUE(steps.AllRan());
    Bstr sHeading;
    ASSERT_EQ(S_OK, m_pRecords->GetFieldNameLocalized(sHeading.put(), 1));
    EXPECT_EQ(sHeading.view(), Heading(1));
    EXPECT_NE(sBefore, Heading(1));
}

TEST_F(GridOfRecords, ShowsTheLinesOfTheFile)
{
    ShowLines();
    EXPECT_TRUE(Cell(0, 0).starts_with(L"2003")) << Utf8(Cell(0, 0));
    EXPECT_NE(Cell(0, 0), Cell(1, 0));
    Choose(1);
    SetFocus(m_hList);
    if (HasScreen()) {
        RedrawWindow(m_hPane, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
        GdiFlush();
        EXPECT_TRUE(TakePicture(m_hPane, L"grid-lines"));
    }
}

TEST_F(GridOfRecords, GoesWithItsWindow)
{
    ShowRecords();
    DestroyWindow(m_hGrid);
    EXPECT_EQ(E_UNEXPECTED, [this] {
        m_pGrid->put_DataParser(static_cast<IDataParser*>(m_pData.get()));
        const HRESULT hr = m_pGrid->CreateFields();
        m_pGrid->put_DataParser(nullptr);
        m_pData->RemoveFileEventHandler(static_cast<IFileHandlerEvents*>(m_pGrid.get()));
        return hr;
    }());
}
