// Grids, the folder list and the keys of the import dialog; the tests play the component.
#include <gtest/gtest.h>

#include "interfaces/NativeHost.h"
#include "tests/tabulex/units/ScriptedScreen.h"
#include "tools/tabulex/import/ImportDialogView.h"
#include "tools/tabulex/import/ImportProgress.h"
#include "tools/tabulex/import/terminal/ImportTexts.h"
#include "tools/tabulex/text/Text.h"

using namespace tabulex_test;
using namespace IQRL_TabulexConverter;

namespace {

using Log = std::vector<std::string>;

// Rows of text, which note how they are asked for.
struct Rows final : IGridEvents
{
    Log m_log;
    LONG m_nFirstImported = 0, m_nLastImported = -1;
    std::function<std::string(LONG, LONG)> m_text = [](LONG nRow, LONG nColumn) {
        return "r" + std::to_string(nRow) + "c" + std::to_string(nColumn);
    };
    int m_nClosed = 0;
    LONG m_nPressed = -1;

    Log Take() { return std::exchange(m_log, {}); }

    void OnRange(LONG nFrom, LONG nTo) override
    {
        m_log.push_back("range " + std::to_string(nFrom) + "-" + std::to_string(nTo));
    }
    void CellText(LONG nRow, LONG nColumn, OLECHAR* pszText, LONG nMost) override
    {
        const string_t text = FromUtf8(m_text(nRow, nColumn)).substr(0, std::size_t(nMost) - 1);
        text.copy(pszText, text.size());
        pszText[text.size()] = 0;
    }
    ULONG RowColour(LONG) override { return 0; }
    bool IsImported(LONG nRow) override
    {
        return nRow >= m_nFirstImported && nRow <= m_nLastImported;
    }
    void OnHeaderPress(LONG nColumn) override { m_nPressed = nColumn; }
    void OnClose() override { ++m_nClosed; }
};

class Grid : public testing::Test
{
protected:
    void SetUp() override
    {
        m_grid.AddColumn(OLESTR("Date"), 100, true);
        m_grid.AddColumn(OLESTR("Open"), 100, true);
        m_grid.SetRowCount(1000);
    }
    std::string Draw(int nColumns = 40, int nRows = 5)
    {
        Canvas canvas({nColumns, nRows});
        m_grid.Draw(canvas, {0, 0, nColumns, nRows}, true);
        std::string text;
        for (int n = 0; n < nRows; ++n)
            text += canvas.Row(n) + "\n";
        m_canvas = canvas;
        return text;
    }

    ScriptedScreen m_screen;
    Desk m_desk{m_screen};
    Rows m_rows;
    GridView m_grid{m_desk, m_rows};
    Canvas m_canvas;
};

} // namespace

TEST_F(Grid, AScreenfulIsOneRangeAndItsCells)
{
    m_rows.m_nFirstImported = 1;
    m_rows.m_nLastImported = 2;
    EXPECT_EQ(Draw(), "         Date   v  Open   v\n"
                      "      1  r0c0      r0c1\n"
                      "#     2  r1c0      r1c1\n"
                      "#     3  r2c0      r2c1\n"
                      "      4  r3c0      r3c1\n");
    EXPECT_EQ(m_rows.Take(), (Log{"range 0-3"}));
    EXPECT_EQ(m_canvas.At(0, 2).look, Look::Tinted);
    EXPECT_EQ(m_canvas.At(0, 1).look, Look::Focused); // the current row
}

TEST_F(Grid, ARangeEndsWithTheLastRow)
{
    m_grid.SetRowCount(2);
    Draw();
    EXPECT_EQ(m_rows.Take(), (Log{"range 0-1"}));
    m_grid.SetRowCount(0);
    Draw();
    EXPECT_EQ(m_rows.Take(), Log());
}

TEST_F(Grid, KeysScroll)
{
    struct Row
    {
        Key key;
        LONG nCurrent;
        const char* pszRange;
    };
    Draw();
    m_rows.Take();
    const Row rows[] = {
        {Key::Down, 1, "range 0-3"},         {Key::PageDown, 5, "range 4-7"},
        {Key::Up, 4, "range 4-7"},           {Key::Up, 3, "range 3-6"},
        {Key::End, 999, "range 996-999"},    {Key::Down, 999, "range 996-999"},
        {Key::PageUp, 995, "range 992-995"}, {Key::Home, 0, "range 0-3"},
        {Key::Up, 0, "range 0-3"},
    };
    for (const Row& row : rows) {
        EXPECT_TRUE(m_grid.Handle({row.key}));
        EXPECT_EQ(m_grid.CurrentRow(), row.nCurrent) << row.pszRange;
        Draw();
        EXPECT_EQ(m_rows.Take(), (Log{row.pszRange}));
    }
}

