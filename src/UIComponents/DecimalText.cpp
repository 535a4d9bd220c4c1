#include "src/UIComponents/DecimalText.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string>

namespace Hesperon::specifics::UILayer {

namespace {

bool IsDigit(OLECHAR c)
{
    return c >= OLECHAR('0') && c <= OLECHAR('9');
}

bool IsBlank(OLECHAR c)
{
    return c == OLECHAR(' ') || (c >= OLECHAR('\t') && c <= OLECHAR('\r'));
}

} // namespace

string_t DecimalText(ULONGLONG nNumber)
{
    const std::string sDigits = std::to_string(nNumber);
    return {sDigits.begin(), sDigits.end()};
}

LONG DecimalValue(string_view_t sText)
{
    constexpr std::int64_t kHighest = std::numeric_limits<LONG>::max();
    auto it = std::ranges::find_if_not(sText, IsBlank);
    const bool bNegative = it != sText.end() && *it == OLECHAR('-');
    if (bNegative || (it != sText.end() && *it == OLECHAR('+')))
        ++it;
    std::int64_t nValue = 0; // stops at the lowest number's absolute value
    for (; it != sText.end() && IsDigit(*it); ++it)
        nValue = std::min(nValue * 10 + (*it - OLECHAR('0')), kHighest + 1);
    return static_cast<LONG>(bNegative ? -nValue : std::min(nValue, kHighest));
}

ULONG AbsoluteDecimalValue(string_view_t sText)
{
    const LONG nValue = DecimalValue(sText);
    return nValue < 0 ? 0 - static_cast<ULONG>(nValue) : static_cast<ULONG>(nValue);
}

} // namespace Hesperon::specifics::UILayer
