// Where the panes of the import dialog lie.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "src/UIComponents/ConvertDialog/ConvertDialogLayout.h"
#include "tests/dialog/fakes/FakeViews.h"

using namespace dialog_test;
using namespace Hesperon::specifics::Layout;

namespace {

const std::vector<eControlOrdinal> kAll = {OrdinalFilePicker, OrdinalFileContent, OrdinalSettings,
                                           OrdinalDecode};

// Tops and bottoms, and the sides where they are the same.
std::vector<LONG> Edges(const std::vector<PanePlace>& panes)
{
    std::vector<LONG> edges;
    for (const PanePlace& pane : panes) {
        edges.push_back(pane.place.nTop);
        edges.push_back(pane.place.nBottom);
    }
    return edges;
}

TEST(DialogLayout, SharesTheRoomBetweenTheMargins)
{
    const auto panes = PlacePanes({0, 0, 855, 593}, kAll);
    EXPECT_EQ(Edges(panes), (std::vector<LONG>{15, 251, 251, 358, 358, 440, 440, 553}));
    for (const PanePlace& pane : panes) {
        EXPECT_EQ(pane.place.nLeft, 15);
        EXPECT_EQ(pane.place.nRight, 840);
    }
}

TEST(DialogLayout, OfALowWindowEndsUpsideDown)
{
    EXPECT_EQ(Edges(PlacePanes({0, 0, 300, 100}, kAll)),
              (std::vector<LONG>{15, 34, 34, 43, 43, 125, 125, 60}));
}

TEST(DialogLayout, WithoutRoomPlacesNothing)
{
    EXPECT_TRUE(PlacePanes({0, 0, 300, 55}, kAll).empty());
    EXPECT_TRUE(PlacePanes({0, 0, 30, 500}, kAll).empty());
    EXPECT_EQ(PlacePanes({0, 0, 31, 56}, kAll).size(), 4u);
}

TEST(DialogLayout, PanesThatLackLeaveTheirRoomToTheNext)
{
    EXPECT_EQ(Edges(PlacePanes({0, 0, 300, 555}, {OrdinalFileContent, OrdinalDecode})),
              (std::vector<LONG>{15, 115, 115, 515}));
    EXPECT_EQ(Edges(PlacePanes({0, 0, 300, 555}, {OrdinalSettings})), (std::vector<LONG>{15, 97}));
}

TEST(DialogLayout, AddTakesEachOrdinalOnce)
{
    struct Events : IControlEvents
    {
        void OnText(LONG) override {}
        void OnSelect(LONG) override {}
        void OnClick(LONG) override {}
        void OnDate(LONG) override {}
        void OnResize() override {}
    } events;
    FakePane picker("picker", nullptr, events), decode("decode", nullptr, events);
    CConvertDummyDialogLayout layout;
    EXPECT_EQ(layout.Add(nullptr, OrdinalFilePicker), E_INVALIDARG);
    EXPECT_EQ(layout.Add(&picker, OrdinalFilePicker), S_OK);
    EXPECT_EQ(layout.Add(&decode, OrdinalFilePicker), static_cast<HRESULT>(0x800700B7));
    EXPECT_EQ(layout.Add(&decode, OrdinalDecode), S_OK);
    layout.Apply({0, 0, 300, 555});
    EXPECT_EQ(picker.Place(kWholeView), (ControlPlace{15, 15, 285, 235}));
    EXPECT_EQ(decode.Place(kWholeView), (ControlPlace{15, 235, 285, 515}));
    layout.Apply({0, 0, 30, 30});
    EXPECT_EQ(picker.Place(kWholeView), (ControlPlace{15, 15, 285, 235})) << "stays";
}

} // namespace
