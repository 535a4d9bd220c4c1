// Cells, visible text, lines, and a date that is typed.
#include <gtest/gtest.h>

#include "tests/tabulex/units/ScriptedScreen.h"
#include "tools/tabulex/import/DateEdit.h"
#include "tools/tabulex/import/ImportLayout.h"
#include "tools/tabulex/import/terminal/Desk.h"
#include "tools/tabulex/import/terminal/Prompt.h"
#include "tools/tabulex/text/VisibleText.h"

using namespace tabulex_test;

TEST(VisibleText, WritesOutWhatATerminalWouldObey)
{
    struct Row
    {
        string_t sText;
        const char* pszVisible;
    };
    const Row rows[] = {
        {OLESTR("plain.csv"), "plain.csv"},
        {OLESTR("a\u0001b"), "a^Ab"},
        {OLESTR("esc\u001B[2J"), "esc^[[2J"},
        {OLESTR("\u007F"), "^?"},
        {OLESTR("tab\t"), "tab^I"},
        {OLESTR("c1\u0085"), "c1\\x85"},
        {string_t(1, OLECHAR(0xDC80)), "\\x80"},
        {string_t(1, OLECHAR(0xD800)), "\\u{D800}"},
        {OLESTR("rtl\u202Evsc"), "rtl\\u{202E}vsc"},
        {OLESTR("\u80A1\u7968"), "\xE8\x82\xA1\xE7\xA5\xA8"},
        {OLESTR("e\u0301"), "e\xCC\x81"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(VisibleText(row.sText), row.pszVisible);
}

TEST(VisibleText, TabsGoToTheNextStop)
{
    EXPECT_EQ(VisibleText(OLESTR("a\tb"), 8), "a       b");
    EXPECT_EQ(VisibleText(OLESTR("12345678\tb"), 8), "12345678        b");
    EXPECT_EQ(VisibleText(OLESTR("\u80A1\tb"), 8), "\xE8\x82\xA1      b"); // two cells, six blanks
}

TEST(VisibleText, WidthsAreCells)
{
    struct Row
    {
        const char* pszText;
        int nCells;
    };
    const Row rows[] = {
        {"", 0}, {"abc", 3}, {"\xE8\x82\xA1", 2}, {"e\xCC\x81", 1}, {"\xC3\xA9", 1}};
    for (const Row& row : rows)
        EXPECT_EQ(CellsOf(row.pszText), row.nCells) << row.pszText;
    EXPECT_EQ(WithoutFront("abc", 1), "bc");
    EXPECT_EQ(WithoutFront("\xE8\x82\xA1z", 2), "z");
    EXPECT_EQ(WithoutFront("ab", 5), "");
}

TEST(Canvas, PutsCellsAndNothingOutside)
{
    Canvas canvas({6, 2});
    EXPECT_EQ(canvas.Put(0, 0, "abcdefgh", Look::Normal), 8);
    EXPECT_EQ(canvas.Row(0), "abcdef");
    EXPECT_EQ(canvas.Put(0, 1, "abcdefgh", Look::Normal, 3), 3);
    EXPECT_EQ(canvas.Row(1), "abc");
    canvas.Put(-1, 1, "xy", Look::Normal);
    EXPECT_EQ(canvas.Row(1), "ybc");
    canvas.Put(0, 7, "z", Look::Normal); // no such row
}

TEST(Canvas, AWideCharacterTakesTwoCellsOrNone)
{
    Canvas canvas({5, 1});
    EXPECT_EQ(canvas.Put(0, 0, "a\xE8\x82\xA1z", Look::Normal), 4);
    EXPECT_EQ(canvas.Row(0), "a\xE8\x82\xA1z");
    EXPECT_EQ(canvas.At(2, 0).sText, "");
    canvas.Put(2, 0, "-", Look::Normal); // over its second half
    EXPECT_EQ(canvas.Row(0), "a -z");
    canvas.Put(4, 0, "\xE8\x82\xA1", Look::Normal); // only half of it would fit
    EXPECT_EQ(canvas.Row(0), "a -z");
    EXPECT_EQ(canvas.Put(0, 0, "\xE8\x82\xA1", Look::Normal, 1), 0);
}

TEST(Canvas, CutsATextThatIsTooLong)
{
    Canvas canvas({8, 3});
    canvas.PutCell(0, 0, "abcdefgh", Look::Normal, 5);
    canvas.PutCell(0, 1, "12", Look::Normal, 5, true);
    canvas.PutCell(0, 2, "a\xE8\x82\xA1\xE8\x82\xA1", Look::Normal, 3);
    EXPECT_EQ(canvas.Row(0), "abcd~");
    EXPECT_EQ(canvas.Row(1), "   12");
    EXPECT_EQ(canvas.Row(2), "a~");
}

TEST(Wrap, BreaksAtBlanksAndInTheMidstOfLongWords)
{
    using Lines = std::vector<std::string>;
    EXPECT_EQ(Wrap("one two three", 8), (Lines{"one two", "three"}));
    EXPECT_EQ(Wrap("incomprehensible", 6), (Lines{"incomp", "rehens", "ible"}));
    EXPECT_EQ(Wrap("\xE8\x82\xA1\xE8\x82\xA1\xE8\x82\xA1", 5),
              (Lines{"\xE8\x82\xA1\xE8\x82\xA1", "\xE8\x82\xA1"}));
    EXPECT_EQ(Wrap("\xE8\x82\xA1", 1), (Lines{"\xE8\x82\xA1"})); // better too wide than for ever
    EXPECT_EQ(Wrap("", 5), Lines());
}

// ---- dates

namespace {

SYSTEMTIME Moment(WORD nYear, WORD nMonth, WORD nDay, WORD nHour = 0, WORD nMinute = 0,
                  WORD nSecond = 0, WORD nMilliseconds = 0)
{
    SYSTEMTIME date{};
    date.wYear = nYear;
    date.wMonth = nMonth;
    date.wDay = nDay;
    date.wHour = nHour;
    date.wMinute = nMinute;
    date.wSecond = nSecond;
    date.wMilliseconds = nMilliseconds;
    return date;
}

void TypeInto(DateEdit& edit, std::u32string_view text)
{
    for (const char32_t c : text)
        edit.Handle({Key::Text, c});
}

} // namespace

TEST(DateEdit, DigitsOverwriteDigitsAndStepOverMarks)
{
    DateEdit edit;
    edit.Load(Moment(2024, 1, 3, 9, 30, 0, 250), true);
    EXPECT_EQ(edit.Text(), "2024-01-03 09:30:00");
    TypeInto(edit, U"20230214160559");
    EXPECT_EQ(edit.Text(), "2023-02-14 16:05:59");
    const auto date = edit.Value();
    ASSERT_TRUE(date);
    EXPECT_TRUE(IsSameMoment(date, Moment(2023, 2, 14, 16, 5, 59)));
}

TEST(DateEdit, WithoutATimeTheTimeStays)
{
    DateEdit edit;
    edit.Load(Moment(2024, 1, 3, 9, 30, 1, 250), false);
    EXPECT_EQ(edit.Text(), "2024-01-03");
    TypeInto(edit, U"20240205");
    EXPECT_TRUE(IsSameMoment(edit.Value(), Moment(2024, 2, 5, 9, 30, 1, 250)));
}

TEST(DateEdit, SaysNoDateUntilItIsOne)
{
    struct Row
    {
        std::u32string_view sTyped;
        bool bDate;
    };
    const Row rows[] = {
        {U"20240229000000", true},  {U"20230229000000", false}, {U"20241301000000", false},
        {U"20240100000000", false}, {U"18991231000000", false}, {U"20790101000000", false},
        {U"20781231235959", true},  {U"20240101240000", false}, {U"20240101006000", false},
        {U"2024010100005", false},
    };
    for (const Row& row : rows) {
        DateEdit edit;
        edit.Load({}, true);
        TypeInto(edit, row.sTyped);
        EXPECT_EQ(edit.Value().has_value(), row.bDate) << edit.Text();
    }
}

TEST(DateEdit, KeysMoveFromDigitToDigit)
{
    DateEdit edit;
    edit.Load(Moment(2024, 1, 3), false);
    edit.Handle({Key::End});
    EXPECT_EQ(edit.Caret(), 9);
    edit.Handle({Key::Left});
    edit.Handle({Key::Left});
    EXPECT_EQ(edit.Caret(), 6); // over the mark
    edit.Handle({Key::Right});
    EXPECT_EQ(edit.Caret(), 8);
    edit.Handle({Key::Home});
    edit.Handle({Key::Left});
    EXPECT_EQ(edit.Caret(), 0);
    EXPECT_FALSE(edit.Handle({Key::Tab}));
    edit.Handle({Key::Text, U'x'}); // no digit
    EXPECT_EQ(edit.Text(), "2024-01-03");
}

TEST(DateEdit, LoadsAnotherDateButNotTheSame)
{
    DateEdit edit;
    edit.Load(Moment(2024, 1, 3), false);
    TypeInto(edit, U"2099"); // no date that the component knows
    edit.Load(Moment(2024, 1, 3), false);
    EXPECT_EQ(edit.Text(), "2099-01-03");
    edit.Load(Moment(2024, 1, 4), false);
    EXPECT_EQ(edit.Text(), "2024-01-04");
    edit.Load({}, true);
    EXPECT_EQ(edit.Text(), "____-__-__ __:__:__");
}

// ---- layout

TEST(ImportLayout, GivesEachPaneItsRows)
{
    struct Row
    {
        Size size;
        int nForm;
        bool bFileGiven;
        std::array<int, PaneCount> rows;
    };
    const Row rows[] = {
        {{100, 30}, 3, false, {6, 5, 3, 8}},    {{100, 30}, 4, false, {6, 5, 4, 7}},
        {{80, 24}, 4, false, {3, 3, 4, 6}},     {{80, 24}, 5, true, {0, 3, 5, 9}},
        {{60, 20}, 6, false, {2, 2, 6, 2}},     {{60, 20}, 6, true, {0, 3, 6, 4}},
        {{200, 70}, 3, false, {16, 15, 3, 28}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << row.size.nColumns << "x" << row.size.nRows);
        const ImportLayout layout = LayOutImport(row.size, row.nForm, row.bFileGiven);
        int nEnd = 1;
        for (std::size_t n = 0; n < PaneCount; ++n) {
            EXPECT_EQ(layout.panes[n].nRows, row.rows[n]) << n;
            EXPECT_EQ(layout.panes[n].nRow, nEnd + (row.rows[n] ? 1 : 0)) << n;
            nEnd = layout.panes[n].nRow + layout.panes[n].nRows;
        }
        EXPECT_EQ(layout.nBottom, nEnd);
        EXPECT_EQ(nEnd, row.size.nRows - 3);
    }
}

// ---- the desk

TEST(Desk, OnATinyTerminalOneSentenceStands)
{
    ScriptedScreen screen({20, 5});
    screen.Type(U"x").Press(Key::Tab).Press(Key::Escape);
    Desk desk(screen);
    EXPECT_EQ(desk.Next().key, Key::Escape); // the others don't come through
    EXPECT_EQ(screen.Row(0), "The import dialog");
    for (int n = 0; n < 5; ++n)
        EXPECT_LE(CellsOf(screen.Row(n)), 20);
    EXPECT_EQ(desk.Next().key, Key::Gone);
    EXPECT_EQ(desk.Next().key, Key::Gone);
}

TEST(Desk, ATerminalThatGrowsShowsTheDialogAgain)
{
    struct Layer final : ILayer
    {
        void Draw(Canvas& canvas) override { canvas.Put(0, 0, "here", Look::Normal); }
    } layer;
    ScriptedScreen screen({20, 5});
    screen.Then([](ScriptedScreen& s) { s.m_size = {80, 24}; }).Press(Key::Resize).Press(Key::Home);
    Desk desk(screen);
    const Layered layered(desk, layer);
    EXPECT_EQ(desk.Next().key, Key::Resize);
    EXPECT_EQ(desk.Next().key, Key::Home);
    EXPECT_EQ(screen.Row(0), "here");
}

TEST(Prompt, TakesDigitsOnly)
{
    ScriptedScreen screen;
    screen.Type(U"1x2").Press(Key::Backspace).Type(U"3").Press(Key::Enter);
    Desk desk(screen);
    EXPECT_EQ(AskNumber(desk, "Record: "), 13u);
    EXPECT_EQ(screen.Row(28), " Record: 13");
    screen.Type(U"5").Press(Key::Escape);
    EXPECT_FALSE(AskNumber(desk, "Record: "));
    screen.Press(Key::Enter);
    EXPECT_FALSE(AskNumber(desk, "Record: "));
}
