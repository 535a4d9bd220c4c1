// The pane with the file's lines and the list of code pages.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "src/UIComponents/ConvertDialog/FileContentAdapter.h"
#include "src/UIComponents/ConvertDialog/LanguageList.h"
#include "tests/dialog/fakes/FakeViews.h"
#include "tests/support/ReportLog.h"

using namespace dialog_test;
using namespace Hesperon::specifics::UILayer;
namespace notify = Hesperon::specifics::notify;

namespace {

class ChosenLanguages final : public notify::IDataSettingEventSink
{
public:
    std::vector<ULONG> m_pages;
    bool m_bThrows = false;

    void OnFileLanguageChanged(ULONG nCodePage) override
    {
        if (m_bThrows)
            throw std::bad_alloc();
        m_pages.push_back(nCodePage);
    }
    void OnDateFirstChanged(const VARIANT&) override { ADD_FAILURE(); }
    void OnDateLastChanged(const VARIANT&) override { ADD_FAILURE(); }
    void OnMultiPriceChanged(const OLECHAR*) override { ADD_FAILURE(); }
    void OnMultiVolumeChanged(const OLECHAR*) override { ADD_FAILURE(); }
    void OnResolutionSizeChanged(const LONG) override { ADD_FAILURE(); }
    void OnResolutionTypeChanged(const int) override { ADD_FAILURE(); }
    void OnDelimitersClicked() override { ADD_FAILURE(); }
    void OnStartRowChanged(const ULONG) override { ADD_FAILURE(); }
    void OnUseBarsEndTimeChanged(bool) override { ADD_FAILURE(); }
};

class ContentPane : public testing::Test
{
protected:
    ~ContentPane()
    {
        m_pane.Close();
        m_dialog.CloseChildren();
    }

    FakePane& View() { return m_dialog.Pane(DialogContent); }

