// Controls, menus and small dialogs of the terminal; the tests play the component.
#include <gtest/gtest.h>

#include "interfaces/NativeHost.h"
#include "tests/tabulex/units/ScriptedScreen.h"
#include "tools/tabulex/import/ImportViews.h"
#include "tools/tabulex/import/PaneView.h"
#include "tools/tabulex/import/SmallDialogView.h"
#include "tools/tabulex/import/terminal/Popup.h"
#include "tools/tabulex/text/Text.h"

using namespace tabulex_test;
using namespace IQRL_TabulexConverter;

namespace {

// Writes the events down, and answers some.
struct Listener : IDialogEvents
{
    std::vector<std::string> m_calls;
    IDialogView* m_pView = nullptr;
    std::function<void(IDialogView&)> m_onOpen;
    std::function<void(LONG)> m_onClick;

    std::vector<std::string> Take() { return std::exchange(m_calls, {}); }
    void Told(const char* pszEvent, LONG nControl)
    {
        m_calls.push_back(std::string(pszEvent) + " " + std::to_string(nControl));
    }

    void OnText(LONG nControl) override { Told("text", nControl); }
    void OnSelect(LONG nControl) override { Told("select", nControl); }
    void OnDate(LONG nControl) override { Told("date", nControl); }
    void OnClick(LONG nControl) override
    {
        Told("click", nControl);
        if (m_onClick)
            m_onClick(nControl);
    }
    void OnResize() override {}
    void OnOpen(IDialogView& view) override
    {
        m_pView = &view;
        if (m_onOpen)
            m_onOpen(view);
    }
    void OnDefaultCommand() override { m_calls.push_back("default"); }
    void OnDestroy() override { m_calls.push_back("destroy"); }
};

using Calls = std::vector<std::string>;

class Controls : public testing::Test
{
protected:
    void SetUp() override
    {
        TabulexSetLanguage(TABULEX_LANGUAGE_ENGLISH);
        for (const char* pszName : {"1", "10", "1/10"})
            m_pane.AddRow(SettingsPriceMultiplier, FromUtf8(pszName).c_str(), 0);
        m_pane.Select(SettingsPriceMultiplier, 0);
        m_form.Arrange(96);
    }
    void Focus(LONG nControl)
    {
        m_pane.SetFocus(kWholeView);
        while (m_pane.Focus() != nControl)
            ASSERT_TRUE(m_form.MoveFocus(1)) << nControl;
    }
    void Type(std::u32string_view text)
    {
        for (const char32_t c : text)
            m_form.Handle({Key::Text, c});
    }
    std::string TextOf(LONG nControl) { return ToUtf8(m_pane.Text(nControl)); }

    ScriptedScreen m_screen;
    Desk m_desk{m_screen};
    Listener m_events;
    PaneView m_pane{m_desk, DialogSettings, m_events};
    Form& m_form = m_pane.Controls();
};

} // namespace

TEST_F(Controls, EachWriteOfAnEditIsToldOnce)
{
    m_pane.SetText(SettingsStartRow, OLESTR("3"));
    m_pane.SetText(SettingsStartRow, OLESTR("3"));
    EXPECT_EQ(m_events.Take(), (Calls{"text 230", "text 230"}));
    m_pane.SetText(SettingsDelimiters, OLESTR("Delimiters...")); // no edit
    EXPECT_EQ(m_events.Take(), Calls());
}

TEST_F(Controls, EachKeyThatChangesAnEditIsToldOnce)
{
    m_pane.SetText(SettingsStartRow, OLESTR("3"));
    m_events.Take();
    Focus(SettingsStartRow);
    Type(U"12"); // the first key replaces the text, which was selected as a whole
    EXPECT_EQ(TextOf(SettingsStartRow), "12");
    EXPECT_EQ(m_events.Take(), (Calls{"text 230", "text 230"}));
    m_form.Handle({Key::Home});
    m_form.Handle({Key::Delete});
    m_form.Handle({Key::Delete});
    m_form.Handle({Key::Delete}); // nothing is left
    m_form.Handle({Key::Backspace});
    EXPECT_EQ(TextOf(SettingsStartRow), "");
    EXPECT_EQ(m_events.Take(), (Calls{"text 230", "text 230"}));
}

