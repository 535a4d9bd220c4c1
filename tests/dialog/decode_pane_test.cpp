// The pane of decoded records.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "src/UIComponents/ConvertDialog/DataDecodeAdapter.h"
#include "tests/dialog/fakes/FakeViews.h"

using namespace dialog_test;
using Hesperon::specifics::UILayer::CDataDecodeAdapter;

namespace {

class DecodePane : public testing::Test
{
protected:
    ~DecodePane()
    {
        m_pane.Close();
        m_dialog.CloseChildren();
    }

    FakePane& View() { return m_dialog.Pane(DialogDecode); }

    CDataDecodeAdapter::CPane m_pane;
    NoDialogEvents m_events;
    FakeDialog m_dialog{DialogImport, 0, nullptr, m_events};
};

TEST_F(DecodePane, PlacesItsGridBelowTheLabel)
{
    ASSERT_EQ(m_pane.Create(m_dialog), S_OK);
    EXPECT_TRUE(m_pane.GetGrid());
    EXPECT_EQ(m_pane.View(), &View());
    View().Move(DecodeLabel, {0, 2, 553, 11});
    View().Resize(640, 200);
    EXPECT_EQ(m_dialog.Grid(DialogDecode).m_place, (ControlPlace{0, 11, 640, 200}));
    View().Resize(300, 5);
    EXPECT_EQ(m_dialog.Grid(DialogDecode).m_place, (ControlPlace{0, 11, 300, 5}));
}

TEST_F(DecodePane, AResizeBeforeTheGridExistsDoesNothing)
{
    m_dialog.m_onPane = [](FakePane& pane) {
        pane.Resize(640, 200); // before the pane is set up
        pane.m_bRefuseGrid = true;
    };
    ASSERT_EQ(m_pane.Create(m_dialog), S_OK);
    EXPECT_FALSE(m_pane.GetGrid());
    View().Resize(300, 100);
    EXPECT_EQ(View().m_pGrid, nullptr);
}

TEST_F(DecodePane, AResizeWithoutTheLabelDoesNothing)
{
    m_dialog.m_onPane = [](FakePane& pane) { pane.m_missing.insert(DecodeLabel); };
    ASSERT_EQ(m_pane.Create(m_dialog), S_OK);
    View().Resize(640, 200);
    EXPECT_EQ(m_dialog.Grid(DialogDecode).m_place, (ControlPlace{0, 0, 100, 100}));
}

TEST_F(DecodePane, WithoutAViewCreationFails)
{
    m_dialog.m_refused.insert(DialogDecode);
    EXPECT_EQ(m_pane.Create(m_dialog), E_FAIL);
    EXPECT_EQ(m_pane.View(), nullptr);
    EXPECT_FALSE(m_pane.GetGrid());
}

TEST_F(DecodePane, ClosedItKeepsItsGridForTheView)
{
    ASSERT_EQ(m_pane.Create(m_dialog), S_OK);
    const auto pGrid = m_pane.GetGrid();
    m_pane.Close();
    EXPECT_EQ(m_pane.View(), nullptr);
    EXPECT_EQ(m_pane.GetGrid(), pGrid);
    const ControlPlace before = m_dialog.Grid(DialogDecode).m_place;
    View().Resize(10, 10);
    EXPECT_EQ(m_dialog.Grid(DialogDecode).m_place, before);
}

} // namespace
