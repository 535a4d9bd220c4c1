// A person imports each sample: picks it, corrects what can be corrected, confirms; and the
// conversion delivers the rows that the dialog showed tinted.

#include "src/parsing/EnvironmentDocument.h"
#include "tests/dialog/fakes/FakeViews.h"
#include "tests/front/ScriptedHost.h"

using namespace dialog_test;

namespace {

const char* const kSamples[] = {"date-06.csv",    "date-20.csv",       "day-no-header.csv",
                                "descending.csv", "divider-blank.txt", "divider-tab.txt",
                                "gbk-symbol.csv", "minute-5.csv",      "symbols.csv",
                                "time-06.csv",    "time-10.csv",       "week.csv"};

class DialogSession : public FrontFixture, public testing::WithParamInterface<const char*>
{
protected:
    // The user finds the sample in its folder.
    static void Pick(FakeDialog& dialog, const std::string& sName)
    {
        ASSERT_TRUE(dialog.m_pFolderView);
        dialog.m_pFolderView->Pick(sName);
        WaitForRows(dialog.Grid(DialogDecode));
    }
    // Until the worker has counted the file and the grids show it.
    static void WaitForRows(FakeGrid& grid)
    {
        PumpUntil([&] {
            if (grid.m_nPosted >= 0)
                grid.m_nRows = grid.m_nPosted;
            return grid.m_nRows > 0 && !grid.m_columns.empty();
        });
    }
    // The rows that an import would take, as the grid says.
    static ULONGLONG TintedRows(FakeGrid& grid)
    {
        ULONGLONG nTinted = 0;
        grid.Events().OnRange(0, grid.m_nRows - 1);
        for (LONG nRow = 0; nRow < grid.m_nRows; ++nRow)
            nTinted += grid.Events().IsImported(nRow);
        return nTinted;
    }
    // In a short file that runs backwards, the lines that were skipped are the last ones, and get
    // into the sample by which a resolution is found: there is none then.
    static void ChooseResolution(FakePane& pane, const std::string& sName)
    {
        EXPECT_EQ(pane.ChosenText(SettingsResolution), sName) << "of before";
        const Calls rows = pane.Rows(SettingsResolution);
        pane.Choose(SettingsResolution,
                    static_cast<LONG>(std::find(rows.begin(), rows.end(), sName) - rows.begin()));
    }
    // The rows that a conversion delivers.
    std::size_t Convert()
    {
        sink = NewSink();
        EXPECT_EQ(front->DoConvert(sink.get(), 0), S_OK);
        PumpToTheEnd();
        return sink->rows.size();
    }
    VARIANT_BOOL Analyse(std::function<void(FakeDialog&)> user)
    {
        m_views.m_onRun = std::move(user);
        VARIANT_BOOL bStatus = VARIANT_FALSE;
        front->put_Environment(
            Bstr(Hesperon::specifics::WriteEnvironment(Wide(SAMPLES), OLESTR(""))).get());
        EXPECT_EQ(front->DoAnalyse(&bStatus, 0), S_OK);
        return bStatus;
    }

