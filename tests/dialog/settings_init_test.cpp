// How the settings pane fills its controls.

#include "tests/dialog/SettingsFixture.h"

#include "tests/support/ReportLog.h"

using namespace dialog_test;

namespace {

using SettingsInit = SettingsFixture;

TEST_F(SettingsInit, ShowsResolutionsWithoutTheirSizes)
{
    FakePane& view = Open();
    EXPECT_EQ(view.Rows(SettingsResolution), (Calls{"None", "m", "Days", "", "a"}));
    EXPECT_EQ(view.RowData(SettingsResolution, 1), 5);
    EXPECT_EQ(view.Selected(SettingsResolution), 0) << "whatever was chosen before";
    EXPECT_EQ(view.TextAt(SettingsSize), "N/A");
    EXPECT_TRUE(view.IsReadOnly(SettingsSize));
    EXPECT_FALSE(view.IsEnabled(SettingsSize));
}

TEST_F(SettingsInit, WithModeOneTheSizeCanBeTyped)
{
    m_params.nMode = 1;
    EXPECT_FALSE(Open().IsReadOnly(SettingsSize));
}

TEST_F(SettingsInit, WithoutResolutionsNothingIsSelected)
{
    m_resolutions.clear();
    EXPECT_EQ(Open().Selected(SettingsResolution), kNoRow);
}

TEST_F(SettingsInit, ChoosesAFieldTemplateByNameWithoutCase)
{
    struct
    {
        const OLECHAR* pszChoice;
        LONG nRow;
    } const kRows[] = {{OLESTR("Template1"), 0},
                       {OLESTR("TEMPLATE1"), 0},
                       {OLESTR("none of them"), 2},
                       {OLESTR(""), 2},
                       {OLESTR("twice"), 2}};
    m_fields = {{OLESTR("Template1"), 0}, {OLESTR("Twice"), 1}, {OLESTR("TWICE"), 2}};
    for (const auto& row : kRows) {
        m_params.sField = row.pszChoice;
        FakePane& view = Open();
        EXPECT_EQ(view.Selected(SettingsField), row.nRow) << Utf8(row.pszChoice);
        EXPECT_TRUE(view.IsEnabled(SettingsField));
    }
}

TEST_F(SettingsInit, AnEmptyListIsDisabled)
{
    m_zones.clear();
    FakePane& view = Open();
    EXPECT_FALSE(view.IsEnabled(SettingsTimeZone));
    EXPECT_EQ(view.Selected(SettingsTimeZone), kNoRow);
}

TEST_F(SettingsInit, TheStartRowHasAFloorForNumbersThatWrapped)
{
    struct
    {
        VARIANT_BOOL bHeader;
        ULONG nLines;
        const char* sShown;
    } const kRows[] = {{VARIANT_FALSE, 0, "1"},          {VARIANT_TRUE, 0, "2"},
                       {VARIANT_FALSE, 4, "5"},          {VARIANT_TRUE, 4, "6"},
                       {VARIANT_FALSE, 0xFFFFFFFF, "1"}, {VARIANT_TRUE, 0xFFFFFFFF, "2"},
                       {VARIANT_TRUE, 0xFFFFFFFE, "2"}};
    for (const auto& row : kRows) {
        m_pData->m_bHeader = row.bHeader;
        m_pRecords->m_nLinesToSkip = row.nLines;
        EXPECT_EQ(Open().TextAt(SettingsStartRow), row.sShown) << row.nLines;
    }
}

TEST_F(SettingsInit, ItsFirstStartRowCountsAsTyped)
{
    m_pRecords->m_nLinesToSkip = 3;
    EXPECT_EQ(m_pane.Create(m_dialog), S_OK);
    EXPECT_THAT(Take(), testing::Contains("row 4"));
    View().Type(SettingsStartRow, "4");
    EXPECT_THAT(Take(), IsEmpty());
}

TEST_F(SettingsInit, ShowsTheMultipliersAndTheirNames)
{
    m_pRecords->m_pPrice->m_sCurrent = "1";
    m_pRecords->m_pVolume->m_sCurrent = "7";
    FakePane& view = Open();
    EXPECT_EQ(view.Rows(SettingsPriceMultiplier), (Calls{"10", "1/10", "1"}));
    EXPECT_EQ(view.ChosenText(SettingsPriceMultiplier), "1") << "not 1/10, of which it is the head";
    EXPECT_EQ(view.Selected(SettingsVolumeMultiplier), kNoRow);
}

TEST_F(SettingsInit, TicksTheBarsEndTime)
{
    for (const VARIANT_BOOL bEndTime : {VARIANT_FALSE, VARIANT_TRUE, VARIANT_BOOL{1}}) {
        m_pRecords->m_bEndTime = bEndTime;
        EXPECT_EQ(Open().Check(SettingsBarsEndTime), bEndTime ? 1 : 0);
    }
}

TEST_F(SettingsInit, StepsThatFailAreReportedAndTheOthersRun)
{
    const ReportLog reports;
    m_params.pDataParser.reset();
    FakePane& view = Open();
    EXPECT_EQ(reports.Texts(), Calls(4, "(((HRESULT)(hr__)) >= 0)"));
    EXPECT_EQ(view.RowCount(SettingsField), 2);
    EXPECT_EQ(view.RowCount(SettingsPriceMultiplier), 0);
    EXPECT_EQ(view.TextAt(SettingsStartRow), "");
}

TEST_F(SettingsInit, APaneThatCannotBeMadeFails)
{
    m_dialog.m_refused = {DialogSettings};
    EXPECT_EQ(m_pane.Create(m_dialog), E_FAIL);
    EXPECT_EQ(m_pane.View(), nullptr);
    EXPECT_EQ(m_pane.SetControlsState(2), OLE_E_BLANK);
    EXPECT_EQ(m_pane.ApplyFocusedEdit(), 1);
}

} // namespace
