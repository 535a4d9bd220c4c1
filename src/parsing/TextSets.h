// Texts as sets of characters.
#pragma once

#include "platform/component.h"

// True for the empty text, too.
inline bool ConsistsOf(string_view_t sText, string_view_t sSet)
{
    return sText.find_first_not_of(sSet) == sText.npos;
}
