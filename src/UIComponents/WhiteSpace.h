// White space at the ends of what a user types, by Unicode: an input method leaves wide blanks.
#pragma once

#include "platform/component.h"

namespace Hesperon::specifics::UILayer {

constexpr bool IsWhiteSpace(OLECHAR c)
{
    return (c >= 0x09 && c <= 0x0D) || c == 0x20 || c == 0x85 || c == 0xA0 || c == 0x1680 ||
           (c >= 0x2000 && c <= 0x200A) || c == 0x2028 || c == 0x2029 || c == 0x202F ||
           c == 0x205F || c == 0x3000;
}

// A part of the text, without the white space before and after it.
constexpr string_view_t TrimWhiteSpace(string_view_t sText)
{
    while (!sText.empty() && IsWhiteSpace(sText.front()))
        sText.remove_prefix(1);
    while (!sText.empty() && IsWhiteSpace(sText.back()))
        sText.remove_suffix(1);
    return sText;
}

} // namespace Hesperon::specifics::UILayer
