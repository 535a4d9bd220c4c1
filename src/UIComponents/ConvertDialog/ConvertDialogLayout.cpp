// The room is what the margins leave. Each pane begins where the one before it ends, and heights
// are cut to whole pixels, in single precision.

#include "src/UIComponents/ConvertDialog/ConvertDialogLayout.h"

#include <algorithm>
#include <new>

#include "diagnostics/FaultmereClient.h"

using namespace IQRL_TabulexConverter;

namespace Hesperon::specifics::Layout {

namespace {

enum class Measure
{
    Percent,
    Pixels,
    Rest
};

struct Row
{
    eControlOrdinal ordinal;
    LONG nHeight;
    Measure kind;
};
constexpr Row kRows[] = {
    {OrdinalFilePicker, 44, Measure::Percent},
    {OrdinalFileContent, 20, Measure::Percent},
    {OrdinalSettings, 82, Measure::Pixels},
    {OrdinalDecode, 20, Measure::Rest}, // the number isn't used
};

constexpr LONG kMarginX = 15, kMarginTop = 15;
constexpr LONG kMarginBottom = 40; // room for the buttons

constexpr HRESULT kAlreadyExists = static_cast<HRESULT>(0x800700B7);

LONG BottomOf(const Row& row, LONG nTop, const ControlPlace& room)
{
    switch (row.kind) {
    case Measure::Pixels:
        return nTop + row.nHeight;
    case Measure::Percent:
        return nTop + static_cast<int>((static_cast<float>(row.nHeight) / 100.0F) *
                                       static_cast<float>(room.nBottom - room.nTop));
    default:
        return room.nBottom;
    }
}

} // namespace

std::vector<PanePlace> PlacePanes(const ControlPlace& client,
                                  const std::vector<eControlOrdinal>& present)
{
    const ControlPlace room{client.nLeft + kMarginX, client.nTop + kMarginTop,
                            client.nRight - kMarginX, client.nBottom - kMarginBottom};
    std::vector<PanePlace> places;
    if (room.nLeft >= room.nRight || room.nTop >= room.nBottom)
        return places;
    LONG nTop = room.nTop;
    for (const Row& row : kRows) {
        if (std::ranges::find(present, row.ordinal) == present.end())
            continue;
        const LONG nBottom = BottomOf(row, nTop, room);
        places.push_back({row.ordinal, {room.nLeft, nTop, room.nRight, nBottom}});
        nTop = nBottom;
    }
    return places;
}

HRESULT CConvertDummyDialogLayout::Add(View* pView, eControlOrdinal ordinal)
{
    if (!pView)
        return E_INVALIDARG;
    try {
        return m_panes.emplace(ordinal, pView).second ? S_OK : kAlreadyExists;
    } catch (const std::bad_alloc&) {
        return FaultmereUtil::AssertOk(E_OUTOFMEMORY);
    }
}

void CConvertDummyDialogLayout::Apply(const ControlPlace& client) const
{
    std::vector<eControlOrdinal> present;
    for (const auto& [ordinal, pView] : m_panes)
        present.push_back(ordinal);
    for (const PanePlace& pane : PlacePanes(client, present))
        m_panes.at(pane.ordinal)->Move(kWholeView, pane.place);
}

} // namespace Hesperon::specifics::Layout
