// What each change of a setting does, step by step, and where it stops when a step fails.

#include "tests/dialog/ControlFixture.h"

#include "tests/support/ReportLog.h"

using namespace dialog_test;

namespace {

class ControlEvents : public ControlFixture
{
protected:
    void SetUp() override { Start(); }

    static Variant Date(DATE date) { return Variant::FromDate(date); }
    // In the delimiter dialog: all off but the comma, and ok.
    void ChooseDelimiters(LONG nResult)
    {
        m_views.m_onRun = [nResult](FakeDialog& dialog) {
            ASSERT_EQ(dialog.m_dialog, DialogDelimiters);
            dialog.Click(nResult);
        };
    }
    // How the events are called, for the tables below.
    std::map<std::string, std::function<void()>> m_events = {
        {"language", [this] { m_pControl->OnFileLanguageChanged(936); }},
        {"first date", [this] { m_pControl->OnDateFirstChanged(Date(40001)); }},
        {"last date", [this] { m_pControl->OnDateLastChanged(Date(40002)); }},
        {"price", [this] { m_pControl->OnMultiPriceChanged(OLESTR("10")); }},
        {"volume", [this] { m_pControl->OnMultiVolumeChanged(OLESTR("10")); }},
        {"size", [this] { m_pControl->OnResolutionSizeChanged(7); }},
        {"type", [this] { m_pControl->OnResolutionTypeChanged(3); }},
        {"delimiters", [this] { m_pControl->OnDelimitersClicked(); }},
        {"row", [this] { m_pControl->OnStartRowChanged(4); }},
        {"end time", [this] { m_pControl->OnUseBarsEndTimeChanged(true); }},
        {"data", [this] { m_pControl->OnDataChanged(); }},
    };
};

struct Row
{
    const char* sEvent;
    Calls calls;
};

TEST_F(ControlEvents, CallInThisOrder)
{
    const Row kRows[] = {
        {"language",
         {"records: detach", "code page 936", "records: columns", "SetDateFirst 40000",
          "SetDateLast 40010", "code page 936", "records: repaint"}},
        {"first date", {"start 40001", "records: repaint"}},
        {"last date", {"end 40002", "records: repaint"}},
        {"price", {"price 10", "records: repaint"}},
        {"volume", {"volume 10", "records: repaint"}},
        {"size", {"size 7", "records: repaint"}},
        {"size", {"records: repaint"}},
        {"type",
         {"resolution 5", "size 5", "start 40000", "end 40010", "SetDateFormat 1",
          "ShowUseBarsEndTime yes", "records: columns", "records: repaint"}},
        {"row",
         {"lines 3", "lines: columns", "SetDateFirst 39990", "SetDateLast 40020",
          "recreate columns", "header 0", "lines 3", "refresh dates 0", "records: columns",
          "records: repaint"}},
        {"end time",
         {"end time 65535", "SetDateFirst 40000", "SetDateLast 40010", "records: repaint"}},
        {"data",
         {"recalculate size", "records: columns", "SetDateFormat 1", "ShowUseBarsEndTime yes",
          "SetResolution 5 3", "SetDateFirst 40000", "SetDateLast 40010", "SetControlsState 2"}},
    };
    for (const Row& row : kRows) {
        m_events[row.sEvent]();
        EXPECT_EQ(Take(), row.calls) << row.sEvent;
    }
}

TEST_F(ControlEvents, WithoutAParserDoNothing)
{
    const ReportLog reports;
    m_pControl->Uninitialize();
    Take();
    for (const auto& [sEvent, call] : m_events) {
        if (sEvent == "price" || sEvent == "volume")
            continue; // these need the grid
        call();
        EXPECT_THAT(Take(), IsEmpty()) << sEvent;
    }
    EXPECT_EQ(reports.Texts(), Calls({"m__recParser != 0", "m__recParser != 0"}));
}

struct FailureRow
{
    const char* sEvent;
    const char* sFails;
    Calls calls; // all that are still made
    std::vector<std::string> reports;
};

constexpr const char* kHr = "(((HRESULT)(hr)) >= 0)";
constexpr const char* kHr__ = "(((HRESULT)(hr__)) >= 0)";

TEST_F(ControlEvents, GoOnOrStopWhereAStepFails)
{
    const FailureRow kRows[] = {
        {"language", "records: detach", {"records: detach"}, {}},
        {"language",
         "records: columns",
         {"records: detach", "code page 936", "records: columns", "SetDateFirst 40000",
          "SetDateLast 40010", "code page 936", "records: repaint"},
         {kHr}},
        {"language", "get start", {"records: detach", "code page 936", "records: columns"}, {}},
        {"first date", "start", {"start 40001", "records: repaint"}, {kHr}},
        {"last date", "end", {"end 40002", "records: repaint"}, {kHr__}},
        {"price", "price", {"price 10", "records: repaint"}, {kHr__}},
        {"price", "get price multiplier", {"records: repaint"}, {kHr__}},
        {"volume", "volume", {"volume 10", "records: repaint"}, {kHr__}},
        {"size", "size", {"size 7", "records: repaint"}, {kHr}},
        {"type",
         "GetDateFirst",
         {"resolution 5", "size 5", "end 40010", "SetDateFormat 1", "ShowUseBarsEndTime yes",
          "records: columns", "records: repaint"},
         {}},
        {"row", "get header", {}, {}},
        {"row", "get count", {}, {}},
        {"row",
         "get max",
         {"lines 3", "lines: columns", "recreate columns", "header 0", "lines 3", "refresh dates 0",
          "records: columns", "records: repaint"},
         {kHr}},
        {"row",
         "recreate columns",
         {"lines 3", "lines: columns", "SetDateFirst 39990", "SetDateLast 40020",
          "recreate columns"},
         {kHr}},
        {"row",
         "records: columns",
         {"lines 3", "lines: columns", "SetDateFirst 39990", "SetDateLast 40020",
          "recreate columns", "header 0", "lines 3", "refresh dates 0", "records: columns"},
         {}},
        {"end time",
         "end time",
         {"end time 65535", "SetDateFirst 40000", "SetDateLast 40010", "records: repaint"},
         {kHr__}},
        {"data", "get resolution", {"recalculate size"}, {}},
        {"data", "records: columns", {"recalculate size", "records: columns"}, {}},
        {"data",
         "SetDateFormat",
         {"recalculate size", "records: columns", "SetDateFormat 1", "ShowUseBarsEndTime yes"},
         {}},
        {"data",
         "SetResolution",
         {"recalculate size", "records: columns", "SetDateFormat 1", "ShowUseBarsEndTime yes",
          "SetResolution 1 3"},
         {}},
        {"data",
         "get end",
         {"recalculate size", "records: columns", "SetDateFormat 1", "ShowUseBarsEndTime yes",
          "SetResolution 1 3"},
         {}},
    };
    for (const FailureRow& row : kRows) {
        m_pRecords->m_nResolution = 5;
        m_pRecords->m_nSize = 1;
        m_pRecords->m_nLinesToSkip = 0;
        m_controls.m_first = 40000;
        m_controls.m_last = 40010;
        const ReportLog reports;
        m_script.m_results = {{row.sFails, E_FAIL}};
        m_events[row.sEvent]();
        EXPECT_EQ(Take(), row.calls) << row.sEvent << " without " << row.sFails;
        EXPECT_EQ(reports.Texts(), row.reports) << row.sEvent << " without " << row.sFails;
    }
}

// ---- resolution

TEST_F(ControlEvents, ASizeBelowOneIsIgnored)
{
    for (const LONG nSize : {0, -1})
        m_pControl->OnResolutionSizeChanged(nSize);
    EXPECT_THAT(Take(), IsEmpty());
}

TEST_F(ControlEvents, AResolutionSetsTheSizeThatItsNameCarries)
{
    struct
    {
        int nIndex;
        LONG nBefore, nAfter;
    } const kRows[] = {{3, 9, 5}, // "Minutes|5", whatever was typed
                       {3, 5, 5},
                       {6, 5, 60},
                       {4, 9, 9},  // without a bar the size stays
                       {7, 9, 0}}; // "M|abc"
    for (const auto& row : kRows) {
        m_pRecords->m_nSize = row.nBefore;
        m_pControl->OnResolutionTypeChanged(row.nIndex);
        EXPECT_EQ(m_pRecords->m_nSize, row.nAfter) << row.nIndex;
    }
}

TEST_F(ControlEvents, AnIndexOutOfTheListIsReportedAndNothingElse)
{
    const ReportLog reports;
    for (const int nIndex : {-1, 8, 1000})
        m_pControl->OnResolutionTypeChanged(nIndex);
    EXPECT_THAT(Take(), IsEmpty());
    EXPECT_EQ(reports.Texts(), Calls({kHr, kHr, kHr}));
}

TEST_F(ControlEvents, TheSizeOfTicksDaysAndWeeksShowsAsOne)
{
    m_resolutions.push_back({OLESTR("Weeks"), 7});
    m_pRecords->m_nSize = 9;
    struct
    {
        LONG nResolution;
        const char* sShown;
    } const kRows[] = {{1, "SetResolution 1 1"}, {2, "SetResolution 9 2"},
                       {4, "SetResolution 9 4"}, {5, "SetResolution 9 3"},
                       {6, "SetResolution 1 5"}, {7, "SetResolution 1 8"}};
    for (const auto& row : kRows) {
        m_pRecords->m_nResolution = row.nResolution;
        m_pControl->OnDataChanged();
        EXPECT_THAT(Take(), testing::Contains(row.sShown));
    }
    EXPECT_EQ(m_pRecords->m_nSize, 9);
}

TEST_F(ControlEvents, AResolutionThatIsNotInTheListLeavesTheRow)
{
    const ReportLog reports;
    m_pRecords->m_nResolution = 3;
    m_pControl->OnDataChanged();
    EXPECT_EQ(Take(), Calls({"recalculate size", "records: columns", "SetDateFormat 1",
                             "ShowUseBarsEndTime no"}));
    EXPECT_EQ(reports.Texts(), Calls({"-1 != nIdx"}));
}

TEST_F(ControlEvents, WithoutAResolutionTheDialogIsNotReady)
{
    for (const LONG nResolution : {0, -1}) {
        m_pRecords->m_nResolution = nResolution;
        m_pControl->OnDataChanged();
        EXPECT_EQ(Take().back(), "SetControlsState 0");
    }
}

TEST_F(ControlEvents, TimesShowForTicksCountsAndMinutes)
{
    constexpr const char* kFormats[] = {"SetDateFormat 0", "SetDateFormat 1", "SetDateFormat 1",
                                        "SetDateFormat 1", "SetDateFormat 0", "SetDateFormat 1",
                                        "SetDateFormat 0", "SetDateFormat 0"};
    const ReportLog reports; // of those that the list lacks
    for (LONG nResolution = 0; nResolution < 8; ++nResolution) {
        m_pRecords->m_nResolution = nResolution;
        m_pControl->OnDataChanged();
        const Calls calls = Take();
        EXPECT_EQ(calls[2], kFormats[nResolution]);
        EXPECT_EQ(calls[3], nResolution == 5 ? "ShowUseBarsEndTime yes" : "ShowUseBarsEndTime no");
    }
}

// ---- start row

struct StartRow
{
    VARIANT_BOOL bHeader;
    ULONG nRow;
    ULONG nLinesAfter;
    const char* sShown; // what snaps back; null for nothing
};

TEST_F(ControlEvents, AStartRowCountsFromOneAndWithTheHeader)
{
    const StartRow kRows[] = {
        {VARIANT_FALSE, 1, 0, nullptr},
        {VARIANT_FALSE, 4, 3, nullptr},
        {VARIANT_TRUE, 2, 0, nullptr},
        {VARIANT_TRUE, 5, 3, nullptr},
        {VARIANT_TRUE, 1, 0, "SetStartRow 2"},    // -1 lines, in 32 bits too many
        {VARIANT_FALSE, 100, 0, "SetStartRow 1"}, // as many as there are
        {VARIANT_FALSE, 101, 0, "SetStartRow 1"},
        {VARIANT_FALSE, 99, 98, nullptr},
    };
    for (const StartRow& row : kRows) {
        m_pRecords->m_nLinesToSkip = 0;
        m_pData->m_bHeader = row.bHeader;
        m_pControl->OnStartRowChanged(row.nRow);
        EXPECT_EQ(m_pRecords->m_nLinesToSkip, row.nLinesAfter) << row.nRow;
        const Calls calls = Take();
        const auto shown = std::find_if(calls.begin(), calls.end(), [](const std::string& sCall) {
            return sCall.starts_with("SetStartRow");
        });
        EXPECT_EQ(shown == calls.end() ? "" : *shown, row.sShown ? row.sShown : "") << row.nRow;
    }
}

TEST_F(ControlEvents, AtMostAMillionLinesAreSkipped)
{
    m_pData->m_nCount = 2000000;
    m_pControl->OnStartRowChanged(1000001);
    EXPECT_EQ(m_pRecords->m_nLinesToSkip, 1000000u);
    Take();
    m_pControl->OnStartRowChanged(1000002);
    EXPECT_EQ(m_pRecords->m_nLinesToSkip, 1000000u);
    EXPECT_EQ(Take().front(), "SetStartRow 1000001");
}

TEST_F(ControlEvents, ARowThatTheParserCutsSnapsBack)
{
    m_pRecords->m_nMostLines = 2;
    m_pControl->OnStartRowChanged(10);
    const Calls calls = Take();
    EXPECT_EQ(calls[0], "lines 9");
    EXPECT_EQ(calls[1], "SetStartRow 3");
    EXPECT_EQ(m_pRecords->m_nLinesToSkip, 2u) << "also after the columns were built anew";
}

TEST_F(ControlEvents, ColumnsThatKeepTheLinesAreNotCorrected)
{
    m_pRecords->m_bForgetsLines = false;
    m_pControl->OnStartRowChanged(4);
    EXPECT_EQ(Take(), Calls({"lines 3", "lines: columns", "SetDateFirst 39990", "SetDateLast 40020",
                             "recreate columns", "records: columns", "records: repaint"}));
}

// ---- delimiters

TEST_F(ControlEvents, OtherDelimitersRebuildAllButTheMultipliers)
{
    m_pRecords->m_nDividers = 4;
    m_controls.m_nStartRow = 99; // from another layout
    ChooseDelimiters(kDialogOk);
    m_pControl->OnDelimitersClicked();
    EXPECT_EQ(Take(), Calls({"dividers 4",         "records: columns",
                             "SetStartRow 1",      "lines 0",
                             "lines: columns",     "SetDateFirst 39990",
                             "SetDateLast 40020",  "recreate columns",
                             "records: columns",   "records: repaint",
                             "SetDateFirst 40000", "SetDateLast 40010",
                             "start 40000",        "end 40010",
                             "SetDateFormat 1",    "ShowUseBarsEndTime yes",
                             "SetStartRow 1",      "SetResolution 1 3",
                             "records: repaint",   "SetControlsState 2"}));
}

TEST_F(ControlEvents, ARowThatWasTypedIsAppliedAgainAfterOtherDelimiters)
{
    m_pControl->OnStartRowChanged(3);
    m_controls.m_nStartRow = 3;
    Take();
    ChooseDelimiters(kDialogOk);
    m_pControl->OnDelimitersClicked();
    const Calls calls = Take();
    EXPECT_EQ(calls[2], "lines 2");
    EXPECT_EQ(m_pRecords->m_nLinesToSkip, 2u);
}

TEST_F(ControlEvents, CancelOfTheDelimitersTurnsTheDialogOn)
{
    ChooseDelimiters(kDialogCancel);
    m_pControl->OnDelimitersClicked();
    EXPECT_EQ(Take(), Calls({"SetControlsState 2"}));
}

TEST_F(ControlEvents, AFailureOfTheDelimitersStepsLeavesOnlyWhatMayHelp)
{
    ChooseDelimiters(kDialogOk);
    for (const char* sFails :
         {"get dividers", "dividers", "records: columns", "GetStartRow", "get start",
          "GetDateFirst", "start", "GetDateLast", "end", "SetResolution"}) {
        m_script.m_results = {{sFails, E_FAIL}};
        m_pControl->OnDelimitersClicked();
        EXPECT_EQ(Take().back(), "SetControlsState 1") << sFails;
    }
    m_script.m_results = {{"start", S_FALSE}};
    m_pControl->OnDelimitersClicked();
    EXPECT_EQ(Take().back(), "SetControlsState 2") << "a date that was cut is no failure";
}

// ---- code page

TEST_F(ControlEvents, ACodePageReachesTheMainParserOnly)
{
    const auto pText = m_pText->m_pParser.as<IDataParser>();
    ASSERT_TRUE(pText);
    ULONG nBefore = 0, nAfter = 0;
    pText->get_Locale(&nBefore);
    m_pControl->OnFileLanguageChanged(936);
    pText->get_Locale(&nAfter);
    EXPECT_EQ(nAfter, nBefore);
    EXPECT_EQ(m_pData->m_nCodePage, 936u);
}

} // namespace