TEST_F(Controls, AReadOnlyEditTakesNoKeys)
{
    m_pane.SetText(SettingsSize, OLESTR("N/A"));
    m_pane.SetReadOnly(SettingsSize, true);
    m_events.Take();
    Focus(SettingsSize);
    EXPECT_FALSE(m_form.IsTyping());
    Type(U"5");
    EXPECT_EQ(TextOf(SettingsSize), "N/A");
    EXPECT_EQ(m_events.Take(), Calls());
}

TEST_F(Controls, ADateIsToldWhenItsTextSaysAnotherOne)
{
    SYSTEMTIME date{};
    date.wYear = 2024;
    date.wMonth = 1;
    date.wDay = 3;
    date.wMilliseconds = 250;
    m_pane.SetDateFormat(SettingsDateFirst, OLESTR("M/d/yyyy"));
    m_pane.SetDate(SettingsDateFirst, &date);
    Focus(SettingsDateFirst);
    Type(U"2024011"); // the same, and then no date: the 13th hasn't its second digit
    EXPECT_EQ(m_events.Take(), (Calls{"date 236"})); // 2024-01-13 already is one
    SYSTEMTIME read{};
    ASSERT_TRUE(m_pane.Date(SettingsDateFirst, read));
    EXPECT_EQ(read.wDay, 13);
    EXPECT_EQ(read.wMilliseconds, 250);
    Type(U"9");
    EXPECT_EQ(m_events.Take(), (Calls{"date 236"}));
    m_form.Handle({Key::Home});
    Type(U"3"); // the year 3024 isn't told
    EXPECT_EQ(m_events.Take(), Calls());
    ASSERT_TRUE(m_pane.Date(SettingsDateFirst, read));
    EXPECT_EQ(read.wYear, 2024);
}

TEST_F(Controls, ADateThatNobodyTouchedStaysAsItWasWritten)
{
    SYSTEMTIME date{};
    date.wYear = 2024;
    date.wMonth = 1;
    date.wDay = 3;
    date.wMilliseconds = 999;
    m_pane.SetDateFormat(SettingsDateLast, OLESTR("M/d/yyyy h:mm:ss tt"));
    EXPECT_TRUE(m_pane.ShowsTime(SettingsDateLast));
    m_pane.SetDate(SettingsDateLast, &date);
    Focus(SettingsDateLast);
    m_form.Handle({Key::End});
    SYSTEMTIME read{};
    ASSERT_TRUE(m_pane.Date(SettingsDateLast, read));
    EXPECT_EQ(read.wMilliseconds, 999);
    EXPECT_EQ(m_events.Take(), Calls());
    m_pane.SetDate(SettingsDateLast, nullptr);
    EXPECT_FALSE(m_pane.Date(SettingsDateLast, read));
}

TEST_F(Controls, ALetterChoosesTheNextRowThatBeginsWithIt)
{
    Focus(SettingsPriceMultiplier);
    Type(U"1");
    EXPECT_EQ(m_pane.Selected(SettingsPriceMultiplier), 1);
    Type(U"11");
    EXPECT_EQ(m_pane.Selected(SettingsPriceMultiplier), 0);
    EXPECT_EQ(m_events.Take(), (Calls{"select 232", "select 232", "select 232"}));
    Type(U"x");
    EXPECT_EQ(m_events.Take(), Calls());
}

TEST_F(Controls, ABlankDropsAListDown)
{
    Focus(SettingsPriceMultiplier);
    m_screen.Then([](ScriptedScreen& s) { EXPECT_TRUE(s.Has("|  1/10")) << s.Text(); })
        .Press({Key::Down, Key::Down, Key::Enter});
    Type(U" ");
    EXPECT_EQ(m_pane.Selected(SettingsPriceMultiplier), 2);
    m_screen.Press({Key::Up, Key::Escape});
    Type(U" ");
    EXPECT_EQ(m_pane.Selected(SettingsPriceMultiplier), 2);
    m_screen.Press(Key::Enter); // the row that it is anyway
    Type(U" ");
    EXPECT_EQ(m_events.Take(), (Calls{"select 232"}));
}

TEST_F(Controls, ABoxIsToggledAndTold)
{
    Focus(SettingsBarsEndTime);
    Type(U" ");
    EXPECT_EQ(m_pane.Check(SettingsBarsEndTime), 1);
    Type(U" ");
    EXPECT_EQ(m_pane.Check(SettingsBarsEndTime), 0);
    EXPECT_EQ(m_events.Take(), (Calls{"click 242", "click 242"}));
}

