// The settings pane's side of what the control asks.

#include "tests/dialog/SettingsFixture.h"

#include "platform/text/Locale.h"
#include "tests/support/ReportLog.h"

using namespace dialog_test;

namespace {

class SettingsControls : public SettingsFixture
{
protected:
    SettingsControls()
    {
        Open();
        Place(SettingsDateFirst, {534, 28, 624, 49});
        Place(SettingsDateLast, {630, 28, 720, 49});
        Place(SettingsDateLastLabel, {630, 15, 714, 28});
        Place(SettingsDelimiters, {726, 26, 801, 47});
        Place(SettingsBarsEndTime, {534, 54, 648, 70});
        m_viewLog.Take();
    }
    void Place(LONG nControl, const ControlPlace& place) { View().Move(nControl, place); }
    Calls TakeView() { return m_viewLog.Take(); }
};

TEST_F(SettingsControls, APickerShowsWhetherThereIsADate)
{
    struct
    {
        DATE date;
        const char* sShown;
    } const kRows[] = {{40000.5, "220: date 236 2009-07-06 12:00:00"},
                       {0.0, "220: date 236 none"},
                       {0.75, "220: date 236 none"},
                       {65536.0, "220: date 236 none"}, // the low 16 bits of the days are 0
                       {1.0, "220: date 236 1899-12-31 00:00:00"}};
    for (const auto& row : kRows) {
        EXPECT_EQ(m_pane.SetDateFirst(Variant::FromDate(row.date)), S_OK);
        const bool bDate = std::string(row.sShown).find("none") == std::string::npos;
        EXPECT_EQ(TakeView(), Calls({row.sShown, bDate ? "220: enable 236" : "220: disable 236"}));
    }
    EXPECT_EQ(m_pane.SetDateFirst(Variant::FromI4(1)), E_INVALIDARG);
    EXPECT_EQ(m_pane.SetDateLast(Variant::FromText(OLESTR("x"))), E_INVALIDARG);
    EXPECT_THAT(TakeView(), IsEmpty());
}

TEST_F(SettingsControls, APickerWithoutADateGivesAnError)
{
    Variant vDate;
    m_pane.SetDateLast(Variant::FromDate(0));
    EXPECT_EQ(m_pane.GetDateLast(vDate.put()), E_UNEXPECTED);
    EXPECT_EQ(vDate.vt, VT_EMPTY);
}

TEST_F(SettingsControls, APickerGivesBackWhatWasWrittenUntilItIsTouched)
{
    const DATE date = 40000.123456789; // with a fraction of a second
    Variant vDate;
    m_pane.SetDateFirst(Variant::FromDate(date));
    EXPECT_EQ(m_pane.GetDateFirst(vDate.put()), S_OK);
    EXPECT_EQ(vDate.vt, VT_DATE);
    EXPECT_EQ(vDate.date, date);
    View().PickDate(SettingsDateFirst, {2009, 7, 0, 6, 6, 0, 0, 999});
    EXPECT_EQ(m_pane.GetDateFirst(vDate.put()), S_OK);
    EXPECT_EQ(vDate.date, 40000.25) << "milliseconds never count";
    m_pane.SetDateFirst(Variant::FromDate(date));
    m_pane.GetDateFirst(vDate.put());
    EXPECT_EQ(vDate.date, date);
}

TEST_F(SettingsControls, TheDateFormatIsTheSystemsAndMayHaveATime)
{
    EXPECT_EQ(m_pane.SetDateFormat(0), S_OK);
    EXPECT_EQ(View().DateFormat(SettingsDateFirst), Utf8(DateFormatText()));
    EXPECT_EQ(m_pane.SetDateFormat(1), S_OK);
    EXPECT_EQ(View().DateFormat(SettingsDateLast),
              Utf8(DateFormatText() + OLESTR(" ") + TimeFormatText()));
    for (const LONG nMode : {-1, 2, 100})
        EXPECT_EQ(m_pane.SetDateFormat(nMode), E_FAIL);
}

TEST_F(SettingsControls, DatesAloneLeaveRoomForTheButtonBehindThem)
{
    m_pane.SetDateFormat(0);
    EXPECT_EQ(View().Place(SettingsDateFirst), (ControlPlace{534, 28, 635, 49}));
    EXPECT_EQ(View().Place(SettingsDateLast), (ControlPlace{640, 28, 741, 49}));
    EXPECT_EQ(View().Place(SettingsDateLastLabel), (ControlPlace{640, 15, 724, 28}));
    EXPECT_EQ(View().Place(SettingsDelimiters), (ControlPlace{746, 27, 821, 48}));
    EXPECT_EQ(TakeView().back(), "220: repaint 240");
}

TEST_F(SettingsControls, TimesPutTheButtonBelowTheSecondPicker)
{
    m_pane.SetDateFormat(1);
    EXPECT_EQ(View().Place(SettingsDateFirst), (ControlPlace{534, 28, 675, 49}));
    EXPECT_EQ(View().Place(SettingsDateLast), (ControlPlace{680, 28, 821, 49}));
    EXPECT_EQ(View().Place(SettingsDateLastLabel), (ControlPlace{680, 15, 764, 28}));
    EXPECT_EQ(View().Place(SettingsDelimiters), (ControlPlace{680, 53, 755, 74}));
    m_pane.SetDateFormat(0);
    EXPECT_EQ(View().Place(SettingsDelimiters), (ControlPlace{746, 27, 821, 48})) << "and back";
}

TEST_F(SettingsControls, AStartRowIsWrittenWithoutAnEvent)
{
    View().SelectText(SettingsStartRow, {1, 2});
    EXPECT_EQ(m_pane.SetStartRow(33), S_OK);
    EXPECT_THAT(Take(), IsEmpty());
    EXPECT_EQ(View().TextAt(SettingsStartRow), "33");
    EXPECT_EQ(View().SelectedText(SettingsStartRow), (TextRange{1, 2}));
    ULONG nRow = 0;
    EXPECT_EQ(m_pane.GetStartRow(&nRow), S_OK);
    EXPECT_EQ(nRow, 33u);
    View().Type(SettingsStartRow, "34");
    EXPECT_EQ(Take(), Calls({"row 34"})) << "the echo has been taken";
    View().Type(SettingsStartRow, "");
    EXPECT_TRUE(FAILED(m_pane.GetStartRow(&nRow)));
    EXPECT_EQ(nRow, 0u);
}

TEST_F(SettingsControls, AResolutionIsSelectedByItsPlace)
{
    EXPECT_EQ(m_pane.SetResolution(5, 1), S_OK);
    EXPECT_EQ(View().TextAt(SettingsSize), "5");
    EXPECT_EQ(View().Selected(SettingsResolution), 1);
    EXPECT_TRUE(View().IsEnabled(SettingsSize));
    EXPECT_EQ(m_pane.SetResolution(0, 0), S_OK);
    EXPECT_EQ(View().TextAt(SettingsSize), "N/A");
    EXPECT_FALSE(View().IsEnabled(SettingsSize));
    EXPECT_EQ(m_pane.SetResolution(7, 99), DISP_E_BADINDEX);
    EXPECT_EQ(View().TextAt(SettingsSize), "7") << "written first";
    EXPECT_FALSE(View().IsEnabled(SettingsSize));
}

TEST_F(SettingsControls, AMultiplierIsSelectedByItsWholeName)
{
    EXPECT_EQ(m_pane.SetMultiPrice(OLESTR("1")), S_OK);
    EXPECT_EQ(View().Selected(SettingsPriceMultiplier), 2);
    EXPECT_EQ(m_pane.SetMultiVolume(OLESTR("1/10")), S_OK);
    EXPECT_EQ(View().Selected(SettingsVolumeMultiplier), 1);
    EXPECT_EQ(m_pane.SetMultiPrice(OLESTR("1/1")), TYPE_E_ELEMENTNOTFOUND);
    EXPECT_EQ(View().Selected(SettingsPriceMultiplier), 2);
}

TEST_F(SettingsControls, TheCheckBoxIsTickedAndShown)
{
    EXPECT_EQ(m_pane.SetUseBarsEndTime(true), S_OK);
    EXPECT_EQ(View().Check(SettingsBarsEndTime), 1);
    EXPECT_EQ(m_pane.ShowUseBarsEndTime(false), S_OK);
    EXPECT_FALSE(View().IsShown(SettingsBarsEndTime));
    EXPECT_EQ(m_pane.ShowUseBarsEndTime(true), S_OK);
    EXPECT_TRUE(View().IsShown(SettingsBarsEndTime));
    EXPECT_THAT(Take(), IsEmpty());
}

constexpr LONG kAllControls[] = {222, 224, 226, 228, 230, 232, 234, 236, 238, 240, 242};

TEST_F(SettingsControls, AStateEnablesTheControls)
{
    for (const LONG nRow : {0, 1})
        for (const LONG nState : {0, 1, 2, 3, -1}) {
            View().Select(SettingsResolution, nRow);
            EXPECT_EQ(m_pane.SetControlsState(nState), S_OK);
            for (const LONG nControl : kAllControls) {
                const bool bEnabled = nControl == SettingsSize         ? nRow >= 1
                                      : nControl == SettingsDelimiters ? nState == 1 || nState == 2
                                                                       : nState == 2;
                EXPECT_EQ(View().IsEnabled(nControl), bEnabled) << nControl << " in " << nState;
            }
        }
}

TEST_F(SettingsControls, ControlsThatLackAreSkipped)
{
    View().m_missing = {SettingsField, SettingsDelimiters};
    TakeView();
    m_pane.SetControlsState(2);
    EXPECT_EQ(TakeView(), Calls({"220: disable 222", "220: enable 224", "220: enable 228",
                                 "220: enable 230", "220: enable 232", "220: enable 234",
                                 "220: enable 236", "220: enable 238", "220: enable 242"}));
}

} // namespace
