// The controls of a pane, as a view of the system's.

#include <commctrl.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "interfaces/IDialogViews.h"
#include "src/UIComponents/windows/Controls.h"
#include "src/UIComponents/windows/DialogResources.h"
#include "tests/support/Text.h"
#include "tests/windows/dialogs/ModalDriver.h"

using namespace IQRL_TabulexConverter;
using namespace Hesperon::specifics::UILayer;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class EventLog final : public IControlEvents
{
public:
    std::vector<std::string> Take() { return std::exchange(m_calls, {}); }

    void OnText(LONG n) override { Note("text", n); }
    void OnSelect(LONG n) override { Note("select", n); }
    void OnClick(LONG n) override { Note("click", n); }
    void OnDate(LONG n) override { Note("date", n); }
    void OnResize() override { m_calls.emplace_back("resize"); }

private:
    void Note(const char* pszEvent, LONG n)
    {
        m_calls.push_back(std::string(pszEvent) + " " + std::to_string(n));
    }

    std::vector<std::string> m_calls;
};

// A settings pane in a plain window.
class ControlsInAPane : public testing::Test
{
protected:
    ControlsInAPane()
        : m_hParent(CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 0, 0, 1000, 500,
                                    nullptr, nullptr, nullptr, nullptr)),
          m_hPane(MakeDialogWindow(DialogSettings, m_hParent, &OnMessage, this))
    {
        m_controls.SetWindow(m_hPane);
        m_events.Take();
    }
    ~ControlsInAPane() override { DestroyWindow(m_hParent); }

    static INT_PTR CALLBACK OnMessage(HWND hWnd, UINT nMessage, WPARAM wParam, LPARAM lParam)
    {
        if (nMessage == WM_INITDIALOG)
            SetWindowLongPtrW(hWnd, DWLP_USER, lParam);
        auto* const pTest = reinterpret_cast<ControlsInAPane*>(GetWindowLongPtrW(hWnd, DWLP_USER));
        return pTest && pTest->m_controls.Window() &&
               pTest->m_controls.OnMessage(nMessage, wParam, lParam, pTest->m_events);
    }
    // The user's hand.
    void ChooseDate(LONG nControl)
    {
        NMDATETIMECHANGE change{};
        change.nmhdr.hwndFrom = m_controls.At(nControl);
        change.nmhdr.idFrom = static_cast<UINT_PTR>(nControl);
        change.nmhdr.code = static_cast<UINT>(DTN_DATETIMECHANGE);
        SendMessageW(m_hPane, WM_NOTIFY, static_cast<WPARAM>(nControl),
                     reinterpret_cast<LPARAM>(&change));
    }

    Controls m_controls;
    EventLog m_events;
    HWND m_hParent;
    HWND m_hPane;
};

TEST_F(ControlsInAPane, AWriteToAnEditIsToldOnceAlsoOfTheSameText)
{
    m_controls.SetText(SettingsStartRow, L"12");
    m_controls.SetText(SettingsStartRow, L"12");
    EXPECT_THAT(m_events.Take(), ElementsAre("text 230", "text 230"));
    EXPECT_STREQ(m_controls.Text(SettingsStartRow), L"12");
    m_controls.SelectText(SettingsStartRow, {1, 2});
    EXPECT_EQ(m_controls.SelectedText(SettingsStartRow), (TextRange{1, 2}));
    m_controls.ShowCaret(SettingsStartRow);
    EXPECT_THAT(m_events.Take(), IsEmpty());
}

TEST_F(ControlsInAPane, NothingElseThatIsWrittenIsTold)
{
    const SYSTEMTIME date = {2003, 1, 0, 13, 9, 30, 15, 0};
    m_controls.AddRow(SettingsResolution, L"Days", 4);
    m_controls.Select(SettingsResolution, 0);
    m_controls.SetCheck(SettingsBarsEndTime, BST_CHECKED);
    m_controls.SetDate(SettingsDateFirst, &date);
    m_controls.SetDate(SettingsDateLast, nullptr);
    m_controls.SetDateFormat(SettingsDateFirst, L"yyyy-MM-dd");
    m_controls.SetEnabled(SettingsField, false);
    EXPECT_THAT(m_events.Take(), IsEmpty());
    EXPECT_EQ(m_controls.Check(SettingsBarsEndTime), BST_CHECKED);
    EXPECT_FALSE(m_controls.IsEnabled(SettingsField));
}