TEST_F(Controls, WhatIsOffOrHiddenIsPassedOver)
{
    for (const LONG nControl : {SettingsSize, SettingsResolution, SettingsField})
        m_pane.SetEnabled(nControl, false);
    m_pane.SetShown(SettingsTimeZone, false);
    ASSERT_TRUE(m_form.MoveFocus(1));
    EXPECT_EQ(m_pane.Focus(), SettingsStartRow);
    EXPECT_FALSE(m_form.MoveFocus(-1));
    m_pane.SetEnabled(SettingsStartRow, false); // while it has the focus
    EXPECT_FALSE(m_form.Handle({Key::Text, U'1'}));
    ASSERT_TRUE(m_form.MoveFocus(1));
    EXPECT_EQ(m_pane.Focus(), SettingsPriceMultiplier);
}

TEST_F(Controls, NoControlIsCutWhereTheWidthAllows)
{
    for (const int nColumns : {56, 76, 96, 140}) {
        const int nRows = m_form.Arrange(nColumns);
        Canvas canvas({nColumns, nRows});
        m_form.Draw(canvas, {0, 0, nColumns, nRows}, false);
        std::string text;
        for (int n = 0; n < nRows; ++n)
            text += canvas.Row(n) + "\n";
        for (const char* pszLabel :
             {"Period:", "Time zone:", "Start row:", "Price multiplier:", "Volume multiplier:",
              "Start date:", "End date:", "[ Delimiters... ]", "[ ] Use end time of bars"})
            EXPECT_NE(text.find(pszLabel), std::string::npos) << nColumns << "\n" << text;
    }
}

TEST_F(Controls, AHiddenControlLeavesNoGap)
{
    const int nRows = m_form.Arrange(76);
    for (const LONG nControl : {SettingsDelimiters, SettingsBarsEndTime})
        m_pane.SetShown(nControl, false);
    EXPECT_LT(m_form.Arrange(76), nRows);
}

TEST_F(Controls, OnlyWhatTheDialogHasExists)
{
    EXPECT_TRUE(m_pane.Exists(kWholeView));
    EXPECT_TRUE(m_pane.Exists(SettingsDateLastLabel));
    EXPECT_FALSE(m_pane.Exists(TemplateText));
}

// ---- menus

namespace {

const ViewMenuItem kDates[] = {{OLESTR("*y/*m/*d"), 2100, true, {}},
                               {nullptr, 0, false, {}},
                               {OLESTR("Custom..."), 2101, false, {}}};
const ViewMenuItem kMenu[] = {{OLESTR("Undefined"), 2000, false, {}},
                              {nullptr, 0, false, {}},
                              {OLESTR("Date"), 0, false, kDates},
                              {nullptr, 0, false, {}},
                              {OLESTR("Price"), 2003, false, {}}};

} // namespace

TEST(Menu, GivesTheChosenItem)
{
    struct Row
    {
        std::vector<Key> keys;
        LONG nId;
    };
    // The row whose menu has the mark is selected at first.
    const Row rows[] = {
        {{Key::Enter, Key::Enter}, 2100},
        {{Key::Enter, Key::Down, Key::Enter}, 2101},
        {{Key::Right, Key::Down, Key::Enter}, 2101},
        {{Key::Up, Key::Enter}, 2000},
        {{Key::End, Key::Enter}, 2003},
        {{Key::Escape}, 0},
        {{Key::Enter, Key::Escape, Key::Down, Key::Enter}, 2003},
        {{Key::Enter, Key::Left, Key::Escape}, 0},
        {{}, 0}, // the terminal goes
    };
    for (const Row& row : rows) {
        ScriptedScreen screen;
        for (const Key key : row.keys)
            screen.Press(key);
        Desk desk(screen);
        EXPECT_EQ(ChooseFromMenu(desk, kMenu, {10, 5, 8, 1}), row.nId);
    }
}

TEST(Menu, ItsHintStandsWhereAnItemHasItems)
{
    ScriptedScreen screen;
    Desk desk(screen);
    std::vector<std::string> hints;
    const auto note = [&](ScriptedScreen&) { hints.push_back(desk.Hint()); };
    screen.Then(note)
        .Press(Key::Enter)
        .Then(note)
        .Press({Key::Left, Key::Up})
        .Then(note)
        .Press(Key::Escape);
    ChooseFromMenu(desk, kMenu, {10, 5, 8, 1}, "mind");
    EXPECT_EQ(hints, (Calls{"mind", "mind", ""}));
    EXPECT_EQ(desk.Hint(), "");
}