TEST_F(Grid, TheLastRowsOfTheLargestFileAreReached)
{
    m_grid.SetRowCount(0x7FFFFFFF);
    Draw();
    m_grid.Handle({Key::End});
    m_grid.Handle({Key::PageDown});
    m_rows.Take();
    Draw();
    EXPECT_EQ(m_rows.Take(), (Log{"range 2147483643-2147483646"}));
}

TEST_F(Grid, APostedCountIsTakenInTheNextTurn)
{
    m_grid.PostRowCount(2000);
    EXPECT_EQ(m_grid.RowCount(), 1000);
    EXPECT_TRUE(m_grid.TakePosted());
    EXPECT_FALSE(m_grid.TakePosted());
    EXPECT_EQ(m_grid.RowCount(), 2000);
    m_grid.PostRowCount(3000);
    m_grid.SetRowCount(10); // newer than what was posted
    EXPECT_FALSE(m_grid.TakePosted());
    EXPECT_EQ(m_grid.RowCount(), 10);
}

TEST_F(Grid, ACountThatShrinksKeepsTheRowInSight)
{
    m_grid.Handle({Key::End});
    m_grid.SetRowCount(3);
    EXPECT_EQ(m_grid.CurrentRow(), 2);
    Draw();
    EXPECT_EQ(m_rows.Take().back(), "range 0-2");
}

TEST_F(Grid, NumbersStandAtTheRightAndColumnsOnlyGrow)
{
    m_rows.m_text = [](LONG nRow, LONG) { return nRow == 0 ? "123456789012.5" : "7"; };
    const std::string first = Draw();
    EXPECT_NE(first.find("1  123456789012.5  123456789012.5"), std::string::npos) << first;
    EXPECT_NE(first.find("2               7               7"), std::string::npos) << first;
    m_rows.m_text = [](LONG, LONG) { return "7"; };
    EXPECT_NE(Draw().find("2               7               7"), std::string::npos);
}

TEST_F(Grid, ColumnsBeyondTheEdgeComeByTheArrows)
{
    for (int n = 2; n < 9; ++n)
        m_grid.AddColumn(OLESTR("More"), 0, true);
    Draw();
    for (int n = 0; n < 8; ++n) {
        m_grid.Handle({Key::Right});
        Draw();
    }
    EXPECT_TRUE(m_grid.OpenMenu());
    EXPECT_EQ(m_rows.m_nPressed, 8);
    EXPECT_NE(Draw().find("r0c8"), std::string::npos);
    for (int n = 0; n < 20; ++n)
        m_grid.Handle({Key::Left});
    EXPECT_NE(Draw().find("r0c0"), std::string::npos);
}

TEST_F(Grid, HeadingsOpenTheirMenu)
{
    Draw();
    m_grid.Handle({Key::Text, U'h'});
    EXPECT_EQ(m_rows.m_nPressed, 0);
    m_grid.Handle({Key::Press, 0, 22, 0});
    EXPECT_EQ(m_rows.m_nPressed, 1);
    m_grid.Handle({Key::Press, 0, 22, 3}); // a row
    EXPECT_EQ(m_grid.CurrentRow(), 2);
    m_rows.m_nPressed = -1;
    m_grid.SetEnabled(false);
    m_grid.Handle({Key::Enter});
    EXPECT_EQ(m_rows.m_nPressed, -1);
}

TEST_F(Grid, GoesToARecordByItsNumber)
{
    Draw();
    m_screen.Type(U"500").Press(Key::Enter);
    m_grid.Handle({Key::Text, U'g'});
    EXPECT_EQ(m_grid.CurrentRow(), 499);
    m_screen.Type(U"999999999999").Press(Key::Enter);
    m_grid.Handle({Key::Text, U'g'});
    EXPECT_EQ(m_grid.CurrentRow(), 999);
    m_screen.Type(U"0").Press(Key::Enter);
    m_grid.Handle({Key::Text, U'g'});
    EXPECT_EQ(m_grid.CurrentRow(), 999);
}

TEST_F(Grid, LinesWithoutHeadingsMoveAside)
{
    m_grid.ClearColumns();
    m_grid.ShowHeader(false);
    m_grid.AddColumn(OLESTR(""), 0, false);
    m_rows.m_text = [](LONG, LONG) { return "a\tb 0123456789 0123456789 0123456789"; };
    EXPECT_NE(Draw().find("1  a       b 0123"), std::string::npos) << Draw();
    m_grid.Handle({Key::Right});
    EXPECT_NE(Draw().find("1  b 0123456789"), std::string::npos) << Draw();
}

