// The two small dialogs in windows.

#include <gtest/gtest.h>

#include "interfaces/IDataParser.h"
#include "interfaces/IRecordParser.h"
#include "src/UIComponents/DelDialog.h"
#include "src/UIComponents/TemplateEditDlgNoHTML.h"
#include "src/UIComponents/windows/SystemDialogViews.h"
#include "tests/support/Text.h"
#include "tests/windows/dialogs/WindowSession.h"

using namespace IQRL_TabulexConverter;
using Hesperon::specifics::UILayer::CSelectDelimitersDialog;
using Hesperon::specifics::UILayer::CTemplateEditDlgNoHTML;

namespace {

class DelimiterWindow : public WindowSession
{
protected:
    LONG Run(LONG nMask, ModalDriver::Step step)
    {
        m_driver.OnDialog(std::move(step));
        m_dialog.m_nDividers = nMask;
        const LONG nResult = m_dialog.DoModal();
        EXPECT_TRUE(m_driver.AllRan());
        return nResult;
    }

    CSelectDelimitersDialog m_dialog;
};

TEST_F(DelimiterWindow, ShowsTheMaskAndGivesItBack)
{
    EXPECT_EQ(Run(0x3F,
                  [](HWND hDlg) {
                      EXPECT_EQ(TextOf(hDlg), L"分隔符");
                      for (int nBox = DelimiterSpace; nBox <= DelimiterBar; ++nBox)
                          EXPECT_EQ(IsDlgButtonChecked(hDlg, nBox), UINT{BST_CHECKED}) << nBox;
                      Press(hDlg, SmallDialogOk);
                      return true;
                  }),
              kDialogOk);
    EXPECT_EQ(m_dialog.m_nDividers, 0x3F);
}

TEST_F(DelimiterWindow, LosesABitWithoutABox)
{
    EXPECT_EQ(Run(0x40,
                  [](HWND hDlg) {
                      Press(hDlg, SmallDialogOk);
                      return true;
                  }),
              kDialogOk);
    EXPECT_EQ(m_dialog.m_nDividers, 0);
}

TEST_F(DelimiterWindow, TakesWhatIsTickedAndEnterConfirms)
{
    EXPECT_EQ(Run(0,
                  [](HWND hDlg) {
                      SendMessageW(GetDlgItem(hDlg, DelimiterComma), BM_CLICK, 0, 0);
                      SendMessageW(GetDlgItem(hDlg, DelimiterTab), BM_CLICK, 0, 0);
                      PostKey(GetDlgItem(hDlg, DelimiterTab), VK_RETURN);
                      return true;
                  }),
              kDialogOk);
    EXPECT_EQ(m_dialog.m_nDividers, 1 << 2 | 1 << 5);
}

TEST_F(DelimiterWindow, EscKeepsTheMask)
{
    EXPECT_EQ(Run(4,
                  [](HWND hDlg) {
                      SendMessageW(GetDlgItem(hDlg, DelimiterTab), BM_CLICK, 0, 0);
                      PostKey(GetDlgItem(hDlg, DelimiterTab), VK_ESCAPE);
                      return true;
                  }),
              kDialogCancel);
    EXPECT_EQ(m_dialog.m_nDividers, 4);
}

class TemplateWindow : public WindowSession
{
protected:
    void SetUp() override
    {
        WindowSession::SetUp();
        OpenSample("date-06.csv");
        com_ptr<IDispatch> pData, pRecords;
        ASSERT_EQ(front->get_DataParser(pData.put()), S_OK);
        ASSERT_EQ(pData.as<IDataParser>()->get_RecordParser(pRecords.put()), S_OK);
        m_pRecords = pRecords.as<IRecordParser>();
    }
    void TearDown() override
    {
        m_pRecords.reset();
        WindowSession::TearDown();
    }
    LONG Run(ModalDriver::Step step)
    {
        m_driver.OnDialog(std::move(step));
        CTemplateEditDlgNoHTML dialog(OLESTR("Date"), m_pRecords, 0);
        const LONG nResult = dialog.DoModal();
        EXPECT_TRUE(m_driver.AllRan());
        m_sTemplate = dialog.m_sTemplate;
        return nResult;
    }
    static bool IsOn(HWND hDlg, int nControl)
    {
        return IsWindowEnabled(GetDlgItem(hDlg, nControl));
    }
    // The user types: the edit has the keyboard then.
    static void TypeTemplate(HWND hDlg, const wchar_t* pszText)
    {
        SetFocus(GetDlgItem(hDlg, TemplateText));
        Type(hDlg, TemplateText, pszText);
    }
    static void Select(HWND hDlg, int nRow)
    {
        const HWND hList = GetDlgItem(hDlg, TemplateList);
        SendMessageW(hList, LB_SETCURSEL, static_cast<WPARAM>(nRow), 0);
        SendMessageW(hDlg, WM_COMMAND, MAKEWPARAM(TemplateList, LBN_SELCHANGE),
                     reinterpret_cast<LPARAM>(hList));
    }

