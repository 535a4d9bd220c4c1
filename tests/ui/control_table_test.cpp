// The base of views that remember what was written to their controls.

#include <gtest/gtest.h>

#include "interfaces/ControlTable.h"
#include "src/UIComponents/views/ControlPlaces.h"
#include "tests/support/Text.h"

using namespace IQRL_TabulexConverter;
using namespace Hesperon::specifics::UILayer;

namespace {

constexpr LONG kEdit = 222, kButton = 300;

class Controls final : public ControlTable<>
{};

TEST(ControlTable, ControlIsEmptyEnabledAndShownAtFirst)
{
    Controls view;
    EXPECT_EQ(Utf8(view.Text(kEdit)), "");
    EXPECT_TRUE(view.IsEnabled(kEdit));
    EXPECT_TRUE(view.IsShown(kEdit));
    EXPECT_EQ(view.Place(kEdit), ControlPlace());
    EXPECT_EQ(view.Focus(), kWholeView);
}

TEST(ControlTable, RemembersEachControlByItself)
{
    Controls view;
    view.SetText(kEdit, OLESTR("12"));
    view.SetText(kWholeView, OLESTR("Import"));
    view.SetEnabled(kButton, false);
    view.SetShown(kEdit, false);
    view.SetFocus(kEdit);
    EXPECT_EQ(Utf8(view.Text(kEdit)), "12");
    EXPECT_EQ(Utf8(view.Text(kButton)), "");
    EXPECT_EQ(Utf8(view.Text(kWholeView)), "Import");
    EXPECT_TRUE(view.IsEnabled(kEdit));
    EXPECT_FALSE(view.IsEnabled(kButton));
    EXPECT_FALSE(view.IsShown(kEdit));
    EXPECT_TRUE(view.IsShown(kButton));
    EXPECT_EQ(view.Focus(), kEdit);
}

TEST(ControlPlaces, MoveAndGrowByADistance)
{
    Controls view;
    view.Move(kButton, {10, 20, 50, 34});
    MoveDown(view, kButton, -5);
    EXPECT_EQ(view.Place(kButton), (ControlPlace{10, 15, 50, 29}));
    EXPECT_EQ(Top(view, kButton), 15);
    GrowHeight(view, kButton, 60);
    EXPECT_EQ(view.Place(kButton), (ControlPlace{10, 15, 50, 89}));
}

} // namespace
