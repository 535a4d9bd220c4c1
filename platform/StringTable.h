// StringTable: texts for the user by id, in one language.
//
// The component's own tables are of this kind; a native host can put one of its own
// in their place (IQRLGUITweak::ResourceHandle takes its address).
#pragma once

#include "platform/component.h"

struct TabulexString
{
    unsigned nId;
    const OLECHAR* pszText; // never null
};

// Must live, unchanged, for as long as it is in place.
struct TabulexStringTable
{
    const TabulexString* pStrings;
    unsigned nStrings;
};