    com_ptr<IRecordParser> m_pRecords;
    string_t m_sTemplate;
};

TEST_F(TemplateWindow, OffersTheTemplatesOfTheType)
{
    EXPECT_EQ(Run([](HWND hDlg) {
                  EXPECT_EQ(TextOf(hDlg), L"编辑模板");
                  const HWND hList = GetDlgItem(hDlg, TemplateList);
                  EXPECT_GT(SendMessageW(hList, LB_GETCOUNT, 0, 0), 3);
                  EXPECT_EQ(TextOf(hDlg, TemplateText), L"");
                  EXPECT_FALSE(IsOn(hDlg, SmallDialogOk));
                  EXPECT_FALSE(IsOn(hDlg, TemplateDelete));
                  Select(hDlg, 1);
                  wchar_t szRow[600] = L"";
                  SendMessageW(hList, LB_GETTEXT, 1, reinterpret_cast<LPARAM>(szRow));
                  EXPECT_EQ(TextOf(hDlg, TemplateText), szRow);
                  EXPECT_TRUE(IsOn(hDlg, SmallDialogOk));
                  EXPECT_FALSE(IsOn(hDlg, TemplateDelete)) << "a template of the component";
                  Press(hDlg, SmallDialogCancel);
                  return true;
              }),
              kDialogCancel);
}

TEST_F(TemplateWindow, WhiteSpaceIsNoTemplate)
{
    EXPECT_EQ(Run([](HWND hDlg) {
                  TypeTemplate(hDlg, L"  \t");
                  EXPECT_FALSE(IsOn(hDlg, SmallDialogOk));
                  PressKey(VK_RETURN);
                  EXPECT_TRUE(IsWindow(hDlg)) << "Enter presses a button that is on";
                  TypeTemplate(hDlg, L" *d.*m.*y ");
                  EXPECT_TRUE(IsOn(hDlg, SmallDialogOk));
                  PostKey(GetDlgItem(hDlg, TemplateText), VK_RETURN);
                  return true;
              }),
              kDialogOk);
    EXPECT_EQ(Utf8(m_sTemplate), "*d.*m.*y");
}

// The button goes off while it has the keyboard.
TEST_F(TemplateWindow, TheKeyboardGoesOnWhenATemplateIsDeleted)
{
    ASSERT_EQ(m_pRecords->SetFieldTemplate(Bstr(L"*d/*m/*y?").get(), 0), S_OK);
    EXPECT_EQ(Run([](HWND hDlg) {
                  const HWND hList = GetDlgItem(hDlg, TemplateList);
                  const LRESULT nRows = SendMessageW(hList, LB_GETCOUNT, 0, 0);
                  for (int nRow = 0; nRow < nRows && !IsOn(hDlg, TemplateDelete); ++nRow)
                      Select(hDlg, nRow);
                  EXPECT_TRUE(IsOn(hDlg, TemplateDelete));
                  Focus(hDlg, TemplateDelete);
                  SendMessageW(GetDlgItem(hDlg, TemplateDelete), BM_CLICK, 0, 0);
                  EXPECT_EQ(SendMessageW(hList, LB_GETCOUNT, 0, 0), nRows - 1);
                  EXPECT_FALSE(IsOn(hDlg, TemplateDelete));
                  EXPECT_FALSE(IsOn(hDlg, SmallDialogOk));
                  EXPECT_EQ(GetFocus(), GetDlgItem(hDlg, SmallDialogCancel));
                  Press(hDlg, SmallDialogCancel);
                  return true;
              }),
              kDialogCancel);
}

TEST_F(TemplateWindow, RowsAreHigherThanTheSystemMakesThem)
{
    const HWND hPlain = CreateWindowExW(0, L"LISTBOX", L"", WS_POPUP, 0, 0, 100, 100, nullptr,
                                        nullptr, nullptr, nullptr);
    LRESULT nHeight = 0;
    Run([&](HWND hDlg) {
        const HWND hList = GetDlgItem(hDlg, TemplateList);
        SendMessageW(hPlain, WM_SETFONT, static_cast<WPARAM>(SendMessageW(hList, WM_GETFONT, 0, 0)),
                     0);
        nHeight = SendMessageW(hList, LB_GETITEMHEIGHT, 0, 0);
        Press(hDlg, SmallDialogCancel);
        return true;
    });
    EXPECT_EQ(nHeight, SendMessageW(hPlain, LB_GETITEMHEIGHT, 0, 0) + 3);
    DestroyWindow(hPlain);
}

} // namespace
