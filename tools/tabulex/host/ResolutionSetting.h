// Resolutions by the names that users give.
#pragma once

#include <optional>
#include <string>

#include "tools/tabulex/host/Host.h"

namespace tabulex {

struct AskedResolution
{
    LONG nId;                  // the component's
    std::optional<LONG> nSize; // of a name such as "Minutes|5"; empty where it says none
};

// Throws Fault for a name that isn't offered, with the one that may have been meant.
AskedResolution RequireResolution(const ResolutionOffers& offers, const std::string& text);

// Builds the columns anew with the types that the resolution admits. The header names them, if
// there is one; dates and times stay as they are. Throws Fault where the component refuses.
void ChooseResolution(Host& host, LONG nId);

} // namespace tabulex
