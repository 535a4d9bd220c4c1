// CConvertDummyDialogLayout: the panes of the import dialog, one below the other.
//
// A pane takes the whole width between the margins; its height is a share of the room, a number
// of pixels, or the rest.
#pragma once

#include <map>
#include <vector>

#include "interfaces/IControlsView.h"

namespace Hesperon::specifics::Layout {

// From top to bottom.
enum eControlOrdinal
{
    OrdinalFilePicker,
    OrdinalFileContent,
    OrdinalSettings,
    OrdinalDecode,
};

struct PanePlace
{
    eControlOrdinal ordinal;
    IQRL_TabulexConverter::ControlPlace place;
};

// Places of the panes that are there, in a client area whose corner is 0, 0. None where no room
// is left between the margins. The last pane's place may be upside down: it ends where the room
// does.
std::vector<PanePlace> PlacePanes(const IQRL_TabulexConverter::ControlPlace& client,
                                  const std::vector<eControlOrdinal>& present);

class CConvertDummyDialogLayout
{
public:
    using View = IQRL_TabulexConverter::IControlsView;

    // E_INVALIDARG for null, ERROR_ALREADY_EXISTS as a result for an ordinal that is taken.
    // The view outlives its last Apply.
    HRESULT Add(View* pView, eControlOrdinal ordinal);
    void Clear() { m_panes.clear(); }
    // Moves the panes to their places.
    void Apply(const IQRL_TabulexConverter::ControlPlace& client) const;

private:
    std::map<eControlOrdinal, View*> m_panes;
};

} // namespace Hesperon::specifics::Layout
