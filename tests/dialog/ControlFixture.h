// A control over fake parsers, grids and controls; the test's thread is the dialog's.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/threads/MessageWindow.h"
#include "src/UIComponents/Windowless/ConverterCtrl.h"
#include "tests/dialog/fakes/FakeGridObject.h"
#include "tests/dialog/fakes/FakeParsers.h"
#include "tests/dialog/fakes/FakeUIControls.h"
#include "tests/dialog/fakes/FakeViews.h"

namespace dialog_test {

using namespace std::chrono_literals;
using Hesperon::specifics::SConvertDialogParams;
using Hesperon::specifics::STemplateEntry;
using Hesperon::specifics::DataFlow::CConvertCtrl;
using testing::ElementsAre;
using testing::IsEmpty;

// Handles all messages that wait for this thread.
inline void Drain()
{
    while (PumpMessages(0ms))
        continue;
}

class ControlFixture : public testing::Test
{
protected:
    ControlFixture()
    {
        MakeParsers(m_script, m_pData, m_pRecords);
        for (auto [pGrid, sName] : {std::pair(&m_pText, "lines"), {&m_pRecordsGrid, "records"}}) {
            CreateObject(*pGrid);
            (*pGrid)->m_pScript = &m_script;
            (*pGrid)->m_sName = sName;
        }
        m_params.pFieldTemplates = &m_fields;
        m_params.pResolutionTemplates = &m_resolutions;
        m_params.pTimeZoneTemplates = &m_zones;
        m_params.pDataParser = m_pData.as<IQRL_TabulexConverter::IDataParser>();
        m_pControl = std::make_unique<CConvertCtrl>(m_params, m_controls);
    }
    ~ControlFixture() override
    {
        m_pControl.reset();
        Drain();
    }

    // Hands the grids over and initialises; what was called so far is forgotten.
    void Start()
    {
        ASSERT_EQ(m_pControl->SetFileContentGrid(Text()), S_OK);
        ASSERT_EQ(m_pControl->SetDataGrid(Records()), S_OK);
        ASSERT_EQ(m_pControl->Initialize(), S_OK);
        Drain();
        m_script.Take();
    }
    com_ptr<CConvertCtrl::Grid> Text() { return m_pText.as<CConvertCtrl::Grid>(); }
    com_ptr<CConvertCtrl::Grid> Records() { return m_pRecordsGrid.as<CConvertCtrl::Grid>(); }
    // The worker tells that it has counted on.
    void TellCount()
    {
        const auto pEvents = m_pData->m_pHandler.as<IQRL_TabulexConverter::IFileHandlerEvents>();
        ASSERT_TRUE(pEvents);
        EXPECT_EQ(pEvents->RecordCountChange(1, VARIANT_FALSE), S_OK);
    }
    Calls Take() { return m_script.Take(); }

    Script m_script;
    FakeViews m_views;
    FakeUIControls m_controls{m_script};
    std::vector<STemplateEntry> m_fields = {{OLESTR("Fields"), 1}};
    std::vector<STemplateEntry> m_resolutions = {{OLESTR("None"), 0},      {OLESTR("Ticks"), 1},
                                                 {OLESTR("Tick Bars"), 2}, {OLESTR("Minutes|5"), 5},
                                                 {OLESTR("Seconds"), 4},   {OLESTR("Days"), 6},
                                                 {OLESTR("Hours|60"), 5},  {OLESTR("M|abc"), 5}};
    std::vector<STemplateEntry> m_zones = {{OLESTR("Zone"), 1}};
    SConvertDialogParams m_params;
    com_ptr<FakeData> m_pData;
    com_ptr<FakeRecords> m_pRecords;
    com_ptr<FakeGridObject> m_pText, m_pRecordsGrid;
    std::unique_ptr<CConvertCtrl> m_pControl;
};

} // namespace dialog_test