TEST_F(Grid, ClosesOnceAndStaysEmpty)
{
    m_grid.Close();
    m_grid.Close();
    EXPECT_EQ(m_rows.m_nClosed, 1);
    Draw();
    EXPECT_EQ(m_rows.Take(), Log());
    EXPECT_FALSE(m_grid.OpenMenu());
}

// ---- the dialog

namespace {

struct Folder final : IFolderEvents
{
    Log* m_pLog = nullptr;
    std::vector<string_t> m_names = {OLESTR("archive"), OLESTR("quotes.csv"),
                                     string_t(OLESTR("bad")) + OLECHAR(0xDCFF) + OLESTR("\u0007")};
    std::vector<string_t> m_paths;

    bool Shows(const OLECHAR*) override { return true; }
    LONG EntryCount() override { return static_cast<LONG>(m_names.size()); }
    FolderEntry Entry(LONG nEntry) override
    {
        const auto n = static_cast<std::size_t>(nEntry);
        m_paths.resize(m_names.size());
        m_paths[n] = OLESTR("/data/") + m_names[n];
        return {m_paths[n].c_str(), m_names[n].c_str(), n == 0, 1536, 0};
    }
    void OnSelection(const OLECHAR* pszPath) override
    {
        m_pLog->push_back("selected " + ToUtf8(pszPath));
    }
    void OnCommand(FolderCommand command) override
    {
        m_pLog->push_back("command " + std::to_string(command));
    }
    void OnText(LONG) override {}
    void OnSelect(LONG) override {}
    void OnClick(LONG) override {}
    void OnDate(LONG) override {}
    void OnResize() override {}
    void OnClose() override { m_pLog->push_back("folder closed"); }
};

// The component, as far as the dialog's keys need one.
struct Component final : IDialogEvents
{
    Log m_log;
    Folder m_folder;
    Rows m_lines, m_records;
    IDialogView* m_pView = nullptr;
    IPaneView* m_pSettings = nullptr;
    IFolderView* m_pFolderView = nullptr;
    bool m_bFrozen = false, m_bReady = true, m_bRefuses = false;

    void OnOpen(IDialogView& view) override
    {
        m_pView = &view;
        m_folder.m_pLog = &m_log;
        m_pFolderView = view.MakeFolderView(m_folder);
        m_pFolderView->ShowFolder(OLESTR("/data"), ModeNames);
        m_pFolderView->Freeze(m_bFrozen);
        IPaneView* pContent = view.MakePane(DialogContent, *this);
        pContent->AddRow(ContentLanguage, OLESTR("Western European (Windows)"), 1252);
        pContent->AddRow(ContentLanguage, OLESTR("Chinese Simplified (GB2312)"), 936);
        pContent->Select(ContentLanguage, 0);
        IGridView* pLines = pContent->MakeGrid(m_lines);
        pLines->ShowHeader(false);
        pLines->AddColumn(OLESTR(""), 0, false);
        pLines->SetRowCount(10);
        m_pSettings = view.MakePane(DialogSettings, *this);
        IGridView* pRecords = view.MakePane(DialogDecode, *this)->MakeGrid(m_records);
        pRecords->AddColumn(OLESTR("Date"), 0, true);
        pRecords->SetRowCount(9);
        view.SetEnabled(ImportOk, m_bReady);
    }
    void OnText(LONG nControl) override { Told("text", nControl); }
    void OnSelect(LONG nControl) override { Told("select", nControl); }
    void OnDate(LONG nControl) override { Told("date", nControl); }
    void OnClick(LONG nControl) override
    {
        Told("click", nControl);
        if (nControl == ImportCancel || (nControl == ImportOk && !m_bRefuses))
            m_pView->End(nControl == ImportOk ? kDialogOk : kDialogCancel);
    }
    void OnResize() override {}
    void OnDefaultCommand() override
    {
        m_log.push_back("default, focus " + std::to_string(m_pSettings->Focus()));
    }
    void OnDestroy() override { m_log.push_back("destroy"); }
    void Told(const char* pszEvent, LONG nControl)
    {
        m_log.push_back(std::string(pszEvent) + " " + std::to_string(nControl));
    }
};

class Dialog : public testing::Test
{
protected:
    void SetUp() override { TabulexSetLanguage(TABULEX_LANGUAGE_ENGLISH); }
    LONG Run() { return ImportDialogView(m_desk, m_component).Run(); }