TEST(Menu, AListLongerThanTheScreenScrolls)
{
    ScriptedScreen screen({60, 20});
    std::vector<PopupRow> rows;
    for (int n = 0; n < 100; ++n)
        rows.push_back({"row " + std::to_string(n)});
    Desk desk(screen);
    Popup popup(desk, rows, {0, 4, 10, 1}, 50);
    const Layered layered(desk, popup);
    screen.Then([](ScriptedScreen& s) { EXPECT_TRUE(s.Has("row 50")) << s.Text(); })
        .Press(Key::End)
        .Then([](ScriptedScreen& s) { EXPECT_TRUE(s.Has("row 99")) << s.Text(); })
        .Press({Key::Home, Key::PageDown, Key::Enter});
    const auto nRow = popup.Run();
    ASSERT_TRUE(nRow);
    EXPECT_GT(*nRow, 5u);
    EXPECT_LT(*nRow, 20u);
}

// ---- small dialogs

TEST(SmallDialogs, ToggleBoxesAndConfirm)
{
    ScriptedScreen screen;
    Desk desk(screen);
    Listener events;
    events.m_onOpen = [](IDialogView& view) { view.SetCheck(DelimiterComma, 1); };
    events.m_onClick = [&](LONG nControl) {
        if (nControl == SmallDialogOk)
            events.m_pView->End(kDialogOk);
    };
    TabulexSetLanguage(TABULEX_LANGUAGE_ENGLISH);
    screen
        .Then([](ScriptedScreen& s) {
            EXPECT_TRUE(s.Has("Field delimiters:")) << s.Text();
            EXPECT_TRUE(s.Has("[x]  ,")) << s.Text();
        })
        .Type(U" ")
        .Press(Key::Enter);
    SmallDialogView view(desk, DialogDelimiters, events);
    EXPECT_EQ(view.Run(), kDialogOk);
    EXPECT_EQ(view.Check(DelimiterSpace), 1);
    EXPECT_EQ(events.m_calls, (Calls{"click 203", "click 1", "destroy"}));
}

TEST(SmallDialogs, EscIsTheButtonOfCancel)
{
    ScriptedScreen screen;
    Desk desk(screen);
    Listener events;
    screen.Press(Key::Escape);
    EXPECT_EQ(SmallDialogView(desk, DialogTemplate, events).Run(), kDialogCancel);
    EXPECT_EQ(events.m_calls, (Calls{"click 2", "destroy"}));
}

TEST(SmallDialogs, EnterDoesNothingWhileTheDefaultButtonIsOff)
{
    ScriptedScreen screen;
    Desk desk(screen);
    Listener events;
    events.m_onOpen = [](IDialogView& view) { view.SetEnabled(SmallDialogOk, false); };
    screen.Type(U"*y").Press(Key::Enter);
    SmallDialogView view(desk, DialogTemplate, events);
    EXPECT_EQ(view.Run(), kDialogCancel); // the terminal went
    EXPECT_EQ(ToUtf8(view.Text(TemplateText)), "*y");
    EXPECT_EQ(events.m_calls, (Calls{"text 450", "text 450", "destroy"}));
}

TEST(SmallDialogs, TheListOfTemplatesIsWalkedByArrows)
{
    ScriptedScreen screen;
    Desk desk(screen);
    Listener events;
    events.m_onOpen = [](IDialogView& view) {
        for (const OLECHAR* pszText : {OLESTR("*y/*m/*d"), OLESTR("*d/*m/*y")})
            view.AddRow(TemplateList, pszText, 0);
    };
    screen.Press({Key::Tab, Key::Down, Key::Down, Key::Down}).Then([](ScriptedScreen& s) {
        EXPECT_TRUE(s.Has("| *d/*m/*y")) << s.Text();
    });
    SmallDialogView view(desk, DialogTemplate, events);
    view.Run();
    EXPECT_EQ(view.Selected(TemplateList), 1);
    EXPECT_EQ(events.m_calls, (Calls{"select 452", "select 452", "destroy"}));
}

TEST(Views, OpenOnlyTheDialogsThatTheyKnow)
{
    ScriptedScreen screen;
    Desk desk(screen);
    ImportViews views(desk);
    Listener events;
    EXPECT_EQ(views.Run(DialogProgress, 0, events), kDialogFailed);
    EXPECT_EQ(events.m_calls, Calls());
    EXPECT_EQ(views.Run(DialogDelimiters, 0, events), kDialogCancel);
    EXPECT_EQ(views.ActiveWindow(), 0);
}