    ChosenLanguages m_sink;
    CFileContentViewAdapter::CPane m_pane{&m_sink};
    NoDialogEvents m_events;
    FakeDialog m_dialog{DialogImport, 0, nullptr, m_events};
};

// ---- languages

struct ListView final : ControlTable<>
{};

const std::vector<CodePageDescription> kPages = {
    {936, OLESTR("Chinese Simplified (GBK)")},
    {28591, OLESTR("Western European (ISO)")},
    {1252, OLESTR("Western European (Windows)")},
    {65001, OLESTR("Unicode (UTF-8)")},
};

TEST_F(ContentPane, OffersTheSystemsCodePagesWithTheLatinOneChosen)
{
    ASSERT_EQ(m_pane.Create(m_dialog), S_OK);
    const std::vector<CodePageDescription> pages = CodePages();
    ASSERT_FALSE(pages.empty());
    ASSERT_EQ(View().RowCount(ContentLanguage), static_cast<LONG>(pages.size()));
    for (LONG n = 0; n < View().RowCount(ContentLanguage); ++n) {
        const auto& page = pages[static_cast<std::size_t>(n)];
        EXPECT_EQ(View().RowText(ContentLanguage, n), page.sDescription);
        EXPECT_EQ(View().RowData(ContentLanguage, n), static_cast<LONG_PTR>(page.nCodePage));
    }
    EXPECT_EQ(View().RowData(ContentLanguage, View().Selected(ContentLanguage)), 1252);
    EXPECT_THAT(m_sink.m_pages, testing::IsEmpty());
}

TEST(LanguageList, SelectsTheRowThatStartsWithTheLatinDescription)
{
    ListView view;
    FillLanguageList(view, ContentLanguage, kPages);
    EXPECT_EQ(view.RowCount(ContentLanguage), 4);
    EXPECT_EQ(view.Selected(ContentLanguage), 2);
    // By the text's start, without case: the first such row.
    std::vector<CodePageDescription> pages = kPages;
    pages[0].sDescription = OLESTR("WESTERN EUROPEAN (WINDOWS) 2");
    view.ClearRows(ContentLanguage);
    FillLanguageList(view, ContentLanguage, pages);
    EXPECT_EQ(view.Selected(ContentLanguage), 0);
}

TEST(LanguageList, WithoutTheLatinPageSelectsNothing)
{
    ListView view;
    FillLanguageList(view, ContentLanguage, std::span(kPages).first(2));
    EXPECT_EQ(view.Selected(ContentLanguage), kNoRow);
    view.ClearRows(ContentLanguage);
    FillLanguageList(view, ContentLanguage, {});
    EXPECT_EQ(view.RowCount(ContentLanguage), 0);
    EXPECT_EQ(view.Selected(ContentLanguage), kNoRow);
}

TEST(LanguageList, ReportsARowThatTheViewRefuses)
{
    struct FullView final : ControlTable<>
    {
        LONG AddRow(LONG nControl, const OLECHAR* pszText, LONG_PTR nData) override
        {
            return nData == 1252 ? kNoRow : ControlTable::AddRow(nControl, pszText, nData);
        }
    } view;
    ReportLog reports;
    FillLanguageList(view, ContentLanguage, kPages);
    EXPECT_THAT(reports.Texts(), testing::ElementsAre("(((HRESULT)(hr)) >= 0)"));
    EXPECT_EQ(view.RowCount(ContentLanguage), 3);
    EXPECT_EQ(view.Selected(ContentLanguage), kNoRow);
}

TEST(LanguageList, SelectsTheFirstRowOfAPage)
{
    ListView view;
    EXPECT_EQ(SelectLanguage(view, ContentLanguage, 1252), TYPE_E_ELEMENTNOTFOUND); // empty
    std::vector<CodePageDescription> pages = kPages;
    pages.push_back({936, OLESTR("GBK again")});
    FillLanguageList(view, ContentLanguage, pages);
    EXPECT_EQ(SelectLanguage(view, ContentLanguage, 65001), S_OK);
    EXPECT_EQ(view.Selected(ContentLanguage), 3);
    EXPECT_EQ(SelectLanguage(view, ContentLanguage, 936), S_OK);
    EXPECT_EQ(view.Selected(ContentLanguage), 0);
}

TEST_F(ContentPane, ACodePageThatIsntOfferedLeavesTheSelection)
{
    ReportLog reports;
    EXPECT_EQ(m_pane.SetFileLanguage(1252), TYPE_E_ELEMENTNOTFOUND); // before there is a list
    ASSERT_EQ(m_pane.Create(m_dialog), S_OK);
    EXPECT_EQ(m_pane.SetFileLanguage(65001), S_OK);
    const LONG nRow = View().Selected(ContentLanguage);
    EXPECT_EQ(View().RowData(ContentLanguage, nRow), 65001);
    EXPECT_EQ(m_pane.SetFileLanguage(4711), TYPE_E_ELEMENTNOTFOUND);
    EXPECT_EQ(View().Selected(ContentLanguage), nRow);
    EXPECT_THAT(m_sink.m_pages, testing::IsEmpty());
    EXPECT_THAT(reports.Texts(), testing::IsEmpty());
}

TEST_F(ContentPane, AChosenLanguageIsReported)
{
    ASSERT_EQ(m_pane.Create(m_dialog), S_OK);
    for (const LONG n : {3, 0, 0})
        View().Choose(ContentLanguage, n);
    View().Choose(ContentLanguage, kNoRow);
    View().Choose(ContentLanguageLabel, 1); // another control
    const std::vector<CodePageDescription> pages = CodePages();
    EXPECT_THAT(m_sink.m_pages,
                testing::ElementsAre(pages[3].nCodePage, pages[0].nCodePage, pages[0].nCodePage));
}

TEST_F(ContentPane, TheListIsEnabledAndDisabled)
{
    m_pane.EnableLanguage(false); // before there is one
    ASSERT_EQ(m_pane.Create(m_dialog), S_OK);
    EXPECT_TRUE(View().IsEnabled(ContentLanguage));
    m_pane.EnableLanguage(false);
    EXPECT_FALSE(View().IsEnabled(ContentLanguage));
    m_pane.EnableLanguage(true);
    EXPECT_TRUE(View().IsEnabled(ContentLanguage));
}

// ---- layout

TEST_F(ContentPane, LaysOutLanguageAndGrid)
{
    ASSERT_EQ(m_pane.Create(m_dialog), S_OK);
    View().Move(ContentLanguage, {600, 2, 700, 25});
    View().Move(ContentLanguageLabel, {400, 1, 500, 24});
    struct Row
    {
        LONG nWidth, nHeight;
    };
    for (const Row& row : {Row{800, 120}, Row{1000, 60}, Row{100, 10}}) {
        View().Resize(row.nWidth, row.nHeight);
        EXPECT_EQ(View().Place(ContentLanguage),
                  (ControlPlace{row.nWidth - 250, 2, row.nWidth, 25}));
        const ControlPlace label = View().Place(ContentLanguageLabel);
        EXPECT_EQ(label.nRight, row.nWidth - 260);
        EXPECT_EQ(label.nTop, 1);
        EXPECT_EQ(label.nBottom, 24);
        EXPECT_EQ(m_dialog.Grid(DialogContent).m_place,
                  (ControlPlace{0, 24, row.nWidth, row.nHeight}));
    }
}

// The text is measured once a process.
TEST_F(ContentPane, TheLabelKeepsTheWidthOfItsFirstText)
{
    ASSERT_EQ(m_pane.Create(m_dialog), S_OK);
    const auto width = [&] {
        const ControlPlace label = View().Place(ContentLanguageLabel);
        return label.nRight - label.nLeft;
    };
    View().Resize(800, 120);
    const LONG nWidth = width();
    EXPECT_EQ(nWidth, 4); // the fake's label is empty
    View().SetText(ContentLanguageLabel, OLESTR("File language:"));
    EXPECT_EQ(View().TextWidth(ContentLanguageLabel), 14);
    View().Resize(900, 120);
    EXPECT_EQ(width(), nWidth);
}

// ---- without a pane, without a grid

TEST_F(ContentPane, WithoutAViewCreationFails)
{
    m_dialog.m_refused.insert(DialogContent);
    EXPECT_EQ(m_pane.Create(m_dialog), E_FAIL);
    EXPECT_EQ(m_pane.View(), nullptr);
    EXPECT_FALSE(m_pane.GetGrid());
}

TEST_F(ContentPane, WithoutAGridTheLanguagesAreThere)
{
    m_dialog.m_onPane = [](FakePane& pane) { pane.m_bRefuseGrid = true; };
    ASSERT_EQ(m_pane.Create(m_dialog), S_OK);
    EXPECT_FALSE(m_pane.GetGrid());
    EXPECT_GT(View().RowCount(ContentLanguage), 0);
    View().Resize(800, 120);
    EXPECT_EQ(View().Place(ContentLanguage).nRight, 800);
}

TEST_F(ContentPane, ClosedItKeepsItsGridForTheView)
{
    ASSERT_EQ(m_pane.Create(m_dialog), S_OK);
    EXPECT_EQ(m_pane.View(), &View());
    const auto pGrid = m_pane.GetGrid();
    EXPECT_TRUE(pGrid);
    m_pane.Close();
    EXPECT_EQ(m_pane.View(), nullptr);
    EXPECT_EQ(m_pane.GetGrid(), pGrid);
    View().Choose(ContentLanguage, 0);
    View().Resize(10, 10);
    EXPECT_THAT(m_sink.m_pages, testing::IsEmpty());
    EXPECT_EQ(m_pane.SetFileLanguage(1252), TYPE_E_ELEMENTNOTFOUND);
}

TEST_F(ContentPane, LetsNothingThrownReachTheView)
{
    m_sink.m_bThrows = true;
    ASSERT_EQ(m_pane.Create(m_dialog), S_OK);
    EXPECT_NO_THROW(View().Choose(ContentLanguage, 0));
}

} // namespace
