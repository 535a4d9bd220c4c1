// A person imports files in the dialog's windows, and the conversion delivers what was set.

#include "tests/windows/dialogs/WindowSession.h"

using namespace IQRL_TabulexConverter;

namespace {

class ImportSession : public WindowSession
{
protected:
    void TearDown() override
    {
        EXPECT_TRUE(m_driver.AllRan());
        WindowSession::TearDown();
    }
    // Opens the sample and has the person do this once its rows are there, then press a button.
    VARIANT_BOOL Import(const char* pszSample, std::vector<ModalDriver::Step> steps,
                        int nButton = ImportOk)
    {
        OpenSample(pszSample);
        steps.insert(steps.begin(), HasRows);
        steps.push_back([nButton](HWND hDlg) {
            Press(hDlg, nButton);
            return true;
        });
        m_driver.OnDialog(InTurn(std::move(steps)));
        return Analyse();
    }
    // A column's type, and template where it has some.
    static std::vector<ModalDriver::Step> SetColumn(int nColumn,
                                                    const std::vector<std::wstring>& path)
    {
        return {[=](HWND hDlg) {
                    PressHeading(hDlg, nColumn);
                    return true;
                },
                [](HWND) { return OpenMenu() != nullptr; },
                [=](HWND) {
                    EXPECT_TRUE(ChooseInMenu(path));
                    return true;
                },
                [](HWND) { return OpenMenu() == nullptr; }};
    }
};

TEST_F(ImportSession, DeliversWhatTheDialogShowed)
{
    EXPECT_EQ(Import("day-no-header.csv", {[](HWND hDlg) {
                         EXPECT_EQ(RowsOf(Records(hDlg)), 20);
                         EXPECT_EQ(RowsOf(Lines(hDlg)), 20);
                         EXPECT_EQ(Heading(hDlg, 0), L"日期");
                         EXPECT_EQ(Heading(hDlg, 5), L"成交量");
                         return true;
                     }}),
              VARIANT_TRUE);
    EXPECT_EQ(Convert(), 20u);
}

TEST_F(ImportSession, AColumnIsSetThroughTheMenuOfItsHeading)
{
    auto steps = SetColumn(5, {L"未定义"});
    steps.push_back([](HWND hDlg) { return Heading(hDlg, 5) == L"未定义"; });
    EXPECT_EQ(Import("day-no-header.csv", std::move(steps)), VARIANT_TRUE);
    ASSERT_EQ(Convert(), 20u);
    EXPECT_EQ(sink->rows[0].find("358127"), std::string::npos) << sink->rows[0];
    EXPECT_NE(sink->rows[0].find("98.36"), std::string::npos) << sink->rows[0];
}

TEST_F(ImportSession, ACustomTemplateIsTypedInTheEditor)
{
    auto steps = SetColumn(0, {L"日期", L"自定义..."});
    steps.pop_back(); // the editor is open meanwhile
    steps.push_back([](HWND hDlg) { return IsWindowEnabled(hDlg) && Heading(hDlg, 0) == L"日期"; });
    OpenSample("day-no-header.csv");
    m_driver.OnDialog(InTurn({HasRows, steps[0], steps[1], steps[2], steps[3], [](HWND hDlg) {
                                  Press(hDlg, ImportOk);
                                  return true;
                              }}));
    m_driver.OnDialog([](HWND hEditor) {
        EXPECT_EQ(TextOf(hEditor), L"编辑模板");
        SetFocus(GetDlgItem(hEditor, TemplateText));
        Type(hEditor, TemplateText, L" *y/*m/*d ");
        Press(hEditor, SmallDialogOk);
        return true;
    });
    EXPECT_EQ(Analyse(), VARIANT_TRUE);
    EXPECT_EQ(Convert(), 20u);
}

TEST_F(ImportSession, AStartRowIsTyped)
{
    EXPECT_EQ(Import("day-no-header.csv", {[](HWND hDlg) {
                         EXPECT_EQ(TextOf(hDlg, SettingsStartRow), L"1");
                         Type(hDlg, SettingsStartRow, L"4");
                         EXPECT_EQ(TextOf(hDlg, SettingsStartRow), L"4");
                         return true;
                     }}),
              VARIANT_TRUE);
    EXPECT_EQ(Convert(), 17u);
}

TEST_F(ImportSession, ARangeIsPicked)
{
    EXPECT_EQ(Import("day-no-header.csv", {[](HWND hDlg) {
                         PickDate(hDlg, SettingsDateFirst, {2003, 1, 0, 20, 0, 0, 0, 0});
                         PickDate(hDlg, SettingsDateLast, {2003, 1, 0, 24, 0, 0, 0, 0});
                         return true;
                     }}),
              VARIANT_TRUE);
    EXPECT_EQ(Convert(), 5u);
}

TEST_F(ImportSession, DelimitersAreTicked)
{
    OpenSample("day-no-header.csv");
    m_driver.OnDialog(
        InTurn({HasRows,
                [](HWND hDlg) {
                    Press(hDlg, SettingsDelimiters);
                    return true;
                },
                [](HWND hDlg) { return IsWindowEnabled(hDlg) == TRUE && HasRows(hDlg); },
                [](HWND hDlg) {
                    Press(hDlg, ImportOk);
                    return true;
                }}));
    m_driver.OnDialog([](HWND hBox) {
        EXPECT_EQ(IsDlgButtonChecked(hBox, DelimiterComma), UINT{BST_CHECKED});
        Press(hBox, SmallDialogOk);
        return true;
    });
    EXPECT_EQ(Analyse(), VARIANT_TRUE);
    EXPECT_EQ(Convert(), 20u);
}

TEST_F(ImportSession, ChoicesComeBackOnlyWhenItIsConfirmed)
{
    for (const LONG nButton : {ImportCancel, ImportOk}) {
        front->AddFieldTemplate(0, Bstr(OLESTR("First")).get());
        front->AddFieldTemplate(1, Bstr(OLESTR("Second")).get());
        front->AddTimeZoneTemplate(3, Bstr(OLESTR("New York")).get());
        front->AddTimeZoneTemplate(5, Bstr(OLESTR("Chicago")).get());
        const VARIANT_BOOL bStatus = Import("day-no-header.csv", {[](HWND hDlg) {
                                                Choose(hDlg, SettingsField, 0);
                                                Choose(hDlg, SettingsTimeZone, 1);
                                                return true;
                                            }},
                                            nButton);
        LONG nField = -1, nZone = -1, nResolution = -1;
        const bool bTaken = nButton == ImportOk;
        EXPECT_EQ(bStatus, bTaken ? VARIANT_TRUE : VARIANT_FALSE);
        const HRESULT hrField = front->get_FieldTemplate(&nField);
        const HRESULT hrZone = front->get_TimeZoneTemplate(&nZone);
        EXPECT_EQ(hrField == S_OK && nField == 0, bTaken);
        EXPECT_EQ(hrZone == S_OK && nZone == 5, bTaken);
        if (bTaken) {
            EXPECT_EQ(front->get_ResolutionTemplate(&nResolution), S_OK);
            EXPECT_EQ(nResolution, LONG{HostResolutionDays});
        }
    }
}

// A write of the component's own counts as a change where a size may be typed.
TEST_F(ImportSession, TheEchoOfASizeIsHeardInModeOne)
{
    ASSERT_EQ(front->put_Mode(1), S_OK);
    EXPECT_EQ(Import("minute-5.csv", {[](HWND hDlg) {
                         const HWND hSize = Descendant(hDlg, SettingsSize);
                         EXPECT_FALSE(GetWindowLongW(hSize, GWL_STYLE) & ES_READONLY);
                         Choose(hDlg, SettingsResolution, 5); // days, of size 1
                         EXPECT_EQ(TextOf(hSize), L"N/A");
                         Choose(hDlg, SettingsResolution, 4); // minutes
                         return true;
                     }},
                     ImportCancel),
              VARIANT_FALSE);
}

// A file without a layout: there are no dates to show, and the settings may repair that.
TEST_F(ImportSession, PickersOfAFileWithoutDatesAreBlank)
{
    const TempFile file("nothing to see\r\nhere\r\nat all\r\n");
    ASSERT_GE(front->put_FileName(Bstr(file.Name()).get()), S_OK);
    m_driver.OnDialog([](HWND hDlg) {
        for (const int nPicker : {SettingsDateFirst, SettingsDateLast}) {
            EXPECT_EQ(TextOf(hDlg, nPicker), L"");
            EXPECT_TRUE(IsWindowEnabled(Descendant(hDlg, nPicker)));
        }
        Press(hDlg, ImportCancel);
        return true;
    });
    EXPECT_EQ(Analyse(), VARIANT_FALSE);
}

} // namespace