TEST_F(ControlsInAPane, WhatTheUserDoesIsTold)
{
    m_controls.AddRow(SettingsField, L"First", 0);
    SendMessageW(m_hPane, WM_COMMAND, MAKEWPARAM(SettingsField, CBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(m_controls.At(SettingsField)));
    SendMessageW(m_controls.At(SettingsDelimiters), BM_CLICK, 0, 0);
    SendMessageW(m_controls.At(SettingsBarsEndTime), BM_CLICK, 0, 0);
    SendMessageW(m_controls.At(SettingsStartRow), WM_CHAR, L'7', 0);
    ChooseDate(SettingsDateLast);
    EXPECT_THAT(m_events.Take(),
                ElementsAre("select 226", "click 240", "click 242", "text 230", "date 238"));
}

// The manager tells of a list that drops down, and of a button that gets the keyboard; neither is
// a choice.
TEST_F(ControlsInAPane, OtherNoticesAreNoEvents)
{
    for (const WORD nCode : {CBN_DROPDOWN, CBN_CLOSEUP, CBN_SETFOCUS, CBN_SELENDOK})
        SendMessageW(m_hPane, WM_COMMAND, MAKEWPARAM(SettingsField, nCode),
                     reinterpret_cast<LPARAM>(m_controls.At(SettingsField)));
    for (const WORD nCode : {BN_SETFOCUS, BN_KILLFOCUS, BN_DOUBLECLICKED})
        SendMessageW(m_hPane, WM_COMMAND, MAKEWPARAM(SettingsDelimiters, nCode),
                     reinterpret_cast<LPARAM>(m_controls.At(SettingsDelimiters)));
    EXPECT_THAT(m_events.Take(), IsEmpty());
}

TEST_F(ControlsInAPane, AListKeepsItsRowsInOrderWithTheirData)
{
    constexpr LONG kList = SettingsPriceMultiplier;
    EXPECT_EQ(m_controls.Selected(kList), kNoRow);
    EXPECT_EQ(m_controls.AddRow(kList, L"1/10", 7), 0);
    EXPECT_EQ(m_controls.AddRow(kList, L"1", -1), 1);
    EXPECT_EQ(m_controls.RowCount(kList), 2);
    EXPECT_STREQ(m_controls.RowText(kList, 0), L"1/10");
    EXPECT_EQ(m_controls.RowData(kList, 1), -1);
    EXPECT_STREQ(m_controls.RowText(kList, 2), L"");
    EXPECT_EQ(m_controls.RowData(kList, 2), 0);
    EXPECT_TRUE(m_controls.Select(kList, 1));
    EXPECT_STREQ(m_controls.Text(kList), L"1");
    EXPECT_FALSE(m_controls.Select(kList, 2));
    EXPECT_EQ(m_controls.Selected(kList), kNoRow);
    m_controls.RemoveRow(kList, 0);
    EXPECT_STREQ(m_controls.RowText(kList, 0), L"1");
    m_controls.ClearRows(kList);
    EXPECT_EQ(m_controls.RowCount(kList), 0);
}

TEST_F(ControlsInAPane, AControlThatIsntThereIsIgnored)
{
    constexpr LONG kNowhere = 999;
    EXPECT_FALSE(m_controls.Exists(kNowhere));
    m_controls.SetText(kNowhere, L"x");
    EXPECT_STREQ(m_controls.Text(kNowhere), L"");
    EXPECT_EQ(m_controls.AddRow(kNowhere, L"x", 0), kNoRow);
    EXPECT_EQ(m_controls.RowCount(kNowhere), 0);
    EXPECT_EQ(m_controls.Selected(kNowhere), kNoRow);
    EXPECT_EQ(m_controls.Place(kNowhere), ControlPlace());
    SYSTEMTIME date{};
    EXPECT_FALSE(m_controls.Date(kNowhere, date));
}

// Without a date the picker is blank, though the system's control always holds one.
TEST_F(ControlsInAPane, APickerWithoutADateIsBlankUntilOneIsSetOrChosen)
{
    constexpr LONG kPicker = SettingsDateFirst;
    const SYSTEMTIME written = {2003, 1, 0, 13, 9, 30, 15, 0};
    SYSTEMTIME date{};
    m_controls.SetDateFormat(kPicker, L"yyyy-MM-dd HH:mm:ss");
    m_controls.SetDate(kPicker, &written);
    EXPECT_STREQ(m_controls.Text(kPicker), L"2003-01-13 09:30:15");
    m_controls.SetDate(kPicker, nullptr);
    EXPECT_STREQ(m_controls.Text(kPicker), L"");
    EXPECT_FALSE(m_controls.Date(kPicker, date));
    m_controls.SetDateFormat(kPicker, L"yyyy-MM-dd");
    EXPECT_STREQ(m_controls.Text(kPicker), L"") << "a format alone brings no date";
    ChooseDate(kPicker);
    EXPECT_THAT(m_events.Take(), ElementsAre("date 236"));
    EXPECT_STREQ(m_controls.Text(kPicker), L"2003-01-13");
    EXPECT_TRUE(m_controls.Date(kPicker, date));
    m_controls.SetDate(kPicker, nullptr);
    m_controls.SetDate(kPicker, &written);
    EXPECT_TRUE(m_controls.Date(kPicker, date));
    EXPECT_EQ(date.wSecond, 15);
}

TEST_F(ControlsInAPane, PlacesAreInThePane)
{
    const ControlPlace area = m_controls.ClientArea();
    EXPECT_EQ(area.nLeft, 0);
    EXPECT_GT(area.nRight, 100);
    ControlPlace place = m_controls.Place(SettingsDelimiters);
    place.nLeft += 20;
    place.nRight += 30;
    m_controls.Move(SettingsDelimiters, place);
    EXPECT_EQ(m_controls.Place(SettingsDelimiters), place);
    m_controls.Move(kWholeView, {10, 20, 310, 120});
    EXPECT_EQ(m_controls.Place(kWholeView), (ControlPlace{10, 20, 310, 120}));
}

// The height of a combo box is that of its list, which must not shrink to the closed box.
TEST_F(ControlsInAPane, AMovedComboBoxKeepsItsList)
{
    const HWND hCombo = m_controls.At(SettingsResolution);
    RECT before{}, after{};
    SendMessageW(hCombo, CB_GETDROPPEDCONTROLRECT, 0, reinterpret_cast<LPARAM>(&before));
    ControlPlace place = m_controls.Place(SettingsResolution);
    const LONG nHeight = place.nBottom - place.nTop;
    place.nRight += 40;
    m_controls.Move(SettingsResolution, place);
    SendMessageW(hCombo, CB_GETDROPPEDCONTROLRECT, 0, reinterpret_cast<LPARAM>(&after));
    EXPECT_EQ(after.bottom - after.top, before.bottom - before.top);
    EXPECT_EQ(m_controls.Place(SettingsResolution).nBottom - place.nTop, nHeight);
}

TEST_F(ControlsInAPane, ATextIsAsWideAsItsFontMakesIt)
{
    m_controls.SetText(SettingsStartRow, L"1");
    const LONG nOne = m_controls.TextWidth(SettingsStartRow);
    m_controls.SetText(SettingsStartRow, L"11111");
    EXPECT_GT(nOne, 0);
    EXPECT_EQ(m_controls.TextWidth(SettingsStartRow), 5 * nOne);
}

TEST_F(ControlsInAPane, TheControlWithTheKeyboardIsKnown)
{
    SetActiveWindow(m_hParent);
    m_controls.SetFocus(SettingsStartRow);
    EXPECT_EQ(m_controls.Focus(), SettingsStartRow);
    SetFocus(m_hParent);
    EXPECT_EQ(m_controls.Focus(), kWholeView);
}

TEST_F(ControlsInAPane, AHiddenControlIsKnownAsHiddenWhileItsPaneIs)
{
    m_controls.SetShown(SettingsBarsEndTime, false);
    EXPECT_FALSE(m_controls.IsShown(SettingsBarsEndTime));
    m_controls.SetShown(SettingsBarsEndTime, true);
    ShowWindow(m_hPane, SW_HIDE);
    EXPECT_TRUE(m_controls.IsShown(SettingsBarsEndTime));
}

} // namespace