    ScriptedScreen m_screen;
    Desk m_desk{m_screen};
    Component m_component;
};

} // namespace

TEST_F(Dialog, ClosesEverythingInOrder)
{
    m_screen.Press(Key::F10);
    EXPECT_EQ(Run(), kDialogOk);
    EXPECT_EQ(m_component.m_log, (Log{"click 300", "destroy", "folder closed"}));
    EXPECT_EQ(m_component.m_lines.m_nClosed, 1);
    EXPECT_EQ(m_component.m_records.m_nClosed, 1);
}

TEST_F(Dialog, EveryWayOutCancels)
{
    for (const Key key : {Key::Escape, Key::Interrupt, Key::Gone}) {
        ScriptedScreen screen;
        Desk desk(screen);
        Component component;
        screen.Press(key);
        EXPECT_EQ(ImportDialogView(desk, component).Run(), kDialogCancel);
        EXPECT_EQ(component.m_log.size(), key == Key::Gone ? 2u : 3u);
    }
}

TEST_F(Dialog, ARefusedCheckLeavesItOpenAndTheReasonInTheStatusLine)
{
    m_component.m_bRefuses = true;
    m_screen.Press(Key::F10).Then([&](ScriptedScreen&) { m_desk.Tell("The dates are missing."); });
    m_screen.Press(Key::Home).Then(
        [](ScriptedScreen& s) { EXPECT_EQ(s.Row(28), " The dates are missing."); });
    EXPECT_EQ(Run(), kDialogCancel);
}

TEST_F(Dialog, WhileItIsNotReadyTheButtonSaysWhy)
{
    m_component.m_bReady = false;
    m_screen.Press(Key::F10).Then([](ScriptedScreen& s) {
        EXPECT_NE(s.Row(28).find("Not ready"), std::string::npos) << s.Row(28);
    });
    Run();
    EXPECT_EQ(m_component.m_log.front(), "destroy"); // the button wasn't pressed
}

TEST_F(Dialog, EnterInTheFolderSelectsAndLetsTheComponentOpen)
{
    m_screen
        .Press(
            {Key::Down, Key::Enter, Key::Down, Key::Enter, Key::Home, Key::Enter, Key::Backspace})
        .Type(U"v")
        .Press(Key::Escape);
    Run();
    EXPECT_EQ(m_component.m_log,
              (Log{"selected /data/archive", "default, focus 0", "selected /data/quotes.csv",
                   "default, focus 0", "command 32772", "command 32772", "command 32777", "click 2",
                   "destroy", "folder closed"}));
}

TEST_F(Dialog, NamesAreShownEscaped)
{
    m_screen.Then([](ScriptedScreen& s) { EXPECT_TRUE(s.Has("bad\\xFF^G")) << s.Text(); });
    Run();
}

TEST_F(Dialog, AFrozenFolderTakesNoKeysAndTheLinesHaveTheFocus)
{
    m_component.m_bFrozen = true;
    m_screen.Press({Key::Down, Key::Enter, Key::Backspace}).Type(U"1").Press(Key::Escape);
    Run();
    EXPECT_EQ(m_component.m_log.front(), "click 2");
}

TEST_F(Dialog, DigitsChooseAPaneUnlessTheyAreTyped)
{
    m_screen.Type(U"3").Then(
        [&](ScriptedScreen&) { EXPECT_EQ(m_component.m_pSettings->Focus(), SettingsSize); });
    m_screen.Type(U"4"); // into the size
    m_screen.Then([&](ScriptedScreen&) {
        EXPECT_EQ(ToUtf8(m_component.m_pSettings->Text(SettingsSize)), "4");
    });
    m_screen.Press(Key::Enter).Press({Key::Tab}).Type(U"4");
    m_screen.Then(
        [&](ScriptedScreen&) { EXPECT_EQ(m_component.m_pSettings->Focus(), kWholeView); });
    m_screen.Type(U"h").Press(Key::Escape);
    Run();
    EXPECT_EQ(m_component.m_records.m_nPressed, 0);
    EXPECT_EQ(m_component.m_log,
              (Log{"text 222", "default, focus 222", "click 2", "destroy", "folder closed"}));
}

