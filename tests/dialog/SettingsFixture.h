// The settings pane over a fake view, with a sink that writes its calls down.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "src/UIComponents/ConvertDialog/DataSettingAdapter.h"
#include "tests/dialog/fakes/FakeParsers.h"
#include "tests/dialog/fakes/FakeViews.h"

namespace dialog_test {

using Hesperon::specifics::SConvertDialogParams;
using Hesperon::specifics::STemplateEntry;
using Hesperon::specifics::UILayer::CDataSettingAdapter;
using testing::IsEmpty;

class SettingSink final : public Hesperon::specifics::notify::IDataSettingEventSink
{
public:
    explicit SettingSink(Script& script) : m_script(script) {}

    void OnFileLanguageChanged(ULONG nCodePage) override
    {
        m_script.Done("language", std::to_string(nCodePage));
    }
    void OnDateFirstChanged(const VARIANT& vDate) override
    {
        m_script.Done("first date", DateNumber(vDate));
    }
    void OnDateLastChanged(const VARIANT& vDate) override
    {
        m_script.Done("last date", DateNumber(vDate));
    }
    void OnMultiPriceChanged(const OLECHAR* pszName) override
    {
        m_script.Done("price", Utf8(pszName));
    }
    void OnMultiVolumeChanged(const OLECHAR* pszName) override
    {
        m_script.Done("volume", Utf8(pszName));
    }
    void OnResolutionSizeChanged(const LONG nSize) override
    {
        m_script.Done("size", std::to_string(nSize));
    }
    void OnResolutionTypeChanged(const int nIndex) override
    {
        m_script.Done("type", std::to_string(nIndex));
    }
    void OnDelimitersClicked() override { m_script.Done("delimiters"); }
    void OnStartRowChanged(const ULONG nRow) override
    {
        m_script.Done("row", std::to_string(nRow));
    }
    void OnUseBarsEndTimeChanged(bool bChecked) override
    {
        m_script.Done("end time", bChecked ? "on" : "off");
    }

private:
    Script& m_script;
};

class SettingsFixture : public testing::Test
{
protected:
    SettingsFixture()
    {
        MakeParsers(m_script, m_pData, m_pRecords);
        m_params.pFieldTemplates = &m_fields;
        m_params.pResolutionTemplates = &m_resolutions;
        m_params.pTimeZoneTemplates = &m_zones;
        m_params.pDataParser = m_pData.as<IQRL_TabulexConverter::IDataParser>();
    }

    // Makes the pane; what it called so far is forgotten.
    FakePane& Open()
    {
        EXPECT_EQ(m_pane.Create(m_dialog), S_OK);
        m_script.Take();
        return View();
    }
    FakePane& View() { return m_dialog.Pane(DialogSettings); }
    Calls Take() { return m_script.Take(); }

    Script m_script;
    CallLog m_viewLog;
    NoDialogEvents m_events;
    std::vector<STemplateEntry> m_fields = {{OLESTR("Template1"), 0}, {OLESTR("Template2"), 1}};
    std::vector<STemplateEntry> m_resolutions = {{OLESTR("None"), 0},
                                                 {OLESTR("m|15"), 5},
                                                 {OLESTR("Days"), 6},
                                                 {OLESTR("|3"), 4},
                                                 {OLESTR("a|1|2"), 2}};
    std::vector<STemplateEntry> m_zones = {{OLESTR("New York"), 0}, {OLESTR("Chicago"), 1}};
    SConvertDialogParams m_params;
    com_ptr<FakeData> m_pData;
    com_ptr<FakeRecords> m_pRecords;
    SettingSink m_sink{m_script};
    FakeDialog m_dialog{DialogImport, 0, &m_viewLog, m_events};
    CDataSettingAdapter::CPane m_pane{m_params, m_sink};
};

} // namespace dialog_test