    FakeViews m_views;
};

TEST_P(DialogSession, DeliversTheTintedRows)
{
    ULONGLONG nTinted = 0;
    ASSERT_EQ(Analyse([&](FakeDialog& dialog) {
                  Pick(dialog, GetParam());
                  nTinted = TintedRows(dialog.Grid(DialogDecode));
                  dialog.Click(ImportOk);
              }),
              VARIANT_TRUE);
    EXPECT_GT(nTinted, 0u);
    EXPECT_EQ(Convert(), nTinted);
}

TEST_P(DialogSession, DeliversTheTintedRowsOfANarrowerRange)
{
    ULONGLONG nAll = 0, nTinted = 0;
    ASSERT_EQ(Analyse([&](FakeDialog& dialog) {
                  Pick(dialog, GetParam());
                  FakeGrid& grid = dialog.Grid(DialogDecode);
                  nAll = TintedRows(grid);
                  FakePane& pane = dialog.Pane(DialogSettings);
                  SYSTEMTIME first{};
                  ASSERT_TRUE(pane.Date(SettingsDateFirst, first));
                  if (first.wHour == 0) {
                      ++first.wDay; // the first day falls away
                      first.wDay = std::min<WORD>(first.wDay, 28);
                  } else {
                      first.wMinute = static_cast<WORD>((first.wMinute + 3) % 60);
                  }
                  pane.PickDate(SettingsDateFirst, first);
                  nTinted = TintedRows(grid);
                  dialog.Click(ImportOk);
              }),
              VARIANT_TRUE);
    EXPECT_LT(nTinted, nAll);
    EXPECT_EQ(Convert(), nTinted);
}

// The range begins at the first row that is left, so that each later symbol loses the rows
// before that date too.
TEST_P(DialogSession, AStartRowLasts)
{
    const bool bBlocks = std::string(GetParam()) == "symbols.csv";
    ULONGLONG nAll = 0, nTinted = 0;
    const VARIANT_BOOL bStatus = Analyse([&](FakeDialog& dialog) {
        Pick(dialog, GetParam());
        FakeGrid& grid = dialog.Grid(DialogDecode);
        nAll = TintedRows(grid);
        FakePane& pane = dialog.Pane(DialogSettings);
        const std::string sRow = std::to_string(std::stol(pane.TextAt(SettingsStartRow)) + 2);
        pane.Type(SettingsStartRow, sRow.c_str());
        EXPECT_EQ(pane.TextAt(SettingsStartRow), sRow);
        nTinted = TintedRows(grid);
        if (std::string(GetParam()) == "descending.csv")
            ChooseResolution(pane, "Days");
        dialog.Click(ImportOk);
    });
    ASSERT_EQ(bStatus, VARIANT_TRUE);
    EXPECT_EQ(nTinted, nAll - (bBlocks ? 6 : 2));
    EXPECT_EQ(Convert(), nTinted);
}

TEST_P(DialogSession, TheSameDelimitersChangeNothing)
{
    ULONGLONG nAll = 0, nTinted = 0;
    ASSERT_EQ(Analyse([&](FakeDialog& dialog) {
                  if (dialog.m_dialog == DialogDelimiters)
                      return dialog.Click(SmallDialogOk);
                  Pick(dialog, GetParam());
                  FakeGrid& grid = dialog.Grid(DialogDecode);
                  nAll = TintedRows(grid);
                  dialog.Pane(DialogSettings).Click(SettingsDelimiters);
                  nTinted = TintedRows(grid);
                  dialog.Click(ImportOk);
              }),
              VARIANT_TRUE);
    EXPECT_EQ(nTinted, nAll);
    EXPECT_EQ(Convert(), nTinted);
}

// Opened over a file that the object has: the picker shows it and can't be used.
TEST_P(DialogSession, AFileThatIsOpenStays)
{
    const std::string sPath = std::string(SAMPLES) + "/" + GetParam();
    ASSERT_EQ(front->put_FileName(Bstr(Wide(sPath)).get()), S_OK);
    ASSERT_EQ(Analyse([&](FakeDialog& dialog) {
                  WaitForRows(dialog.Grid(DialogDecode));
                  EXPECT_TRUE(dialog.m_pFolderView->m_bFrozen);
                  EXPECT_TRUE(
                      std::filesystem::equivalent(dialog.m_pFolderView->m_sSelected, sPath));
                  dialog.m_pFolderView->Pick("symbols.csv");
                  dialog.Click(ImportOk);
              }),
              VARIANT_TRUE);
    Bstr sFile;
    front->get_FileName(sFile.put());
    EXPECT_EQ(Utf8(sFile.view()), sPath);
}

INSTANTIATE_TEST_SUITE_P(Samples, DialogSession, testing::ValuesIn(kSamples),
                         [](const auto& sample) {
                             std::string sName = sample.param;
                             std::erase_if(sName, [](char c) { return !std::isalnum(c); });
                             return sName;
                         });

} // namespace
