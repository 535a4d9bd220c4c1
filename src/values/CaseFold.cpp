// ASCII, which is nearly all that is compared, is folded here; only other units take the way
// through the user's locale, which needs a string.

#include "src/values/CaseFold.h"

#include <algorithm>

#include "platform/text/Locale.h"

namespace Hesperon::specifics {

namespace {

constexpr OLECHAR kFirstBeyondAscii = 0x80;

OLECHAR FoldCaseOfLocale(OLECHAR c)
{
    string_t text(1, c);
    LowerCase(text);
    return text.front();
}

} // namespace

OLECHAR FoldCase(OLECHAR c)
{
    if (c >= OLESTR('A') && c <= OLESTR('Z'))
        return static_cast<OLECHAR>(c + (OLESTR('a') - OLESTR('A')));
    return c < kFirstBeyondAscii ? c : FoldCaseOfLocale(c);
}

bool EqualIgnoringCase(string_view_t sFirst, string_view_t sSecond)
{
    return std::ranges::equal(sFirst, sSecond, {}, FoldCase, FoldCase);
}

} // namespace Hesperon::specifics
