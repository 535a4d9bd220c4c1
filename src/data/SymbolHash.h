// The hash that stands for a symbol where symbols are compared. Two symbols with the same hash
// count as one.
#pragma once

#include "platform/component.h"

namespace Hesperon::specifics {

inline ULONG SymbolHash(string_view_t sSymbol)
{
    ULONG h = 0;
    for (const OLECHAR c : sSymbol)
        h = h * 33 + c;
    return h;
}

} // namespace Hesperon::specifics
