// What the settings pane makes of the user's actions.

#include "tests/dialog/SettingsFixture.h"

using namespace dialog_test;

namespace {

using SettingsEvents = SettingsFixture;

TEST_F(SettingsEvents, AreReported)
{
    FakePane& view = Open();
    view.Choose(SettingsResolution, 1);
    EXPECT_EQ(Take(), Calls({"type 1"}));
    view.Choose(SettingsPriceMultiplier, 1);
    EXPECT_EQ(Take(), Calls({"price 1/10"}));
    view.Choose(SettingsVolumeMultiplier, 0);
    EXPECT_EQ(Take(), Calls({"volume 10"}));
    view.Click(SettingsDelimiters);
    EXPECT_EQ(Take(), Calls({"delimiters"}));
    view.Tick(SettingsBarsEndTime, 1);
    view.Tick(SettingsBarsEndTime, 0);
    EXPECT_EQ(Take(), Calls({"end time on", "end time off"}));
    view.PickDate(SettingsDateFirst, {2009, 7, 0, 6, 0, 0, 0, 0});
    view.PickDate(SettingsDateLast, {2009, 7, 0, 7, 12, 0, 0, 0});
    EXPECT_EQ(Take(), Calls({"first date 40000", "last date 40001.5"}));
    view.Choose(SettingsField, 0);
    view.Choose(SettingsTimeZone, 0);
    EXPECT_THAT(Take(), IsEmpty()) << "read when the dialog closes";
}

TEST_F(SettingsEvents, AResolutionShowsTheSizeOfItsName)
{
    struct
    {
        LONG nRow;
        const char* sSize;
        bool bEnabled;
    } const kRows[] = {
        {1, "15", true}, {2, "N/A", true}, {3, "3", true}, {4, "1|2", true}, {0, "N/A", false}};
    FakePane& view = Open();
    for (const auto& row : kRows) {
        view.Choose(SettingsResolution, row.nRow);
        EXPECT_EQ(view.TextAt(SettingsSize), row.sSize) << row.nRow;
        EXPECT_EQ(view.IsEnabled(SettingsSize), row.bEnabled) << row.nRow;
    }
    EXPECT_EQ(view.RowText(SettingsResolution, 1), string_t(OLESTR("m")));
}

TEST_F(SettingsEvents, WithModeZeroTypingASizeRaisesNothing)
{
    FakePane& view = Open();
    view.Type(SettingsSize, "5");
    EXPECT_THAT(Take(), IsEmpty());
    EXPECT_EQ(m_pane.SetResolution(1, 1), S_OK);
    EXPECT_THAT(Take(), IsEmpty());
}

TEST_F(SettingsEvents, WithModeOneASizeIsReportedAsItIsTyped)
{
    m_params.nMode = 1;
    FakePane& view = Open();
    for (const char* sText : {"5", "15", "15x", "0", "-3", "N/A", ""})
        view.Type(SettingsSize, sText);
    EXPECT_EQ(Take(), Calls({"size 5", "size 15", "size 15"}));
}

TEST_F(SettingsEvents, WithModeOneThePanesOwnSizeCountsAsTyped)
{
    m_params.nMode = 1;
    FakePane& view = Open();
    EXPECT_EQ(m_pane.SetResolution(1, 2), S_OK);
    EXPECT_EQ(Take(), Calls({"size 1"}));
    view.Choose(SettingsResolution, 1);
    EXPECT_EQ(Take(), Calls({"size 15", "type 1"})) << "the size ahead of the type";
}

TEST_F(SettingsEvents, EachCharacterOfAStartRowCounts)
{
    FakePane& view = Open();
    view.Type(SettingsStartRow, "7");
    view.Type(SettingsStartRow, "72");
    EXPECT_EQ(Take(), Calls({"row 7", "row 72"}));
}

TEST_F(SettingsEvents, AStartRowIsReportedWhereItDiffers)
{
    FakePane& view = Open();
    view.Type(SettingsStartRow, "7");
    Take();
    view.Type(SettingsStartRow, "");
    view.Type(SettingsStartRow, "7");
    EXPECT_THAT(Take(), IsEmpty()) << "retyped";
    m_pane.ResetStartRow();
    view.Type(SettingsStartRow, "7");
    EXPECT_EQ(Take(), Calls({"row 7"}));
    view.Type(SettingsStartRow, "-7");
    EXPECT_THAT(Take(), IsEmpty()) << "its absolute value counts";
    view.Type(SettingsStartRow, "-8");
    EXPECT_EQ(Take(), Calls({"row 8"}));
    view.Type(SettingsStartRow, "abc");
    EXPECT_EQ(Take(), Calls({"row 0"}));
    m_pane.ResetStartRow();
    view.Type(SettingsStartRow, "0");
    EXPECT_THAT(Take(), IsEmpty());
}

TEST_F(SettingsEvents, EnterAppliesTheFocusedEdit)
{
    FakePane& view = Open();
    view.SetFocus(SettingsStartRow);
    EXPECT_EQ(m_pane.ApplyFocusedEdit(), S_OK);
    m_pane.ResetStartRow();
    EXPECT_EQ(m_pane.ApplyFocusedEdit(), S_OK);
    EXPECT_EQ(Take(), Calls({"row 1"}));
    for (const LONG nControl :
         {LONG{SettingsSize}, LONG{SettingsField}, LONG{SettingsDateFirst}, kWholeView}) {
        view.SetFocus(nControl);
        EXPECT_EQ(m_pane.ApplyFocusedEdit(), 1) << nControl;
    }
    m_params.nMode = 1;
    view.Type(SettingsSize, "9");
    Take();
    EXPECT_EQ(m_pane.ApplyFocusedEdit(), S_OK);
    EXPECT_EQ(Take(), Calls({"size 9"}));
    view.Type(SettingsSize, "0");
    EXPECT_EQ(m_pane.ApplyFocusedEdit(), S_OK);
    EXPECT_THAT(Take(), IsEmpty());
}

TEST_F(SettingsEvents, TheChoicesAreReadAsTheyStand)
{
    m_params.sResolution = OLESTR("former");
    FakePane& view = Open();
    view.Choose(SettingsResolution, 1);
    view.Choose(SettingsField, 0);
    view.Choose(SettingsTimeZone, 1);
    EXPECT_EQ(m_pane.Resolution(), OLESTR("m|15"));
    EXPECT_EQ(m_pane.ResolutionSize(), 15);
    EXPECT_EQ(m_pane.Field(), OLESTR("Template1"));
    EXPECT_EQ(m_pane.TimeZone(), OLESTR("Chicago"));
}

TEST_F(SettingsEvents, ABadSelectionLeavesTheResolution)
{
    m_params.sResolution = OLESTR("former");
    FakePane& view = Open();
    view.Select(SettingsResolution, 99);
    EXPECT_EQ(m_pane.Resolution(), OLESTR("former"));
    EXPECT_EQ(m_pane.ResolutionSize(), 0) << "N/A";
}

struct ThrowingSettingSink final : Hesperon::specifics::notify::IDataSettingEventSink
{
    void OnFileLanguageChanged(ULONG) override { throw std::bad_alloc(); }
    void OnDateFirstChanged(const VARIANT&) override { throw std::bad_alloc(); }
    void OnDateLastChanged(const VARIANT&) override { throw std::bad_alloc(); }
    void OnMultiPriceChanged(const OLECHAR*) override { throw std::bad_alloc(); }
    void OnMultiVolumeChanged(const OLECHAR*) override { throw std::bad_alloc(); }
    void OnResolutionSizeChanged(const LONG) override { throw std::bad_alloc(); }
    void OnResolutionTypeChanged(const int) override { throw std::bad_alloc(); }
    void OnDelimitersClicked() override { throw std::bad_alloc(); }
    void OnStartRowChanged(const ULONG) override { throw std::bad_alloc(); }
    void OnUseBarsEndTimeChanged(bool) override { throw std::bad_alloc(); }
};

TEST_F(SettingsEvents, LetNothingThrownReachTheView)
{
    ThrowingSettingSink sink;
    m_params.nMode = 1;
    CDataSettingAdapter::CPane pane(m_params, sink);
    ASSERT_EQ(pane.Create(m_dialog), S_OK);
    FakePane& view = View();
    EXPECT_NO_THROW(view.Choose(SettingsResolution, 1));
    EXPECT_NO_THROW(view.Choose(SettingsPriceMultiplier, 1));
    EXPECT_NO_THROW(view.Choose(SettingsVolumeMultiplier, 1));
    EXPECT_NO_THROW(view.Type(SettingsSize, "7"));
    EXPECT_NO_THROW(view.Type(SettingsStartRow, "7"));
    EXPECT_NO_THROW(view.Click(SettingsDelimiters));
    EXPECT_NO_THROW(view.Tick(SettingsBarsEndTime, 1));
    EXPECT_NO_THROW(view.PickDate(SettingsDateFirst, {2009, 7, 0, 6, 0, 0, 0, 0}));
    EXPECT_NO_THROW(view.PickDate(SettingsDateLast, {2009, 7, 0, 6, 0, 0, 0, 0}));
}

} // namespace