TEST_F(Dialog, TabWalksPanesAndControls)
{
    std::vector<LONG> focus;
    const auto note = [&](ScriptedScreen&) { focus.push_back(m_component.m_pSettings->Focus()); };
    m_screen.Press(Key::Tab).Then(note);
    for (int n = 0; n < 12; ++n)
        m_screen.Press(Key::Tab).Then(note);
    m_screen.Press(Key::BackTab).Then(note);
    Run();
    EXPECT_EQ(focus, (std::vector<LONG>{0, 222, 224, 226, 228, 230, 232, 234, 236, 238, 240, 242, 0,
                                        242}));
}

TEST_F(Dialog, F3AndF4ReachTheirControlsFromAnywhere)
{
    m_screen.Press({Key::F3, Key::Down, Key::Enter, Key::F4, Key::Escape});
    Run();
    EXPECT_EQ(m_component.m_log.at(0), "select 216");
    EXPECT_EQ(m_component.m_log.at(1), "click 240");
}

TEST_F(Dialog, ControlsThatAreOffDontAnswerTheirKeys)
{
    m_screen.Then(
        [&](ScriptedScreen&) { m_component.m_pSettings->SetEnabled(SettingsDelimiters, false); });
    m_screen.Press({Key::F4, Key::Escape});
    Run();
    EXPECT_EQ(m_component.m_log.at(0), "click 2");
}

TEST_F(Dialog, ThePageOfKeysGoesWithAnyKey)
{
    m_screen.Press(Key::F1)
        .Then([](ScriptedScreen& s) { EXPECT_TRUE(s.Has("Ctrl-Enter")) << s.Text(); })
        .Press(Key::Home)
        .Then([](ScriptedScreen& s) { EXPECT_FALSE(s.Has("Ctrl-Enter")); });
    Run();
}

TEST_F(Dialog, TheMousePressesWhatItIsOver)
{
    m_screen.Then([&](ScriptedScreen& s) {
        const std::string keys = s.Row(29);
        s.Click(static_cast<int>(keys.find("F10 import")), 29);
    });
    EXPECT_EQ(Run(), kDialogOk);
}

TEST_F(Dialog, BothLanguagesFitBothSizes)
{
    for (const Size size : {Size{100, 30}, Size{80, 24}, kLeastSize})
        for (const bool bChinese : {false, true}) {
            TabulexSetLanguage(bChinese ? TABULEX_LANGUAGE_CHINESE : TABULEX_LANGUAGE_ENGLISH);
            SetImportLanguage(bChinese);
            ScriptedScreen screen(size);
            Desk desk(screen);
            Component component;
            screen.Then([&](ScriptedScreen& s) {
                for (const char* pszText : {"F1", "F10", "Esc", "F3"})
                    EXPECT_TRUE(s.Has(pszText)) << pszText << "\n" << s.Text();
            });
            ImportDialogView(desk, component).Run();
        }
    SetImportLanguage(false);
}

// ---- progress

TEST(Progress, AsksAboutABadLineInTheBox)
{
    struct Row
    {
        Input input;
        BadLineAnswer answer;
    };
    const Row rows[] = {
        {{Key::Text, U's'}, BadLineAnswer::Skip},    {{Key::Text, U'S'}, BadLineAnswer::Skip},
        {{Key::Text, U'a'}, BadLineAnswer::SkipAll}, {{Key::Text, U'c'}, BadLineAnswer::Cancel},
        {{Key::Escape}, BadLineAnswer::Cancel},      {{Key::Gone}, BadLineAnswer::Cancel},
    };
    for (const Row& row : rows) {
        ScriptedScreen screen;
        Desk desk(screen);
        ImportProgress progress(desk, "quotes.csv");
        screen.Type(U"x").Then([&](ScriptedScreen& s) {
            EXPECT_TRUE(s.Has("Line 7, field 3: no price")) << s.Text();
            EXPECT_TRUE(s.Has("1,2,^A")) << s.Text();
        });
        if (row.input.key == Key::Text)
            screen.Type(std::u32string(1, row.input.c));
        else
            screen.Press(row.input.key);
        EXPECT_EQ(progress.AskAbout({7, 3, "no price"}, "1,2,\x01"), row.answer);
    }
}

TEST(Progress, ShowsItsFiguresAndHearsEsc)
{
    ScriptedScreen screen;
    Desk desk(screen);
    ImportProgress progress(desk, "quotes.csv");
    progress.ShowProgress({42, 1234567, "0 min 1 sec", "0 min 2 sec"});
    screen.Press(Key::Home).Press(Key::Escape);
    EXPECT_FALSE(progress.IsCancelled());
    EXPECT_TRUE(screen.Has("1,234,567")) << screen.Text();
    EXPECT_TRUE(screen.Has(" 42%")) << screen.Text();
    EXPECT_TRUE(progress.IsCancelled());
}
