// The hash by which symbols are told apart. Two symbols that share one count as one.
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
