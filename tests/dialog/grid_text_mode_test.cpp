// The preview grid in text mode: the lines of the file in one column.

#include "tests/dialog/GridFakes.h"

using namespace dialog_test;

namespace {

class GridTextMode : public GridTest
{
protected:
    static constexpr char kHeaderStays[] = "0 == m_ctlHD.m_hWnd";

    VARIANT_BOOL TextMode()
    {
        VARIANT_BOOL bTextMode = 77;
        EXPECT_EQ(S_OK, m_pGrid->get_TextMode(&bTextMode));
        return bTextMode;
    }
};

TEST_F(GridTextMode, IsOffAtFirst)
{
    EXPECT_EQ(VARIANT_FALSE, TextMode());
    EXPECT_EQ(S_OK, m_pGrid->put_TextMode(1));
    EXPECT_EQ(VARIANT_TRUE, TextMode());
}

TEST_F(GridTextMode, IsKeptUntilThereIsAView)
{
    m_pGrid->put_TextMode(VARIANT_TRUE);
    m_pView = std::make_unique<FakeGrid>("grid", &m_log, m_pGrid->Events());
    m_pGrid->Attach(m_pView.get());
    EXPECT_EQ((Calls{"grid: no header", "grid: clear columns", "grid: column  380"}), m_log.Take());
}

TEST_F(GridTextMode, OffGivesAViewItsHeader)
{
    m_pView = std::make_unique<FakeGrid>("grid", &m_log, m_pGrid->Events());
    m_pGrid->Attach(m_pView.get());
    EXPECT_EQ((Calls{"grid: header"}), m_log.Take());
    m_pGrid->Attach(nullptr);
    m_pGrid->put_TextMode(VARIANT_TRUE);
    EXPECT_EQ(Calls{}, m_log.Take());
}

TEST_F(GridTextMode, MakesOneColumnWithoutAHeading)
{
    MakeView();
    m_pRecords->m_columns = {"Date", "Open"};
    PutParser();
    m_pGrid->CreateFields();
    m_log.Take();
    EXPECT_EQ(S_OK, m_pGrid->put_TextMode(VARIANT_TRUE));
    EXPECT_EQ((Calls{"grid: no header", "grid: clear columns", "grid: column  380", "grid: erase"}),
              m_log.Take());
    ASSERT_EQ(1u, m_pView->m_columns.size());
    EXPECT_FALSE(m_pView->m_columns[0].bHeading);
}

TEST_F(GridTextMode, GivesWayToTheColumnsOfTheParser)
{
    m_pGrid->put_TextMode(VARIANT_TRUE);
    MakeView();
    m_pRecords->m_columns = {"Date"};
    m_pParser->m_records = {"1"};
    PutParser();
    EXPECT_EQ(S_OK, m_pGrid->put_TextMode(VARIANT_FALSE));
    EXPECT_EQ((Calls{"grid: header", "grid: rows 1", "grid: clear columns", "grid: column Date 88",
                     "grid: erase"}),
              m_log.Take());
}

TEST_F(GridTextMode, WithoutAParserGivesWayToNoRows)
{
    m_pGrid->put_TextMode(VARIANT_TRUE);
    MakeView();
    EXPECT_EQ(S_OK, m_pGrid->put_TextMode(VARIANT_FALSE));
    EXPECT_EQ((Calls{"grid: header", "grid: rows 0", "grid: erase"}), m_log.Take());
}

TEST_F(GridTextMode, SetToItsPresentValueTouchesNoColumn)
{
    MakeView();
    EXPECT_EQ(S_OK, m_pGrid->put_TextMode(VARIANT_FALSE));
    EXPECT_EQ(Calls{}, m_log.Take());
    m_pGrid->put_TextMode(VARIANT_TRUE);
    m_log.Take();
    EXPECT_EQ(S_OK, m_pGrid->put_TextMode(VARIANT_TRUE));
    EXPECT_EQ(S_OK, m_pGrid->put_TextMode(1)); // true as well
    EXPECT_EQ(Calls{}, m_log.Take());
}

TEST_F(GridTextMode, AHeaderThatStaysIsReported)
{
    MakeView();
    m_pView->m_bRefuseHeader = true;
    m_pGrid->put_TextMode(VARIANT_TRUE);
    EXPECT_EQ(std::vector<std::string>{kHeaderStays}, m_reports.Texts());
    m_pGrid->put_TextMode(VARIANT_FALSE);
    EXPECT_EQ((std::vector<std::string>{kHeaderStays, kHeaderStays}), m_reports.Texts());
}

TEST_F(GridTextMode, CreateFieldsSetsTheCountAlone)
{
    m_pGrid->put_TextMode(VARIANT_TRUE);
    MakeView();
    m_pRecords->m_columns = {"Date"};
    m_pParser->m_records = {"1", "2"};
    PutParser();
    EXPECT_EQ(S_OK, m_pGrid->CreateFields());
    EXPECT_EQ((Calls{"grid: rows 2"}), m_log.Take());
}

TEST_F(GridTextMode, ShowsTheLinesOfTheFile)
{
    m_pGrid->put_TextMode(VARIANT_TRUE);
    MakeView();
    m_pParser->m_records = {"2003/01/13,1", "a long line", ""};
    PutParser();
    m_pParser->m_onPage = [](VARIANT*, ULONG, ULONG) -> HRESULT {
        ADD_FAILURE() << "records are parsed in vain";
        return E_FAIL;
    };
    m_pView->Events().OnRange(0, 2);
    EXPECT_EQ("2003/01/13,1", m_pView->CellText(0, 0));
    EXPECT_EQ("a lon", m_pView->CellText(1, 0, 6)) << "room for five and a terminator";
    EXPECT_EQ("", m_pView->CellText(2, 0));
    EXPECT_EQ((std::vector<ULONGLONG>{0, 1, 2}), m_pParser->m_positions);
}

TEST_F(GridTextMode, ALineThatCanNotBeReadIsEmpty)
{
    m_pGrid->put_TextMode(VARIANT_TRUE);
    MakeView();
    m_pParser->m_records = {"a"};
    PutParser();
    EXPECT_EQ("", m_pView->CellText(1, 0));
    EXPECT_EQ("", m_pView->CellText(-1, 0));
    for (const char* pszFailure : {"Position", "CurrentRecord"}) {
        m_pParser->m_failures = {{pszFailure, E_FAIL}};
        EXPECT_EQ("", m_pView->CellText(0, 0)) << pszFailure;
    }
    m_pParser->m_failures.clear();
    EXPECT_EQ("a", m_pView->CellText(0, 0));
    EXPECT_TRUE(m_reports.Texts().empty());
}

TEST_F(GridTextMode, WithoutAParserACellIsReported)
{
    m_pGrid->put_TextMode(VARIANT_TRUE);
    MakeView();
    EXPECT_EQ("", m_pView->CellText(0, 0));
    EXPECT_EQ(std::vector<std::string>{"m_pDataParser"}, m_reports.Texts());
}

TEST_F(GridTextMode, HasNoMenu)
{
    m_pGrid->put_TextMode(VARIANT_TRUE);
    MakeView();
    PutParser();
    m_pView->m_onMenu = [](ViewMenu, LONG) -> LONG {
        ADD_FAILURE();
        return 0;
    };
    m_pView->Events().OnHeaderPress(0);
}

} // namespace
